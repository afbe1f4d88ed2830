#pragma once
// The one exception type of the library: an error code (a netCDF-C status above -10000, or one of
// the system's own codes in ErrorCodes.h), a wide detail naming what failed, and the path concerned.

#include <filesystem>
#include <stdexcept>
#include <string>

#include <zorvodsg/host/BString.h>
#include <zorvodsg/values/ErrorCodes.h>

namespace ZorvoDSG {

class Exception : public std::runtime_error {
public:
    Exception(long code, const std::wstring& detail, const std::filesystem::path& path);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    long NcErr() const { return m_code; }
    const std::filesystem::path& NcPath() const { return m_path; }
    const std::wstring& wsDetail() const { return m_detail; }

    // "<text of the code>: <detail>: <path>"
    Host::BString ToString() const;

    // The message text of a code: netCDF-C's own for status codes, the string table's otherwise.
    static Host::BString s_NcErrToWString(long code);

private:
    std::filesystem::path m_path;
    std::wstring m_detail;
    long m_code;
};

}  // namespace ZorvoDSG
