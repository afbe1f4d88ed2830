#include <gtest/gtest.h>
#include <netcdf.h>

#include <algorithm>
#include <string>
#include <vector>

#include "NcFileTestSupport.h"
#include <zorvodsg/values/Exception.h>

namespace {

using ZorvoDSG::Exception;
using ZorvoNetCDFDSG::NetCDFFile;
using namespace ncfile_test;

std::vector<std::string> FullGroupNames(const std::vector<std::shared_ptr<NetCDFFile>>& files) {
    std::vector<std::string> names;
    for (const auto& file : files) {
        names.push_back(file->FullGroupName());
    }
    return names;
}

// The id netCDF-C gives dimension `name` as seen from group `groupPath` of `path`.
int DimIdInFile(const std::filesystem::path& path, const std::string& groupPath, const std::string& name) {
    int ncid = -1;
    int groupId = -1;
    int dimId = -1;
    EXPECT_EQ(nc_open(path.c_str(), NC_NOWRITE, &ncid), NC_NOERR);
    EXPECT_EQ(nc_inq_grp_full_ncid(ncid, groupPath.c_str(), &groupId), NC_NOERR);
    EXPECT_EQ(nc_inq_dimid(groupId, name.c_str(), &dimId), NC_NOERR);
    nc_close(ncid);
    return dimId;
}

class FlatFileTest : public testing::TestWithParam<std::string> {};

TEST_P(FlatFileTest, OneFileWithMaps) {
    const auto files = Open(DataPath(GetParam() + ".nc"));
    ASSERT_EQ(files.size(), 1u);
    NetCDFFile& file = *files.front();
    EXPECT_EQ(file.GroupName(), "");
    EXPECT_EQ(file.FullGroupName(), "");
    EXPECT_EQ(file.Name(), GetParam());
    EXPECT_EQ(file.FileId(), 7);
    EXPECT_GE(file.NcID(), 0);
    EXPECT_EQ(file.NcFormat(), GetParam() == "ncfile_x" ? NC_FORMAT_CLASSIC : NC_FORMAT_NETCDF4);

    // Eight variables of the file, then the assumed grid mapping that sal's coordinates call for.
    ASSERT_EQ(file.Variables().size(), 9u);
    EXPECT_EQ(file.Variables().rbegin()->second.Name(), "zorvo_assumed_geographic");

    const auto& dims = file.Name2Dim();
    EXPECT_EQ(dims.at("obs"), 0);
    EXPECT_EQ(dims.at("station"), 1);
    EXPECT_EQ(dims.at("strlen"), 2);
    EXPECT_EQ(file.DimLen(dims.at("strlen")), 8u);

    const long scalar = file.Name2Var().at("scalar");
    EXPECT_EQ(file.Var2Dims().count(scalar), 0u);
    EXPECT_EQ(file.Var2Dims().at(file.Name2Var().at("name")), (std::vector<long>{1, 2}));
    EXPECT_EQ(file.Dim2Vars().at(0), (std::vector<long>{1, 2, 3, 4, 5}));
    EXPECT_EQ(file.Dim2Vars().at(2), (std::vector<long>{6, 7}));
    EXPECT_EQ(file.Att2Vars().at("scale_factor"), (std::vector<long>{1, 5}));
    EXPECT_EQ(file.Att2Vars().count("title"), 0u);  // global attributes are not mapped

    EXPECT_TRUE(file.HasGlobalAttribute("title"));
    EXPECT_EQ(std::get<std::string>(file.GlobalAttribute("Conventions")), "CF-1.8");
    EXPECT_EQ(file.GlobalAttributes().Name(), "<globals>");
    EXPECT_EQ(file.GlobalAttributes().Id(), -1);
    try {
        file.GlobalAttribute("nope");
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eAttributeNotPresent);
        EXPECT_EQ(e.wsDetail(), L"<globals>: nope");
    }
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, FlatFileTest, testing::Values("ncfile_x", "ncfile_x_nc4"));

TEST(NetCDFFileTest, GetVariableFailures) {
    const auto file = OpenOne("ncfile_x.nc");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->GetVariable("temp").Id(), 1);
    EXPECT_EQ(&file->GetVariable("temp"), &file->GetVariable(1));
    try {
        file->GetVariable(99);
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eVariableNotFound);
        EXPECT_EQ(e.wsDetail(), L"id: 99");
        EXPECT_EQ(e.NcPath(), DataPath("ncfile_x.nc"));
    }
    try {
        file->GetVariable("missing");
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eVariableNotFound);
        EXPECT_EQ(e.wsDetail(), L"missing");
    }
}

TEST(NetCDFFileTest, DisconnectKeepsMetadataAndConnectReopens) {
    const auto file = OpenOne("ncfile_x_nc4.nc");
    ASSERT_TRUE(file);
    file->Disconnect();
    file->Disconnect();
    try {
        file->NcID();
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "closed file");
    }
    try {
        file->DimLen(0);  // the library's status for the closed id, not "closed file"
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), NC_EBADID);
    }
    EXPECT_EQ(file->GetVariable("temp").Name(), "temp");
    file->Connect();
    EXPECT_GE(file->NcID(), 0);
    EXPECT_EQ(file->DimLen(0), 3u);
    file->Connect();  // already connected: keeps its handle
    EXPECT_EQ(file->DimLen(1), 2u);
}

