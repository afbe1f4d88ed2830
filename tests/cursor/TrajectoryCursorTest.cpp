// Trajectory files searched end to end: vertices, fill values, packing, empty trajectories, ragged
// offsets, filters, both multidimensional orders and block reads.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <variant>

#include "cursor/FeatureTestSupport.h"
#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/cursor/detail/NetCDFTrajectoryCursorImpl.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG;
using namespace ZorvoDSG::Host;
using feature_test::DataPath;
using feature_test::ReadAll;

namespace {

const double kNaN = std::nan("");

std::shared_ptr<BasicTrajectoryFeatureClass> Open(const std::filesystem::path& path) {
    auto trajectories = std::dynamic_pointer_cast<BasicTrajectoryFeatureClass>(feature_test::OpenClass(path));
    EXPECT_TRUE(trajectories);
    return trajectories;
}

// A search for every instance and observation variable of the class.
std::shared_ptr<ZorvoNetCDFDSG::NetCDFTrajectoryCursorImpl> Search(BasicTrajectoryFeatureClass& trajectories,
                                                                    WKSEnvelopeZ envelope = WKSEnvelopeZ()) {
    std::vector<std::string> observations;
    for (const auto& variable : trajectories.ObservationVariables()) {
        observations.push_back(variable.NameWithFullGroupName());
    }
    const SpatialFilter filter(nullptr, SpaceTime::eSpatialRelationUndefined, envelope,
                               feature_test::AllInstanceNames(trajectories), observations);
    auto cursor = std::dynamic_pointer_cast<ZorvoNetCDFDSG::NetCDFTrajectoryCursorImpl>(trajectories.Search(filter));
    EXPECT_TRUE(cursor);
    return cursor;
}

const TrajectoryFeature& AsTrajectory(const std::shared_ptr<Feature>& feature) {
    return dynamic_cast<const TrajectoryFeature&>(*feature);
}

std::string Text(const System::NcVariant& value) { return std::get<std::string>(value); }

// Doubles equal, NaN equal to NaN.
bool bSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void ExpectVertex(const TrajectoryFeature& feature, int i, double x, double y, double z, double t) {
    const SpaceTime::WKSPointXYZT& p = feature.wksTrajectory().Points()[i];
    EXPECT_TRUE(bSame(p.x, x) && bSame(p.y, y) && bSame(p.z, z) && bSame(p.t, t))
        << "vertex " << i << ": " << p.x << " " << p.y << " " << p.z << " " << p.t;
}

void ExpectEnvelope(const WKSEnvelopeZ& e, double xMin, double yMin, double zMin, double xMax, double yMax,
                    double zMax) {
    EXPECT_TRUE(bSame(e.XMin, xMin) && bSame(e.YMin, yMin) && bSame(e.ZMin, zMin) && bSame(e.XMax, xMax) &&
                bSame(e.YMax, yMax) && bSame(e.ZMax, zMax))
        << e.XMin << " " << e.YMin << " " << e.ZMin << " " << e.XMax << " " << e.YMax << " " << e.ZMax;
}

// The same instance, vertices, instance values and observation values.
void ExpectSameFeature(const TrajectoryFeature& a, const TrajectoryFeature& b) {
    ASSERT_EQ(a.InstanceID(), b.InstanceID());
    EXPECT_TRUE(a.OID() == b.OID());
    ASSERT_EQ(a.wksTrajectory().count, b.wksTrajectory().count);
    for (int i = 0; i < a.wksTrajectory().count; ++i) {
        const auto& p = a.wksTrajectory().Points()[i];
        ExpectVertex(b, i, p.x, p.y, p.z, p.t);
    }
    ASSERT_EQ(a.cInstanceValues(), b.cInstanceValues());
    for (long v = 0; v < a.cInstanceValues(); ++v) {
        EXPECT_EQ(a.InstanceValue(v).index(), b.InstanceValue(v).index());
        EXPECT_TRUE(a.InstanceValue(v).index() == System::eNcEmpty || a.InstanceValue(v) == b.InstanceValue(v));
    }
    ASSERT_EQ(a.cObservationArrays(), b.cObservationArrays());
    for (long o = 0; o < a.cObservationArrays(); ++o) {
        const auto& x = a.ObservationValues(o);
        const auto& y = b.ObservationValues(o);
        ASSERT_EQ(x.Size(), y.Size()) << "array " << o;
        for (size_t i = 0; i < x.Size(); ++i) {
            EXPECT_EQ(x[i].index(), y[i].index());
            EXPECT_TRUE(x[i].index() == System::eNcEmpty || x[i] == y[i]) << "array " << o << " value " << i;
        }
    }
}

std::string Variant(const ::testing::TestParamInfo<std::string>& info) {
    return info.param == ".nc" ? "classic" : "netcdf4";
}

class RaggedTrajectoryTest : public ::testing::TestWithParam<std::string> {
protected:
    std::shared_ptr<BasicTrajectoryFeatureClass> m_class = Open(DataPath("traj_ragged" + GetParam()));
};

}  // namespace

