#include <zorvodsg/host/gk/detail/GkObject.h>

#include <cmath>
#include <initializer_list>
#include <limits>

namespace ZorvoDSG::Host::gk_detail {

namespace {

struct MethodSlots {
    int code;
    std::initializer_list<int> slots;
};

// Which slots each method reads; gk_projection_defaults leaves the others null.
MethodSlots const kMethods[] = {
    {GK_PROJ_ALBERS, {0, 1, 2, 3, 4, 6}},
    {GK_PROJ_AZIMUTHAL_EQUIDISTANT, {0, 1, 2, 6}},
    {GK_PROJ_LAMBERT_AZIMUTHAL_EQUAL_AREA, {0, 1, 2, 6}},
    {GK_PROJ_LAMBERT_CONFORMAL_CONIC, {0, 1, 2, 3, 4, 5, 6}},
    {GK_PROJ_LAMBERT_CYLINDRICAL_EQUAL_AREA, {0, 1, 2, 3}},
    {GK_PROJ_MERCATOR_SP, {0, 1, 2, 3}},
    {GK_PROJ_MERCATOR_SCALE, {0, 1, 2, 5}},
    {GK_PROJ_HOTINE_OBLIQUE_MERCATOR, {0, 1, 5, 7, 8, 10, 11}},
    {GK_PROJ_ORTHOGRAPHIC, {0, 1, 10, 11}},
    {GK_PROJ_POLAR_STEREOGRAPHIC_SP, {0, 1, 2, 3}},
    {GK_PROJ_POLAR_STEREOGRAPHIC_SCALE, {0, 1, 2, 5, 6}},
    {GK_PROJ_SINUSOIDAL, {0, 1, 2}},
    {GK_PROJ_STEREOGRAPHIC, {0, 1, 2, 5, 6}},
    {GK_PROJ_TRANSVERSE_MERCATOR, {0, 1, 2, 5, 6}},
};

}  // namespace

std::unique_ptr<gk_object> GkProj::Clone() const {
    PjPtr copy(proj_clone(Ctx(), m_pj.get()));
    if (!copy) {
        return nullptr;
    }
    return std::make_unique<GkProj>(std::move(copy));
}

std::unique_ptr<gk_object> GkUnit::Clone() const {
    return std::make_unique<GkUnit>(m_name, m_factor, m_angular);
}

GkProjection::GkProjection(int code) : m_code(code) {
    for (MethodSlots const& method : kMethods) {
        if (method.code == code) {
            for (int slot : method.slots) {
                m_usedSlots |= 1u << slot;
            }
        }
    }
    ResetDefaults();
}

std::unique_ptr<GkProjection> GkProjection::Create(int code) {
    for (MethodSlots const& method : kMethods) {
        if (method.code == code) {
            return std::make_unique<GkProjection>(code);
        }
    }
    return nullptr;
}

std::unique_ptr<gk_object> GkProjection::Clone() const {
    auto copy = std::make_unique<GkProjection>(m_code);
    copy->m_values = m_values;
    return copy;
}

void GkProjection::ResetDefaults() {
    for (gk_parameter& parameter : m_values) {
        parameter.value = 0.0;
    }
    m_values[GK_PARM_SCALE_FACTOR].value = 1.0;
    double const unset = std::numeric_limits<double>::quiet_NaN();
    if (m_code == GK_PROJ_LAMBERT_CONFORMAL_CONIC) {
        m_values[GK_PARM_STANDARD_PARALLEL_2].value = unset;
    } else if (m_code == GK_PROJ_HOTINE_OBLIQUE_MERCATOR) {
        m_values[GK_PARM_RECTIFIED_GRID_ANGLE].value = unset;
    } else if (m_code == GK_PROJ_POLAR_STEREOGRAPHIC_SCALE) {
        m_values[GK_PARM_LATITUDE_OF_ORIGIN].value = 90.0;
    }
}

PJ* AsPj(gk_object const* object) noexcept {
    auto const* proj = dynamic_cast<GkProj const*>(object);
    return proj != nullptr ? proj->pj() : nullptr;
}

gk_object* Wrap(PjPtr pj) {
    if (!pj) {
        return nullptr;
    }
    return new GkProj(std::move(pj));
}

}  // namespace ZorvoDSG::Host::gk_detail
