#pragma once
// Where a variable's values for one instance, or for a run of instances, lie: the hyperslab along
// the instance dimension, with the other axes at their first index and a character variable's string
// axis whole. A variable that does not run along the instance dimension has one value for all.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>

namespace ZorvoNetCDFDSG::detail {

class SlabShape {
public:
    SlabShape(ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& variable, long idInstanceDim);

    // True when the variable has one value for all instances.
    bool bConstant() const { return m_axis < 0; }
    // Instances along the instance dimension (1 for a constant variable).
    uint64_t cInstances() const { return m_cInstances; }
    // Sets the slab to instances [first, first + n) (ignored for a constant variable).
    void Select(uint64_t first, uint64_t n);
    const std::vector<size_t>& Start() const { return m_start; }
    const std::vector<size_t>& Count() const { return m_count; }
    // Bytes of one string (NC_CHAR with a string axis), else 1.
    size_t StringWidth() const { return m_stringWidth; }

private:
    std::vector<size_t> m_start;
    std::vector<size_t> m_count;
    int m_axis = -1;
    uint64_t m_cInstances = 1;
    size_t m_stringWidth = 1;
};

}  // namespace ZorvoNetCDFDSG::detail
