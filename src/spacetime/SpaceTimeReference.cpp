#include <zorvodsg/spacetime/SpaceTimeReference.h>

#include <locale>
#include <sstream>
#include <stdexcept>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/gk/GkObjectPtr.h>
#include <zorvodsg/spacetime/VerticalUnits.h>
#include <zorvodsg/spacetime/detail/GkText.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG::Host;

namespace ZorvoDSG::SpaceTime {

SpaceTimeReference::SpaceTimeReference(const System::NcVariant& gridMapping, const System::AttributeMap& properties,
                                       const std::string& zUnits, bool bZUp, eVerticalDatumModel model,
                                       const SpaceTime::TimeReference& timeReference, System::ILog& /*log*/)
    : m_properties(properties),
      m_zUnits(zUnits),
      m_timeReference(timeReference),
      m_verticalDatumModel(model),
      m_bZUp(bZUp),
      m_bHorizontalEmpty(properties.empty()),
      m_bNeedVCS(!zUnits.empty()),
      m_bTimeEmpty(timeReference.timeUnit() == eTimeNone) {
    if (const auto* name = std::get_if<std::string>(&gridMapping)) {
        m_gridMappingName = *name;
    }
}

bool SpaceTimeReference::bPressureUnits() const { return SpaceTime::bPressureUnits(m_zUnits); }

double SpaceTimeReference::_1Pascal() const { return SpaceTime::_1Pascal(m_zUnits); }

std::pair<std::string, double> SpaceTimeReference::ZUnits() const { return SpaceTime::ZUnits(m_zUnits); }

const std::string& SpaceTimeReference::Text(const char* name) const {
    return std::get<std::string>(m_properties.at(name));
}

double SpaceTimeReference::Number(const char* name) const { return System::s_ToDouble(m_properties.at(name)); }

std::string SpaceTimeReference::WKT() const {
    if (bHas("epsg_code")) {
        const std::string& token = Text("epsg_code");
        const GkObjectPtr crs(gk_factory_coordsys(ID(token).first));
        if (!crs) {
            throw Exception(eBadCoordinateSystemName, Utf8ToWide(token), {});
        }
        return detail::GkWkt(crs.get());
    }
    for (const char* name : {"zorvo_gk_string", "crs_wkt", "spatial_ref"}) {
        if (bHas(name)) {
            return WktToHcsWkt(Text(name));
        }
    }
    return CFPropertiesToWKT();
}

std::pair<long, std::string> SpaceTimeReference::ID(std::string token) const {
    const auto colon = token.find(':');
    if (colon == std::string::npos) {
        throw std::runtime_error("invalid epsg token");
    }
    token[colon] = ' ';
    std::istringstream stream(token);
    stream.imbue(std::locale::classic());  // not the host's global C++ locale
    std::string authority;
    long code = 0;
    stream >> authority >> code;  // a failed read leaves 0
    return {code, authority};
}

std::string SpaceTimeReference::WktToHcsWkt(const std::string& wkt) const {
    const GkObjectPtr object = detail::GkParseWkt(wkt);
    if (gk_hvcoordsys_p(object.get())) {
        const gk_object* horizontal = gk_hvcoordsys_coordsys(object.get());
        // A compound CRS over a geocentric or 3-D base has no horizontal part to offer.
        if (gk_coordsys_p(horizontal)) {
            return detail::GkWkt(horizontal);
        }
    } else if (gk_coordsys_p(object.get())) {
        return detail::GkWkt(object.get());
    }
    throw Exception(eWKTNotHorizontal, Utf8ToWide(wkt), {});
}

}  // namespace ZorvoDSG::SpaceTime
