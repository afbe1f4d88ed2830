// ZorvoJSON documents of feature classes and features: the keys and field types, values and
// geometry as the cursor delivered them, and valid JSON whatever the file holds.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "cursor/FeatureTestSupport.h"
#include "cursor/ZorvoJSONTestSupport.h"
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>

using namespace ZorvoDSG;
using feature_test::DataPath;
using feature_test::ExamplePath;
using feature_test::OpenClass;
using zorvojson_test::ExpectCoordinate;
using zorvojson_test::ExpectValue;
using zorvojson_test::Parse;
using zorvojson_test::Text;

namespace {

std::string Document(IFeatureClass& featureClass) {
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    featureClass.ToZorvoJSON(writer);
    EXPECT_TRUE(writer.IsComplete());
    return Text(buffer);
}

std::string Streamed(IFeatureClass& featureClass, const SpatialFilter& filter) {
    std::ostringstream out;
    ZorvoJSONFeatureSet::s_Stream(featureClass, filter, out);
    return out.str();
}

std::vector<ProfileFeature> ReadProfiles(IFeatureClass& featureClass, const SpatialFilter& filter) {
    auto cursor = featureClass.Search(filter);
    std::vector<ProfileFeature> features;
    while (auto feature = cursor->Next()) {
        features.push_back(dynamic_cast<ProfileFeature&>(*feature));
    }
    return features;
}

std::vector<std::string> Keys(const rapidjson::Value& object) {
    std::vector<std::string> keys;
    for (const auto& member : object.GetObject()) {
        keys.emplace_back(member.name.GetString());
    }
    return keys;
}

// The document's features against the cursor's, searched with the same filter.
void ExpectFeaturesAsRead(const rapidjson::Value& document, IFeatureClass& featureClass, const SpatialFilter& filter) {
    const std::vector<ProfileFeature> features = ReadProfiles(featureClass, filter);
    const auto& written = document["features"];
    ASSERT_EQ(written.Size(), features.size());
    std::vector<Variable> variables;
    for (const std::string& name : filter.InstanceVariables()) {
        variables.push_back(featureClass.InstanceVariable(name));
    }
    for (size_t f = 0; f < features.size(); ++f) {
        SCOPED_TRACE("feature " + std::to_string(f));
        const ProfileFeature& feature = features[f];
        const auto& geometry = written[f]["geometry"];
        EXPECT_EQ(Keys(geometry), (std::vector<std::string>{"hasZ", "hasM", "paths"}));
        ASSERT_EQ(geometry["paths"].Size(), 1u);
        const auto& path = geometry["paths"][0];
        const SpaceTime::WKSProfile& profile = feature.wksProfile();
        ASSERT_EQ(path.Size(), static_cast<size_t>(profile.count));
        for (int32_t i = 0; i < profile.count; ++i) {
            ASSERT_EQ(path[i].Size(), 4u);
            ExpectCoordinate(path[i][0], profile.x);
            ExpectCoordinate(path[i][1], profile.y);
            ExpectCoordinate(path[i][2], profile.Values()[i]);
            ExpectCoordinate(path[i][3], profile.Values()[i]);
        }
        const auto& attributes = written[f]["attributes"];
        ASSERT_EQ(attributes.MemberCount(), variables.size());
        for (size_t v = 0; v < variables.size(); ++v) {
            SCOPED_TRACE(variables[v].Name());
            ASSERT_TRUE(attributes.HasMember(variables[v].Name().c_str()));
            ExpectValue(attributes[variables[v].Name().c_str()], feature.InstanceValue(static_cast<long>(v)));
        }
    }
}

// Keys, fields and features of a class's feature set written with every instance variable.
void ExpectFeatureSet(IFeatureClass& featureClass) {
    const std::string text = Document(featureClass);
    const rapidjson::Document document = Parse(text);
    ASSERT_TRUE(document.IsObject());
    EXPECT_EQ(Keys(document), (std::vector<std::string>{"objectIdFieldName", "geometryType", "spatialReference",
                                                        "hasZ", "fields", "features"}));
    EXPECT_EQ(document["objectIdFieldName"].GetString(), ValidUtf8(featureClass.Name()));
    EXPECT_STREQ(document["geometryType"].GetString(), "zorvoGeometryPolyline");
    EXPECT_TRUE(document["spatialReference"].IsObject() && document["spatialReference"].ObjectEmpty());
    EXPECT_TRUE(document["hasZ"].IsTrue());
    const auto& fields = document["fields"];
    ASSERT_EQ(fields.Size(), featureClass.InstanceVariables().size());
    for (size_t i = 0; i < fields.Size(); ++i) {
        const Variable& variable = featureClass.InstanceVariables()[i];
        EXPECT_EQ(fields[i]["name"].GetString(), variable.Name());
        EXPECT_STREQ(fields[i]["type"].GetString(), variable.ZorvoJSONFieldType());
    }
    EXPECT_EQ(document["features"].Size(), featureClass.cFeatures());
    ExpectFeaturesAsRead(document, featureClass, ZorvoJSONFeatureSet::s_DefaultFilter(featureClass));
    EXPECT_EQ(Streamed(featureClass, ZorvoJSONFeatureSet::s_DefaultFilter(featureClass)), text);
}

const rapidjson::Value& Attribute(const rapidjson::Document& document, size_t feature, const char* name) {
    return document["features"][static_cast<rapidjson::SizeType>(feature)]["attributes"][name];
}

// The feature objects of every point, written with every instance variable.
std::vector<std::string> PointFeatureObjects(const std::string& file) {
    auto points = OpenClass(DataPath(file));
    const SpatialFilter filter = ZorvoJSONFeatureSet::s_DefaultFilter(*points);
    auto cursor = points->Search(filter);
    std::vector<Variable> variables;
    for (const auto& name : filter.InstanceVariables()) {
        variables.push_back(points->InstanceVariable(name));
    }
    std::vector<std::string> objects;
    while (auto feature = cursor->Next()) {
        ZorvoJSONBuffer buffer;
        ZorvoJSONWriter writer(buffer);
        feature->ToZorvoJSON(variables, writer);
        objects.push_back(Text(buffer));
        const rapidjson::Document document = Parse(objects.back());
        EXPECT_TRUE(document.IsObject());
        if (!document.IsObject()) {
            continue;
        }
        EXPECT_EQ(Keys(document), (std::vector<std::string>{"geometry", "attributes"}));
        EXPECT_TRUE(document["geometry"].IsObject() && document["geometry"].ObjectEmpty());
        EXPECT_EQ(document["attributes"].MemberCount(), variables.size());
        for (size_t v = 0; v < variables.size(); ++v) {
            ExpectValue(document["attributes"][variables[v].Name().c_str()], feature->InstanceValue(static_cast<long>(v)));
        }
    }
    return objects;
}

class ZorvoJSONProfilesTest : public testing::TestWithParam<std::string> {};

}  // namespace

