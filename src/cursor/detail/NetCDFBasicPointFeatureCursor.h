#pragma once
// Reads a point dataset: every index of the observation dimension is one PointFeature, with x, y,
// z and the time read from the coordinate variables and the selected instance values, all read a
// block of points at a time.

#include <memory>
#include <optional>

#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>
#include <zorvodsg/cursor/detail/PointInEnvelope.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/featureclass/BasicPointFeatureClass.h>

namespace ZorvoNetCDFDSG {

class NetCDFBasicPointFeatureCursor final : public NetCDFCursorImpl {
public:
    NetCDFBasicPointFeatureCursor(std::shared_ptr<ZorvoDSG::BasicPointFeatureClass> pointClass,
                                  const ZorvoDSG::SpatialFilter& filter);

    // Points disjoint from the filter are skipped before their instance values are read.
    bool QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;
    std::shared_ptr<ZorvoDSG::Feature> CreateEmptyFeature() override;

protected:
    bool BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;
    void OnBlockSizeChanged() override;

private:
    // Makes every coordinate column hold the position and the points after it, as far as one block
    // goes; LoadInstanceBlock the same for the instance columns.
    void LoadBlock();
    void LoadInstanceBlock();
    // Reads the point at the position into the feature (coordinates missing -> NaN, unpacked).
    void ReadPoint(ZorvoDSG::PointFeature& feature);
    // Object id, instance id and instance values at the position; then advances.
    void FinishPoint(ZorvoDSG::PointFeature& feature);

    std::shared_ptr<ZorvoDSG::BasicPointFeatureClass> m_pointClass;
    uint64_t m_position = 0;
    uint64_t m_count = 0;
    uint64_t m_blockEnd = 0;             // the coordinate columns hold the points from the position to here
    uint64_t m_instanceBlockEnd = 0;     // the same for the instance columns
    bool m_bUnpack = false;              // a coordinate or a selected instance variable is packed
    bool m_bPackedCoordinates = false;   // a coordinate is; the columns unpack instance values
    detail::CoordinateColumn m_x;
    detail::CoordinateColumn m_y;
    std::optional<detail::CoordinateColumn> m_z;
    std::optional<detail::CoordinateColumn> m_t;
    detail::PointInEnvelope m_inEnvelope;
};

}  // namespace ZorvoNetCDFDSG
