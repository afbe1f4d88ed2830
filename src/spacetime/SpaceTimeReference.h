#pragma once
// How a feature class's coordinates sit in space and time: the horizontal CRS built from its
// grid-mapping variable's attributes, the vertical CRS implied by those attributes or by the Z
// variable's standard name, the unit and direction of Z, and the time reference of T.
//
// Immutable once built and self-contained (it copies what it needs, so it outlives the file). WKT()
// and VWKT() ask gk afresh at every call and keep nothing; bad attributes end in ZorvoDSG::Exception
// (eBadWKT, eWKTNotHorizontal, eWKTNotVertical, eBadCoordinateSystemName, eBadVerticalDatumName,
// eVerticalDatumModelMismatch), std::runtime_error for contradictory CF parameters, or
// std::bad_variant_access for a text attribute that holds no text.

#include <string>
#include <utility>

#include <zorvodsg/spacetime/CoordinateRoles.h>
#include <zorvodsg/spacetime/TimeReference.h>
#include <zorvodsg/values/AttributeMap.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG::Host {
struct gk_object;
struct gk_parameter;
}  // namespace ZorvoDSG::Host

namespace ZorvoDSG::System {
class ILog;
}

namespace ZorvoDSG::SpaceTime {

class SpaceTimeReference {
public:
    // gridMapping: the name of the grid-mapping variable (anything but text means none);
    // properties: that variable's attributes (empty when there is none); zUnits: the Z variable's
    // units (empty without Z). The log is accepted for symmetry with the other builders; nothing
    // here is worth a message.
    SpaceTimeReference(const System::NcVariant& gridMapping, const System::AttributeMap& properties,
                       const std::string& zUnits, bool bZUp, eVerticalDatumModel model,
                       const SpaceTime::TimeReference& timeReference, System::ILog& log);

    bool bHorizontalEmpty() const { return m_bHorizontalEmpty; }
    bool bNeedVCS() const { return m_bNeedVCS; }
    bool bTimeEmpty() const { return m_bTimeEmpty; }
    bool bZUp() const { return m_bZUp; }

    const SpaceTime::TimeReference& TimeReference() const { return m_timeReference; }
    eVerticalDatumModel VerticalDatumModel() const { return m_verticalDatumModel; }
    const std::string& GridMappingName() const { return m_gridMappingName; }
    const std::string& ZUnitsString() const { return m_zUnits; }
    const System::AttributeMap& Properties() const { return m_properties; }

    // Unit queries on the Z units (see spacetime/VerticalUnits.h for their failures).
    bool bPressureUnits() const;
    double _1Pascal() const;
    std::pair<std::string, double> ZUnits() const;

    // The horizontal CRS as gk WKT; WGS 84 when there is no grid mapping.
    std::string WKT() const;
    // The vertical CRS as gk WKT; empty when there is none.
    std::string VWKT() const;

    // A spatial reference has no members of its own in ZorvoJSON.
    template <class Writer>
    void ToJSON(Writer& w) const {
        w.StartObject();
        w.EndObject();
    }

private:
    std::string CFPropertiesToWKT() const;
    // Splits "<authority>:<code>"; a code that cannot be read is 0.
    std::pair<long, std::string> ID(std::string token) const;
    std::string WktToHcsWkt(const std::string& wkt) const;
    void CheckSetParameter(Host::gk_parameter* parameter, char const* const name) const;
    void CheckSetParallels(Host::gk_parameter* first, Host::gk_parameter* second, bool bBoth) const;

    std::string CFPropertiesToVWKT() const;
    std::string WktToVcsWkt(const std::string& wkt) const;

    bool bHas(const char* name) const { return m_properties.contains(name); }
    // The attribute's text; std::bad_variant_access when it holds anything else.
    const std::string& Text(const char* name) const;
    // The attribute as a number (System::s_ToDouble).
    double Number(const char* name) const;

    std::string m_gridMappingName;
    System::AttributeMap m_properties;
    std::string m_zUnits;
    SpaceTime::TimeReference m_timeReference;
    eVerticalDatumModel m_verticalDatumModel = eVerticalDatumUnspecified;
    bool m_bZUp = true;
    bool m_bHorizontalEmpty = true;
    bool m_bNeedVCS = false;
    bool m_bTimeEmpty = true;
};

}  // namespace ZorvoDSG::SpaceTime
