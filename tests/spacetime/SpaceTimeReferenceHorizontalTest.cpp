#include <gtest/gtest.h>

#include <netcdf.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

#include <zorvodsg/host/gk/GkObjectPtr.h>
#include "spacetime/ProjInspect.h"
#include "spacetime/StrFixture.h"

using namespace ZorvoDSG::Host;

namespace {

using namespace ZorvoDSGTest;
using namespace ZorvoDSG;

std::string GkCrsWkt(long code) {
    const GkObjectPtr crs(gk_factory_coordsys(code));
    std::string wkt;
    EXPECT_TRUE(crs && gk_object_to_string(crs.get(), wkt));
    return wkt;
}

System::NcVariantArray Doubles(const std::vector<double>& values) {
    System::NcVariantArray array(NC_DOUBLE, NcVariant{}, static_cast<long>(values.size()), 1);
    array.SetSize(static_cast<long>(values.size()));
    for (size_t i = 0; i < values.size(); ++i) {
        array.Data<double>()[i] = values[i];
    }
    return array;
}

// EPSG parameter codes.
constexpr int kLatOrigin = 8801, kLonOrigin = 8802, kScale = 8805, kFalseEasting = 8806, kFalseNorthing = 8807;
constexpr int kLatCentre = 8811, kLonCentre = 8812, kAzimuth = 8813, kScaleOnLine = 8815;
constexpr int kLatFalseOrigin = 8821, kLonFalseOrigin = 8822, kParallel1 = 8823, kParallel2 = 8824;
constexpr int kLatStandardParallel = 8832, kLonOfOrigin = 8833;

struct GridMappingCase {
    const char* label;
    AttributeMap attributes;
    int methodCode;  // 0: check the method name instead
    const char* methodName;
    std::map<int, double> expected;
    long equivalentEpsg;  // 0: none
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const GridMappingCase& c, std::ostream* os) { *os << c.label; }

class GridMappings : public ::testing::TestWithParam<GridMappingCase> {};

TEST_P(GridMappings, ProjectionMethodAndParameters) {
    const GridMappingCase& c = GetParam();
    const std::string wkt = Str(c.attributes).WKT();
    const ProjectionInfo info = Projection(wkt);
    if (c.methodCode != 0) {
        EXPECT_EQ(info.methodCode, c.methodCode) << info.method;
    } else {
        EXPECT_EQ(info.method, c.methodName);
    }
    for (const auto& [code, value] : c.expected) {
        ASSERT_TRUE(info.parameters.count(code)) << "parameter " << code << " missing in " << wkt;
        EXPECT_NEAR(info.parameters.at(code), value, 1e-9) << "parameter " << code;
    }
    EXPECT_EQ(Geographic(wkt).name, "WGS 84");
    EXPECT_NE(wkt.find("PROJCRS[\"crs_PCS\""), std::string::npos);
    if (c.equivalentEpsg != 0) {
        EXPECT_TRUE(SameConversion(wkt, GkCrsWkt(c.equivalentEpsg))) << wkt;
    }
}

std::pair<std::string, NcVariant> Name(const char* name) { return {"grid_mapping_name", std::string(name)}; }

INSTANTIATE_TEST_SUITE_P(
    EachSupportedName, GridMappings,
    ::testing::Values(
        // UTM 33N; slots never set (latitude of origin, false northing) keep gk's defaults of 0.
        GridMappingCase{"tmerc",
                        AttributeMap({Name("transverse_mercator"), {"scale_factor_at_central_meridian", 0.9996},
                               {"longitude_of_central_meridian", 15.0}, {"false_easting", 500000.0}}),
                        9807, "", {{kScale, 0.9996}, {kLonOrigin, 15}, {kFalseEasting, 500000}, {kLatOrigin, 0}, {kFalseNorthing, 0}},
                        32633},
        GridMappingCase{"albers",
                        AttributeMap({Name("albers_conical_equal_area"), {"standard_parallel", Doubles({29.5, 45.5})},
                               {"longitude_of_central_meridian", -96.0}, {"latitude_of_projection_origin", 23.0}}),
                        9822, "", {{kParallel1, 29.5}, {kParallel2, 45.5}, {kLonFalseOrigin, -96}, {kLatFalseOrigin, 23}},
                        0},
        GridMappingCase{"albers scalar parallel fills both",
                        AttributeMap({Name("albers_conical_equal_area"), {"standard_parallel", 30.0}}),
                        9822, "", {{kParallel1, 30}, {kParallel2, 30}}, 0},
        GridMappingCase{"aeqd",
                        AttributeMap({Name("azimuthal_equidistant"), {"longitude_of_projection_origin", 10.0},
                               {"latitude_of_projection_origin", 50.0}}),
                        0, "Modified Azimuthal Equidistant", {{kLonOrigin, 10}, {kLatOrigin, 50}}, 0},
        // ETRS89-LAEA (EPSG:3035) on WGS 84.
        GridMappingCase{"laea",
                        AttributeMap({Name("lambert_azimuthal_equal_area"), {"longitude_of_projection_origin", 10.0},
                               {"latitude_of_projection_origin", 52.0}, {"false_easting", 4321000.0},
                               {"false_northing", 3210000.0}}),
                        9820, "", {{kLonOrigin, 10}, {kLatOrigin, 52}, {kFalseEasting, 4321000}, {kFalseNorthing, 3210000}},
                        3035},
        GridMappingCase{"lcc two parallels",
                        AttributeMap({Name("lambert_conformal_conic"), {"standard_parallel", Doubles({33, 45})},
                               {"longitude_of_central_meridian", -97.0}, {"latitude_of_projection_origin", 40.0}}),
                        9802, "", {{kParallel1, 33}, {kParallel2, 45}, {kLonFalseOrigin, -97}, {kLatFalseOrigin, 40}}, 0},
        GridMappingCase{"lcc tangent",
                        AttributeMap({Name("lambert_conformal_conic"), {"standard_parallel", 25.0},
                               {"longitude_of_central_meridian", 265.0}, {"latitude_of_projection_origin", 25.0}}),
                        9801, "", {{kLatOrigin, 25}, {kLonOrigin, 265}, {kScale, 1}}, 0},
        GridMappingCase{"cea",
                        AttributeMap({Name("lambert_cylindrical_equal_area"), {"longitude_of_central_meridian", 0.0},
                               {"standard_parallel", 30.0}}),
                        9835, "", {{kParallel1, 30}, {kLonOrigin, 0}}, 0},
        // World Mercator (EPSG:3395) is variant A; a standard parallel selects variant B.
        GridMappingCase{"mercator scale", AttributeMap({Name("mercator"), {"scale_factor_at_projection_origin", 1.0}}),
                        9804, "", {{kScale, 1}, {kLonOrigin, 0}}, 3395},
        GridMappingCase{"mercator parallel",
                        AttributeMap({Name("mercator"), {"standard_parallel", 41.0}, {"longitude_of_projection_origin", 100.0}}),
                        9805, "", {{kParallel1, 41}, {kLonOrigin, 100}}, 0},
        GridMappingCase{"omerc",
                        AttributeMap({Name("oblique_mercator"), {"longitude_of_projection_origin", 7.43958333},
                               {"latitude_of_projection_origin", 46.95240556}, {"azimuth_of_central_line", 90.0},
                               {"scale_factor_at_projection_origin", 1.0}}),
                        9815, "", {{kLonCentre, 7.43958333}, {kLatCentre, 46.95240556}, {kAzimuth, 90}, {kScaleOnLine, 1}},
                        0},
        GridMappingCase{"ortho",
                        AttributeMap({Name("orthographic"), {"longitude_of_projection_origin", 10.0},
                               {"latitude_of_projection_origin", 50.0}}),
                        9840, "", {{kLonOrigin, 10}, {kLatOrigin, 50}}, 0},
        // NSIDC Sea Ice Polar Stereographic North (EPSG:3413) and UPS North (EPSG:32661).
        GridMappingCase{"polar stereographic B",
                        AttributeMap({Name("polar_stereographic"), {"straight_vertical_longitude_from_pole", -45.0},
                               {"latitude_of_projection_origin", 90.0}, {"standard_parallel", 70.0}}),
                        9829, "", {{kLatStandardParallel, 70}, {kLonOfOrigin, -45}}, 3413},
        GridMappingCase{"polar stereographic A",
                        AttributeMap({Name("polar_stereographic"), {"straight_vertical_longitude_from_pole", 0.0},
                               {"latitude_of_projection_origin", 90.0}, {"scale_factor_at_projection_origin", 0.994},
                               {"false_easting", 2000000.0}, {"false_northing", 2000000.0}}),
                        9810, "", {{kScale, 0.994}, {kLatOrigin, 90}}, 32661},
        GridMappingCase{"sinusoidal", AttributeMap({Name("sinusoidal"), {"longitude_of_projection_origin", 10.0}}), 0,
                        "Sinusoidal", {{kLonOrigin, 10}}, 0},
        // Numeric text is a number too.
        GridMappingCase{"stereographic",
                        AttributeMap({Name("stereographic"), {"longitude_of_projection_origin", "5.38763888888889"s},
                               {"latitude_of_projection_origin", 52.1561605555556},
                               {"scale_factor_at_projection_origin", 0.9999079}, {"false_easting", 155000.0},
                               {"false_northing", 463000.0}}),
                        9809, "", {{kLonOrigin, 5.38763888888889}, {kLatOrigin, 52.1561605555556}, {kScale, 0.9999079}},
                        28992}),
    [](const ::testing::TestParamInfo<GridMappingCase>& param) {
        std::string name = param.param.label;
        for (char& ch : name) {
            if (!std::isalnum(static_cast<unsigned char>(ch))) {
                ch = '_';
            }
        }
        return name;
    });

TEST(HorizontalCRS, WithoutGridMappingIsWgs84) {
    const SpaceTimeReference str = Str({}, "", ZorvoDSG::SpaceTime::eVerticalDatumUnspecified, NcVariant{});
    EXPECT_TRUE(str.bHorizontalEmpty());
    EXPECT_EQ(str.WKT(), GkCrsWkt(4326));
    EXPECT_EQ(str.VWKT(), "");
}

TEST(HorizontalCRS, NamesOutsideTheProjectedListAreGeographic) {
    for (const char* name : {"latitude_longitude", "Transverse_Mercator", "rotated_latitude_longitude"}) {
        EXPECT_EQ(Str(AttributeMap({Name(name), {"longitude_of_central_meridian", 15.0}})).WKT(), GkCrsWkt(4326)) << name;
    }
    ExpectRuntimeError([] { Str(AttributeMap({Name("vertical_perspective")})).WKT(); }, "unimplemented crs");
    EXPECT_THROW(Str(AttributeMap({{"grid_mapping_name", 3.0}})).WKT(), std::bad_variant_access);
}

TEST(HorizontalCRS, EpsgCode) {
    EXPECT_EQ(Str(AttributeMap({{"epsg_code", "EPSG:32633"s}})).WKT(), GkCrsWkt(32633));
    // The authority is not checked.
    EXPECT_EQ(Str(AttributeMap({{"epsg_code", "xyz:4326"s}})).WKT(), GkCrsWkt(4326));
    ExpectRuntimeError([] { Str(AttributeMap({{"epsg_code", "4326"s}})).WKT(); }, "invalid epsg token");
    for (const std::string& bad : {"EPSG:abc"s, "EPSG:999999"s, "EPSG:"s, "EPSG:5773"s}) {
        ExpectException([&] { Str(AttributeMap({{"epsg_code", bad}})).WKT(); }, eBadCoordinateSystemName, bad);
    }
    EXPECT_THROW(Str(AttributeMap({{"epsg_code", int32_t{4326}}})).WKT(), std::bad_variant_access);
}

TEST(HorizontalCRS, AttributeFamiliesInOrderOfPrecedence) {
    const std::string utm = GkCrsWkt(32633);
    const std::string nad83 = GkCrsWkt(4269);
    const std::string etrs = GkCrsWkt(3035);
    EXPECT_EQ(Str(AttributeMap({{"crs_wkt", nad83}, {"epsg_code", "EPSG:32633"s}})).WKT(), utm);
    EXPECT_EQ(Str(AttributeMap({{"spatial_ref", etrs}, {"crs_wkt", nad83}, {"zorvo_gk_string", utm}})).WKT(), utm);
    EXPECT_EQ(Str(AttributeMap({{"spatial_ref", etrs}, {"crs_wkt", nad83}})).WKT(), nad83);
    EXPECT_EQ(Str(AttributeMap({{"spatial_ref", etrs}, {"projected_crs_name", "WGS 84 / UTM zone 33N"s}})).WKT(), etrs);
    // A CRS name wins over every CF parameter.
    EXPECT_EQ(Str(AttributeMap({Name("mercator"), {"earth_radius", 1.0}, {"projected_crs_name", "WGS 84 / UTM zone 33N"s}}))
                  .WKT(),
              utm);
}

TEST(HorizontalCRS, WktAttributes) {
    // ESRI WKT1 is normalised by gk.
    const std::string esri =
        "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
    const std::string fromEsri = Str(AttributeMap({{"crs_wkt", esri}})).WKT();
    EXPECT_EQ(fromEsri.rfind("GEOGCRS[", 0), 0u) << fromEsri;
    EXPECT_NEAR(Geographic(fromEsri).inverseFlattening, 298.257223563, 1e-9);

    const std::string compound =
        "COMPD_CS[\"WGS 84 / UTM zone 33N + EGM96 height\"," + std::string(
        "PROJCS[\"WGS 84 / UTM zone 33N\",GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
        "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
        "PARAMETER[\"latitude_of_origin\",0],PARAMETER[\"central_meridian\",15],PARAMETER[\"scale_factor\",0.9996],"
        "PARAMETER[\"false_easting\",500000],PARAMETER[\"false_northing\",0],UNIT[\"metre\",1]],"
        "VERT_CS[\"EGM96 height\",VERT_DATUM[\"EGM96 geoid\",2005],UNIT[\"metre\",1]]]");
    const std::string horizontal = Str(AttributeMap({{"spatial_ref", compound}})).WKT();
    EXPECT_TRUE(SameConversion(horizontal, GkCrsWkt(32633))) << horizontal;

    const std::string vertical = "VERT_CS[\"EGM96 height\",VERT_DATUM[\"EGM96 geoid\",2005],UNIT[\"metre\",1]]";
    ExpectException([&] { Str(AttributeMap({{"crs_wkt", vertical}})).WKT(); }, eWKTNotHorizontal, vertical);

    for (const std::string& broken : {"GEOGCS[\"x\",DATUM["s, "not wkt at all"s, ""s}) {
        ExpectBadWkt([&] { Str(AttributeMap({{"zorvo_gk_string", broken}})).WKT(); }, broken);
    }
    EXPECT_THROW(Str(AttributeMap({{"crs_wkt", 1.0}})).WKT(), std::bad_variant_access);
}

TEST(HorizontalCRS, EllipsoidSphereAndNamedDatum) {
    const std::string ellipsoid = Str(AttributeMap({Name("latitude_longitude"), {"semi_major_axis", 6378137.0},
                                             {"inverse_flattening", 298.257223563}})).WKT();
    const GeographicInfo e = Geographic(ellipsoid);
    EXPECT_EQ(e.name, "crs_GCS");
    EXPECT_EQ(e.datumName, "crs_D");
    EXPECT_EQ(e.ellipsoidName, "crs_S");
    EXPECT_DOUBLE_EQ(e.semiMajorAxis, 6378137.0);
    EXPECT_NEAR(e.inverseFlattening, 298.257223563, 1e-9);

    // Only the axis given: the base flattening (WGS 84) is kept.
    EXPECT_NEAR(Geographic(Str(AttributeMap({{"semi_major_axis", 6378000.0}})).WKT()).inverseFlattening, 298.257223563, 1e-6);

    const GeographicInfo s = Geographic(Str(AttributeMap({Name("latitude_longitude"), {"earth_radius", 6371229.0}})).WKT());
    EXPECT_EQ(s.name, "crs_Sphere");
    EXPECT_DOUBLE_EQ(s.semiMajorAxis, 6371229.0);
    EXPECT_EQ(s.inverseFlattening, 0.0);

    // inverse_flattening 0 is CF's sphere.
    const GeographicInfo z =
        Geographic(Str(AttributeMap({{"semi_major_axis", 6371000.0}, {"inverse_flattening", int32_t{0}}})).WKT());
    EXPECT_EQ(z.name, "crs_GCS");
    EXPECT_EQ(z.inverseFlattening, 0.0);

    // The earth figure of a projected grid mapping reaches the projected CRS's base.
    const std::string projected = Str(AttributeMap({Name("sinusoidal"), {"earth_radius", 6371007.181}})).WKT();
    EXPECT_EQ(Geographic(projected).name, "crs_Sphere");
    EXPECT_DOUBLE_EQ(Geographic(projected).semiMajorAxis, 6371007.181);

    for (const char* name : {"WGS_1984", "D_WGS_1984"}) {
        const GeographicInfo d = Geographic(Str(AttributeMap({{"horizontal_datum_name", std::string(name)}})).WKT());
        EXPECT_EQ(d.name, "crs_GCS") << name;
        EXPECT_NEAR(d.inverseFlattening, 298.257223563, 1e-9) << name;
    }
    ExpectRuntimeError([] { Str(AttributeMap({{"horizontal_datum_name", "D_Atlantis"s}})).WKT(); },
                       "unrecognized horizontal datum name");

    try {
        Str(AttributeMap({{"semi_major_axis", -1.0}})).WKT();
        ADD_FAILURE() << "negative axis accepted";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()).rfind("invalid earth figure", 0), 0u) << error.what();  // gk's reason follows
    }
}

