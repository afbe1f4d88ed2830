#include <zorvodsg/values/NcVariantArray.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NcTypeDispatch.h>
#include <zorvodsg/values/Size.h>
#include <zorvodsg/values/detail/Rescale.h>

namespace ZorvoDSG::System {

namespace {

using detail::Rescale;

constexpr std::align_val_t kAlignment{16};
// Larger requests are treated as exhausted memory: no dataset needs them, and some allocators
// (the sanitizers') abort on them instead of failing.
constexpr size_t kMaxBufferBytes = size_t{1} << 40;

[[noreturn]] void ThrowInternal(const wchar_t* detail) { throw Exception(eInternalError, detail, {}); }

bool bSupportedType(int type) {
    return VisitNcType(
        type, []<typename T>(NcTypeTag<T>) { return true; }, [] { return false; });
}

// Bytes of one slot of `type`; 0 for unsupported types.
size_t SlotBytes(int type, size_t stringWidth) {
    return VisitNcType(
        type,
        [stringWidth]<typename T>(NcTypeTag<T>) -> size_t {
            if constexpr (std::is_same_v<T, NcCharSlot>) {
                return stringWidth;
            } else {
                return sizeof(T);
            }
        },
        [] { return size_t{0}; });
}

// Byte count of `cSlots` slots, clamped so that an overflowing count fails as exhausted memory.
size_t BufferBytes(size_t cSlots, size_t slotBytes) {
    size_t bytes = 0;
    return TryMultiply(cSlots, slotBytes, bytes) ? bytes : SIZE_MAX;
}

// A count passed in by a caller; negative ones are misuse.
size_t CountOf(long count) {
    if (count < 0) {
        ThrowInternal(L"invalid use of NcVariantArray");
    }
    return static_cast<size_t>(count);
}

void* AllocateAligned(size_t bytes) {
    if (bytes > kMaxBufferBytes) {
        throw std::bad_alloc();
    }
    return ::operator new(std::max<size_t>(bytes, 1), kAlignment);
}

void FreeAligned(void* block) noexcept { ::operator delete(block, kAlignment); }

// An aligned block owned until installed into an array; null only for zero slots, so that a
// reservation always yields a buffer even when its slots have no bytes (NC_CHAR of width 0).
struct AlignedBlock {
    AlignedBlock(size_t cSlots, size_t slotBytes)
        : bytes(BufferBytes(cSlots, slotBytes)), block(cSlots > 0 ? AllocateAligned(bytes) : nullptr) {}
    AlignedBlock(const AlignedBlock&) = delete;
    AlignedBlock& operator=(const AlignedBlock&) = delete;
    ~AlignedBlock() {
        if (block) {
            FreeAligned(block);
        }
    }
    void* Release() { return std::exchange(block, nullptr); }

