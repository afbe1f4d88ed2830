#pragma once
// Helpers shared by the gk facade's translation units.

#include <initializer_list>
#include <string>

#include <zorvodsg/host/gk/detail/GkObject.h>
#include <zorvodsg/host/gk/detail/ProjHandles.h>

namespace ZorvoDSG::Host::gk_detail {

inline constexpr char const* kDegree = "degree";
inline constexpr double kDegreeToRadian = 0.0174532925199433;
inline constexpr char const* kMetre = "metre";

// Starts a public call: PROJ log text left over from earlier calls is dropped.
PJ_CONTEXT* BeginCall();

// Records a failure as the thread's last error (with PROJ's log) and returns null.
std::nullptr_t Fail(std::string what);

bool IsType(PJ const* pj, std::initializer_list<PJ_TYPE> types) noexcept;
bool IsGeodeticFrame(PJ const* pj) noexcept;

// The type of a CRS seen through a BoundCRS wrapper (WKT1 TOWGS84 and grid extensions make them).
PJ_TYPE EffectiveType(PJ const* pj);
// The CRS under a BoundCRS wrapper; the object itself otherwise. holder keeps the unwrapped copy.
PJ const* Unbound(PJ const* pj, PjPtr& holder);

// A latitude/longitude coordinate system in the given angular unit.
PjPtr LatLonCs(PJ_CONTEXT* ctx, char const* unitName, double toRadian);

// A geodetic reference frame for a frame (cloned) or a datum ensemble (its datum); null otherwise.
PjPtr GeodeticFrameOf(PJ_CONTEXT* ctx, PJ const* datum);

struct EllipsoidParameters {
    std::string name;
    double semiMajor = 0.0;
    double inverseFlattening = 0.0;  // 0 for a sphere
};
bool ReadEllipsoid(PJ_CONTEXT* ctx, PJ const* ellipsoid, EllipsoidParameters& out);

// The conversion of a projection with the given parameter values (null: the projection's own);
// null with the failure recorded when a value is unusable.
PjPtr ProjectionConversion(PJ_CONTEXT* ctx, GkProjection const& block, gk_parameter* const* params,
                           char const* linearName, double linearFactor);

}  // namespace ZorvoDSG::Host::gk_detail
