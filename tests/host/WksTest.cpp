#include <zorvodsg/host/Wks.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using ZorvoDSG::Host::WKSEnvelope;
using ZorvoDSG::Host::WKSEnvelopeZ;
using ZorvoDSG::Host::WKSPointZ;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

WKSEnvelopeZ Box(double xMin, double yMin, double xMax, double yMax, double zMin = kNaN, double zMax = kNaN) {
    return WKSEnvelopeZ(xMin, yMin, zMin, xMax, yMax, zMax);
}

WKSPointZ Point(double x, double y, double z = 0.0) { return WKSPointZ{x, y, z}; }

TEST(WKSPointZ, EmptyAndInvalidZ) {
    WKSPointZ point = Point(1, 2, 3);
    EXPECT_FALSE(point.IsEmpty());
    point.SetInvalidZ();
    EXPECT_TRUE(std::isnan(point.z));
    EXPECT_FALSE(point.IsEmpty());
    point.SetEmpty();
    EXPECT_TRUE(point.IsEmpty());
}

TEST(WKSEnvelopeZ, ConstructionAndCoordinates) {
    const WKSEnvelopeZ empty;
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_TRUE(std::isnan(empty.XMin));

    const WKSEnvelopeZ fields(1, 2, 3, 4, 5, 6);  // XMin, YMin, ZMin, XMax, YMax, ZMax
    EXPECT_EQ(fields.ZMin, 3);
    EXPECT_EQ(fields.XMax, 4);

    WKSEnvelopeZ ordered;
    EXPECT_EQ(&ordered.PutCoords(10, 20, 30, 1, 2, 3), &ordered);
    EXPECT_EQ(ordered.XMin, 1);
    EXPECT_EQ(ordered.YMax, 20);
    EXPECT_EQ(ordered.ZMax, 30);

    const WKSEnvelopeZ degenerate(Point(7, 8, 9));
    EXPECT_EQ(degenerate.XMin, 7);
    EXPECT_EQ(degenerate.XMax, 7);
    EXPECT_EQ(degenerate.ZMax, 9);

    WKSEnvelope flat;
    EXPECT_TRUE(flat.IsEmpty());
    flat.AddPoint({3, -1});
    flat.AddPoint({kNaN, 100});  // ignored
    flat.AddPoint({-2, 4});
    EXPECT_EQ(flat.XMin, -2);
    EXPECT_EQ(flat.XMax, 3);
    EXPECT_EQ(flat.YMin, -1);
    EXPECT_EQ(flat.YMax, 4);

    WKSEnvelopeZ fromFlat(0, 0, 5, 0, 0, 6);
    fromFlat = flat;
    EXPECT_EQ(fromFlat.XMin, -2);
    EXPECT_EQ(fromFlat.YMax, 4);
    EXPECT_EQ(fromFlat.ZMin, 5);  // Z untouched
    fromFlat = WKSEnvelope();
    EXPECT_TRUE(fromFlat.IsEmpty());
}

TEST(WKSEnvelopeZ, DisjointBoundaries) {
    const WKSEnvelopeZ box = Box(0, 0, 10, 10);
    EXPECT_FALSE(box.Disjoint(Box(10, 10, 20, 20)));  // touching corners intersect
    EXPECT_FALSE(box.Disjoint(Box(2, 2, 3, 3)));
    EXPECT_TRUE(box.Disjoint(Box(10.000001, 0, 20, 10)));
    EXPECT_TRUE(box.Disjoint(Box(0, -5, 10, -0.5)));

    EXPECT_TRUE(box.Disjoint(WKSEnvelopeZ()));
    EXPECT_TRUE(WKSEnvelopeZ().Disjoint(box));
    EXPECT_TRUE(WKSEnvelopeZ().Disjoint(WKSEnvelopeZ()));
    EXPECT_TRUE(box.Disjoint(Box(0, kNaN, 10, 10)));
    EXPECT_TRUE(box.Disjoint(Box(-kInf, 0, kInf, 10)));  // X and Y must be finite

    // Z restricts only when both sides have it.
    const WKSEnvelopeZ deep = Box(0, 0, 10, 10, -100, -50);
    EXPECT_FALSE(deep.Disjoint(box));
    EXPECT_FALSE(box.Disjoint(deep));
    EXPECT_FALSE(deep.Disjoint(Box(5, 5, 6, 6, -50, 0)));
    EXPECT_TRUE(deep.Disjoint(Box(5, 5, 6, 6, -49, 0)));
    EXPECT_FALSE(deep.Disjoint(Box(5, 5, 6, 6, kNaN, 0)));
}

TEST(WKSEnvelopeZ, ContainsBoundaries) {
    const WKSEnvelopeZ box = Box(0, 0, 10, 10, 0, 5);
    EXPECT_TRUE(box.Contains(Point(0, 10, 5)));  // on the boundary
    EXPECT_TRUE(box.Contains(Point(5, 5, 2)));
    EXPECT_FALSE(box.Contains(Point(10.5, 5, 2)));
    EXPECT_FALSE(box.Contains(Point(5, 5, 6)));
    EXPECT_FALSE(box.Contains(Point(kNaN, 5, 2)));

    WKSPointZ noZ = Point(5, 5, 0);
    noZ.SetInvalidZ();
    EXPECT_TRUE(box.Contains(noZ));
    EXPECT_TRUE(Box(0, 0, 10, 10).Contains(Point(1, 1, 1e9)));
    EXPECT_FALSE(WKSEnvelopeZ().Contains(Point(0, 0)));
}

}  // namespace
