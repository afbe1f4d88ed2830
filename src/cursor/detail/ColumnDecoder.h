#pragma once
// The decoding of one element of a column of values (fill comparison, unpacking, the assignment
// into the feature's value) chosen once for the column's element type, fill value and packing, so
// that the scan loop pays one indirect call per value instead of a type switch, a variant visit and
// a temporary. Gives exactly what NcVariantArray::Get followed by PackedValue gives.

#include <array>
#include <cstddef>
#include <string>

#include <zorvodsg/cursor/detail/PackedValue.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariantArray.h>

namespace ZorvoNetCDFDSG::detail {

class ColumnDecoder {
public:
    // For values of `values`' element type and fill value, unpacked as `packing` says.
    ColumnDecoder(const ZorvoDSG::System::NcVariantArray& values, const PackedValue& packing);

    // `value` becomes element `slot` of `values` (the array the decoder was made for), unpacked
    // through `variable` where the packing needs it.
    void Decode(const ZorvoDSG::System::NcVariantArray& values, size_t slot, const ZorvoDSG::Variable& variable,
                ZorvoDSG::System::NcVariant& value) const {
        m_decode(*this, values, slot, variable, value);
    }

private:
    using DecodeFn = void (*)(const ColumnDecoder&, const ZorvoDSG::System::NcVariantArray&, size_t,
                              const ZorvoDSG::Variable&, ZorvoDSG::System::NcVariant&);

    template <typename T>
    static void DecodeNumber(const ColumnDecoder& self, const ZorvoDSG::System::NcVariantArray& values, size_t slot,
                             const ZorvoDSG::Variable& variable, ZorvoDSG::System::NcVariant& value);
    template <typename T>
    static void DecodePackedNumber(const ColumnDecoder& self, const ZorvoDSG::System::NcVariantArray& values,
                                   size_t slot, const ZorvoDSG::Variable& variable,
                                   ZorvoDSG::System::NcVariant& value);
    static void DecodeText(const ColumnDecoder& self, const ZorvoDSG::System::NcVariantArray& values, size_t slot,
                           const ZorvoDSG::Variable& variable, ZorvoDSG::System::NcVariant& value);
    static void DecodeAny(const ColumnDecoder& self, const ZorvoDSG::System::NcVariantArray& values, size_t slot,
                          const ZorvoDSG::Variable& variable, ZorvoDSG::System::NcVariant& value);

    // Whether a number read is the fill value (the fill kept as bytes of the element type).
    template <typename T>
    bool bFill(T element) const;

    DecodeFn m_decode = &DecodeAny;
    PackedValue m_packing;
    bool m_bFill = false;                    // numbers: whether a fill value is compared
    std::array<std::byte, 8> m_fill{};       // numbers: the fill value in the element type
    std::string m_textFill;                  // fixed-width text: the fill text
    double m_scale = 1.0;
    double m_offset = 0.0;
};

}  // namespace ZorvoNetCDFDSG::detail
