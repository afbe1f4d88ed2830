#pragma once
// gk: the host coordinate-system library, as a thin facade over PROJ.
//
// Objects
//   Every coordinate-system thing (CRS, datum, spheroid, prime meridian, unit, projection) is an
//   opaque gk_object*. Functions named *_new, gk_factory_*, gk_object_from_string_errext and
//   gk_object_clone return a new object owned by the caller, released with gk_object_del (or held
//   by GkObjectPtr, see GkObjectPtr.h). Accessors that return a part of another object
//   (gk_geogcs_datum, gk_geogcs_primem, gk_geogcs_unit, gk_datum_spheroid, gk_hvcoordsys_coordsys,
//   gk_hvcoordsys_vertcs) return a borrowed pointer that lives as long as its parent; clone it to
//   keep it. Every function accepts a null or wrongly typed object and then fails (null, false, NaN
//   or 0) instead of crashing. One object is used by one thread at a time; distinct objects may be
//   used by different threads.
//
// PROJ
//   Each thread reuses one PROJ context, created on first use. Its log output never reaches stderr:
//   it is collected and becomes the text of the failure it belongs to (gk_err_num_to_str for
//   parse errors, gk_last_error_text for any failure on the calling thread).
//
// Text
//   gk_object_to_string prints WKT2:2019 on one line. gk_object_from_string_errext reads WKT1 (OGC
//   and ESRI flavours) and WKT2.
//
// Lookups
//   gk_factory_coordsys and gk_factory_geogcs take an EPSG code, else an ESRI code.
//   gk_factory_object_from_string_by_type searches proj.db names and aliases (EPSG first, then ESRI,
//   PROJ's exact name comparison) for one of the type masks below; other masks find nothing.
//   Datum ensembles (e.g. "World Geodetic System 1984") are returned as the equivalent datum.
//
// Projections
//   gk_factory_projection(code) gives a projection; gk_projection_defaults resets its parameters
//   and fills an array of GK_PARAMETER_COUNT handles, indexed by the GK_PARM_* slots. Slots the
//   method has no use for are null; gk_parameter_value_set on a null handle does nothing and returns
//   false. Handles point into the projection and stay valid while it lives. Angles are degrees,
//   distances metres. Defaults are 0 except: scale factor 1; 43020's second standard parallel and
//   43037's rectified grid angle are unset (NaN); 43066's latitude of origin is 90.
//   43020 with an unset second parallel is a tangent cone at the first parallel: Lambert Conic
//   Conformal (1SP) when the latitude of origin equals that parallel, otherwise the 2SP method with
//   both parallels equal (same cone, origin elsewhere). 43037 with an unset rectified grid angle
//   uses the azimuth. 43066 requires a latitude of origin of +90 or -90. Non-finite parameter values
//   make gk_projcs_new fail.
//
// Spheroids
//   gk_spheroid_new(name, a, f): f == 0 or f infinite (1/0, CF's inverse_flattening 0) gives a sphere;
//   f NaN, negative or >= 1, and a non-finite or non-positive axis give null.

#include <string>

