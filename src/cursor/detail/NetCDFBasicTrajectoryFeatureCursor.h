#pragma once
// Reads trajectories stored as contiguous ragged arrays: each trajectory is a run of consecutive
// elements of the observation dimension, as long as its row size. The row sizes are read once into
// validated offsets, so every trajectory's run is known without summing as the cursor goes; a
// trajectory with row size 0 is returned as an empty feature and the runs after it stay right. An
// observation variable along another sample dimension is placed by its own row-count variable.
//
// Failures: Exception eNotDSGConformant for row sizes that are not integers, are negative or run
// past their sample dimension (at construction); those of NetCDFTrajectoryCursorImpl.

#include <memory>
#include <vector>

#include <zorvodsg/cursor/detail/NetCDFTrajectoryCursorImpl.h>
#include <zorvodsg/cursor/detail/RaggedIndex.h>
#include <zorvodsg/cursor/detail/SampleWindow.h>

namespace ZorvoNetCDFDSG {

class NetCDFBasicTrajectoryFeatureCursor final : public NetCDFTrajectoryCursorImpl {
public:
    NetCDFBasicTrajectoryFeatureCursor(std::shared_ptr<ZorvoDSG::BasicTrajectoryFeatureClass> trajectoryClass,
                                       const ZorvoDSG::SpatialFilter& filter);

    std::shared_ptr<ZorvoDSG::Feature> CreateEmptyFeature() override;

protected:
    bool ReadVertices(ZorvoDSG::TrajectoryFeature& feature) override;
    void ReadObservations(ZorvoDSG::TrajectoryFeature& feature) override;
    void OnBlockSizeChanged() override;

private:
    // The index of a row-count variable, made on first use and shared by the variables it counts.
    size_t IndexFor(long idRowCountVar, long idSampleDim);
    // Values per library call for the runs that `index` places, by its mean row length.
    uint64_t BlockValues(size_t index) const;

    std::vector<detail::RaggedIndex> m_indexes;  // [0]: the class's row-size variable
    std::vector<detail::SampleWindow> m_coordinates;  // x, y, t, then z when the class has it
    std::vector<detail::SampleWindow> m_observations;
    std::vector<size_t> m_observationIndexes;  // the index of each selected observation variable
};

}  // namespace ZorvoNetCDFDSG