TEST(HorizontalCRS, FigureConflicts) {
    const char* spherical = "cannot specify spherical and ellipsoid earth figure";
    ExpectRuntimeError([] { Str(AttributeMap({{"earth_radius", 6371229.0}, {"semi_major_axis", 6378137.0}})).WKT(); },
                       spherical);
    ExpectRuntimeError([] { Str(AttributeMap({{"earth_radius", 6371229.0}, {"inverse_flattening", 298.0}})).WKT(); },
                       spherical);
    ExpectRuntimeError(
        [] { Str(AttributeMap({Name("mercator"), {"earth_radius", 6371229.0}, {"geographic_crs_name", "WGS 84"s}})).WKT(); },
        spherical);
    ExpectRuntimeError([] { Str(AttributeMap({{"earth_radius", 6371229.0}, {"horizontal_datum_name", "WGS_1984"s}})).WKT(); },
                       "conflicting earth figure definitions");
    ExpectRuntimeError(
        [] { Str(AttributeMap({{"prime_meridian_name", "Paris"s}, {"longitude_of_prime_meridian", 2.0}})).WKT(); },
        "cannot specify both a named prime meridian and its value");
}

TEST(HorizontalCRS, GeographicCrsName) {
    // Without a projection or prime meridian the named CRS is returned as gk has it.
    const GkObjectPtr nad83(gk_factory_object_from_string_by_type(GK_TYPE_COORDSYS, "NAD83"));
    std::string expected;
    ASSERT_TRUE(gk_object_to_string(nad83.get(), expected));
    EXPECT_EQ(Str(AttributeMap({{"geographic_crs_name", "NAD83"s}, {"semi_major_axis", 1.0}})).WKT(), expected);

    const std::string projected =
        Str(AttributeMap({Name("transverse_mercator"), {"geographic_crs_name", "NAD83"s}, {"longitude_of_central_meridian", -93.0}}))
            .WKT();
    EXPECT_EQ(Geographic(projected).datumName, "North American Datum 1983");
    EXPECT_NEAR(Projection(projected).parameters[kLonOrigin], -93.0, 1e-12);

    ExpectException([] { Str(AttributeMap({{"geographic_crs_name", "Atlantis 1900"s}})).WKT(); }, eBadCoordinateSystemName,
                    "Atlantis 1900");
    ExpectException([] { Str(AttributeMap({{"projected_crs_name", "Atlantis / Grid"s}})).WKT(); }, eBadCoordinateSystemName,
                    "Atlantis / Grid");
}

