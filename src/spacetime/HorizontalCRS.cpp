// The horizontal CRS from CF grid-mapping parameters: CRS names, earth figure, datum, prime meridian
// and the projection of a supported grid_mapping_name.

#include <array>
#include <stdexcept>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/gk/GkObjectPtr.h>
#include <zorvodsg/spacetime/GridMappingTable.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/spacetime/detail/GkText.h>
#include <zorvodsg/values/Exception.h>

using namespace ZorvoDSG::Host;

namespace ZorvoDSG::SpaceTime {

namespace {

GkObjectPtr CoordSysByName(const std::string& name) {
    GkObjectPtr crs(gk_factory_object_from_string_by_type(GK_TYPE_COORDSYS, name));
    if (!crs) {
        throw Exception(eBadCoordinateSystemName, Utf8ToWide(name), {});
    }
    return crs;
}

// Datum names in gk's ESRI flavour carry a "D_" prefix that CF files usually leave out.
GkObjectPtr DatumByName(const std::string& name) {
    GkObjectPtr datum(gk_factory_object_from_string_by_type(GK_TYPE_DATUM, name));
    if (!datum && name.rfind("D_", 0) != 0) {
        datum.reset(gk_factory_object_from_string_by_type(GK_TYPE_DATUM, "D_" + name));
    }
    if (!datum) {
        throw std::runtime_error("unrecognized horizontal datum name");
    }
    return datum;
}

}  // namespace

std::string SpaceTimeReference::CFPropertiesToWKT() const {
    const bool bProjectedName = bHas("projected_crs_name");
    const bool bGeographicName = bHas("geographic_crs_name");
    const bool bDatumName = bHas("horizontal_datum_name");
    const bool bPrimeMeridianName = bHas("prime_meridian_name");
    const bool bPrimeMeridianLongitude = bHas("longitude_of_prime_meridian");
    const bool bEarthRadius = bHas("earth_radius");
    const bool bSemiMajorAxis = bHas("semi_major_axis");
    const bool bInverseFlattening = bHas("inverse_flattening");
    const bool bFalseEasting = bHas("false_easting");
    const bool bFalseNorthing = bHas("false_northing");
    const GridMappingProjection* projection =
        bHas("grid_mapping_name") ? FindGridMapping(Text("grid_mapping_name")) : nullptr;
    const std::string& G = m_gridMappingName;

    if (bProjectedName) {
        return detail::GkWkt(CoordSysByName(Text("projected_crs_name")).get());
    }

    GkObjectPtr geogcs;
    if (bGeographicName) {
        geogcs = CoordSysByName(Text("geographic_crs_name"));
        if (projection == nullptr && !bPrimeMeridianName && !bPrimeMeridianLongitude) {
            return detail::GkWkt(geogcs.get());
        }
    } else {
        geogcs = detail::GkRequire(gk_factory_geogcs(4326), "cannot create the WGS 84 geographic CRS");
    }

    const gk_object* baseDatum = gk_geogcs_datum(geogcs.get());
    if (baseDatum == nullptr) {
        // The name found a projected CRS where only a geographic one can serve as base.
        throw Exception(eBadCoordinateSystemName, Utf8ToWide(Text("geographic_crs_name")), {});
    }
    GkObjectPtr datum = GkCloneOf(baseDatum);
    GkObjectPtr primeMeridian = GkCloneOf(gk_geogcs_primem(geogcs.get()));
    const GkObjectPtr unit = GkCloneOf(gk_geogcs_unit(geogcs.get()));
    const GkObjectPtr spheroid = GkCloneOf(gk_datum_spheroid(datum.get()));

    if (bPrimeMeridianName && bPrimeMeridianLongitude) {
        throw std::runtime_error("cannot specify both a named prime meridian and its value");
    }
    if (bEarthRadius && bDatumName) {
        throw std::runtime_error("conflicting earth figure definitions");
    }
    if (bEarthRadius && (bSemiMajorAxis || bInverseFlattening || bGeographicName)) {
        throw std::runtime_error("cannot specify spherical and ellipsoid earth figure");
    }

    if (bPrimeMeridianName) {
        primeMeridian.reset(gk_factory_object_from_string_by_type(GK_TYPE_PRIMEM, Text("prime_meridian_name")));
        if (!primeMeridian) {
            throw std::runtime_error("unrecognized named prime meridian");
        }
    } else if (bPrimeMeridianLongitude) {
        primeMeridian = detail::GkRequire(gk_primem_new(G + "_PM", Number("longitude_of_prime_meridian")),
                                          "invalid longitude_of_prime_meridian");
    }

    const double radius = bEarthRadius ? Number("earth_radius") : 0.0;
    const double semiMajorAxis = bSemiMajorAxis ? Number("semi_major_axis") : gk_spheroid_axis(spheroid.get());
    const double inverseFlattening =
        bInverseFlattening ? Number("inverse_flattening") : 1.0 / gk_spheroid_flattening(spheroid.get());
    // Read now so that a non-numeric value fails whatever the result turns out to be.
    if (bFalseEasting) {
        Number("false_easting");
    }
    if (bFalseNorthing) {
        Number("false_northing");
    }

    const auto rebuild = [&](GkObjectPtr newDatum, const std::string& name) {
        geogcs = detail::GkRequire(gk_geogcs_new(name, newDatum.get(), primeMeridian.get(), unit.get()),
                                   "cannot create geographic CRS");
    };
    const auto datumOn = [&](double axis, double flattening) {
        const GkObjectPtr newSpheroid =
            detail::GkRequire(gk_spheroid_new(G + "_S", axis, flattening), "invalid earth figure");
        return detail::GkRequire(gk_datum_new(G + "_D", newSpheroid.get()), "cannot create datum");
    };
    if (bSemiMajorAxis || bInverseFlattening) {
        // CF writes a sphere as inverse_flattening 0: that is flattening 0, not 1/0.
        rebuild(datumOn(semiMajorAxis, inverseFlattening == 0.0 ? 0.0 : 1.0 / inverseFlattening), G + "_GCS");
    } else if (bEarthRadius) {
        rebuild(datumOn(radius, 0.0), G + "_Sphere");
    } else if (bDatumName) {
        rebuild(DatumByName(Text("horizontal_datum_name")), G + "_GCS");
    } else if (bPrimeMeridianName || bPrimeMeridianLongitude) {
        // A declared prime meridian is honoured even when the earth figure is the base one.
        rebuild(std::move(datum), G + "_GCS");
    }

    if (projection == nullptr) {
        return detail::GkWkt(geogcs.get());
    }
    if (projection->projectionCode == 0) {
        throw std::runtime_error("unimplemented crs");
    }

    const long code = bHas("standard_parallel") ? projection->projectionCodeWithParallel : projection->projectionCode;
    const GkObjectPtr method =
        detail::GkRequire(gk_factory_projection(static_cast<int>(code)), "cannot create projection");
    std::array<gk_parameter*, GK_PARAMETER_COUNT> parameters{};
    if (!gk_projection_defaults(method.get(), parameters.data())) {
        throw std::runtime_error("cannot get projection parameters");
    }
    for (const GridMappingParameter& p : projection->parameters) {
        if (p.attribute == nullptr) {
            break;
        }
        if (p.secondSlot >= 0) {
            CheckSetParallels(parameters[p.slot], parameters[p.secondSlot], p.bBoth);
        } else {
            CheckSetParameter(parameters[p.slot], p.attribute);
        }
    }
    CheckSetParameter(parameters[GK_PARM_FALSE_EASTING], "false_easting");
    CheckSetParameter(parameters[GK_PARM_FALSE_NORTHING], "false_northing");
    const GkObjectPtr projcs =
        detail::GkRequire(gk_projcs_new(G + "_PCS", geogcs.get(), method.get(), parameters.data(), nullptr),
                          "invalid projection parameters");
    return detail::GkWkt(projcs.get());
}

void SpaceTimeReference::CheckSetParameter(gk_parameter* parameter, char const* const name) const {
    if (bHas(name)) {
        gk_parameter_value_set(parameter, Number(name));
    }
}

void SpaceTimeReference::CheckSetParallels(gk_parameter* first, gk_parameter* second, bool bBoth) const {
    if (!bHas("standard_parallel")) {
        return;
    }
    const System::NcVariant& value = m_properties.at("standard_parallel");
    if (const auto* values = std::get_if<System::NcVariantArray>(&value)) {
        gk_parameter_value_set(first, std::get<double>((*values)[0]));
        gk_parameter_value_set(second, std::get<double>((*values)[1]));
        return;
    }
    const double parallel = System::s_ToDouble(value);
    gk_parameter_value_set(first, parallel);
    if (bBoth) {
        gk_parameter_value_set(second, parallel);
    }
}

}  // namespace ZorvoDSG::SpaceTime
