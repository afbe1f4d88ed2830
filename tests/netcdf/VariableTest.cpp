#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "NcFileTestSupport.h"
#include <zorvodsg/values/Exception.h>

namespace {

using ZorvoDSG::Exception;
using ZorvoDSG::Variable;
using ZorvoDSG::System::NcVariant;
using ZorvoDSG::System::NcVariantArray;
using namespace ncfile_test;

void ExpectRuntimeError(const std::function<void()>& action, const char* text) {
    try {
        action();
        ADD_FAILURE() << "no error, expected " << text;
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), text);
    }
}

class VariableTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_classic = OpenOne("ncfile_x.nc");
        s_groups = Open(DataPath("ncfile_groups.nc"));
    }
    static void TearDownTestSuite() {
        s_classic.reset();
        s_groups.clear();
    }
    static Variable& Var(const std::string& name) { return s_classic->GetVariable(name); }

    static inline std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile> s_classic;
    static inline std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>> s_groups;
};

TEST_F(VariableTest, Packing) {
    const Variable& temp = Var("temp");  // short, float scale_factor only
    EXPECT_TRUE(temp.IsPacked());
    EXPECT_EQ(temp.Type(), NC_SHORT);
    EXPECT_EQ(temp.UnpackedType(), NC_FLOAT);
    EXPECT_EQ(temp.UnpackInfo(), (std::pair<double, double>{0.5, 0.0}));
    EXPECT_DOUBLE_EQ(temp.Unpack(4.0), 2.0);
    const NcVariant unpacked = temp.Unpack(NcVariant{static_cast<short>(4)});
    EXPECT_DOUBLE_EQ(std::get<double>(unpacked), 2.0);

    const Variable& depth = Var("depth");  // double add_offset only
    EXPECT_EQ(depth.UnpackedType(), NC_DOUBLE);
    EXPECT_EQ(depth.UnpackInfo(), (std::pair<double, double>{1.0, 10.0}));
    EXPECT_DOUBLE_EQ(std::get<double>(depth.Unpack(NcVariant{1.5})), 11.5);

    const Variable& wrap = Var("wrap");  // byte scale and offset: arithmetic wraps in the byte type
    EXPECT_EQ(std::get<signed char>(wrap.Unpack(NcVariant{static_cast<signed char>(3)})),
              static_cast<signed char>(400 - 512));
    ExpectRuntimeError([&] { wrap.Unpack(NcVariant{std::string("x")}); }, "s_Unpack: incompatible types");
    EXPECT_THROW(wrap.Unpack(NcVariant{3.0}), std::bad_variant_access);

    const Variable& plain = Var("plain");
    EXPECT_FALSE(plain.IsPacked());
    EXPECT_EQ(plain.UnpackInfo(), (std::pair<double, double>{1.0, 0.0}));
    EXPECT_EQ(plain.UnpackedType(), NC_INT);
    EXPECT_EQ(std::get<int32_t>(plain.Unpack(NcVariant{int32_t{5}})), 5);
}

TEST_F(VariableTest, PackedArrayIsExpanded) {
    NcVariantArray values(NC_SHORT, NcVariant{}, 2, 1);
    values.SetSize(2);
    values.Data<short>()[0] = 2;
    values.Data<short>()[1] = 4;
    Var("temp").Unpack(values);
    EXPECT_EQ(values.ElementType(), NC_FLOAT);
    EXPECT_FLOAT_EQ(std::get<float>(values[1]), 2.0f);
}

TEST_F(VariableTest, FillValues) {
    EXPECT_EQ(std::get<int32_t>(Var("plain").FillValue()), -1);
    EXPECT_EQ(std::get<short>(Var("temp").FillValue()), NC_FILL_SHORT);
    EXPECT_EQ(std::get<float>(Var("sal").FillValue()), NC_FILL_FLOAT);
    EXPECT_EQ(std::get<double>(Var("depth").FillValue()), NC_FILL_DOUBLE);
    EXPECT_EQ(std::get<signed char>(Var("wrap").FillValue()), NC_FILL_BYTE);
    EXPECT_EQ(std::get<std::string>(Var("name").FillValue()), "");

    const auto types = OpenOne("ncfile_types.nc");
    ASSERT_TRUE(types);
    EXPECT_EQ(std::get<unsigned char>(types->GetVariable("ub").FillValue()), NC_FILL_UBYTE);
    EXPECT_EQ(std::get<uint32_t>(types->GetVariable("ui").FillValue()), NC_FILL_UINT);
    EXPECT_EQ(std::get<int64_t>(types->GetVariable("i64").FillValue()), NC_FILL_INT64);
    EXPECT_EQ(std::get<uint64_t>(types->GetVariable("u64").FillValue()), NC_FILL_UINT64);
    EXPECT_EQ(std::get<uint32_t>(types->GetVariable("ui").Unpack(NcVariant{uint32_t{3}})), 7u);
}