// netCDF-C must not have a netCDF-4 file open twice: HDF5 shares the file between the two opens and
// closing one breaks the other. Every dataset of the file in the process shares one handle.
TEST(NetCDFFileTest, TheSameFileOpenedTwiceSharesOneHandle) {
    auto first = Open(DataPath("ncfile_groups.nc"));
    auto second = Open(DataPath("ncfile_groups.nc"));
    ASSERT_EQ(first.size(), 4u);
    ASSERT_EQ(second.size(), 4u);
    EXPECT_EQ(first.back()->NcID(), second.back()->NcID());
    first.clear();  // closes nothing: the second still holds the handle
    auto third = Open(DataPath("ncfile_groups.nc"));  // reads through the same handle
    ASSERT_EQ(third.size(), 4u);
    EXPECT_EQ(third.at(0)->GetVariable("other").Type(), NC_INT);

    NetCDFFile& obs = *second.at(2);
    ASSERT_EQ(obs.FullGroupName(), "/obs/");
    ZorvoDSG::Variable obsVar = obs.GetVariable("obs_var");
    obsVar.SetAttributeValue("scale_factor", 2.0f);  // asks the file for the default fill value again
    EXPECT_EQ(std::get<float>(obsVar.FillValue()), NC_FILL_FLOAT);
    EXPECT_EQ(obs.DimLen(obs.Name2Dim().at("n")), 4u);
    obs.Disconnect();
    obs.Connect();  // the others still hold the handle: shares it again
    EXPECT_EQ(obs.DimLen(obs.Name2Dim().at("m")), 3u);
    second.clear();
    EXPECT_EQ(third.at(2)->DimLen(third.at(2)->Name2Dim().at("m")), 3u);
    third.clear();
    EXPECT_EQ(Open(DataPath("ncfile_groups.nc")).size(), 4u);  // opened afresh after all let go
}

TEST(NetCDFFileTest, GroupsDepthFirstRootLast) {
    const std::filesystem::path path = DataPath("ncfile_groups.nc");
    const auto files = Open(path);
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(FullGroupNames(files), (std::vector<std::string>{"/observations/", "/obs/deep/", "/obs/", "/"}));
    EXPECT_EQ(files[1]->Name(), "ncfile_groups_deep");
    EXPECT_EQ(files[2]->Name(), "ncfile_groups_obs");
    EXPECT_EQ(files[3]->Name(), "ncfile_groups_/");
    EXPECT_EQ(files[3]->GroupName(), "/");

    // Global attributes: the nearest group's value wins, the rest is inherited.
    const auto title = [](const NetCDFFile& f) { return std::get<std::string>(f.GlobalAttribute("title")); };
    EXPECT_EQ(title(*files[3]), "root title");
    EXPECT_EQ(title(*files[2]), "obs title");
    EXPECT_EQ(title(*files[1]), "obs title");
    EXPECT_EQ(std::get<std::string>(files[1]->GlobalAttribute("institution")), "root institution");

    // Dimension ids are file-wide; a group's own n hides the root's n.
    NetCDFFile& deep = *files[1];
    const int k = DimIdInFile(path, "/obs/deep", "k");
    const int m = DimIdInFile(path, "/obs", "m");
    const int obsN = DimIdInFile(path, "/obs", "n");
    EXPECT_EQ(deep.Name2Dim().at("k"), k);
    EXPECT_EQ(deep.Name2Dim().at("m"), m);
    EXPECT_EQ(deep.Name2Dim().at("n"), obsN);
    EXPECT_EQ(deep.DimLen(obsN), 4u);
    EXPECT_EQ(files[3]->DimLen(files[3]->Name2Dim().at("n")), 2u);
    const ZorvoDSG::Variable& deepVar = deep.GetVariable("deep_var");
    EXPECT_EQ(deep.Var2Dims().at(deepVar.Id()), (std::vector<long>{k, m}));
    EXPECT_EQ(deep.Dim2Vars().at(m), (std::vector<long>{deepVar.Id()}));
    EXPECT_EQ(deepVar.NameWithFullGroupName(), "/obs/deep/deep_var");
    EXPECT_EQ(deepVar.aDimNames(), (std::vector<std::string>{"k", "m"}));
    EXPECT_EQ(files[2]->GetVariable("obs_var").aidDims(), (std::vector<long>{m, obsN}));
}

TEST(NetCDFFileTest, NcMLRemovesGroupsAndTheirSubgroups) {
    for (const char* name : {"obs", "/obs", "/obs/", "obs/"}) {
        const auto ncml = NcML(std::string("<netcdf><remove type='group' name='") + name + "'/></netcdf>");
        ASSERT_TRUE(ncml);
        EXPECT_EQ(FullGroupNames(Open(DataPath("ncfile_groups.nc"), ncml.get())),
                  (std::vector<std::string>{"/observations/", "/"}))
            << name;
    }
    const auto all = NcML("<netcdf><remove type='group' name='/'/><remove type='variable' name='x'/></netcdf>");
    EXPECT_TRUE(Open(DataPath("ncfile_groups.nc"), all.get()).empty());
    const auto emptyName = NcML("<netcdf><remove type='group' name=''/></netcdf>");  // like "/"
    EXPECT_TRUE(Open(DataPath("ncfile_groups.nc"), emptyName.get()).empty());
    // Without groups the removals are not consulted.
    EXPECT_EQ(Open(DataPath("ncfile_x_nc4.nc"), all.get()).size(), 1u);

    const auto unnamed = NcML("<netcdf><remove type='group'/></netcdf>");
    try {
        Open(DataPath("ncfile_groups.nc"), unnamed.get());
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eIncompleteNcMLAttribute);
        EXPECT_EQ(e.wsDetail(), L"group name");
        EXPECT_EQ(e.NcPath(), std::filesystem::path("memory.ncml"));
    }
}

}  // namespace