    size_t bytes;
    void* block;
};

template <typename T>
void RescaleInPlace(T* data, size_t count, T scale, T offset) {
    for (size_t i = 0; i < count; ++i) {
        data[i] = Rescale(data[i], scale, offset);
    }
}

template <typename T>
void RescaleInPlace(T* data, size_t count, T scale, T offset, T fill) {
    for (size_t i = 0; i < count; ++i) {
        if (!(data[i] == fill)) {
            data[i] = Rescale(data[i], scale, offset);
        }
    }
}

template <typename Src, typename Dst>
void Expand(const Src* source, Dst* target, size_t count, Dst scale, Dst offset) {
    for (size_t i = 0; i < count; ++i) {
        target[i] = static_cast<Dst>(source[i]) * scale + offset;
    }
}

template <typename Src, typename Dst>
void Expand(const Src* source, Dst* target, size_t count, Dst scale, Dst offset, Src fill, Dst fillOut) {
    for (size_t i = 0; i < count; ++i) {
        target[i] = source[i] == fill ? fillOut : static_cast<Dst>(source[i]) * scale + offset;
    }
}

// Expands the first `count` slots of `source` (element type `sourceType`) into a new buffer of
// `reserved` slots of Dst and returns it; replaces `fill` by its converted value.
template <typename Dst>
void* ExpandBuffer(int sourceType, const void* source, size_t count, size_t reserved, NcScalar& fill,
                   double scaleFactor, double addOffset) {
    const auto scale = static_cast<Dst>(scaleFactor);
    const auto offset = static_cast<Dst>(addOffset);
    return VisitNcType(
        sourceType,
        [&]<typename Src>(NcTypeTag<Src>) -> void* {
            if constexpr (!kIsNcNumeric<Src>) {
                throw "cannot unpack strings";
            } else {
                const bool bFill = fill.index() != eNcEmpty;
                const Src fillIn = bFill ? std::get<Src>(fill) : Src{};
                AlignedBlock block(reserved, sizeof(Dst));
                auto* target = static_cast<Dst*>(block.block);
                const auto* typedSource = static_cast<const Src*>(source);
                if (bFill) {
                    const auto fillOut = static_cast<Dst>(fillIn);
                    Expand(typedSource, target, count, scale, offset, fillIn, fillOut);
                    fill = fillOut;
                } else {
                    Expand(typedSource, target, count, scale, offset);
                }
                if (reserved > count) {
                    std::fill(target + count, target + reserved, Dst{});
                }
                return block.Release();
            }
        },
        []() -> void* { ThrowInternal(L"unsupported type for unpacking and expanding"); });
}

// Text into a value, reusing the string it already holds.
void AssignText(NcVariant& value, std::string_view text) {
    if (auto* held = std::get_if<std::string>(&value)) {
        held->assign(text);
    } else {
        value.emplace<std::string>(text);
    }
}

void AssignEmpty(NcVariant& value) {
    if (value.index() != eNcEmpty) {
        value.emplace<eNcEmpty>();
    }
}

// A text fill value stays text (NC_CHAR and NC_STRING compare against it); others become scalars.
NcScalar FillScalar(const NcVariant& fill) {
    if (const auto* text = std::get_if<std::string>(&fill)) {
        return *text;
    }
    return NcVariantArray::s_ToScalar(fill);
}

}  // namespace

NcVariantArray::NcVariantArray(int elementType, const NcVariant& fill, long cReserved, long cStringChars)
    : m_fillValue(FillScalar(fill)), m_elementType(elementType), m_stringWidth(CountOf(cStringChars)) {
    SetReserved(cReserved);
}

NcVariantArray::NcVariantArray(const NcVariantArray& other) {
    try {
        *this = other;
    } catch (...) {
        SetEmpty();  // no destructor runs for a constructor that throws
        throw;
    }
}

NcVariantArray::NcVariantArray(NcVariantArray&& other) noexcept
    : m_fillValue(std::move(other.m_fillValue)),
      m_elementType(other.m_elementType),
      m_size(other.m_size),
      m_reserved(other.m_reserved),
      m_stringWidth(other.m_stringWidth),
      m_storage(std::exchange(other.m_storage, nullptr)),
      m_cbStorage(std::exchange(other.m_cbStorage, 0)),
      m_bStringSlots(std::exchange(other.m_bStringSlots, false)) {
    other.SetEmpty();
}

NcVariantArray::~NcVariantArray() { SetEmpty(); }

NcVariantArray& NcVariantArray::operator=(const NcVariantArray& other) {
    if (this == &other) {
        return *this;
    }
    SetEmpty();
    m_fillValue = other.m_fillValue;
    m_elementType = other.m_elementType;
    m_stringWidth = other.m_stringWidth;
    SetReserved(static_cast<long>(other.m_reserved));  // reservations are made from a long
    m_size = other.m_size;
    VisitNcType(
        m_elementType,
        [&]<typename T>(NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, std::string>) {
                std::copy_n(other.Data<std::string>(), m_reserved, Data<std::string>());
            } else if (m_reserved > 0) {
                std::memcpy(m_storage, other.m_storage, BufferBytes(m_reserved, SlotBytes(m_elementType, m_stringWidth)));
            }
        },
        [] { ThrowInternal(L"netcdf array type not implemented as an element"); });
    return *this;
}

