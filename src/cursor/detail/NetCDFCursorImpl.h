#pragma once
// What every cursor shares: the feature class it searches, its coordinate and object-id variables,
// the filter, the instance variables the filter selected (by group-qualified name, in the filter's
// order), the missing value of each coordinate and the reader of the dataset's arrays. Next() and
// QueryNext() are written once here over the two operations each cursor supplies: CreateEmptyFeature()
// and BasicNext(), which fills a feature with the instance at the cursor's position and advances.
//
// A cursor keeps its class, and so the open file, alive; it is used by one thread at a time.
// Failures: std::runtime_error "closed file" when the dataset is disconnected at construction;
// reading errors as NcSlabReader raises them.

#include <memory>
#include <stdexcept>
#include <typeinfo>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/cursor/WKSPointXYZT.h>
#include <zorvodsg/cursor/detail/InstanceColumn.h>
#include <zorvodsg/featureclass/IFeatureClass.h>
#include <zorvodsg/netcdf/Variable.h>

namespace ZorvoNetCDFDSG {

class NetCDFCursorImpl : public ZorvoDSG::IFeatureCursor {
public:
    std::shared_ptr<ZorvoDSG::Feature> Next() override;
    bool QueryNext(std::shared_ptr<ZorvoDSG::Feature> feature) override;

    // Instances read per library call and variable (default kDefaultBlockSize). Changing it does
    // not change what the cursor delivers; tests use it to cross block boundaries.
    void SetBlockSize(uint64_t blockSize);
    static constexpr uint64_t kDefaultBlockSize = 65536;

    const std::vector<ZorvoDSG::Variable>& SelectedInstanceVariables() const { return m_instanceVariables; }

protected:
    // `idInstanceDim`: the dimension that counts the class's instances (-1: a single instance).
    NetCDFCursorImpl(std::shared_ptr<ZorvoDSG::IFeatureClass> featureClass, const ZorvoDSG::SpatialFilter& filter,
                     long idInstanceDim);
    NetCDFCursorImpl(const NetCDFCursorImpl&) = default;
    NetCDFCursorImpl& operator=(const NetCDFCursorImpl&) = default;
    ~NetCDFCursorImpl() = default;

    virtual bool BasicNext(std::shared_ptr<ZorvoDSG::Feature> feature) = 0;
    virtual void OnBlockSizeChanged() {}

    // Instance values of `index` into the feature's slots, unpacked when their variable is packed.
    void ReadInstanceValues(uint64_t index, ZorvoDSG::Feature& feature);
    // The same when every instance column already holds `index` (their Prepare said so).
    void ReadLoadedInstanceValues(uint64_t index, ZorvoDSG::Feature& feature);
    bool bAnyInstanceVariablePacked() const;
    bool bEmptyFilter() const { return m_bEmptyFilter; }

    // The feature as the cursor's own kind; std::invalid_argument for a feature of another kind.
    template <class T>
    static T& s_FeatureAs(ZorvoDSG::Feature& feature) {
        // The exact type is the usual case and far cheaper to recognise than a dynamic_cast.
        if (typeid(feature) == typeid(T)) {
            return static_cast<T&>(feature);
        }
        auto* typed = dynamic_cast<T*>(&feature);
        if (typed == nullptr) {
            throw std::invalid_argument("feature not made by this cursor");
        }
        return *typed;
    }

    // The first variable of `available` with each group-qualified name, in the order of `names`;
    // names that match nothing are skipped, names given twice select twice.
    template <class V>
    static std::vector<V> s_SelectByName(const std::vector<std::string>& names, const std::vector<V>& available) {
        std::vector<V> selected;
        for (const std::string& name : names) {
            for (const V& variable : available) {
                if (variable.NameWithFullGroupName() == name) {
                    selected.push_back(variable);
                    break;
                }
            }
        }
        return selected;
    }

    // True when the variable's first dimension is `dimId`.
    static bool s_bInstanceDimIsFirst(const ZorvoDSG::Variable& variable, long dimId);

    std::vector<ZorvoDSG::Variable> m_instanceVariables;
    std::shared_ptr<ZorvoDSG::IFeatureClass> m_featureClass;
    ZorvoDSG::Variable m_oidVariable;
    ZorvoDSG::Variable m_xVariable;
    ZorvoDSG::Variable m_yVariable;
    ZorvoDSG::Variable m_zVariable;
    ZorvoDSG::Variable m_tVariable;
    ZorvoDSG::SpatialFilter m_filter;
    bool m_bEmptyFilter = true;  // asked for every feature: kept rather than recomputed
    ZorvoDSG::SpaceTime::WKSPointXYZT m_missing;
    uint64_t m_blockSize = kDefaultBlockSize;
    NcSlabReader m_reader;
    std::vector<detail::InstanceColumn> m_instanceColumns;
};

}  // namespace ZorvoNetCDFDSG
