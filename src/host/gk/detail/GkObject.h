#pragma once
// What a gk_object is: a PROJ object, a unit, or a projection with its parameter block.

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/ProjContext.h>
#include <zorvodsg/host/gk/detail/ProjHandles.h>

namespace ZorvoDSG::Host {

struct gk_parameter {
    double value = 0.0;
};

struct gk_object {
    enum class Part : std::size_t { Datum, Primem, Unit, Spheroid, Horizontal, Vertical, Count };

    gk_object() = default;
    gk_object(gk_object const&) = delete;
    gk_object& operator=(gk_object const&) = delete;
    virtual ~gk_object() = default;

    virtual std::unique_ptr<gk_object> Clone() const = 0;

    // Borrowed parts handed out by the accessors, made on first request.
    mutable std::array<std::unique_ptr<gk_object>, static_cast<std::size_t>(Part::Count)> parts;
};

namespace gk_detail {

class GkProj final : public gk_object {
public:
    explicit GkProj(PjPtr pj) : m_context(ProjContext::Current()), m_pj(std::move(pj)) {}
    std::unique_ptr<gk_object> Clone() const override;
    PJ* pj() const noexcept { return m_pj.get(); }
    PJ_TYPE type() const noexcept { return proj_get_type(m_pj.get()); }

private:
    std::shared_ptr<ProjContext> m_context;  // declared first: the PJ goes before its context
    PjPtr m_pj;
};

class GkUnit final : public gk_object {
public:
    GkUnit(std::string name, double factor, bool angular)
        : m_name(std::move(name)), m_factor(factor), m_angular(angular) {}
    std::unique_ptr<gk_object> Clone() const override;
    std::string const& name() const noexcept { return m_name; }
    double factor() const noexcept { return m_factor; }  // to radians or metres
    bool angular() const noexcept { return m_angular; }

private:
    std::string m_name;
    double m_factor;
    bool m_angular;
};

class GkProjection final : public gk_object {
public:
    explicit GkProjection(int code);
    std::unique_ptr<gk_object> Clone() const override;

    int code() const noexcept { return m_code; }
    bool Uses(int slot) const noexcept { return (m_usedSlots >> slot) & 1u; }
    void ResetDefaults();
    gk_parameter* parameter(int slot) noexcept { return &m_values[static_cast<std::size_t>(slot)]; }
    double value(int slot) const noexcept { return m_values[static_cast<std::size_t>(slot)].value; }

    // Null for an unknown code.
    static std::unique_ptr<GkProjection> Create(int code);

private:
    int m_code;
    std::uint32_t m_usedSlots = 0;
    std::array<gk_parameter, GK_PARAMETER_COUNT> m_values{};
};

// The PROJ object behind a gk object; null for other kinds and for null.
PJ* AsPj(gk_object const* object) noexcept;
// Wraps a PROJ result; null stays null.
gk_object* Wrap(PjPtr pj);

}  // namespace gk_detail

}  // namespace ZorvoDSG::Host