// Observation arrays: salinity, temp, pressure, temp_qc.
TEST_P(RaggedTrajectoryTest, VerticesObservationsAndEmptyTrajectories) {
    const auto features = ReadAll(*Search(*m_class));
    ASSERT_EQ(features.size(), 4u);

    const TrajectoryFeature& alpha = AsTrajectory(features[0]);
    EXPECT_EQ(Text(alpha.OID()), "alpha");
    ASSERT_EQ(alpha.wksTrajectory().count, 3);
    ExpectVertex(alpha, 0, 1, 40, 5, 0);
    ExpectVertex(alpha, 2, 3, 41, 7, 2);
    ExpectEnvelope(alpha.Extent(), 1, 40, 5, 3, 41, 7);
    EXPECT_EQ(std::get<int32_t>(alpha.InstanceValue(0)), 7);
    EXPECT_FLOAT_EQ(std::get<float>(alpha.ObservationValues(0)[1]), 35.2f);
    EXPECT_FLOAT_EQ(std::get<float>(alpha.ObservationValues(1)[1]), 11.0f);
    EXPECT_EQ(alpha.ObservationValues(1)[2].index(), System::eNcEmpty);  // temp fill
    EXPECT_FLOAT_EQ(std::get<float>(alpha.ObservationValues(2)[0]), 1001.0f);  // 2 * 0.5 + 1000
    EXPECT_EQ(std::get<signed char>(alpha.ObservationValues(3)[1]), 1);

    // No vertices: only the object id and the instance id, whatever the other row counts say.
    const TrajectoryFeature& beta = AsTrajectory(features[1]);
    EXPECT_EQ(Text(beta.OID()), "beta");
    EXPECT_EQ(beta.InstanceID(), 1u);
    EXPECT_TRUE(beta.bEmpty());
    EXPECT_TRUE(beta.Extent().IsEmpty());
    EXPECT_TRUE(std::isnan(beta.TimeExtent().TMin));
    EXPECT_EQ(beta.InstanceValue(0).index(), System::eNcEmpty);
    for (long o = 0; o < beta.cObservationArrays(); ++o) {
        EXPECT_EQ(beta.ObservationValues(o).Size(), 0) << o;
    }

    const TrajectoryFeature& gamma = AsTrajectory(features[2]);
    ExpectVertex(gamma, 0, 10, 50, 1, 10);
    EXPECT_EQ(gamma.InstanceValue(0).index(), System::eNcEmpty);  // deployment fill
    EXPECT_EQ(gamma.ObservationValues(0).Size(), 0);                // no salinity rows
    EXPECT_FLOAT_EQ(std::get<float>(gamma.ObservationValues(1)[0]), 12.0f);

    // The vertex without time stays as NaN and does not count for the envelope; the last vertex
    // without longitude is cut. Every observation of the run is kept.
    const TrajectoryFeature& delta = AsTrajectory(features[3]);
    ASSERT_EQ(delta.wksTrajectory().count, 3);
    ExpectVertex(delta, 1, -4, 60.1, 4, kNaN);
    ExpectEnvelope(delta.Extent(), -5, 60, 3, -3, 60.2, 5);
    EXPECT_DOUBLE_EQ(delta.TimeExtent().TMin, 20);
    EXPECT_DOUBLE_EQ(delta.TimeExtent().TMax, 22);
    ASSERT_EQ(delta.ObservationValues(1).Size(), 4);
    EXPECT_FLOAT_EQ(std::get<float>(delta.ObservationValues(1)[3]), 17.0f);
    ASSERT_EQ(delta.ObservationValues(0).Size(), 2);
    EXPECT_FLOAT_EQ(std::get<float>(delta.ObservationValues(0)[0]), 35.4f);
    EXPECT_FLOAT_EQ(std::get<float>(delta.ObservationValues(2)[3]), 1009.0f);
}

