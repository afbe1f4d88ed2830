#pragma once
// The cursors of profile and time-series classes. Both fill a ProfileFeature with the instance's
// position, its run of profile values (z of each level, or the time of each observation), the one
// time (or z) of the instance, its instance values and one array per selected observation variable;
// they differ only in where the runs lie: rows of orthogonal arrays (or the whole variables of a
// single instance), or stretches of contiguous ragged arrays found through the row-size variables.

#include <memory>
#include <optional>
#include <vector>

#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/cursor/detail/NetCDFCursorImpl.h>
#include <zorvodsg/cursor/detail/RunSource.h>
#include <zorvodsg/featureclass/BasicProfileFeatureClass.h>

namespace ZorvoNetCDFDSG {

class NetCDFProfileCursorImpl : public NetCDFCursorImpl {
protected:
    NetCDFProfileCursorImpl(std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass,
                            const ZorvoDSG::SpatialFilter& filter);

    bool BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;
    void OnBlockSizeChanged() override;
    // Values are unpacked after the fill comparison, as the variables' packing says.
    void CheckUnpack(ZorvoDSG::ProfileFeature& feature);

    const ZorvoDSG::Variable& ValueVariable() const { return m_bValuesAreZ ? m_zVariable : m_tVariable; }

    std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> m_profileClass;
    std::vector<ZorvoDSG::ObservationVariable> m_observationVariables;
    bool m_bValuesAreZ = true;
    bool m_bUnpack = false;
    uint64_t m_position = 0;
    uint64_t m_count = 0;
    // Set by each cursor: where the profile values and the observations of an instance lie.
    std::optional<detail::RunSource> m_values;
    std::vector<detail::RunSource> m_observations;

private:
    void ReadGeometry(ZorvoDSG::ProfileFeature& feature);
    void ReadTOrZ(ZorvoDSG::ProfileFeature& feature);

    detail::InstanceColumn m_oid;
    detail::CoordinateColumn m_x;
    detail::CoordinateColumn m_y;
    std::optional<detail::CoordinateColumn> m_tOrZ;  // absent: the instance has no such value
    std::vector<double> m_buffer;
};

// Orthogonal multidimensional and single-instance layouts.
class NetCDFOrthoMDProfileCursor final : public NetCDFProfileCursorImpl {
public:
    NetCDFOrthoMDProfileCursor(std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass,
                               const ZorvoDSG::SpatialFilter& filter);
    std::shared_ptr<ZorvoDSG::Feature> CreateEmptyFeature() override;

private:
    uint64_t m_valuesPerProfile = 0;
};

// Contiguous ragged arrays.
class NetCDFBasicProfileFeatureCursor final : public NetCDFProfileCursorImpl {
public:
    NetCDFBasicProfileFeatureCursor(std::shared_ptr<ZorvoDSG::BasicProfileFeatureClass> profileClass,
                                    const ZorvoDSG::SpatialFilter& filter);
    std::shared_ptr<ZorvoDSG::Feature> CreateEmptyFeature() override;
};

}  // namespace ZorvoNetCDFDSG
