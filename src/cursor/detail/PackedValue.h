#pragma once
// The unpacking of one variable's values (Variable::Unpack), prepared once per cursor. A numeric
// variable packed into another type than its own unpacks to a double computed from the scale and
// offset as doubles; those are looked up once, and the double is written into the value it replaces.

#include <type_traits>
#include <variant>

#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoNetCDFDSG::detail {

class PackedValue {
public:
    explicit PackedValue(const ZorvoDSG::Variable& variable);

    // True when values are to be read raw and unpacked with UnpackToDouble.
    bool bToDouble() const { return m_mode == eToDouble; }
    // False when values stay as they are read.
    bool bUnpacks() const { return m_mode != eNone; }
    // The scale and offset of UnpackToDouble.
    double Scale() const { return m_scale; }
    double Offset() const { return m_offset; }

    // `value` becomes the unpacked `raw` (a number of the variable's type), or empty when `raw` is.
    void UnpackToDouble(const ZorvoDSG::System::NcVariant& raw, ZorvoDSG::System::NcVariant& value) const {
        if (raw.index() == ZorvoDSG::System::eNcEmpty) {
            if (value.index() != ZorvoDSG::System::eNcEmpty) {
                value.emplace<ZorvoDSG::System::eNcEmpty>();
            }
            return;
        }
        const double unpacked = AsDouble(raw) * m_scale + m_offset;
        if (auto* held = std::get_if<double>(&value)) {
            *held = unpacked;
        } else {
            value.emplace<double>(unpacked);
        }
    }

    // Unpacks a non-empty value of `variable` (the one this was made for) in place through the
    // variable; values of unpacked variables stay as they are. Fails as Variable::Unpack fails.
    void Unpack(const ZorvoDSG::Variable& variable, ZorvoDSG::System::NcVariant& value) const {
        if (m_mode == eByVariable && value.index() != ZorvoDSG::System::eNcEmpty) {
            value = variable.Unpack(value);
        }
    }

private:
    enum eMode { eNone, eToDouble, eByVariable };

    // s_ToDouble of a number, inline: it runs once per packed value.
    static double AsDouble(const ZorvoDSG::System::NcVariant& number) {
        return std::visit(
            [&number]<typename T>(const T& value) {
                if constexpr (std::is_arithmetic_v<T>) {
                    return static_cast<double>(value);
                } else {
                    return ZorvoDSG::System::s_ToDouble(number);
                }
            },
            number);
    }

    eMode m_mode = eNone;
    double m_scale = 1.0;
    double m_offset = 0.0;
};

}  // namespace ZorvoNetCDFDSG::detail