TEST(HorizontalCRS, PrimeMeridians) {
    // A declared prime meridian is honoured on the base figure.
    const GeographicInfo paris = Geographic(Str(AttributeMap({{"prime_meridian_name", "Paris"s}})).WKT());
    EXPECT_EQ(paris.name, "crs_GCS");
    EXPECT_EQ(paris.primeMeridianName, "Paris");
    EXPECT_NEAR(paris.primeMeridianDegrees, 2.33722917, 1e-8);
    EXPECT_NEAR(paris.inverseFlattening, 298.257223563, 1e-9);

    const GeographicInfo shifted =
        Geographic(Str(AttributeMap({{"longitude_of_prime_meridian", 10.5}, {"earth_radius", 6371229.0}})).WKT());
    EXPECT_EQ(shifted.name, "crs_Sphere");
    EXPECT_EQ(shifted.primeMeridianName, "crs_PM");
    EXPECT_NEAR(shifted.primeMeridianDegrees, 10.5, 1e-12);

    // With a geographic CRS name the prime meridian replaces the named one's.
    const GeographicInfo named =
        Geographic(Str(AttributeMap({{"geographic_crs_name", "NAD83"s}, {"longitude_of_prime_meridian", -1.0}})).WKT());
    EXPECT_NEAR(named.primeMeridianDegrees, -1.0, 1e-12);
    EXPECT_EQ(named.datumName, "North American Datum 1983");

    ExpectRuntimeError([] { Str(AttributeMap({{"prime_meridian_name", "Atlantis"s}})).WKT(); },
                       "unrecognized named prime meridian");
}

TEST(HorizontalCRS, ParameterValueTypes) {
    const auto albers = [](NcVariant parallels) {
        return Str(AttributeMap({Name("albers_conical_equal_area"), {"standard_parallel", std::move(parallels)}})).WKT();
    };
    System::NcVariantArray floats(NC_FLOAT, NcVariant{}, 2, 1);
    floats.SetSize(2);
    floats.Data<float>()[0] = 25.0f;
    floats.Data<float>()[1] = 45.0f;
    EXPECT_THROW(albers(floats), std::bad_variant_access);
    ExpectException([&] { albers(Doubles({25.0})); }, eInternalError, "bad index in NcVariantArray");
    EXPECT_THROW(albers("north"s), std::exception);
    // Numbers are read even when the result is geographic.
    EXPECT_THROW(Str(AttributeMap({{"false_easting", "east"s}})).WKT(), std::exception);
    EXPECT_THROW(Str(AttributeMap({Name("mercator"), {"scale_factor_at_projection_origin", NcVariant{}}})).WKT(),
                 std::runtime_error);
}

}  // namespace
