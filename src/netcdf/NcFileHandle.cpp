#include <zorvodsg/netcdf/NcFileHandle.h>

#include <netcdf.h>

#include <cerrno>

#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>

namespace ZorvoNetCDFDSG {

NcFileHandle& NcFileHandle::operator=(NcFileHandle&& other) noexcept {
    if (this != &other) {
        Close();
        m_ncid = std::exchange(other.m_ncid, -1);
        m_format = other.m_format;
        m_formatExtended = other.m_formatExtended;
    }
    return *this;
}

void NcFileHandle::Close() noexcept {
    if (m_ncid != -1) {
        const ZorvoDSG::System::NcLock lock;
        nc_close(m_ncid);
        m_ncid = -1;
    }
}

NcFileHandle NcFileHandle::s_Open(const std::filesystem::path& path) {
    const std::string native = path.string();
    // netCDF-C would hand a URL to its DAP client; for this library it names no file.
    if (native.find("://") != std::string::npos) {
        throw ZorvoDSG::Exception(ENOENT, std::wstring(), path);
    }
    const ZorvoDSG::System::NcLock lock;
    int ncid = -1;
    if (const int status = nc_open(native.c_str(), NC_NOWRITE, &ncid); status != NC_NOERR) {
        throw ZorvoDSG::Exception(status, std::wstring(), path);
    }
    NcFileHandle file(ncid);
    int& formatx = file.m_formatExtended;
    if (const int status = nc_inq_format_extended(ncid, &formatx, nullptr); status != NC_NOERR) {
        throw ZorvoDSG::Exception(status, L"format", path);
    }
    if (formatx != NC_FORMATX_NC3 && formatx != NC_FORMATX_NC_HDF5 && formatx != NC_FORMATX_NC_HDF4) {
        throw ZorvoDSG::Exception(ZorvoDSG::eUnsupportedNetCDFFormat, std::wstring(), path);
    }
    if (const int status = nc_inq_format(ncid, &file.m_format); status != NC_NOERR) {
        throw ZorvoDSG::Exception(status, L"format", path);
    }
    return file;
}

}  // namespace ZorvoNetCDFDSG
