// Adding, removing and reconciling entries: which files are opened, once, with which messages, and
// what a file that cannot be used does to the rest.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <linux/capability.h>
#include <netcdf.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>
#include "support/ScratchDir.h"
#include "workspace/WorkspaceTestSupport.h"

using ZorvoNetCDFDSG::NetCDFWorkspace;
using ::testing::ElementsAre;
using zdsg_test::Codes;
using zdsg_test::ExamplePath;
using zdsg_test::FixturePath;

namespace {

class WorkspaceEntries : public zdsg_test::ScratchDirTest {
protected:
    void SetUp() override {
        ScratchDirTest::SetUp();
        m_workspace = NetCDFWorkspace::s_Create(m_dir / "ws");
    }

    std::filesystem::path Copy(const std::filesystem::path& from, const std::string& name) const {
        const auto to = m_dir / name;
        std::filesystem::create_directories(to.parent_path());
        std::filesystem::copy_file(from, to);
        return to;
    }

    std::vector<std::string> RecordFiles() const {
        std::vector<std::string> files;
        for (const auto& record : m_workspace->FileRecords()) {
            files.push_back(record.file->NcPath().filename().string());
        }
        return files;
    }

    long cMessages(long code) const {
        return static_cast<long>(m_workspace->CurrentLog().FindMessageRange(code, code).size());
    }

    std::shared_ptr<NetCDFWorkspace> m_workspace;
};

TEST_F(WorkspaceEntries, ADirectoryScanTakesExactlyNcAndNc4Files) {
    const auto point = ExamplePath("point_observations.nc");
    Copy(point, "data/a.nc");
    Copy(point, "data/b.NC");
    Copy(point, "data/c.nc4");
    Copy(point, "data/d.txt");
    Copy(point, "data/sub/e.nc");
    std::filesystem::create_symlink(m_dir / "data" / "a.nc", m_dir / "data" / "link.nc");
    m_workspace->AddDirectory(m_dir / "data", ZorvoDSG::eFeatureUnknown, nullptr, false, false);
    EXPECT_THAT(RecordFiles(), ElementsAre("c.nc4", "a.nc"));  // newest first

    m_workspace->AddDirectory(m_dir / "data" / ".", ZorvoDSG::eFeatureUnknown, nullptr, false, true);
    EXPECT_EQ(m_workspace->Entries().size(), 1u);  // the same directory, normalised
    m_workspace->SetEmpty();
    m_workspace->AddDirectory(m_dir / "data", ZorvoDSG::eFeatureUnknown, nullptr, false, true);
    EXPECT_THAT(RecordFiles(), ElementsAre("e.nc", "c.nc4", "a.nc"));
}

// Drops this process's power to read what its permissions forbid (root's CAP_DAC_*), so that a
// closed directory is closed to it too.
bool bDropFileReadOverride() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2]{};
    if (::syscall(SYS_capget, &header, data) != 0) {
        return false;
    }
    for (const int capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH}) {
        data[capability / 32].effective &= ~(1u << (capability % 32));
    }
    return ::syscall(SYS_capset, &header, data) == 0;
}

TEST_F(WorkspaceEntries, AnUnreadableSubdirectoryIsLoggedAndTheScanGoesOn) {
    const auto point = ExamplePath("point_observations.nc");
    Copy(point, "data/a.nc");
    Copy(point, "data/closed/b.nc");
    Copy(point, "data/z/c.nc");
    std::filesystem::permissions(m_dir / "data" / "closed", std::filesystem::perms::none);
    const auto scanWithoutOverride = [this] {
        const bool bDropped = bDropFileReadOverride();
        m_workspace->AddDirectory(m_dir / "data", ZorvoDSG::eFeatureUnknown, nullptr, false, true);
        const auto refused = m_workspace->CurrentLog().FindMessageRange(3, 3);
        const std::vector<std::string> expected{"c.nc", "a.nc"};
        const bool bAsExpected = bDropped && RecordFiles() == expected && refused.size() == 1 &&
                                 refused[0].Text().find(L"closed: ") != std::wstring::npos;
        std::exit(bAsExpected ? 0 : 1);
    };
    // In a child process: the dropped capability is not to outlive the test.
    EXPECT_EXIT(scanWithoutOverride(), ::testing::ExitedWithCode(0), "");
    std::filesystem::permissions(m_dir / "data" / "closed", std::filesystem::perms::owner_all);
    EXPECT_THROW(m_workspace->AddDirectory(m_dir / "missing", ZorvoDSG::eFeatureUnknown, nullptr, false, true),
                 std::filesystem::filesystem_error);
}

