// The point cursor's envelope test must agree with WKSEnvelopeZ::Contains on every point, including
// missing, infinite and boundary coordinates and envelopes without Z bounds or with infinite bounds.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include <zorvodsg/cursor/detail/PointInEnvelope.h>
#include <zorvodsg/host/Wks.h>

namespace {

using ZorvoDSG::Host::WKSEnvelopeZ;
using ZorvoDSG::Host::WKSPointZ;
using ZorvoNetCDFDSG::detail::PointInEnvelope;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(PointInEnvelopeTest, AgreesWithContainsOnAwkwardCoordinates) {
    const std::vector<double> coordinates{-kInf, -10.0, -1.0, -0.5, 0.0, 0.5, 1.0, 10.0, kInf, kNaN};
    const std::vector<WKSEnvelopeZ> envelopes{
        WKSEnvelopeZ(-1.0, -1.0, kNaN, 1.0, 1.0, kNaN),     // no Z bounds
        WKSEnvelopeZ(-1.0, -1.0, -0.5, 1.0, 1.0, 0.5),      // 3-D
        WKSEnvelopeZ(0.5, 0.5, 0.0, 0.5, 0.5, 0.0),         // a single point
        WKSEnvelopeZ(-kInf, -1.0, kNaN, 1.0, 1.0, kNaN),    // an infinite bound contains nothing
        WKSEnvelopeZ(-1.0, -1.0, -kInf, 1.0, 1.0, kInf),    // infinite Z bounds
        WKSEnvelopeZ(),                                     // empty
    };
    int cContained = 0;
    for (const WKSEnvelopeZ& envelope : envelopes) {
        const PointInEnvelope inEnvelope(envelope);
        for (const double x : coordinates) {
            for (const double y : coordinates) {
                for (const double z : coordinates) {
                    WKSPointZ point;
                    point.x = x, point.y = y, point.z = z;
                    const bool bExpected = envelope.Contains(point);
                    ASSERT_EQ(inEnvelope(point), bExpected)
                        << "point " << x << ' ' << y << ' ' << z << " envelope " << envelope.XMin << ' '
                        << envelope.ZMin << ' ' << envelope.ZMax;
                    cContained += bExpected ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(cContained, 0);  // the grid exercises both answers
}

}  // namespace
