#pragma once
// Runs C library number parsing and formatting (sscanf, UDUNITS-2's database load, ut_parse and
// ut_format) in the "C" conventions whatever locale the host has chosen: CF texts always write a
// decimal point.

#include <locale.h>

namespace ZorvoDSG::SpaceTime::detail {

// Switches the calling thread (only) to the "C" LC_NUMERIC and LC_CTYPE categories (decimal point,
// white space and letters as in the C locale) while it lives, keeping the thread's other
// categories; other threads and the process locale are untouched.
class CNumericLocale {
public:
    CNumericLocale();
    ~CNumericLocale();
    CNumericLocale(const CNumericLocale&) = delete;
    CNumericLocale& operator=(const CNumericLocale&) = delete;

    // False when the C library could not make the locale (out of memory): nothing was switched.
    bool bActive() const { return m_locale != static_cast<locale_t>(nullptr); }

private:
    locale_t m_locale = static_cast<locale_t>(nullptr);
    locale_t m_previous = static_cast<locale_t>(nullptr);
};

}  // namespace ZorvoDSG::SpaceTime::detail
