#include <zorvodsg/cursor/detail/ColumnDecoder.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <variant>

#include <zorvodsg/values/NcTypeDispatch.h>

namespace ZorvoNetCDFDSG::detail {

using ZorvoDSG::System::NcVariant;
using ZorvoDSG::System::NcVariantArray;

namespace {

void AssignEmpty(NcVariant& value) {
    if (value.index() != ZorvoDSG::System::eNcEmpty) {
        value.emplace<ZorvoDSG::System::eNcEmpty>();
    }
}

template <typename T>
void AssignInPlace(NcVariant& value, T element) {
    if (auto* held = std::get_if<T>(&value)) {
        *held = element;
    } else {
        value.emplace<T>(element);
    }
}

void AssignText(NcVariant& value, std::string_view text) {
    if (auto* held = std::get_if<std::string>(&value)) {
        // Resizing within the capacity and copying is inline; assign() is a library call.
        held->resize(text.size());
        std::memcpy(held->data(), text.data(), text.size());
    } else {
        value.emplace<std::string>(text);
    }
}

bool HasZeroByte(uint64_t word) {
    return ((word - 0x0101010101010101ULL) & ~word & 0x8080808080808080ULL) != 0;
}

}  // namespace

ColumnDecoder::ColumnDecoder(const NcVariantArray& values, const PackedValue& packing) : m_packing(packing) {
    const ZorvoDSG::System::NcScalar& fill = values.FillValue();
    ZorvoDSG::System::VisitNcType(
        values.ElementType(),
        [&]<typename T>(ZorvoDSG::System::NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, ZorvoDSG::System::NcCharSlot>) {
                // Without a text fill the whole slot is returned, as the array returns it.
                if (const auto* text = std::get_if<std::string>(&fill)) {
                    m_textFill = *text;
                    m_decode = &DecodeText;
                }
            } else if constexpr (ZorvoDSG::System::kIsNcNumeric<T>) {
                if (const auto* typed = std::get_if<T>(&fill)) {
                    std::memcpy(m_fill.data(), typed, sizeof(T));
                    m_bFill = true;
                } else if (fill.index() != ZorvoDSG::System::eNcEmpty) {
                    return;  // a fill of another type: left to the array's own comparison
                }
                if (packing.bToDouble()) {
                    m_scale = packing.Scale();
                    m_offset = packing.Offset();
                    m_decode = &DecodePackedNumber<T>;
                } else if (!packing.bUnpacks()) {
                    m_decode = &DecodeNumber<T>;
                }
            }
        },
        [] {});
}

template <typename T>
bool ColumnDecoder::bFill(T element) const {
    T fill;
    std::memcpy(&fill, m_fill.data(), sizeof(T));
    return m_bFill && element == fill;
}

template <typename T>
void ColumnDecoder::DecodeNumber(const ColumnDecoder& self, const NcVariantArray& values, size_t slot,
                                 const ZorvoDSG::Variable&, NcVariant& value) {
    const T element = values.Data<T>()[slot];
    if (self.bFill(element)) {
        AssignEmpty(value);
    } else {
        AssignInPlace<T>(value, element);
    }
}

template <typename T>
void ColumnDecoder::DecodePackedNumber(const ColumnDecoder& self, const NcVariantArray& values, size_t slot,
                                       const ZorvoDSG::Variable&, NcVariant& value) {
    const T element = values.Data<T>()[slot];
    if (self.bFill(element)) {
        AssignEmpty(value);
    } else {
        AssignInPlace<double>(value, static_cast<double>(element) * self.m_scale + self.m_offset);
    }
}

void ColumnDecoder::DecodeText(const ColumnDecoder& self, const NcVariantArray& values, size_t slot,
                               const ZorvoDSG::Variable&, NcVariant& value) {
    const size_t width = values.StringWidth();
    const char* begin = values.Data<char>() + slot * width;
    size_t length = 0;
    uint64_t word = 0;
    // Eight bytes at a time while none of them is NUL (the usual identifier fills its width).
    while (width - length >= sizeof word && (std::memcpy(&word, begin + length, sizeof word), !HasZeroByte(word))) {
        length += sizeof word;
    }
    while (length < width && begin[length] != '\0') {
        ++length;
    }
    const std::string_view text(begin, length);
    if (text == self.m_textFill) {
        AssignEmpty(value);
    } else {
        AssignText(value, text);
    }
}

void ColumnDecoder::DecodeAny(const ColumnDecoder& self, const NcVariantArray& values, size_t slot,
                              const ZorvoDSG::Variable& variable, NcVariant& value) {
    if (self.m_packing.bToDouble()) {
        NcVariant raw;
        values.Get(slot, raw);
        self.m_packing.UnpackToDouble(raw, value);
    } else {
        values.Get(slot, value);
        self.m_packing.Unpack(variable, value);
    }
}

}  // namespace ZorvoNetCDFDSG::detail
