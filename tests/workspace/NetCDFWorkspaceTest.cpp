// Workspace lifecycle and conf.json: what is written, what is read back, and what is never lost.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <string>

#include <zorvodsg/values/Exception.h>
#include "support/ScratchDir.h"
#include "workspace/WorkspaceTestSupport.h"

using ZorvoNetCDFDSG::NetCDFWorkspace;
using zdsg_test::ExamplePath;

namespace {

class WorkspaceLifecycle : public zdsg_test::ScratchDirTest {};

TEST_F(WorkspaceLifecycle, CreateMakesNestedDirectoriesAndCommitWritesAnEmptyDocument) {
    const auto path = m_dir / "a" / "b" / "ws";
    const auto workspace = NetCDFWorkspace::s_Create(path);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_FALSE(std::filesystem::exists(path / "conf.json"));  // written by the first Commit
    const auto log = workspace->Commit(nullptr);
    EXPECT_EQ(log->cMessages(), 0);
    EXPECT_EQ(Read(path / "conf.json"), "{\"version\":\"0.1\",\"entries\":[],\"files\":[]}\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path), {}), 1);  // no temporary left
}

TEST_F(WorkspaceLifecycle, ATrailingSlashNamesTheSameDirectory) {
    const auto workspace = NetCDFWorkspace::s_Create((m_dir / "a" / "ws").string() + "/");
    EXPECT_EQ(workspace->Path(), m_dir / "a" / "ws");
    workspace->Commit(nullptr);
    EXPECT_EQ(NetCDFWorkspace::s_Open((m_dir / "a" / "ws").string() + "/")->Path(), m_dir / "a" / "ws");
    EXPECT_THROW(NetCDFWorkspace::s_Create((m_dir / "a" / "ws").string() + "/"), ZorvoDSG::Exception);
}

TEST_F(WorkspaceLifecycle, CreateRefusesAnExistingPathAndLeavesItAlone) {
    const auto mine = Write("mine.txt", "keep");
    try {
        NetCDFWorkspace::s_Create(m_dir);
        FAIL() << "created over an existing directory";
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eNetCDFWorkspaceExists);
        EXPECT_EQ(e.wsDetail(), L"NetCDF workspace already exists");
    }
    EXPECT_EQ(Read(mine), "keep");
}

TEST_F(WorkspaceLifecycle, OpenRefusesAMissingDirectoryAndAForeignConf) {
    try {
        NetCDFWorkspace::s_Open(m_dir / "missing");
        FAIL();
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eNetCDFWorkspaceDoesNotExist);
    }
    const std::string deep = "{\"version\":\"0.1\",\"entries\":" + std::string(2000000, '[');
    for (const std::string& text : {std::string("{not json"), std::string("[]"), std::string("{\"version\":\"0.1\"}"),
                                    std::string("{\"version\":1,\"entries\":[]}"),
                                    std::string("{\"version\":\"0.1\",\"entries\":[{\"path\":\"a.nc\"}]}"), deep}) {
        const auto conf = Write("conf.json", text);
        try {
            NetCDFWorkspace::s_Open(m_dir);
            ADD_FAILURE() << "opened with " << text.substr(0, 80);
        } catch (const ZorvoDSG::Exception& e) {
            EXPECT_EQ(e.NcErr(), ZorvoDSG::eNotANetCDFWorkspace) << text.substr(0, 80);
            EXPECT_EQ(e.wsDetail().rfind(L"conf.json: ", 0), 0u) << text.substr(0, 80);
        }
        EXPECT_TRUE(Read(conf) == text);  // left as it was
    }
}

TEST_F(WorkspaceLifecycle, OpenWithoutConfHasNoVersion) {
    const auto workspace = NetCDFWorkspace::s_Open(m_dir);
    EXPECT_EQ(workspace->Version(), "");
    workspace->Commit(nullptr);
    EXPECT_EQ(Read(m_dir / "conf.json"), "{\"version\":\"\",\"entries\":[],\"files\":[]}\n");
}

