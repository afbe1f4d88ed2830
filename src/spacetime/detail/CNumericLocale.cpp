#include <zorvodsg/spacetime/detail/CNumericLocale.h>

namespace ZorvoDSG::SpaceTime::detail {

CNumericLocale::CNumericLocale() {
    locale_t current = duplocale(uselocale(static_cast<locale_t>(nullptr)));
    if (current == static_cast<locale_t>(nullptr)) {
        return;
    }
    m_locale = newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, "C", current);  // takes `current` over on success
    if (m_locale == static_cast<locale_t>(nullptr)) {
        freelocale(current);
        return;
    }
    m_previous = uselocale(m_locale);
}

CNumericLocale::~CNumericLocale() {
    if (m_locale != static_cast<locale_t>(nullptr)) {
        uselocale(m_previous);
        freelocale(m_locale);
    }
}

}  // namespace ZorvoDSG::SpaceTime::detail
