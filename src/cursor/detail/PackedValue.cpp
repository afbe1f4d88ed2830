#include <zorvodsg/cursor/detail/PackedValue.h>

#include <netcdf.h>

#include <exception>

namespace ZorvoNetCDFDSG::detail {

PackedValue::PackedValue(const ZorvoDSG::Variable& variable) {
    if (!variable.IsPacked()) {
        return;
    }
    m_mode = eByVariable;
    try {
        const int type = variable.Type();
        // Numbers only: text would be parsed, which may fail, and then the raw text must stay.
        const bool bNumeric = type != NC_CHAR && type != NC_STRING;
        if (bNumeric && variable.UnpackedType() != type) {
            const auto [scale, offset] = variable.UnpackInfo();
            m_scale = scale;
            m_offset = offset;
            m_mode = eToDouble;
        }
    } catch (const std::exception&) {
        // A type or a scale that cannot be read fails at the first value, through the variable.
    }
}

}  // namespace ZorvoNetCDFDSG::detail
