#include <zorvodsg/cursor/detail/TypedFill.h>

#include <netcdf.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>
#include <variant>

#include <zorvodsg/values/NcTypeDispatch.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcVariant;

namespace {

// The value as T: floats rounded to T, integers only when T holds them exactly; empty otherwise.
template <typename T, typename V>
NcVariant ToElementType(V value) {
    if constexpr (std::is_same_v<T, V>) {
        return NcVariant(std::in_place_type<T>, value);
    } else if constexpr (std::is_floating_point_v<T>) {
        // Rounded to the variable's precision, as the file's writer stored it.
        const auto wide = static_cast<double>(value);
        if (std::isfinite(wide) && std::fabs(wide) > static_cast<double>(std::numeric_limits<T>::max())) {
            return {};
        }
        return NcVariant(std::in_place_type<T>, static_cast<T>(value));
    } else if constexpr (std::is_floating_point_v<V>) {
        if (!(value >= static_cast<V>(std::numeric_limits<T>::min()) &&
              value <= static_cast<V>(std::numeric_limits<T>::max())) ||
            std::trunc(value) != value) {
            return {};
        }
        const auto converted = static_cast<T>(value);
        return static_cast<V>(converted) == value ? NcVariant(std::in_place_type<T>, converted) : NcVariant{};
    } else {
        return std::in_range<T>(value) ? NcVariant(std::in_place_type<T>, static_cast<T>(value)) : NcVariant{};
    }
}

template <typename T>
NcVariant Convert(const NcVariant& fill) {
    return std::visit(
        []<typename V>(const V& value) -> NcVariant {
            if constexpr (std::is_arithmetic_v<V>) {
                return ToElementType<T>(value);
            } else if constexpr (std::is_same_v<V, std::string>) {
                try {
                    return ToElementType<T>(std::stod(value));
                } catch (const std::exception&) {
                    return {};
                }
            } else {
                return {};
            }
        },
        fill);
}

}  // namespace

NcVariant TypedFill(const ZorvoDSG::Variable& variable) {
    const NcVariant fill = variable.FillValue();
    if (fill.index() == ZorvoDSG::System::eNcEmpty) {
        return fill;
    }
    int type = 0;
    try {
        type = variable.Type();
    } catch (const std::runtime_error&) {
        return fill;
    }
    if (type == NC_CHAR || type == NC_STRING) {
        const auto* text = std::get_if<std::string>(&fill);
        return text != nullptr ? NcVariant(*text) : NcVariant(std::string());
    }
    NcVariant typed = fill;
    if (!ZorvoDSG::System::VisitNcNumericType(type, [&]<typename T>(T) { typed = Convert<T>(fill); })) {
        return fill;
    }
    return typed;
}

}  // namespace ZorvoNetCDFDSG::detail
