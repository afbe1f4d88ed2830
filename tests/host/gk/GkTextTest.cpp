#include <gtest/gtest.h>

#include <thread>

#include "GkTestSupport.h"

using namespace ZorvoDSG::Host;

using gktest::Name;
using gktest::Wkt;

namespace {

constexpr char const* kWkt1 =
    "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563,AUTHORITY[\"EPSG\",\"7030\"]],"
    "AUTHORITY[\"EPSG\",\"6326\"]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433],"
    "AUTHORITY[\"EPSG\",\"4326\"]]";
constexpr char const* kEsri =
    "PROJCS[\"WGS_1984_UTM_Zone_33N\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\","
    "6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],"
    "PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
    "PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],"
    "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]";
constexpr char const* kCompoundWkt2 =
    "COMPOUNDCRS[\"WGS 84 + EGM96 height\",GEOGCRS[\"WGS 84\",DATUM[\"World Geodetic System 1984\","
    "ELLIPSOID[\"WGS 84\",6378137,298.257223563]],CS[ellipsoidal,2],AXIS[\"latitude\",north,"
    "ANGLEUNIT[\"degree\",0.0174532925199433]],AXIS[\"longitude\",east,ANGLEUNIT[\"degree\",0.0174532925199433]]],"
    "VERTCRS[\"EGM96 height\",VDATUM[\"EGM96 geoid\"],CS[vertical,1],AXIS[\"gravity-related height (H)\",up,"
    "LENGTHUNIT[\"metre\",1]]]]";
constexpr char const* kEsriEllipsoidalVertcs =
    "VERTCS[\"WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
    "PARAMETER[\"Vertical_Shift\",0.0],PARAMETER[\"Direction\",1.0],UNIT[\"Meter\",1.0]]";
constexpr char const* kWkt1CompoundTowgs84 =
    "COMPD_CS[\"x + y\",GEOGCS[\"x\",DATUM[\"d\",SPHEROID[\"s\",6378137,298.257223563],"
    "TOWGS84[1,2,3,0,0,0,0]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],"
    "VERT_CS[\"y\",VERT_DATUM[\"v\",2005],UNIT[\"metre\",1],AXIS[\"Up\",UP]]]";

}  // namespace

TEST(GkText, ReadsWkt1EsriAndWkt2) {
    gktest::Proj proj;
    gk_err_ext err;
    GkObjectPtr const ogc(gk_object_from_string_errext(kWkt1, &err));
    ASSERT_TRUE(ogc);
    EXPECT_EQ(err.err_num, 0);
    EXPECT_TRUE(gk_coordsys_p(ogc.get()));
    EXPECT_TRUE(proj_is_equivalent_to(proj.Parse(Wkt(ogc.get())).get(), proj.Epsg("4326").get(), PJ_COMP_EQUIVALENT));

    GkObjectPtr const esri(gk_object_from_string_errext(kEsri, &err));
    ASSERT_TRUE(esri);
    EXPECT_TRUE(proj_is_equivalent_to(proj.Parse(Wkt(esri.get())).get(), proj.Epsg("32633").get(),
                                      PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS));

    // WKT2 goes round unchanged through print and parse.
    std::string const printed = Wkt(esri.get());
    GkObjectPtr const again(gk_object_from_string_errext(printed, nullptr));
    ASSERT_TRUE(again);
    EXPECT_EQ(Wkt(again.get()), printed);
}

TEST(GkText, BrokenWktGivesAnErrorTextAndPrintsNothing) {
    for (std::string const& broken : {std::string("GEOGCS[\"x\",DATUM["), std::string("not wkt at all"),
                                     std::string(), std::string("GEOGCS[\"a\0b\"]", 14),
                                     std::string(5000, '[')}) {
        testing::internal::CaptureStderr();
        gk_err_ext err;
        gk_object* const object = gk_object_from_string_errext(broken, &err);
        std::string const stderrText = testing::internal::GetCapturedStderr();
        EXPECT_EQ(object, nullptr);
        EXPECT_TRUE(stderrText.empty()) << stderrText;
        ASSERT_NE(err.err_num, 0);
        std::string text;
        EXPECT_TRUE(gk_err_num_to_str(err.err_num, text));
        EXPECT_EQ(text, err.message);
        EXPECT_EQ(text.rfind("cannot parse WKT: ", 0), 0u) << text;
        EXPECT_GT(text.size(), std::string("cannot parse WKT: ").size());
    }
    gk_err_ext err;
    EXPECT_EQ(gk_object_from_string_errext("GEOGCS[\"x\",DATUM[", &err), nullptr);
    std::string text;
    gk_err_num_to_str(err.err_num, text);
    EXPECT_NE(text.find("missing"), std::string::npos) << text;  // PROJ's own diagnosis
}

TEST(GkText, ErrorNumbersKeepTheirOwnTexts) {
    gk_err_ext first;
    gk_err_ext second;
    gk_object_from_string_errext("GEOGCS[", &first);
    gk_object_from_string_errext("", &second);
    ASSERT_NE(first.err_num, second.err_num);
    std::string text;
    gk_err_num_to_str(first.err_num, text);
    EXPECT_EQ(text, first.message);
    EXPECT_NE(text, second.message);
    EXPECT_TRUE(gk_err_num_to_str(0, text));
    EXPECT_FALSE(gk_err_num_to_str(-7, text));
    EXPECT_FALSE(text.empty());
}