TEST_F(WorkspaceLifecycle, OpenThenCommitKeepsEntriesAndReopeningFindsTheSameClasses) {
    const auto path = m_dir / "ws";
    {
        const auto workspace = NetCDFWorkspace::s_Create(path);
        workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
        workspace->AddDirectory(ExamplePath(""), ZorvoDSG::eFeatureUnknown, nullptr, false, false);
        workspace->Commit(nullptr);
    }
    const std::string written = Read(path / "conf.json");
    const auto reopened = NetCDFWorkspace::s_Open(path);
    EXPECT_EQ(reopened->Version(), "0.1");
    ASSERT_EQ(reopened->Entries().size(), 2u);
    EXPECT_TRUE(reopened->FileRecords().empty());
    reopened->ReopenEntries(ZorvoDSG::eFeatureUnknown, nullptr);
    reopened->Commit(nullptr);
    EXPECT_EQ(Read(path / "conf.json"), written);
}

TEST_F(WorkspaceLifecycle, AFailedCommitKeepsTheOldFile) {
    const auto path = m_dir / "ws";
    const auto workspace = NetCDFWorkspace::s_Create(path);
    workspace->Commit(nullptr);
    const std::string before = Read(path / "conf.json");
    workspace->AddDirectory(ExamplePath(""), ZorvoDSG::eFeatureUnknown, nullptr, false, false);
    // A file-size limit makes the write of the longer document fail, for root as for anyone.
    struct rlimit saved {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = saved;
    small.rlim_cur = before.size() + 10;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    bool bThrown = false;
    try {
        workspace->Commit(nullptr);
    } catch (const ZorvoDSG::Exception& e) {
        bThrown = e.NcErr() == ZorvoDSG::eNotANetCDFWorkspace;
    }
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_TRUE(bThrown);
    EXPECT_EQ(Read(path / "conf.json"), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path), {}), 1);
}