namespace ZorvoDSG::Host {

struct gk_object;
struct gk_parameter;

// Extended-error record filled by gk_object_from_string_errext.
struct gk_err_ext {
    int err_num = 0;      // 0: no error; otherwise a number for gk_err_num_to_str
    std::string message;  // the same text gk_err_num_to_str gives for err_num
};

// Type masks of gk_factory_object_from_string_by_type.
inline constexpr int GK_TYPE_COORDSYS = 3;    // geographic 2-D and projected CRSs
inline constexpr int GK_TYPE_VDATUM = 8;      // vertical datums
inline constexpr int GK_TYPE_VERTICAL = 64;   // vertical and compound CRSs
inline constexpr int GK_TYPE_DATUM = 96;      // geodetic datums
inline constexpr int GK_TYPE_PRIMEM = 1024;   // prime meridians

// Projection codes of gk_factory_projection.
inline constexpr int GK_PROJ_MERCATOR_SP = 43004;          // Mercator (variant B)
inline constexpr int GK_PROJ_TRANSVERSE_MERCATOR = 43006;
inline constexpr int GK_PROJ_ALBERS = 43007;
inline constexpr int GK_PROJ_SINUSOIDAL = 43008;
inline constexpr int GK_PROJ_LAMBERT_CONFORMAL_CONIC = 43020;
inline constexpr int GK_PROJ_STEREOGRAPHIC = 43026;         // Oblique Stereographic
inline constexpr int GK_PROJ_AZIMUTHAL_EQUIDISTANT = 43032;
inline constexpr int GK_PROJ_LAMBERT_AZIMUTHAL_EQUAL_AREA = 43033;
inline constexpr int GK_PROJ_LAMBERT_CYLINDRICAL_EQUAL_AREA = 43034;
inline constexpr int GK_PROJ_HOTINE_OBLIQUE_MERCATOR = 43037;  // variant B (centre)
inline constexpr int GK_PROJ_ORTHOGRAPHIC = 43058;
inline constexpr int GK_PROJ_POLAR_STEREOGRAPHIC_SCALE = 43066;  // variant A
inline constexpr int GK_PROJ_POLAR_STEREOGRAPHIC_SP = 43067;     // variant B
inline constexpr int GK_PROJ_MERCATOR_SCALE = 43069;             // Mercator (variant A)

// Parameter slots.
inline constexpr int GK_PARAMETER_COUNT = 16;
inline constexpr int GK_PARM_FALSE_EASTING = 0;
inline constexpr int GK_PARM_FALSE_NORTHING = 1;
inline constexpr int GK_PARM_CENTRAL_MERIDIAN = 2;
inline constexpr int GK_PARM_STANDARD_PARALLEL_1 = 3;
inline constexpr int GK_PARM_STANDARD_PARALLEL_2 = 4;
inline constexpr int GK_PARM_SCALE_FACTOR = 5;
inline constexpr int GK_PARM_LATITUDE_OF_ORIGIN = 6;
inline constexpr int GK_PARM_AZIMUTH = 7;
inline constexpr int GK_PARM_RECTIFIED_GRID_ANGLE = 8;
inline constexpr int GK_PARM_LONGITUDE_OF_CENTER = 10;
inline constexpr int GK_PARM_LATITUDE_OF_CENTER = 11;

// Results of gk_vertcs_model.
inline constexpr int GK_VERTCS_MODEL_NONE = 0;
inline constexpr int GK_VERTCS_MODEL_GRAVITY = 1;      // gravity-related height or depth
inline constexpr int GK_VERTCS_MODEL_ELLIPSOIDAL = 2;  // ellipsoidal height

// Factories and lookups (owned results; null when nothing fits).
gk_object* gk_factory_coordsys(long code);
gk_object* gk_factory_geogcs(long code);
gk_object* gk_factory_object_from_string_by_type(int typeMask, std::string const& name);
gk_object* gk_factory_projection(int code);

// Parts (borrowed results).
gk_object* gk_geogcs_datum(gk_object const* geogcs);
gk_object* gk_geogcs_primem(gk_object const* geogcs);
gk_object* gk_geogcs_unit(gk_object const* geogcs);  // the angular unit
gk_object* gk_datum_spheroid(gk_object const* datum);
gk_object* gk_hvcoordsys_coordsys(gk_object const* compound);  // horizontal part
gk_object* gk_hvcoordsys_vertcs(gk_object const* compound);    // vertical part

// Values (NaN when the object is not a spheroid).
double gk_spheroid_axis(gk_object const* spheroid);        // semi-major axis, metres
double gk_spheroid_flattening(gk_object const* spheroid);  // 0 for a sphere

// Constructors (owned results; null on bad arguments).
gk_object* gk_spheroid_new(std::string const& name, double semiMajorAxis, double flattening);
gk_object* gk_datum_new(std::string const& name, gk_object const* spheroid);
gk_object* gk_primem_new(std::string const& name, double longitude);
// A geographic 2-D CRS (latitude, longitude). Null prime meridian: the datum's; null unit: degree.
gk_object* gk_geogcs_new(std::string const& name, gk_object const* datum, gk_object const* primem,
                         gk_object const* angularUnit);
// params: the array filled by gk_projection_defaults (null: the projection's current values).
// linearUnit: null for metre.
gk_object* gk_projcs_new(std::string const& name, gk_object const* geogcs, gk_object const* projection,
                         gk_parameter* const* params, gk_object const* linearUnit);
// A gravity-related height CRS (up, metre unless linearUnit is given) on the vertical datum; always
// takes ownership of vdatum, also on failure. parameters is reserved and must be null.
gk_object* gk_vertcs_new(std::string const& name, gk_object* vdatum, gk_object const* parameters,
                         gk_object const* linearUnit);

// Projection parameters.
bool gk_projection_defaults(gk_object* projection, gk_parameter** params);
bool gk_parameter_value_set(gk_parameter* parameter, double value);

// Text.
bool gk_object_to_string(gk_object const* object, std::string& buffer);
gk_object* gk_object_from_string_errext(std::string const& wkt, gk_err_ext* err);
bool gk_err_num_to_str(int errNum, std::string& buffer);
bool gk_object_name(gk_object const* object, std::string& buffer);
// The text of the last failure on the calling thread; false when there was none.
bool gk_last_error_text(std::string& buffer);

// Predicates. A CRS that PROJ wraps as a BoundCRS (WKT1 TOWGS84, grid extensions) counts as the
// CRS it wraps; printing it keeps the wrapper.
bool gk_hvcoordsys_p(gk_object const* object);  // compound CRS
bool gk_coordsys_p(gk_object const* object);    // geographic 2-D or projected CRS
bool gk_vertcs_p(gk_object const* object);
bool gk_vdatum_p(gk_object const* object);
int gk_vertcs_model(gk_object const* vertcs);

// Lifetime.
gk_object* gk_object_clone(gk_object const* object);
void gk_object_del(gk_object* object);

}  // namespace ZorvoDSG::Host