NcVariantArray& NcVariantArray::operator=(NcVariantArray&& other) {
    if (this == &other) {
        return *this;
    }
    // Copied first (it is the only part that can fail): the emptied source keeps its fill value, as
    // SetEmpty leaves it.
    NcScalar fill = other.m_fillValue;
    ReleaseStorage();
    m_fillValue = std::move(fill);
    m_elementType = other.m_elementType;
    m_size = other.m_size;
    m_reserved = other.m_reserved;
    m_stringWidth = other.m_stringWidth;
    m_storage = std::exchange(other.m_storage, nullptr);
    m_cbStorage = std::exchange(other.m_cbStorage, 0);
    m_bStringSlots = std::exchange(other.m_bStringSlots, false);
    other.SetEmpty();
    return *this;
}

NcScalar NcVariantArray::s_ToScalar(const NcVariant& value) {
    if (value.valueless_by_exception()) {
        throw std::runtime_error("s_ToScalar(NcVariant) failed");
    }
    return std::visit(
        []<typename T>(const T& alternative) -> NcScalar {
            if constexpr (std::is_same_v<T, NcVariantArray>) {
                throw std::runtime_error("s_ToScalar(NcVariant) failed");
            } else if constexpr (std::is_same_v<T, std::string>) {
                return s_ToDouble(NcVariant(alternative));
            } else {
                return NcScalar(std::in_place_type<T>, alternative);
            }
        },
        value);
}

void NcVariantArray::ReleaseStorage() noexcept {
    if (m_storage == nullptr) {
        return;
    }
    if (m_bStringSlots) {
        std::destroy_n(static_cast<std::string*>(m_storage), m_cbStorage / sizeof(std::string));
    }
    FreeAligned(m_storage);
    m_storage = nullptr;
    m_cbStorage = 0;
    m_bStringSlots = false;
}

void NcVariantArray::AllocateStorage(int type, size_t cSlots) {
    const size_t slotBytes = SlotBytes(type, m_stringWidth);
    AlignedBlock block(cSlots, slotBytes);
    const bool bStrings = type == NC_STRING;
    if (bStrings) {
        std::uninitialized_value_construct_n(static_cast<std::string*>(block.block), cSlots);
    } else if (block.bytes > 0) {
        std::memset(block.block, 0, block.bytes);
    }
    m_cbStorage = block.bytes;
    m_bStringSlots = bStrings && block.block != nullptr;
    m_storage = block.Release();
}

void NcVariantArray::SetReserved(long cReserved) {
    if (cReserved < 0 || static_cast<size_t>(cReserved) <= m_reserved) {
        return;
    }
    const auto count = static_cast<size_t>(cReserved);
    SetEmpty();
    if (!bSupportedType(m_elementType)) {
        m_reserved = count;
        ThrowInternal(L"netcdf array type not implemented");
    }
    AllocateStorage(m_elementType, count);
    m_reserved = count;
}

void NcVariantArray::SetSize(long cElements) {
    const size_t count = CountOf(cElements);
    if (count > m_reserved) {
        ThrowInternal(L"invalid use of NcVariantArray");
    }
    m_size = count;
}

void NcVariantArray::ReInit(long cElements, int newElementType, const NcVariant& fill) {
    if (newElementType > m_elementType) {
        throw "cannot reinit with larger packed type";
    }
    const size_t count = CountOf(cElements);
    if (count > m_reserved) {
        ThrowInternal(L"invalid use of NcVariantArray");
    }
    if (!bSupportedType(newElementType)) {
        ThrowInternal(L"netcdf array type not implemented");
    }
    const size_t slotBytes = SlotBytes(newElementType, m_stringWidth);
    NcScalar newFill = FillScalar(fill);
    const bool bStrings = newElementType == NC_STRING;
    if (bStrings != m_bStringSlots || m_cbStorage < BufferBytes(m_reserved, slotBytes)) {
        ReleaseStorage();
        try {
            AllocateStorage(newElementType, m_reserved);
        } catch (...) {
            SetEmpty();  // no buffer behind the reservation: nothing may be read
            throw;
        }
    }
    m_size = count;
    m_elementType = newElementType;
    m_fillValue = std::move(newFill);
}

