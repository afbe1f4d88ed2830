#pragma once
// GeoJSON (RFC 7946): one FeatureCollection, one feature per line; or, as a GeoJSON text sequence
// (RFC 8142), every feature on its own line after the record separator U+001E. A feature is a Point
// (with z when the class has one and the feature a value; null without a position) and properties
// class, oid, time, crs (with --native-crs only) and the variables its class has; fill values, NaN
// and infinities are null.

#include <memory>

#include "FeatureWriter.h"

namespace zdsg {

class OutputFile;

class GeoJsonWriter final : public FeatureWriter {
public:
    GeoJsonWriter(OutputFile& out, bool bSequence);
    ~GeoJsonWriter() override;

    void Begin(const std::vector<std::string>& columns) override;
    void Point(const PointRecord& point) override;
    void Profile(const ProfileRecord& profile) override;
    void Trajectory(const TrajectoryRecord& trajectory) override;
    void End() override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace zdsg