TEST(ZorvoJSONPointTest, APointClassWritesAnEmptyObject) {
    auto points = OpenClass(DataPath("points_fields.nc"));
    EXPECT_EQ(Document(*points), "{}");
    std::ostringstream out;
    ZorvoJSONFeatureSet::s_Stream(*points, out);
    EXPECT_EQ(out.str(), "{}");
}

TEST(ZorvoJSONPointTest, APointFeatureWritesItsAttributesAndNoCoordinates) {
    EXPECT_EQ(PointFeatureObjects("points_fields.nc").size(), 9u);
    const std::vector<std::string> objects = PointFeatureObjects("zorvojson_points.nc");
    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[0], R"({"geometry":{},"attributes":{"temp":7.0,"flag":"a","f":null}})");
    EXPECT_EQ(objects[1], R"({"geometry":{},"attributes":{"temp":8.0,"flag":null,"f":null}})");
    EXPECT_EQ(objects[2], R"({"geometry":{},"attributes":{"temp":9.0,"flag":"c","f":0.5}})");
}

TEST_P(ZorvoJSONProfilesTest, EveryValueAFileCanHoldGivesValidJson) {
    auto profiles = OpenClass(DataPath(GetParam()));
    ExpectFeatureSet(*profiles);
    const std::string text = Document(*profiles);
    const rapidjson::Document document = Parse(text);
    ASSERT_TRUE(document.IsObject());

    // The float 0.1 as the double nearest to it; NaN, infinities and fill values as null.
    EXPECT_NE(text.find("\"f\":0.10000000149011612"), std::string::npos);
    EXPECT_TRUE(Attribute(document, 1, "f").IsNull());
    EXPECT_TRUE(Attribute(document, 2, "f").IsNull());
    EXPECT_TRUE(Attribute(document, 0, "d").IsNull());
    EXPECT_TRUE(Attribute(document, 1, "d").IsNull());
    EXPECT_EQ(Attribute(document, 2, "d").GetDouble(), 1e300);
    EXPECT_TRUE(Attribute(document, 1, "s").IsNull());
    EXPECT_EQ(Attribute(document, 0, "i").GetInt(), std::numeric_limits<int32_t>::min());
    // Packed values unpacked, typed as delivered.
    EXPECT_EQ(Attribute(document, 0, "packed").GetDouble(), 2.5);
    EXPECT_TRUE(Attribute(document, 1, "packed").IsNull());
    EXPECT_EQ(Attribute(document, 2, "packed_int").GetInt(), 30);
    // Invalid UTF-8 replaced, control characters escaped, a NUL character is no text.
    EXPECT_STREQ(Attribute(document, 1, "name").GetString(), "bad\xEF\xBF\xBDx");
    EXPECT_STREQ(Attribute(document, 2, "name").GetString(), "t\tb\n\x01");
    EXPECT_EQ(text.find("\\u0000"), std::string::npos);

    // A missing position is null in every vertex; a missing depth level is a null z and m.
    const auto& missingPosition = document["features"][1]["geometry"]["paths"][0][0];
    EXPECT_TRUE(missingPosition[0].IsNull() && missingPosition[1].IsNull());
    const auto& missingLevel = document["features"][0]["geometry"]["paths"][0][1];
    EXPECT_EQ(missingLevel[0].GetDouble(), 100.0);
    EXPECT_TRUE(missingLevel[2].IsNull() && missingLevel[3].IsNull());
}

