// Point files searched end to end: schema, values, fill values, packing, filters and block reads.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <variant>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/cursor/detail/NetCDFBasicPointFeatureCursor.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/featureclass/BasicPointFeatureClass.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>

using namespace ZorvoDSG;
using namespace ZorvoDSG::Host;
using feature_test::AllInstanceNames;
using feature_test::DataPath;
using feature_test::OpenClass;
using feature_test::ReadAll;

namespace {

std::string NameOf(const Variable& v) { return v.Name(); }

// The point cursor of a class, searching with every field.
std::shared_ptr<ZorvoNetCDFDSG::NetCDFBasicPointFeatureCursor> Cursor(
    const std::shared_ptr<BasicFeatureClass>& featureClass, WKSEnvelopeZ envelope = WKSEnvelopeZ()) {
    auto pointClass = std::dynamic_pointer_cast<BasicPointFeatureClass>(featureClass);
    EXPECT_TRUE(pointClass);
    SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, envelope, AllInstanceNames(*featureClass), {});
    return std::make_shared<ZorvoNetCDFDSG::NetCDFBasicPointFeatureCursor>(pointClass, filter);
}

PointFeature& AsPoint(const std::shared_ptr<Feature>& feature) { return dynamic_cast<PointFeature&>(*feature); }

class PointFieldsTest : public ::testing::TestWithParam<std::string> {
protected:
    std::shared_ptr<BasicFeatureClass> m_class = OpenClass(DataPath(GetParam()));
};

}  // namespace

TEST_P(PointFieldsTest, SchemaTakesFieldsAlongTheObservationDimension) {
    EXPECT_EQ(m_class->FeatureType(), eFeaturePoint);
    EXPECT_EQ(m_class->Layout(), eLayoutPoint);
    EXPECT_EQ(m_class->cFeatures(), 9u);
    EXPECT_TRUE(m_class->bHasZs());
    EXPECT_TRUE(m_class->bHasTs());
    EXPECT_EQ(m_class->XVar().Name(), "lon");
    EXPECT_EQ(m_class->YVar().Name(), "lat");
    EXPECT_EQ(m_class->OIDVar().Id(), Variable::kFakeOIDId);
    std::vector<std::string> names;
    for (const Variable& v : m_class->InstanceVariables()) {
        names.push_back(NameOf(v));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"temp", "sal", "count", "flag", "station", "quality"}));
    const auto log = m_class->OpeningLog();
    ASSERT_TRUE(log);
    const auto tooMany = const_cast<System::ILog&>(*log).FindMessageRange(System::eLogVariableTooManyDimensions,
                                                                          System::eLogVariableTooManyDimensions);
    ASSERT_EQ(tooMany.size(), 1u);
}

TEST_P(PointFieldsTest, ValuesAreUnpackedAndFillValuesEmpty) {
    auto cursor = Cursor(m_class);
    const auto features = ReadAll(*cursor);
    ASSERT_EQ(features.size(), 9u);

    const PointFeature& first = AsPoint(features[0]);
    EXPECT_EQ(std::get<int32_t>(first.OID()), 0);
    EXPECT_DOUBLE_EQ(first.wksPointZ().x, 10.0);  // 0 * 0.01 + 10
    EXPECT_DOUBLE_EQ(first.wksPointZ().y, 50.0);
    EXPECT_DOUBLE_EQ(first.Time(), 0.0);
    EXPECT_FLOAT_EQ(std::get<float>(first.InstanceValue(0)), 10.0f);
    // Packed in another type than the scale: unpacked as a double, 5000 * 0.001 + 30.
    EXPECT_NEAR(std::get<double>(first.InstanceValue(1)), 35.0, 1e-6);
    EXPECT_EQ(std::get<int32_t>(first.InstanceValue(2)), 1);
    EXPECT_EQ(std::get<signed char>(first.InstanceValue(3)), 0);
    EXPECT_EQ(std::get<std::string>(first.InstanceValue(4)), "alpha");
    EXPECT_EQ(std::get<std::string>(first.InstanceValue(5)), "A");

    EXPECT_EQ(features[2]->InstanceValue(0).index(), System::eNcEmpty);  // temp fill
    EXPECT_EQ(features[2]->InstanceValue(4).index(), System::eNcEmpty);  // empty station name
    EXPECT_EQ(features[3]->InstanceValue(1).index(), System::eNcEmpty);  // packed fill, not unpacked
    EXPECT_EQ(features[4]->InstanceValue(2).index(), System::eNcEmpty);  // int fill
    EXPECT_TRUE(std::isnan(AsPoint(features[3]).wksPointZ().x));        // X fill: NaN, never unpacked
    EXPECT_TRUE(AsPoint(features[3]).bEmpty());
    EXPECT_DOUBLE_EQ(AsPoint(features[3]).Time(), 3.0);
    EXPECT_TRUE(std::isnan(AsPoint(features[5]).wksPointZ().z));  // Z fill
    EXPECT_EQ(std::get<std::string>(features[8]->InstanceValue(5)), "I");
    EXPECT_EQ(features[8]->InstanceID(), 8u);
}