TEST_P(RaggedTrajectoryTest, EnvelopeSelectsOneTrajectory) {
    const auto features = ReadAll(*Search(*m_class, WKSEnvelopeZ(-6, 59, kNaN, -4, 61, kNaN)));
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(Text(features[0]->OID()), "delta");
    EXPECT_EQ(AsTrajectory(features[0]).ObservationValues(1).Size(), 4);
    EXPECT_FALSE(Search(*m_class, WKSEnvelopeZ(100, 0, kNaN, 101, 1, kNaN))->Next());
}

TEST_P(RaggedTrajectoryTest, BlockSizesDoNotChangeWhatIsRead) {
    const auto reference = ReadAll(*Search(*m_class));
    for (const uint64_t block : {1u, 7u}) {
        auto cursor = Search(*m_class);
        cursor->SetBlockSize(block);
        auto feature = cursor->CreateEmptyFeature();
        size_t i = 0;
        while (cursor->QueryNext(feature)) {
            ASSERT_LT(i, reference.size());
            ExpectSameFeature(AsTrajectory(reference[i++]), AsTrajectory(feature));
        }
        EXPECT_EQ(i, reference.size()) << block;
    }
}

TEST_P(RaggedTrajectoryTest, RowSizesPastTheSampleDimensionAreRefused) {
    auto trajectories = Open(DataPath("traj_ragged_overrun" + GetParam()));
    try {
        Search(*trajectories);
        FAIL() << "searched";
    } catch (const Exception& e) {
        EXPECT_EQ(e.NcErr(), eNotDSGConformant);
    }
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, RaggedTrajectoryTest, ::testing::Values(".nc", "_nc4.nc"), Variant);

namespace {

class OrthoTrajectoryTest : public ::testing::TestWithParam<std::string> {};

}  // namespace

// Observation arrays: speed, flag.
TEST_P(OrthoTrajectoryTest, PaddedTrajectoriesWithoutZ) {
    const auto features = ReadAll(*Search(*Open(DataPath("traj_ortho" + GetParam()))));
    ASSERT_EQ(features.size(), 3u);

    const TrajectoryFeature& one = AsTrajectory(features[0]);
    EXPECT_EQ(Text(one.OID()), "one");
    ASSERT_EQ(one.wksTrajectory().count, 3);  // the padding is cut
    ExpectVertex(one, 1, 11, 11, kNaN, 60);    // latitude unpacked
    ExpectEnvelope(one.Extent(), 10, 10, kNaN, 12, 12, kNaN);
    ASSERT_EQ(one.ObservationValues(0).Size(), 4);  // a whole row of observations
    EXPECT_EQ(one.ObservationValues(0)[2].index(), System::eNcEmpty);
    EXPECT_EQ(Text(one.ObservationValues(1)[2]), "no");
    EXPECT_EQ(std::get<int32_t>(one.InstanceValue(0)), 31);

    // Across the antimeridian the vertices stay as written and the envelope spans the globe.
    const TrajectoryFeature& two = AsTrajectory(features[1]);
    ExpectVertex(two, 0, 179.5, 0, kNaN, 0);
    ExpectVertex(two, 1, -179.5, 0.1, kNaN, 60);
    ExpectEnvelope(two.Extent(), -179.5, 0, kNaN, 179.5, 0.2, kNaN);

    // No vertex at all: an empty geometry, but the instance's values are read.
    const TrajectoryFeature& three = AsTrajectory(features[2]);
    EXPECT_TRUE(three.bEmpty());
    EXPECT_EQ(std::get<int32_t>(three.InstanceValue(0)), 33);
}