TEST_F(VariableTest, StringClassification) {
    const Variable& name = Var("name");  // char (station, strlen); queries work on const variables
    EXPECT_TRUE(name.IsString());
    EXPECT_FALSE(name.IsNetCDF4String());
    EXPECT_EQ(name.cStringChars(), 8u);
    EXPECT_EQ(name.cDims(), 2);

    Variable title = Var("title");  // char (strlen): one string; a copy, reclassified below
    EXPECT_TRUE(title.IsStringScalar());
    EXPECT_EQ(title.cStringChars(), 8u);
    title.ReclassifyString(s_classic->Name2Dim().at("obs"));  // not its string dimension
    EXPECT_TRUE(title.IsStringScalar());
    title.ReclassifyString(s_classic->Name2Dim().at("strlen"));
    EXPECT_FALSE(title.IsStringScalar());
    EXPECT_FALSE(title.IsString());
    EXPECT_EQ(std::get<std::string>(title.FillValue()), std::string(1, '\0'));
    EXPECT_TRUE(Var("title").IsStringScalar());

    EXPECT_FALSE(Var("temp").IsString());
    EXPECT_EQ(Var("temp").cStringChars(), 0u);

    ZorvoNetCDFDSG::NetCDFFile& obs = *s_groups.at(2);
    const Variable& label = obs.GetVariable("label");  // NC_STRING (m)
    EXPECT_TRUE(label.IsNetCDF4String());
    EXPECT_EQ(label.cStringChars(), 255u);
    EXPECT_EQ(std::get<std::string>(label.FillValue()), "");
    const Variable& one = obs.GetVariable("one");  // scalar NC_STRING
    EXPECT_TRUE(one.IsStringScalar());
    EXPECT_EQ(one.cStringChars(), 0u);
}

TEST_F(VariableTest, AttributeValues) {
    const Variable& scalar = Var("scalar");
    EXPECT_EQ(scalar.cDims(), 0);
    EXPECT_EQ(std::get<int32_t>(scalar.AttributeValue("single")), 3);
    const NcVariant rangeValue = scalar.AttributeValue("valid_range");
    const auto& range = std::get<NcVariantArray>(rangeValue);
    EXPECT_EQ(range.ElementType(), NC_INT);
    ASSERT_EQ(range.Size(), 2u);
    EXPECT_EQ(std::get<int32_t>(range[0]), 0);
    EXPECT_EQ(std::get<int32_t>(range[1]), 10);
    EXPECT_THROW(scalar.ArrayAttributeValue("valid_range"), std::bad_variant_access);

    // The file's attribute order is kept.
    std::vector<std::string> names;
    for (const auto& [attName, value] : Var("plain").Attributes()) {
        names.push_back(attName);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"_FillValue", "standard_name", "axis"}));

    const Variable& label = s_groups.at(2)->GetVariable("label");
    EXPECT_EQ(std::get<std::string>(label.AttributeValue("note")), "a\n");
    EXPECT_EQ(std::get<std::string>(label.AttributeValue("notes")), "a\nbc\n");
    const NcVariant flagValues = s_groups.at(1)->GetVariable("flags").AttributeValue("flag_values");
    const auto& flags = std::get<NcVariantArray>(flagValues);
    EXPECT_EQ(flags.ElementType(), NC_UBYTE);
    EXPECT_EQ(std::get<unsigned char>(flags[1]), 2);
}

TEST_F(VariableTest, TextAccessors) {
    const Variable& sal = Var("sal");
    EXPECT_EQ(sal.ArrayAttributeValue("coordinates"), (std::vector<std::string>{"time", "lat", "lon"}));
    EXPECT_EQ(sal.LongName(), "salinity");
    EXPECT_EQ(sal.Axis(), "");
    EXPECT_EQ(sal.TryUnitsString(), "");
    EXPECT_EQ(Var("plain").StandardName(), "plain_name");
    EXPECT_EQ(Var("plain").Axis(), "Z");
    EXPECT_EQ(Var("temp").UnitsString(), "degC");
    try {
        sal.UnitsString();
        FAIL();
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eAttributeNotPresent);
        EXPECT_EQ(e.wsDetail(), L"sal: units");
    }
    EXPECT_TRUE(s_bEmpty(sal.TryAttributeValue("units")));

    Variable copy = sal;
    EXPECT_FALSE(copy.SetAttributeValue("long_name", NcVariant{int32_t{1}}));
    EXPECT_THROW(copy.LongName(), std::bad_variant_access);
    EXPECT_TRUE(copy.SetAttributeValue("new", NcVariant{1.0}));
    EXPECT_TRUE(copy.TryRemoveAttribute("new"));
    EXPECT_FALSE(copy.TryRemoveAttribute("new"));
    EXPECT_EQ(sal.LongName(), "salinity");
    EXPECT_EQ(sal.FileId(), 7);
}

