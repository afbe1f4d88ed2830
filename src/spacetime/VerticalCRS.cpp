// The vertical CRS: fixed texts for tidal datums, else the vertical part of a WKT attribute, else
// the CRS of a named geoid or geopotential datum.

#include <string>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/gk/GkObjectPtr.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/spacetime/detail/GkText.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG::Host;

namespace ZorvoDSG::SpaceTime {

namespace {

// gk knows no tidal datums, so their CRSs are fixed texts. The missing space in the MLWS axis name
// is part of the text that hosts compare against.
const char* TidalVWKT(eVerticalDatumModel model) {
    switch (model) {
    case eVerticalDatumLowestAstronomicalTide:
        return "VERTCRS[\"LAT_Height\",VDATUM[\"Lowest_Astronomic_Tide\"],CS[vertical,1],"
               "AXIS[\"Gravity-related height(H)\",up,LENGTHUNIT[\"Meter\",1.0]]]";
    case eVerticalDatumMeanHigherHighWater:
        return "VERTCRS[\"MHHW_Height\",VDATUM[\"Mean_Higher_High_Water\"],CS[vertical,1],"
               "AXIS[\"Gravity-related height(H)\",up,LENGTHUNIT[\"Meter\",1.0]]]";
    case eVerticalDatumMeanLowerLowWater:
        return "VERTCRS[\"MLLW_Height\",VDATUM[\"Mean_Lower_Low_Water\"],CS[vertical,1],"
               "AXIS[\"Gravity-related height(H)\",up,LENGTHUNIT[\"Meter\",1.0]]]";
    case eVerticalDatumMeanLowWaterSprings:
        return "VERTCRS[\"MLWS_Height\",VDATUM[\"Mean_Low_Water_Spring_Tides\"],CS[vertical,1],"
               "AXIS[\"Gravity-relatedheight (H)\",up,LENGTHUNIT[\"Meter\",1.0]]]";
    case eVerticalDatumMeanSeaLevel:
        return "VERTCRS[\"MSL_Height\",VDATUM[\"Mean_Sea_Level\"],CS[vertical,1],"
               "AXIS[\"Gravity-related height(H)\",up,LENGTHUNIT[\"Meter\",1.0]]]";
    default:
        return nullptr;
    }
}

}  // namespace

std::string SpaceTimeReference::VWKT() const {
    if (const char* tidal = TidalVWKT(m_verticalDatumModel)) {
        return tidal;
    }
    // Every WKT attribute is read; the last one present decides.
    std::string result;
    for (const char* name : {"zorvo_gk_string", "crs_wkt", "spatial_ref"}) {
        if (bHas(name)) {
            result = WktToVcsWkt(Text(name));
        }
    }
    return result.empty() ? CFPropertiesToVWKT() : result;
}

std::string SpaceTimeReference::WktToVcsWkt(const std::string& wkt) const {
    const GkObjectPtr object = detail::GkParseWkt(wkt);
    if (gk_hvcoordsys_p(object.get())) {
        const gk_object* vertical = gk_hvcoordsys_vertcs(object.get());
        if (vertical == nullptr) {
            return {};
        }
        std::string verticalWkt = detail::GkWkt(vertical);
        // The Z variable's standard name implies a datum; the compound CRS must agree with it.
        const int model = gk_vertcs_model(vertical);
        const bool bAgrees = (model == GK_VERTCS_MODEL_GRAVITY && m_verticalDatumModel == eVerticalDatumGeoid) ||
                             (model == GK_VERTCS_MODEL_ELLIPSOIDAL && m_verticalDatumModel == eVerticalDatumEllipsoid);
        if (!bAgrees) {
            throw Exception(eVerticalDatumModelMismatch, Utf8ToWide(verticalWkt), {});
        }
        return verticalWkt;
    }
    if (gk_vertcs_p(object.get())) {
        return detail::GkWkt(object.get());
    }
    return {};
}

std::string SpaceTimeReference::CFPropertiesToVWKT() const {
    std::string name;
    if (bHas("geoid_name")) {
        name = Text("geoid_name");
    } else if (bHas("geopotential_datum_name")) {
        name = Text("geopotential_datum_name");
    }
    if (name.empty()) {
        return {};
    }
    GkObjectPtr object(gk_factory_object_from_string_by_type(GK_TYPE_VERTICAL, name));
    if (!object) {
        object.reset(gk_factory_object_from_string_by_type(GK_TYPE_VDATUM, name));
    }
    if (!object) {
        throw Exception(eBadVerticalDatumName, Utf8ToWide(name), {});
    }
    if (gk_hvcoordsys_p(object.get())) {
        return detail::GkWkt(object.get());
    }
    if (gk_vdatum_p(object.get())) {
        std::string datumName;
        if (!gk_object_name(object.get(), datumName)) {
            datumName = name;
        }
        // gk_vertcs_new takes the datum over, also when it fails.
        const GkObjectPtr vertcs = detail::GkRequire(
            gk_vertcs_new(datumName + "_VCS", object.release(), nullptr, nullptr), "cannot create vertical CRS");
        return detail::GkWkt(vertcs.get());
    }
    throw Exception(eWKTNotVertical, Utf8ToWide(name), {});
}

}  // namespace ZorvoDSG::SpaceTime
