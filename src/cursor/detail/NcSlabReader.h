#pragma once
// The one place where cursors read variable data: hyperslabs of any netCDF type into a typed array
// (numbers raw, NC_CHAR as fixed-width fields, NC_STRING as strings of any length) or converted to
// doubles. Every status is checked.
//
// Failures: Exception with the netCDF status, the variable's name and the dataset's path; Exception
// eInternalError when the array cannot hold the slab or its type has no storage (NC_USHORT).

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG {

class NcSlabReader {
public:
    // `dataset` must outlive the reader (the cursor's feature class holds it).
    NcSlabReader(const ZorvoDSG::ICFMetadata& dataset, std::filesystem::path path)
        : m_dataset(&dataset), m_path(std::move(path)) {}

    // Reads the slab into `values`, made for the variable's type and reserved for the element count
    // (for NC_CHAR: the slab's characters divided by the array's string width); its size becomes that
    // count.
    void Read(const ZorvoDSG::Variable& variable, std::span<const size_t> start, std::span<const size_t> count,
              ZorvoDSG::System::NcVariantArray& values);
    // Reads the slab converted to doubles into `out`, which has room for the element count.
    void ReadDoubles(const ZorvoDSG::Variable& variable, std::span<const size_t> start,
                     std::span<const size_t> count, double* out);

    // The dataset's netCDF id as it is now: asked for every read, because the file may have been
    // closed and opened again (with another id) since the last one. Exception NC_EBADID while closed.
    int NcID() const;
    const std::filesystem::path& Path() const { return m_path; }

private:
    void Check(int status, const ZorvoDSG::Variable& variable) const;
    void ReadStrings(const ZorvoDSG::Variable& variable, std::span<const size_t> start, std::span<const size_t> count,
                     size_t cElements, ZorvoDSG::System::NcVariantArray& values);

    const ZorvoDSG::ICFMetadata* m_dataset;
    std::filesystem::path m_path;
    std::vector<char*> m_strings;  // scratch for NC_STRING reads, reused
};

// Values in a slab: the product of the counts.
size_t SlabElements(std::span<const size_t> count);

}  // namespace ZorvoNetCDFDSG
