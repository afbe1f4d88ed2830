#pragma once
// An open netCDF-C dataset, closed with nc_close exactly once (on Close, reassignment or destruction).

#include <filesystem>
#include <memory>
#include <utility>

namespace ZorvoNetCDFDSG {

class NcFileHandle {
public:
    NcFileHandle() = default;
    NcFileHandle(NcFileHandle&& other) noexcept
        : m_ncid(std::exchange(other.m_ncid, -1)), m_format(other.m_format), m_formatExtended(other.m_formatExtended) {}
    NcFileHandle& operator=(NcFileHandle&& other) noexcept;
    NcFileHandle(const NcFileHandle&) = delete;
    NcFileHandle& operator=(const NcFileHandle&) = delete;
    ~NcFileHandle() { Close(); }

    // Opens read-only. A path that looks like a URL is refused as a missing file (the library never
    // reaches out to the network); a format other than classic, 64-bit offset, CDF5, netCDF-4 or HDF4
    // fails with eUnsupportedNetCDFFormat; nc_open's failure is raised with its status.
    static NcFileHandle s_Open(const std::filesystem::path& path);

    // The process's one open handle of the file at `path` (the same file by any name), opened as
    // s_Open opens it on first use and closed when the last holder lets go. netCDF-C must never have
    // a netCDF-4 file open twice: HDF5 shares the underlying file between the two opens, and closing
    // one invalidates what the other has not read yet (errors, even crashes, on the survivor).
    // A path that is not a regular file (a FIFO, a device, a directory) is refused with NC_ENOTNC
    // "not a regular file" before netCDF-C sees it.
    static std::shared_ptr<const NcFileHandle> s_Share(const std::filesystem::path& path);

    bool IsOpen() const { return m_ncid != -1; }
    // The root id; -1 when closed.
    int Id() const { return m_ncid; }
    // netCDF-C's format code (NC_FORMAT_*).
    int Format() const { return m_format; }
    // netCDF-C's extended format code (NC_FORMATX_*): which library layer reads the file.
    int FormatExtended() const { return m_formatExtended; }
    void Close() noexcept;

private:
    explicit NcFileHandle(int ncid) : m_ncid(ncid) {}

    int m_ncid = -1;
    int m_format = 0;
    int m_formatExtended = 0;
};

}  // namespace ZorvoNetCDFDSG