INSTANTIATE_TEST_SUITE_P(Formats, ZorvoJSONProfilesTest,
                         testing::Values("zorvojson_profiles.nc", "zorvojson_profiles_nc4.nc"),
                         feature_test::FormatName);

TEST(ZorvoJSONFeatureSetTest, ExamplesAndFixturesRoundTrip) {
    for (const auto& path : {ExamplePath("profile_orthogonal.nc"), ExamplePath("timeseries_projected.nc"),
                             DataPath("profile_single.nc"), DataPath("profile_incomplete.nc"),
                             DataPath("ts_ragged.nc"), DataPath("ts_ragged_nc4.nc"),
                             DataPath("zorvojson_types.nc")}) {
        SCOPED_TRACE(path.string());
        auto featureClass = OpenClass(path);
        ExpectFeatureSet(*featureClass);
    }
}

TEST(ZorvoJSONFeatureSetTest, ClassWithoutInstanceVariables) {
    auto profiles = OpenClass(ExamplePath("profile_orthogonal.nc"));
    ASSERT_TRUE(profiles->InstanceVariables().empty());
    const rapidjson::Document document = Parse(Document(*profiles));
    ASSERT_TRUE(document.IsObject());
    EXPECT_TRUE(document["fields"].Empty());
    for (const auto& feature : document["features"].GetArray()) {
        EXPECT_TRUE(feature["attributes"].ObjectEmpty());
    }
}

TEST(ZorvoJSONFeatureSetTest, AnEmptyTimeSeriesHasOneEmptyPath) {
    auto stations = OpenClass(DataPath("ts_ragged.nc"));
    const rapidjson::Document document = Parse(Document(*stations));
    ASSERT_TRUE(document.IsObject());
    const auto& paths = document["features"][1]["geometry"]["paths"];
    ASSERT_EQ(paths.Size(), 1u);
    EXPECT_TRUE(paths[0].Empty());
    EXPECT_EQ(document["features"][1]["attributes"]["station_elevation"].GetInt(), 200);
}

TEST(ZorvoJSONFeatureSetTest, TheCallersFilterSelectsFeaturesAndFields) {
    auto profiles = OpenClass(DataPath("zorvojson_profiles.nc"));
    Host::WKSEnvelopeZ envelope;
    envelope.PutCoords(115, 25, -1000, 125, 35, 1000);
    // A name twice is one field and one attribute; an unknown name is no field.
    const SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, envelope, {"i", "nothing", "b", "i"},
                               {"temp"});
    const std::string text = Streamed(*profiles, filter);
    const rapidjson::Document document = Parse(text);
    ASSERT_TRUE(document.IsObject());
    ASSERT_EQ(document["fields"].Size(), 2u);
    EXPECT_STREQ(document["fields"][0]["name"].GetString(), "i");
    EXPECT_STREQ(document["fields"][1]["name"].GetString(), "b");
    ASSERT_EQ(document["features"].Size(), 1u);
    EXPECT_EQ(Keys(document["features"][0]["attributes"]), (std::vector<std::string>{"i", "b"}));
    EXPECT_EQ(Attribute(document, 0, "i").GetInt(), 2147483647);
    EXPECT_EQ(Attribute(document, 0, "b").GetInt(), 127);
}

TEST(ZorvoJSONFeatureSetTest, AFailingStreamIsAnError) {
    auto profiles = OpenClass(ExamplePath("profile_orthogonal.nc"));
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    try {
        ZorvoJSONFeatureSet::s_Stream(*profiles, out);
        ADD_FAILURE() << "no error";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "cannot write the ZorvoJSON document");
    }
}

TEST(ZorvoJSONTrajectoryTest, VerticesWithTimeAsMAndNullForWhatIsMissing) {
    TrajectoryFeature feature(4, {}, {});
    const double x[] = {1, 2, 3};
    const double y[] = {10, 20, 30};
    const double t[] = {100, -1, 300};
    SpaceTime::WKSPointXYZT missing;
    missing.t = -1;
    feature.wksTrajectory().Set(3, x, y, nullptr, t, missing);
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    feature.ToZorvoJSON({}, writer);
    EXPECT_EQ(Text(buffer), R"({"geometry":{"hasZ":true,"hasM":true,"paths":[[[1.0,10.0,null,100.0],)"
                            R"([2.0,20.0,null,null],[3.0,30.0,null,300.0]]]},"attributes":{}})");
}

TEST(ZorvoJSONTrajectoryTest, AnEmptyTrajectoryHasNoPath) {
    TrajectoryFeature feature(2, {}, {});
    ZorvoJSONBuffer buffer;
    ZorvoJSONWriter writer(buffer);
    feature.wksTrajectory().ToZorvoJSON(writer);
    EXPECT_EQ(Text(buffer), R"({"hasZ":true,"hasM":true,"paths":[]})");
}