TEST_F(WorkspaceEntries, AFileIsOpenedOnceHoweverItIsReached) {
    const auto file = Copy(ExamplePath("point_observations.nc"), "data/a.nc");
    m_workspace->AddDirectory(m_dir / "data", ZorvoDSG::eFeatureUnknown, nullptr, false, false);
    m_workspace->AddFile(file, ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->AddFile(m_dir / "data" / ".." / "data" / "a.nc", ZorvoDSG::eFeatureUnknown, nullptr);
    EXPECT_EQ(m_workspace->Entries().size(), 2u);
    EXPECT_EQ(m_workspace->FileRecords().size(), 1u);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogOpeningFile), 1);
}

TEST_F(WorkspaceEntries, GroupsOfOneFileAreRecordsWithOneEntryId) {
    m_workspace->AddFile(ExamplePath("two_groups.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    const auto records = m_workspace->FileRecords();
    ASSERT_EQ(records.size(), 2u);
    // Groups open deepest first, the root last; records are newest first.
    EXPECT_EQ(records[0].featureClasses.at(0)->Name(), "two_groups_ship_point");
    EXPECT_EQ(records[1].featureClasses.at(0)->Name(), "two_groups_mooring_timeSeries");
    EXPECT_EQ(records[0].file->FileId(), records[1].file->FileId());
    // The root holds no data: no feature type (4), but nothing to refuse (3).
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogNoFeatureType), 1);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogFileRefused), 0);
}

TEST_F(WorkspaceEntries, OldConventionsAndMissingFeatureTypesAreLogged) {
    m_workspace->AddFile(FixturePath("ws_cf15.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogCFVersionTooOld), 1);
    m_workspace->AddFile(FixturePath("ws_nofeaturetype.nc"), ZorvoDSG::eFeaturePoint, nullptr);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogNoFeatureType), 1);
    EXPECT_EQ(m_workspace->FileRecords().size(), 2u);  // the hint made it a point class
    m_workspace->AddFile(ExamplePath("trajectory_contiguous.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogCFVersionTooOld), 1);  // CF-1.6 is new enough
}

TEST_F(WorkspaceEntries, AnUnusableOnlyGroupThrowsInAnEmptyWorkspaceAndIsLoggedOtherwise) {
    EXPECT_THROW(m_workspace->AddFile(FixturePath("ws_nodsg.nc"), ZorvoDSG::eFeatureUnknown, nullptr),
                 ZorvoDSG::Exception);
    EXPECT_TRUE(m_workspace->FileRecords().empty());
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogFileRefused), 1);
    m_workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->AddFile(FixturePath("ws_nodsg_nc4.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    EXPECT_EQ(m_workspace->FileRecords().size(), 1u);
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogFileRefused), 2);
}

TEST_F(WorkspaceEntries, AFileThatIsNotNetCDFThrowsWhenAddedAndIsLoggedInAScan) {
    m_workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    const auto bogus = Write("bogus.nc", "not a netCDF file");
    EXPECT_THROW(m_workspace->AddFile(bogus, ZorvoDSG::eFeatureUnknown, nullptr), ZorvoDSG::Exception);
    EXPECT_EQ(m_workspace->Entries().size(), 2u);  // the entry stays

    Copy(ExamplePath("point_observations.nc"), "scan/a.nc");
    Copy(bogus, "scan/b.nc");
    Copy(ExamplePath("profile_orthogonal.nc"), "scan/c.nc");
    m_workspace->AddDirectory(m_dir / "scan", ZorvoDSG::eFeatureUnknown, nullptr, false, false);
    EXPECT_THAT(RecordFiles(), ElementsAre("c.nc", "a.nc", "point_observations.nc"));
    const auto refused = m_workspace->CurrentLog().FindMessageRange(3, 3);
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_NE(refused[0].Text().find(L"b.nc: "), std::wstring::npos);
}