void NcVariantArray::Unpack(int unpackedType, const NcVariant& scaleFactor, const NcVariant& addOffset) {
    if (unpackedType == m_elementType) {
        VisitNcType(
            m_elementType,
            [&]<typename T>(NcTypeTag<T>) {
                if constexpr (!kIsNcNumeric<T>) {
                    throw "cannot unpack strings";
                } else {
                    const T scale = std::get<T>(scaleFactor);
                    const T offset = std::get<T>(addOffset);
                    if (m_fillValue.index() == eNcEmpty) {
                        RescaleInPlace(Data<T>(), m_size, scale, offset);
                    } else {
                        RescaleInPlace(Data<T>(), m_size, scale, offset, std::get<T>(m_fillValue));
                    }
                }
            },
            [] { ThrowInternal(L"unsupported type for unpacking"); });
        return;
    }
    if (unpackedType != NC_FLOAT && unpackedType != NC_DOUBLE) {
        throw "unsupported unpacked element type";
    }
    // Scale and offset are read before the element type is looked at: a bad scale on a string array
    // fails as a bad number, not as "cannot unpack strings".
    const double scale = s_ToDouble(scaleFactor);
    const double offset = s_ToDouble(addOffset);
    NcScalar newFill = m_fillValue;
    void* expanded =
        unpackedType == NC_FLOAT
            ? ExpandBuffer<float>(m_elementType, m_storage, m_size, m_reserved, newFill, scale, offset)
            : ExpandBuffer<double>(m_elementType, m_storage, m_size, m_reserved, newFill, scale, offset);
    ReleaseStorage();
    m_storage = expanded;
    m_cbStorage = BufferBytes(m_reserved, unpackedType == NC_FLOAT ? sizeof(float) : sizeof(double));
    m_elementType = unpackedType;
    m_fillValue = std::move(newFill);
}

NcVariant NcVariantArray::operator[](size_t slot) const {
    NcVariant value;
    Get(slot, value);
    return value;
}

void NcVariantArray::Get(size_t slot, NcVariant& value) const {
    if (slot >= m_size) {  // a negative index arrives as a huge one
        ThrowInternal(L"bad index in NcVariantArray");
    }
    VisitNcType(
        m_elementType,
        [&]<typename T>(NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, std::string>) {
                AssignText(value, Data<std::string>()[slot]);
            } else if constexpr (std::is_same_v<T, NcCharSlot>) {
                std::string_view slice(Data<char>() + slot * m_stringWidth, m_stringWidth);
                if (m_fillValue.index() == eNcEmpty) {
                    AssignText(value, slice);
                    return;
                }
                slice = slice.substr(0, std::min(slice.find('\0'), slice.size()));
                if (slice == std::get<std::string>(m_fillValue)) {
                    AssignEmpty(value);
                } else {
                    AssignText(value, slice);
                }
            } else {
                const T element = Data<T>()[slot];
                if (m_fillValue.index() != eNcEmpty && element == std::get<T>(m_fillValue)) {
                    AssignEmpty(value);
                } else if (auto* held = std::get_if<T>(&value)) {
                    *held = element;
                } else {
                    value.emplace<T>(element);
                }
            }
        },
        [] { ThrowInternal(L"netcdf array type not implemented as element type for NcVariantArray"); });
}

void NcVariantArray::SetEmpty() {
    ReleaseStorage();
    m_size = 0;
    m_reserved = 0;
}

}  // namespace ZorvoDSG::System
