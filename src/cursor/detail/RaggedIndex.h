#pragma once
// Where each instance's run lies in a contiguous ragged array: the row-size variable is read once,
// in blocks, and turned into running offsets. Counts must be integers, non-negative, and together
// fit the sample dimension; anything else refuses the file rather than reading past the array.
//
// Failures: Exception eNotDSGConformant naming the variable and the instance; reading errors.

#include <cstdint>
#include <vector>

#include <zorvodsg/cursor/detail/NcSlabReader.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>

namespace ZorvoNetCDFDSG::detail {

class RaggedIndex {
public:
    RaggedIndex(NcSlabReader& reader, ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& rowSizes,
                long idSampleDim, uint64_t blockSize);

    long idRowSizeVar() const { return m_idRowSizeVar; }
    uint64_t cInstances() const { return m_offsets.size() - 1; }
    uint64_t Offset(uint64_t instance) const { return m_offsets[instance]; }
    uint64_t Count(uint64_t instance) const { return m_offsets[instance + 1] - m_offsets[instance]; }

private:
    long m_idRowSizeVar;
    std::vector<uint64_t> m_offsets;  // instances + 1 running sums
};

}  // namespace ZorvoNetCDFDSG::detail