// A user correcting a file's fill value or packing with NcML: the amended attributes are the
// variable's fill value and packing, as if the file held them.
TEST(VariableNcMLTest, AmendedFillValueAndPackingTakeEffect) {
    const auto ncml = NcML(R"(<netcdf xmlns="http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2">
        <variable name="temp">
          <attribute name="_FillValue" type="short" value="-999"/>
          <attribute name="scale_factor" type="float" value="0.25"/>
        </variable>
        <variable name="sal">
          <attribute name="scale_factor" type="double" value="2"/>
          <attribute name="add_offset" type="double" value="1"/>
        </variable>
        <variable name="plain"><remove type="attribute" name="_FillValue"/></variable>
        <variable name="depth"><remove type="attribute" name="add_offset"/></variable>
        <variable name="added"><attribute name="_FillValue" type="int" value="5"/></variable>
      </netcdf>)");
    ASSERT_TRUE(ncml);
    const auto files = Open(DataPath("ncfile_x.nc"), ncml.get());
    ASSERT_EQ(files.size(), 1u);
    const ZorvoNetCDFDSG::NetCDFFile& file = *files.front();
    const auto var = [&](const std::string& name) -> const Variable& {
        return file.Variables().at(file.Name2Var().at(name));
    };

    const Variable& temp = var("temp");
    EXPECT_EQ(std::get<short>(temp.FillValue()), -999);
    EXPECT_TRUE(temp.IsPacked());
    EXPECT_EQ(temp.UnpackedType(), NC_FLOAT);
    EXPECT_EQ(temp.UnpackInfo(), (std::pair<double, double>{0.25, 0.0}));
    NcVariantArray values(NC_SHORT, temp.FillValue(), 2, 1);
    values.SetSize(2);
    values.Data<short>()[0] = 8;
    values.Data<short>()[1] = -999;
    temp.Unpack(values);
    EXPECT_FLOAT_EQ(std::get<float>(values[0]), 2.0f);
    EXPECT_EQ(values[1].index(), ZorvoDSG::System::eNcEmpty);  // the amended fill value stays missing

    const Variable& sal = var("sal");  // float, packed only by the amendment
    EXPECT_TRUE(sal.IsPacked());
    EXPECT_EQ(sal.UnpackedType(), NC_DOUBLE);
    EXPECT_DOUBLE_EQ(std::get<double>(sal.Unpack(NcVariant{2.0f})), 5.0);
    EXPECT_EQ(std::get<float>(sal.FillValue()), NC_FILL_FLOAT);

    EXPECT_EQ(std::get<int32_t>(var("plain").FillValue()), NC_FILL_INT);  // the library's default again
    EXPECT_FALSE(var("depth").IsPacked());
    EXPECT_DOUBLE_EQ(var("depth").Unpack(1.5), 1.5);
    EXPECT_EQ(std::get<int32_t>(var("added").FillValue()), 5);
}

TEST(VariableLifetimeTest, CopyOutlivesItsFile) {
    auto file = OpenOne("ncfile_x.nc");  // file id 7
    ASSERT_TRUE(file);
    const Variable name = file->GetVariable("name");
    Variable title = file->GetVariable("title");
    const long strlenId = file->Name2Dim().at("strlen");
    EXPECT_EQ(name.CFMetadata(), file.get());
    EXPECT_EQ(name.FileId(), 7);
    file.reset();

    EXPECT_EQ(name.CFMetadata(), nullptr);
    ExpectRuntimeError([&] { name.FileId(); }, "variable without file");
    EXPECT_TRUE(name.IsString());  // classified at load
    EXPECT_EQ(name.cStringChars(), 8u);
    EXPECT_EQ(std::get<std::string>(name.FillValue()), "");
    title.ReclassifyString(strlenId);  // determines the fill value again, without the file
    EXPECT_FALSE(title.IsStringScalar());
    EXPECT_EQ(std::get<std::string>(title.FillValue()), std::string(1, '\0'));
    try {
        name.AttributeValue("missing");
        ADD_FAILURE();
    } catch (const Exception& e) {
        EXPECT_TRUE(e.NcPath().empty());
    }
}

TEST(SpecialVariableTest, EmptyAndFakeOID) {
    const Variable empty = Variable::s_EmptyVariable();
    EXPECT_TRUE(empty.bEmpty());
    EXPECT_EQ(empty.CFMetadata(), nullptr);
    ExpectRuntimeError([&] { empty.Type(); }, "invalid type for variable");
    ExpectRuntimeError([&] { empty.cDims(); }, "invalid dimensions for variable");
    EXPECT_TRUE(s_bEmpty(empty.TryAttributeValue("units")));

    const Variable oid = Variable::s_FakeOIDVariable();
    EXPECT_FALSE(oid.bEmpty());
    EXPECT_EQ(oid.Id(), Variable::kFakeOIDId);
    EXPECT_EQ(oid.Name(), "OID");
    EXPECT_EQ(oid.Type(), NC_INT);
    EXPECT_FALSE(oid.IsPacked());
}

}  // namespace