TEST_F(WorkspaceEntries, ReconcileDropsWhatIsNoLongerNamedAndKeepsWhatIs) {
    const auto a = Copy(ExamplePath("point_observations.nc"), "a.nc");
    const auto c = Copy(ExamplePath("profile_orthogonal.nc"), "c.nc4");
    m_workspace->AddFile(a, ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->AddFile(c, ZorvoDSG::eFeatureUnknown, nullptr);
    const auto log = m_workspace->ReconcileEntries({a}, ZorvoDSG::eFeatureUnknown, nullptr, false);
    EXPECT_THAT(Codes(*log), ElementsAre(ZorvoDSG::System::eLogFileRecordRemoved));  // a.nc not reopened
    EXPECT_EQ(log->GetMessage(0).Text(), c.wstring());
    EXPECT_THAT(RecordFiles(), ElementsAre("a.nc"));
    ASSERT_EQ(m_workspace->Entries().size(), 1u);
}

TEST_F(WorkspaceEntries, AReconcileThatThrowsLeavesTheWorkspaceAsItWas) {
    const auto a = Copy(ExamplePath("point_observations.nc"), "a.nc");
    const auto c = Copy(ExamplePath("profile_orthogonal.nc"), "c.nc4");
    const auto bogus = Write("bogus.nc", "not a netCDF file");
    m_workspace->AddFile(a, ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->AddFile(c, ZorvoDSG::eFeatureUnknown, nullptr);
    const auto d = Copy(ExamplePath("timeseries_projected.nc"), "d.nc");

    EXPECT_THROW(m_workspace->ReconcileEntries({d, bogus}, ZorvoDSG::eFeatureUnknown, nullptr, false),
                 ZorvoDSG::Exception);
    EXPECT_THAT(RecordFiles(), ElementsAre("c.nc4", "a.nc"));
    ASSERT_EQ(m_workspace->Entries().size(), 2u);
    EXPECT_EQ(m_workspace->Entries()[1].path, c);
    EXPECT_THROW(m_workspace->ReconcileEntries({a, m_dir / "missing"}, ZorvoDSG::eFeatureUnknown, nullptr, false),
                 std::filesystem::filesystem_error);
    EXPECT_THAT(RecordFiles(), ElementsAre("c.nc4", "a.nc"));

    // The flags of the failed attempt do not protect a record from a later remove.
    m_workspace->RemoveFile(a);
    EXPECT_THAT(RecordFiles(), ElementsAre("c.nc4"));
}

TEST_F(WorkspaceEntries, ChangesAreRefusedUnderSeveralConnections) {
    m_workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->Connect();
    m_workspace->Connect();
    for (const auto& log : {m_workspace->ReconcileEntries({}, ZorvoDSG::eFeatureUnknown, nullptr, false),
                            m_workspace->SetEmpty()}) {
        EXPECT_THAT(Codes(*log), ElementsAre(ZorvoDSG::System::eLogTooManyConnections));
    }
    EXPECT_EQ(m_workspace->FileRecords().size(), 1u);
    EXPECT_EQ(m_workspace->Entries().size(), 1u);
    m_workspace->Disconnect();
    m_workspace->Disconnect();
}

TEST_F(WorkspaceEntries, RemoveDirectoryComparesWholeComponents) {
    const auto inside = Copy(ExamplePath("point_observations.nc"), "data/a.nc");
    const auto beside = Copy(ExamplePath("profile_orthogonal.nc"), "data2/b.nc");
    m_workspace->AddFile(inside, ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->AddFile(beside, ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->RemoveDirectory(m_dir / "data/");
    EXPECT_THAT(RecordFiles(), ElementsAre("b.nc"));
    EXPECT_EQ(m_workspace->Entries().size(), 1u);
    m_workspace->RemoveFile(m_dir / "data2" / "." / "b.nc");
    EXPECT_TRUE(m_workspace->FileRecords().empty());
    EXPECT_EQ(cMessages(ZorvoDSG::System::eLogFileRecordRemoved), 2);
}

TEST_F(WorkspaceEntries, TheLastDisconnectClosesFilesAndTheFirstConnectReopensThem) {
    m_workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    const auto file = m_workspace->FileRecords().front().file;
    m_workspace->Connect();
    m_workspace->Connect();
    m_workspace->Disconnect();
    EXPECT_NO_THROW(file->NcID());
    m_workspace->Disconnect();
    EXPECT_THROW(file->NcID(), std::runtime_error);
    m_workspace->Disconnect();  // at zero: nothing
    EXPECT_EQ(m_workspace->cConnections(), 0u);
    m_workspace->Connect();
    EXPECT_NO_THROW(file->NcID());
    m_workspace->Disconnect();
}

TEST_F(WorkspaceEntries, ACursorReadsOnlyWhileItsFileIsOpenAndGoesOnAfterAReopen) {
    m_workspace->AddFile(ExamplePath("point_observations.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    const auto featureClass = m_workspace->BasicFeatureClasses(ZorvoDSG::eFeatureUnknown).at(0);
    m_workspace->Connect();
    const auto cursor = featureClass->Search(ZorvoDSG::SpatialFilter());
    // One point per read, so that every point goes to the file.
    dynamic_cast<ZorvoNetCDFDSG::NetCDFCursorImpl&>(*cursor).SetBlockSize(1);
    const auto feature = cursor->CreateEmptyFeature();
    ASSERT_TRUE(cursor->QueryNext(feature));
    m_workspace->Disconnect();
    try {
        cursor->QueryNext(feature);
        ADD_FAILURE() << "read a closed file";
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), NC_EBADID) << e.what();
    }
    // Another file opened meanwhile may take the old id; the cursor asks for the file's id anew.
    m_workspace->AddFile(ExamplePath("profile_orthogonal.nc"), ZorvoDSG::eFeatureUnknown, nullptr);
    m_workspace->Connect();
    int cFeatures = 1;
    while (cursor->QueryNext(feature)) {
        ++cFeatures;
    }
    EXPECT_EQ(cFeatures, 6);
    m_workspace->Disconnect();
}

}  // namespace
