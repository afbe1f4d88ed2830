#pragma once
// Reads trajectories stored as multidimensional arrays: X(trajectory, obs), X(obs, trajectory) (the
// order is taken from X and assumed for every variable), or X(obs) for a single trajectory. Every
// trajectory has the length of the observation dimension; shorter ones are padded with fill values,
// which become NaN coordinates and are cut from the end of the geometry.
//
// Failures: Exception with the netCDF status and "failure reading ortho-md vertex count" when the
// observation dimension cannot be inquired; those of NetCDFTrajectoryCursorImpl.

#include <memory>
#include <optional>
#include <vector>

#include <zorvodsg/cursor/detail/NetCDFTrajectoryCursorImpl.h>
#include <zorvodsg/cursor/detail/RunSource.h>

namespace ZorvoNetCDFDSG {

class NetCDFOrthoMDTrajectoryCursor final : public NetCDFTrajectoryCursorImpl {
public:
    NetCDFOrthoMDTrajectoryCursor(std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass,
                                  const ZorvoDSG::SpatialFilter& filter);

    std::shared_ptr<ZorvoDSG::Feature> CreateEmptyFeature() override;

protected:
    bool ReadVertices(ZorvoDSG::TrajectoryFeature& feature) override;
    void ReadObservations(ZorvoDSG::TrajectoryFeature& feature) override;
    void OnBlockSizeChanged() override;

private:
    detail::RunSource MakeRun(const ZorvoDSG::Variable& variable) const;

    uint64_t m_cVertices = 0;
    std::vector<detail::RunSource> m_coordinates;  // x, y, t, then z when the class has it
    std::vector<detail::RunSource> m_observations;
};

}  // namespace ZorvoNetCDFDSG