TEST(GkText, CompoundCrsDecomposes) {
    GkObjectPtr const compound(gk_object_from_string_errext(kCompoundWkt2, nullptr));
    ASSERT_TRUE(compound);
    EXPECT_TRUE(gk_hvcoordsys_p(compound.get()));
    EXPECT_FALSE(gk_coordsys_p(compound.get()));
    EXPECT_FALSE(gk_vertcs_p(compound.get()));
    gk_object* const horizontal = gk_hvcoordsys_coordsys(compound.get());
    gk_object* const vertical = gk_hvcoordsys_vertcs(compound.get());
    ASSERT_NE(horizontal, nullptr);
    ASSERT_NE(vertical, nullptr);
    EXPECT_TRUE(gk_coordsys_p(horizontal));
    EXPECT_EQ(Name(horizontal), "WGS 84");
    EXPECT_TRUE(gk_vertcs_p(vertical));
    EXPECT_EQ(gk_vertcs_model(vertical), GK_VERTCS_MODEL_GRAVITY);
    EXPECT_EQ(Wkt(vertical).rfind("VERTCRS[\"EGM96 height\"", 0), 0u);

    // PROJ wraps this one in a BoundCRS; it still reads as a compound CRS.
    GkObjectPtr const bound(gk_object_from_string_errext(kWkt1CompoundTowgs84, nullptr));
    ASSERT_TRUE(bound);
    EXPECT_TRUE(gk_hvcoordsys_p(bound.get()));
    EXPECT_TRUE(gk_coordsys_p(gk_hvcoordsys_coordsys(bound.get())));
    EXPECT_EQ(Name(gk_hvcoordsys_vertcs(bound.get())), "y");

    GkObjectPtr const plain(gk_factory_geogcs(4326));
    EXPECT_EQ(gk_hvcoordsys_coordsys(plain.get()), nullptr);
    EXPECT_EQ(gk_hvcoordsys_vertcs(plain.get()), nullptr);
}

TEST(GkText, VerticalModels) {
    GkObjectPtr const ellipsoidal(gk_object_from_string_errext(kEsriEllipsoidalVertcs, nullptr));
    ASSERT_TRUE(ellipsoidal);
    EXPECT_TRUE(gk_vertcs_p(ellipsoidal.get()));
    EXPECT_EQ(gk_vertcs_model(ellipsoidal.get()), GK_VERTCS_MODEL_ELLIPSOIDAL);

    GkObjectPtr const wkt1(gk_object_from_string_errext(
        "VERT_CS[\"NAVD88 height\",VERT_DATUM[\"North American Vertical Datum 1988\",2005],"
        "UNIT[\"metre\",1],AXIS[\"Up\",UP]]",
        nullptr));
    EXPECT_EQ(gk_vertcs_model(wkt1.get()), GK_VERTCS_MODEL_GRAVITY);

    GkObjectPtr const geographic(gk_factory_geogcs(4326));
    EXPECT_EQ(gk_vertcs_model(geographic.get()), GK_VERTCS_MODEL_NONE);
    EXPECT_EQ(gk_vertcs_model(nullptr), GK_VERTCS_MODEL_NONE);
    EXPECT_FALSE(gk_vdatum_p(geographic.get()));
}

TEST(GkText, ClonesAreIndependent) {
    GkObjectPtr original(gk_factory_coordsys(32633));
    std::string const wkt = Wkt(original.get());
    GkObjectPtr const copy(gk_object_clone(original.get()));
    gk_object* const datumOfCopy = gk_geogcs_datum(copy.get());  // projected: no geographic parts
    EXPECT_EQ(datumOfCopy, nullptr);
    original.reset();
    EXPECT_EQ(Wkt(copy.get()), wkt);

    GkObjectPtr const projection(gk_factory_projection(43006));
    GkObjectPtr const projectionCopy(gk_object_clone(projection.get()));
    EXPECT_EQ(Wkt(projectionCopy.get()), Wkt(projection.get()));
    EXPECT_EQ(Wkt(projection.get()).rfind("CONVERSION[", 0), 0u);

    GkObjectPtr const geogcs(gk_factory_geogcs(4326));
    GkObjectPtr const unit(GkCloneOf(gk_geogcs_unit(geogcs.get())));
    EXPECT_EQ(Wkt(unit.get()), "ANGLEUNIT[\"degree\",0.0174532925199433]");
}

TEST(GkText, ObjectsOutliveTheThreadThatMadeThem) {
    GkObjectPtr made;
    std::thread([&made] { made.reset(gk_factory_coordsys(4326)); }).join();
    ASSERT_TRUE(made);
    EXPECT_EQ(Name(made.get()), "WGS 84");
    GkObjectPtr const copy(gk_object_clone(made.get()));
    made.reset();
    EXPECT_TRUE(gk_coordsys_p(copy.get()));
}
