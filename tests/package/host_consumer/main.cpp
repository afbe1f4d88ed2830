// A host program with platform names of its own, as a Windows host has them from its system headers,
// that uses ZorvoDSG from an installed package through <zorvodsg/...> paths only.

#include <cstdint>
#include <string>

struct FILETIME {
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

class BString {
public:
    explicit BString(std::wstring text) : m_text(std::move(text)) {}
    const std::wstring& Text() const { return m_text; }

private:
    std::wstring m_text;
};

#include <zorvodsg/zorvodsg.h>
#include <zorvodsg/host/FileTime.h>
#include <zorvodsg/host/BString.h>

#include <iostream>

// The package puts only include/ on the path: its folder names are not top-level names here.
#if __has_include(<values/NcVariant.h>) || __has_include(<host/BString.h>) || __has_include(<netcdf/Variable.h>)
#error "the package claims its folder names at the top level of the include path"
#endif
// The umbrella header leaves netCDF-C's macros out.
#ifdef NC_NOERR
#error "<zorvodsg/zorvodsg.h> includes <netcdf.h>"
#endif

int main() {
    const FILETIME own{1, 2};
    const ZorvoDSG::Host::FILETIME library = ZorvoDSG::Host::UInt64ToFileTime((std::uint64_t{2} << 32) | 1);
    const BString ownText(L"host");
    const ZorvoDSG::Host::BString libraryText(L"library");
    const bool same = own.dwLowDateTime == library.dwLowDateTime && own.dwHighDateTime == library.dwHighDateTime;
    std::wcout << ownText.Text() << L' ' << static_cast<const wchar_t*>(libraryText) << L' '
               << (same ? L"agree" : L"differ") << L'\n';
    return same ? 0 : 1;
}
