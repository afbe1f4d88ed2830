#pragma once
// What the two trajectory cursors share: the class, the observation variables the filter selected
// (by group-qualified name, in the filter's order), the position among the instances, the vertex
// buffers, and the order of reading one instance. The vertices come first; the filter is tested on
// the envelope they give, and only a trajectory that passes gets its object id, instance values and
// observation arrays read, so a narrow search does not pay for the observations it skips.
//
// Failures: reading errors as NcSlabReader raises them (the netCDF status, the variable's name);
// std::runtime_error "invalid unpacked type for variable" for a packed variable without one. A
// failure leaves the position at the instance that failed.

#include <cstdint>
#include <memory>
#include <vector>

#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/cursor/detail/InstanceColumn.h>
#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>
#include <zorvodsg/featureclass/BasicTrajectoryFeatureClass.h>

namespace ZorvoNetCDFDSG {

class NetCDFTrajectoryCursorImpl : public NetCDFCursorImpl {
public:
    bool QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;

    const std::vector<ZorvoDSG::ObservationVariable>& SelectedObservationVariables() const {
        return m_observationVariables;
    }

protected:
    NetCDFTrajectoryCursorImpl(std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass,
                               const ZorvoDSG::SpatialFilter& filter);
    NetCDFTrajectoryCursorImpl(const NetCDFTrajectoryCursorImpl&) = default;
    NetCDFTrajectoryCursorImpl& operator=(const NetCDFTrajectoryCursorImpl&) = default;
    ~NetCDFTrajectoryCursorImpl() = default;

    bool BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;
    void OnBlockSizeChanged() override;

    // The geometry of the instance at the position, from the vertex buffers filled by the cursor;
    // false, with the feature emptied, for an instance without vertices.
    virtual bool ReadVertices(ZorvoDSG::TrajectoryFeature& feature) = 0;
    // The raw observation arrays of the instance at the position.
    virtual void ReadObservations(ZorvoDSG::TrajectoryFeature& feature) = 0;

    // Points and envelope from the first `n` values of the vertex buffers: missing coordinates NaN,
    // trailing invalid vertices cut, packed coordinates unpacked.
    void SetGeometry(ZorvoDSG::TrajectoryFeature& feature, uint64_t n);
    // The vertex count of one instance as the geometry holds it; Exception eInternalError beyond.
    long VertexCount(uint64_t n) const;
    // Values to read per library call for `blockInstances` instances of `valuesPerInstance` values
    // (at least one instance's). Windows stay below kMaxBlockValues values unless one instance needs
    // more: larger ones only move more memory through the cache between a read and the copies out.
    static uint64_t s_BlockValues(uint64_t blockInstances, uint64_t valuesPerInstance);
    static constexpr uint64_t kMaxBlockValues = 65536;

    std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> m_trajectoryClass;
    std::vector<ZorvoDSG::ObservationVariable> m_observationVariables;
    uint64_t m_position = 0;
    uint64_t m_count = 1;
    bool m_bUnpack = false;
    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<double> m_z;
    std::vector<double> m_t;

private:
    // Reads instances from the position until one passes the filter (any, with bFilter false).
    bool ReadNext(ZorvoDSG::TrajectoryFeature& feature, bool bFilter);
    void UnpackObservations(ZorvoDSG::TrajectoryFeature& feature);

    detail::InstanceColumn m_oid;
};

}  // namespace ZorvoNetCDFDSG
