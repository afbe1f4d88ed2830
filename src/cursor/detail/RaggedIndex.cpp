#include <zorvodsg/cursor/detail/RaggedIndex.h>

#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/ResourceLimits.h>

namespace ZorvoNetCDFDSG::detail {

namespace {

bool bIntegerType(int type) {
    switch (type) {
        case NC_BYTE: case NC_SHORT: case NC_INT: case NC_UBYTE: case NC_USHORT: case NC_UINT: case NC_INT64:
        case NC_UINT64:
            return true;
        default:
            return false;
    }
}

}  // namespace

RaggedIndex::RaggedIndex(NcSlabReader& reader, ZorvoDSG::ICFMetadata& dataset, const ZorvoDSG::Variable& rowSizes,
                         long idSampleDim, uint64_t blockSize)
    : m_idRowSizeVar(rowSizes.Id()) {
    const auto refuse = [&](const std::string& why) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotDSGConformant, ZorvoDSG::Host::Utf8ToWide(rowSizes.Name() + ": " + why),
                                  reader.Path());
    };
    if (!bIntegerType(rowSizes.Type()) || rowSizes.aidDims().size() != 1) {
        refuse("row sizes must be integers along the instance dimension");
    }
    const uint64_t cInstances = dataset.DimLen(rowSizes.aidDims().front());
    const uint64_t cSamples = dataset.DimLen(idSampleDim);
    ZorvoDSG::System::CheckResourceLimit(cInstances, ZorvoDSG::System::kMaxRaggedInstances,
                                         "instances of " + rowSizes.Name(), reader.Path());
    m_offsets.reserve(static_cast<size_t>(cInstances) + 1);
    m_offsets.push_back(0);
    const uint64_t block = std::max<uint64_t>(blockSize, 1);
    std::vector<double> counts;
    for (uint64_t first = 0; first < cInstances; first += block) {
        const size_t start = static_cast<size_t>(first);
        const size_t count = static_cast<size_t>(std::min(block, cInstances - first));
        counts.resize(count);
        reader.ReadDoubles(rowSizes, std::span<const size_t>(&start, 1), std::span<const size_t>(&count, 1),
                           counts.data());
        for (size_t i = 0; i < count; ++i) {
            const double n = counts[i];
            const uint64_t total = m_offsets.back();
            // Doubles hold every count a real sample dimension can have exactly.
            if (!(n >= 0) || n > static_cast<double>(cSamples - total)) {
                refuse("instance " + std::to_string(first + i) +
                       (n < 0 ? " has a negative row size" : " runs past the end of the sample dimension"));
            }
            m_offsets.push_back(total + static_cast<uint64_t>(n));
        }
    }
}

}  // namespace ZorvoNetCDFDSG::detail
