#include <zorvodsg/netcdf/NcFileHandle.h>

#include <netcdf.h>

#include <sys/stat.h>

#include <cerrno>
#include <map>
#include <utility>

#include <zorvodsg/netcdf/detail/ClassicHeader.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcLock.h>

namespace ZorvoNetCDFDSG {

namespace {

// Open handles by file identity (device, inode). Touched only with the netCDF lock held.
struct SharedFile {
    std::weak_ptr<const NcFileHandle> handle;
    NcFileHandle* raw = nullptr;  // alive until its deleter has run, which takes the lock first
};
using FileKey = std::pair<dev_t, ino_t>;

std::map<FileKey, SharedFile>& OpenFiles() {
    static auto* const files = new std::map<FileKey, SharedFile>;  // never destroyed, as the lock
    return *files;
}

}  // namespace

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

std::shared_ptr<const NcFileHandle> NcFileHandle::s_Share(const std::filesystem::path& path) {
    const ZorvoDSG::System::NcLock lock;
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::make_shared<const NcFileHandle>(s_Open(path));  // fails as s_Open fails
    }
    // A FIFO would block netCDF-C's first read for ever, and a device such as /dev/zero has no end.
    if (!S_ISREG(status.st_mode)) {
        throw ZorvoDSG::Exception(NC_ENOTNC, L"not a regular file", path);
    }
    const FileKey key{status.st_dev, status.st_ino};
    auto& files = OpenFiles();
    if (const auto found = files.find(key); found != files.end()) {
        if (auto handle = found->second.handle.lock()) {
            return handle;
        }
        // The last holder let go but its deleter waits for the lock we hold: close for it now, so that
        // the file is not open twice once we reopen it below.
        found->second.raw->Close();
        files.erase(found);
    }
    auto* raw = new NcFileHandle(s_Open(path));
    std::shared_ptr<const NcFileHandle> handle(raw, [key](const NcFileHandle* closing) {
        const ZorvoDSG::System::NcLock deleterLock;
        auto& open = OpenFiles();
        if (const auto found = open.find(key); found != open.end() && found->second.raw == closing) {
            open.erase(found);
        }
        delete closing;
    });
    files[key] = SharedFile{handle, raw};
    return handle;
}

NcFileHandle NcFileHandle::s_Open(const std::filesystem::path& path) {
    const std::string native = path.string();
    // netCDF-C would hand a URL to its DAP client; for this library it names no file.
    if (native.find("://") != std::string::npos) {
        throw ZorvoDSG::Exception(ENOENT, std::wstring(), path);
    }
    detail::CheckClassicHeader(path);
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