TEST_P(PointFieldsTest, EnvelopeSelectsPointsInXAndY) {
    // x = 10 + i/100 ... lat 50 + i/2: points 1 and 2 only.
    auto cursor = Cursor(m_class, WKSEnvelopeZ(10.5, 50.4, std::nan(""), 12.5, 51.2, std::nan("")));
    const auto features = ReadAll(*cursor);
    ASSERT_EQ(features.size(), 2u);
    EXPECT_EQ(features[0]->InstanceID(), 1u);
    EXPECT_EQ(features[1]->InstanceID(), 2u);
}

TEST_P(PointFieldsTest, EnvelopeWithZRangeKeepsPointsWithoutZ) {
    auto cursor = Cursor(m_class, WKSEnvelopeZ(0, 0, 6.5, 100, 100, 100));
    const auto features = ReadAll(*cursor);
    ASSERT_EQ(features.size(), 3u);
    EXPECT_EQ(features[0]->InstanceID(), 5u);  // z is the fill value: not restricted in Z
    EXPECT_EQ(features[1]->InstanceID(), 7u);
}

TEST_P(PointFieldsTest, BlockSizesDoNotChangeWhatIsRead) {
    // With an envelope, points are skipped across block boundaries before their values are read.
    for (const WKSEnvelopeZ& envelope :
         {WKSEnvelopeZ(), WKSEnvelopeZ(10.5, 50.4, std::nan(""), 12.5, 51.2, std::nan(""))}) {
        const auto reference = ReadAll(*Cursor(m_class, envelope));
        for (const uint64_t block : {1u, 2u, 7u}) {
            auto cursor = Cursor(m_class, envelope);
            cursor->SetBlockSize(block);
            auto feature = cursor->CreateEmptyFeature();
            size_t i = 0;
            while (cursor->QueryNext(feature)) {
                ASSERT_LT(i, reference.size());
                const PointFeature& expected = AsPoint(reference[i]);
                const PointFeature& actual = AsPoint(feature);
                EXPECT_EQ(std::isnan(actual.wksPointZ().x), std::isnan(expected.wksPointZ().x));
                EXPECT_EQ(actual.wksPointZ().y, expected.wksPointZ().y);
                EXPECT_TRUE(actual.OID() == expected.OID());
                for (long v = 0; v < expected.cInstanceValues(); ++v) {
                    EXPECT_EQ(actual.InstanceValue(v).index(), expected.InstanceValue(v).index()) << block << " " << i;
                    if (expected.InstanceValue(v).index() != System::eNcEmpty) {
                        EXPECT_TRUE(actual.InstanceValue(v) == expected.InstanceValue(v));
                    }
                }
                ++i;
            }
            EXPECT_EQ(i, reference.size());
        }
    }
}

TEST_P(PointFieldsTest, FilterNamesSelectAndRepeatFields) {
    auto pointClass = std::dynamic_pointer_cast<BasicPointFeatureClass>(m_class);
    SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, WKSEnvelopeZ(),
                         {"count", "nonexistent", "COUNT", "count"}, {});
    auto cursor = pointClass->Search(filter);
    auto feature = cursor->Next();
    ASSERT_TRUE(feature);
    ASSERT_EQ(feature->cInstanceValues(), 2);
    EXPECT_EQ(std::get<int32_t>(feature->InstanceValue(1)), 1);
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, PointFieldsTest, ::testing::Values("points_fields.nc", "points_fields_nc4.nc"),
                         feature_test::FormatName);

TEST(PointExampleTest, DriftFixes) {
    auto featureClass = OpenClass(feature_test::ExamplePath("point_observations.nc"));
    EXPECT_EQ(featureClass->Name(), "point_observations_point");
    SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, WKSEnvelopeZ(), {"sst", "wind_speed"}, {});
    const auto features = ReadAll(*featureClass->Search(filter));
    ASSERT_EQ(features.size(), 6u);
    EXPECT_NEAR(std::get<double>(features[0]->InstanceValue(0)), 1421 * 0.01 + 273.15, 1e-4);
    EXPECT_EQ(features[2]->InstanceValue(0).index(), System::eNcEmpty);
    EXPECT_EQ(features[3]->InstanceValue(1).index(), System::eNcEmpty);
}

TEST(PointEmptyTest, NoCoordinatesAttributeIsRefused) {
    try {
        OpenClass(DataPath("ncmeta_classify.nc"), eFeaturePoint);
        FAIL() << "opened";
    } catch (const Exception& e) {
        EXPECT_TRUE(e.NcErr() == eNoObservationVariables || e.NcErr() == eMultipleCfRoles) << e.NcErr();
    }
}