TEST_F(WorkspaceLifecycle, ACommitDoesNotOverwriteAnotherProgramsCommit) {
    const auto path = m_dir / "ws";
    NetCDFWorkspace::s_Create(path)->Commit(nullptr);
    const auto first = NetCDFWorkspace::s_Open(path);
    const auto second = NetCDFWorkspace::s_Open(path);
    first->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    first->Commit(nullptr);
    first->Commit(nullptr);  // its own write is what it last saw

    second->AddFile(ExamplePath("two_groups.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    const std::string before = Read(path / "conf.json");
    try {
        second->Commit(nullptr);
        FAIL() << "overwrote the other commit";
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eNotANetCDFWorkspace);
        EXPECT_NE(e.wsDetail().find(L"changed by another program"), std::wstring::npos);
    }
    EXPECT_EQ(Read(path / "conf.json"), before);

    const auto again = NetCDFWorkspace::s_Open(path);
    ASSERT_EQ(again->Entries().size(), 1u);
    again->AddFile(ExamplePath("two_groups.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    again->Commit(nullptr);
    EXPECT_EQ(NetCDFWorkspace::s_Open(path)->Entries().size(), 2u);
}

TEST_F(WorkspaceLifecycle, DeleteRemovesOnlyWhatTheWorkspaceWrote) {
    const auto path = m_dir / "ws";
    auto workspace = NetCDFWorkspace::s_Create(path);
    workspace->Commit(nullptr);
    std::ofstream(path / "data.nc") << "a user's file";
    std::ofstream(path / "conf.json.backup") << "a user's copy";
    std::ofstream(path / "conf.json.zdsg-tmp-Ab12Cd") << "left by a failed write";
    workspace->Delete();
    EXPECT_FALSE(std::filesystem::exists(path / "conf.json"));
    EXPECT_FALSE(std::filesystem::exists(path / "conf.json.zdsg-tmp-Ab12Cd"));
    EXPECT_TRUE(std::filesystem::exists(path / "data.nc"));
    EXPECT_TRUE(std::filesystem::exists(path / "conf.json.backup"));

    const auto empty = m_dir / "empty";
    workspace = NetCDFWorkspace::s_Create(empty);
    workspace->Commit(nullptr);
    workspace->Delete();
    EXPECT_FALSE(std::filesystem::exists(empty));
}

TEST_F(WorkspaceLifecycle, ConfEscapesClassNamesAndKeepsEntryOrder) {
    const auto workspace = NetCDFWorkspace::s_Create(m_dir / "ws");
    workspace->AddFile(ExamplePath("two_groups.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    workspace->Commit(nullptr);
    const std::string conf = Read(m_dir / "ws" / "conf.json");
    const std::string two = ExamplePath("two_groups.nc").lexically_normal().string();
    const std::string point = ExamplePath("point_observations.nc").lexically_normal().string();
    EXPECT_LT(conf.find("{\"path\":\"" + two + "\",\"includeSubdirs\":false}"),
              conf.find("{\"path\":\"" + point + "\",\"includeSubdirs\":false}"));
    // Records newest first: the point file's before the groups'.
    EXPECT_LT(conf.find("{\"file\":\"" + point + "\",\"timestamp\":0,\"featureClasses\":[{\"name\":"),
              conf.find("{\"file\":\"" + two + "\""));
    EXPECT_NE(conf.find("\"featureType\":\"point\",\"extent\":{}}"), std::string::npos);
    EXPECT_EQ(conf.back(), '\n');
}

TEST_F(WorkspaceLifecycle, OddFileNamesSurviveConfJson) {
    const std::string name = "q\"uote\\back\x01\xc3\xa9";
    const auto file = m_dir / "data" / (name + ".nc");
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::copy_file(ExamplePath("point_observations.nc"), file);
    const auto workspace = NetCDFWorkspace::s_Create(m_dir / "ws");
    workspace->AddFile(file, ZorvoDSG::eFeatureUnknown, nullptr);
    workspace->Commit(nullptr);

    const std::string conf = Read(m_dir / "ws" / "conf.json");
    rapidjson::Document document;
    document.Parse<rapidjson::kParseValidateEncodingFlag>(conf.c_str(), conf.size());
    ASSERT_FALSE(document.HasParseError()) << conf;
    EXPECT_EQ(document["files"][0]["file"].GetString(), file.string());
    EXPECT_EQ(std::string(document["files"][0]["featureClasses"][0]["name"].GetString()).rfind(name, 0), 0u);

    const auto reopened = NetCDFWorkspace::s_Open(m_dir / "ws");
    reopened->ReopenEntries(ZorvoDSG::eFeatureUnknown, nullptr);
    ASSERT_EQ(reopened->FileRecords().size(), 1u);
    EXPECT_EQ(reopened->FileRecords()[0].file->NcPath(), file);

    // A Latin-1 name could not be found again from conf.json: refused before it becomes an entry.
    const auto latin1 = m_dir / "data" / "caf\xe9.nc";
    std::filesystem::copy_file(ExamplePath("point_observations.nc"), latin1);
    try {
        reopened->AddFile(latin1, ZorvoDSG::eFeatureUnknown, nullptr);
        FAIL() << "a path that is not UTF-8 was recorded";
    } catch (const std::filesystem::filesystem_error& e) {
        EXPECT_EQ(e.code(), std::errc::illegal_byte_sequence);
    }
    EXPECT_EQ(reopened->Entries().size(), 1u);
}

TEST(InMemoryWorkspace, IsOneObjectThatCommitsNothing) {
    const auto first = NetCDFWorkspace::s_GetInMemoryWorkspace();
    EXPECT_EQ(first, NetCDFWorkspace::s_GetInMemoryWorkspace());
    EXPECT_EQ(first->Version(), "0.1");
    EXPECT_TRUE(first->Path().empty());
    EXPECT_EQ(first->Commit(nullptr)->cMessages(), 0);
}

}  // namespace
