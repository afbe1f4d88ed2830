#pragma once
// A forward-only reader of the features of one search. Next() makes a new feature each time;
// QueryNext() refills one made by CreateEmptyFeature(), so that a whole search needs no allocation.

#include <memory>

namespace ZorvoDSG {

class Feature;

class IFeatureCursor {
public:
    // The next feature that passes the filter; null after the last one.
    virtual std::shared_ptr<Feature> Next() = 0;
    // Fills `feature` (made by this cursor's CreateEmptyFeature) with the next feature that passes
    // the filter; false after the last one.
    virtual bool QueryNext(std::shared_ptr<Feature> feature) = 0;
    virtual std::shared_ptr<Feature> CreateEmptyFeature() = 0;

protected:
    IFeatureCursor() = default;
    IFeatureCursor(const IFeatureCursor&) = default;
    IFeatureCursor& operator=(const IFeatureCursor&) = default;
    ~IFeatureCursor() = default;  // released through the shared pointer of the concrete cursor
};

}  // namespace ZorvoDSG