TEST_P(OrthoTrajectoryTest, EnvelopeTestFollowsTheHostEnvelope) {
    // Near the prime meridian: the antimeridian trajectory's envelope covers it; the empty one never
    // intersects.
    const auto features = ReadAll(*Search(*Open(DataPath("traj_ortho" + GetParam())), WKSEnvelopeZ(0, 0, kNaN, 1, 1, kNaN)));
    ASSERT_EQ(features.size(), 1u);
    EXPECT_EQ(Text(features[0]->OID()), "two");
}

TEST_P(OrthoTrajectoryTest, EitherDimensionOrderAndAnyBlockSizeReadTheSame) {
    const auto reference = ReadAll(*Search(*Open(DataPath("traj_ortho" + GetParam()))));
    for (const uint64_t block : {1u, 2u, 7u}) {
        for (const std::string stem : {"traj_ortho", "traj_ortho_transposed"}) {
            auto cursor = Search(*Open(DataPath(stem + GetParam())));
            cursor->SetBlockSize(block);
            auto feature = cursor->CreateEmptyFeature();
            size_t i = 0;
            while (cursor->QueryNext(feature)) {
                ASSERT_LT(i, reference.size());
                ExpectSameFeature(AsTrajectory(reference[i++]), AsTrajectory(feature));
            }
            EXPECT_EQ(i, reference.size()) << stem << " " << block;
        }
    }
}

TEST_P(OrthoTrajectoryTest, SingleInstance) {
    const auto features = ReadAll(*Search(*Open(DataPath("traj_single" + GetParam()))));
    ASSERT_EQ(features.size(), 1u);
    const TrajectoryFeature& voyager = AsTrajectory(features[0]);
    EXPECT_EQ(Text(voyager.OID()), "voyager");
    ASSERT_EQ(voyager.wksTrajectory().count, 3);
    ExpectVertex(voyager, 2, 102, -12, 30, 3);
    EXPECT_EQ(std::get<int32_t>(voyager.InstanceValue(0)), 4);
    EXPECT_DOUBLE_EQ(std::get<double>(voyager.ObservationValues(0)[1]), 21.5);
    EXPECT_EQ(Text(voyager.ObservationValues(1)[0]), "abc");
    EXPECT_EQ(Text(voyager.ObservationValues(1)[2]), "f");
}

INSTANTIATE_TEST_SUITE_P(ClassicAndNetCDF4, OrthoTrajectoryTest, ::testing::Values(".nc", "_nc4.nc"), Variant);

TEST(TrajectoryExampleTest, GliderSections) {
    auto gliders = Open(feature_test::ExamplePath("trajectory_contiguous.nc"));
    EXPECT_EQ(gliders->Name(), "trajectory_contiguous_trajectory");
    const auto features = ReadAll(*Search(*gliders));
    ASSERT_EQ(features.size(), 2u);
    const TrajectoryFeature& first = AsTrajectory(features[0]);
    const TrajectoryFeature& second = AsTrajectory(features[1]);
    EXPECT_EQ(Text(first.OID()), "glider01");
    EXPECT_EQ(first.wksTrajectory().count, 4);
    EXPECT_EQ(second.wksTrajectory().count, 3);
    ExpectVertex(second, 0, -6.5, 49.8, 10, 0.5);
    ExpectEnvelope(first.Extent(), -7.2, 50.1, 5, -7.1, 50.19, 80);
    EXPECT_DOUBLE_EQ(second.TimeExtent().TMin, 0.5);
    EXPECT_DOUBLE_EQ(second.TimeExtent().TMax, 2.5);
    EXPECT_EQ(second.ObservationValues(0)[1].index(), System::eNcEmpty);  // oxygen -1
    EXPECT_FLOAT_EQ(std::get<float>(second.ObservationValues(0)[2]), 229.8f);

    const auto selected = ReadAll(*Search(*gliders, WKSEnvelopeZ(-6.6, 49, kNaN, -6.4, 50, kNaN)));
    ASSERT_EQ(selected.size(), 1u);
    EXPECT_EQ(Text(selected[0]->OID()), "glider02");
}
