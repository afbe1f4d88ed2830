#include "values/NcVariantArray.h"

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

#include "values/Exception.h"
#include "values/NcTypeDispatch.h"

namespace ZorvoDSG::System {

namespace {

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
size_t SlotBytes(int type, long stringWidth) {
    return VisitNcType(
        type,
        [stringWidth]<typename T>(NcTypeTag<T>) -> size_t {
            if constexpr (std::is_same_v<T, NcCharSlot>) {
                return stringWidth < 0 ? SIZE_MAX : static_cast<size_t>(stringWidth);
            } else {
                return sizeof(T);
            }
        },
        [] { return size_t{0}; });
}

// Byte count of `cSlots` slots, clamped so that an overflowing count fails as exhausted memory.
size_t BufferBytes(long cSlots, size_t slotBytes) {
    if (cSlots <= 0) {
        return 0;
    }
    const auto slots = static_cast<size_t>(cSlots);
    if (slotBytes != 0 && slots > SIZE_MAX / slotBytes) {
        return SIZE_MAX;
    }
    return slots * slotBytes;
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
    AlignedBlock(long cSlots, size_t slotBytes)
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

// unpacked = packed * scale + offset in the element type; integers wrap around modulo their width.
template <typename T>
T Rescale(T value, T scale, T offset) {
    if constexpr (std::is_floating_point_v<T>) {
        return value * scale + offset;
    } else {
        // Unsigned arithmetic at least as wide as int: defined wrap-around, no promotion to signed int.
        using W = std::conditional_t<(sizeof(T) < sizeof(unsigned)), unsigned, std::make_unsigned_t<T>>;
        return static_cast<T>(static_cast<W>(static_cast<W>(value) * static_cast<W>(scale)) +
                              static_cast<W>(offset));
    }
}

template <typename T>
void RescaleInPlace(T* data, long count, T scale, T offset) {
    for (long i = 0; i < count; ++i) {
        data[i] = Rescale(data[i], scale, offset);
    }
}

template <typename T>
void RescaleInPlace(T* data, long count, T scale, T offset, T fill) {
    for (long i = 0; i < count; ++i) {
        if (!(data[i] == fill)) {
            data[i] = Rescale(data[i], scale, offset);
        }
    }
}

template <typename Src, typename Dst>
void Expand(const Src* source, Dst* target, long count, Dst scale, Dst offset) {
    for (long i = 0; i < count; ++i) {
        target[i] = static_cast<Dst>(source[i]) * scale + offset;
    }
}

template <typename Src, typename Dst>
void Expand(const Src* source, Dst* target, long count, Dst scale, Dst offset, Src fill, Dst fillOut) {
    for (long i = 0; i < count; ++i) {
        target[i] = source[i] == fill ? fillOut : static_cast<Dst>(source[i]) * scale + offset;
    }
}

// Expands the first `count` slots of `source` (element type `sourceType`) into a new buffer of
// `reserved` slots of Dst and returns it; replaces `fill` by its converted value.
template <typename Dst>
void* ExpandBuffer(int sourceType, const void* source, long count, long reserved, NcScalar& fill,
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

NcVariantArray::NcVariantArray(int elementType_, const NcVariant& fill, long cReserved, long cStringChars)
    : fillValue(FillScalar(fill)), elementType(elementType_), stringWidth(cStringChars) {
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
    : fillValue(std::move(other.fillValue)),
      elementType(other.elementType),
      size(other.size),
      reserved(other.reserved),
      stringWidth(other.stringWidth),
      storage(std::exchange(other.storage, nullptr)),
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
    fillValue = other.fillValue;
    elementType = other.elementType;
    stringWidth = other.stringWidth;
    SetReserved(other.reserved);
    size = other.size;
    VisitNcType(
        elementType,
        [&]<typename T>(NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, std::string>) {
                std::copy_n(other.Data<std::string>(), reserved, Data<std::string>());
            } else if (reserved > 0) {
                std::memcpy(storage, other.storage, BufferBytes(reserved, SlotBytes(elementType, stringWidth)));
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
    NcScalar fill = other.fillValue;
    ReleaseStorage();
    fillValue = std::move(fill);
    elementType = other.elementType;
    size = other.size;
    reserved = other.reserved;
    stringWidth = other.stringWidth;
    storage = std::exchange(other.storage, nullptr);
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
    if (storage == nullptr) {
        return;
    }
    if (m_bStringSlots) {
        std::destroy_n(static_cast<std::string*>(storage), m_cbStorage / sizeof(std::string));
    }
    FreeAligned(storage);
    storage = nullptr;
    m_cbStorage = 0;
    m_bStringSlots = false;
}

void NcVariantArray::AllocateStorage(int type, long cSlots) {
    const size_t slotBytes = SlotBytes(type, stringWidth);
    AlignedBlock block(cSlots, slotBytes);
    const bool bStrings = type == NC_STRING;
    if (bStrings) {
        std::uninitialized_value_construct_n(static_cast<std::string*>(block.block), cSlots > 0 ? cSlots : 0);
    } else if (block.bytes > 0) {
        std::memset(block.block, 0, block.bytes);
    }
    m_cbStorage = block.bytes;
    m_bStringSlots = bStrings && block.block != nullptr;
    storage = block.Release();
}

void NcVariantArray::SetReserved(long cReserved) {
    if (cReserved <= reserved) {
        return;
    }
    SetEmpty();
    if (!bSupportedType(elementType)) {
        reserved = cReserved;
        ThrowInternal(L"netcdf array type not implemented");
    }
    AllocateStorage(elementType, cReserved);
    reserved = cReserved;
}

void NcVariantArray::SetSize(long cElements) {
    if (cElements < 0 || cElements > reserved) {
        ThrowInternal(L"invalid use of NcVariantArray");
    }
    size = cElements;
}

void NcVariantArray::ReInit(long cElements, int newElementType, const NcVariant& fill) {
    if (newElementType > elementType) {
        throw "cannot reinit with larger packed type";
    }
    if (cElements < 0 || cElements > reserved) {
        ThrowInternal(L"invalid use of NcVariantArray");
    }
    if (!bSupportedType(newElementType)) {
        ThrowInternal(L"netcdf array type not implemented");
    }
    const size_t slotBytes = SlotBytes(newElementType, stringWidth);
    NcScalar newFill = FillScalar(fill);
    const bool bStrings = newElementType == NC_STRING;
    if (bStrings != m_bStringSlots || m_cbStorage < BufferBytes(reserved, slotBytes)) {
        ReleaseStorage();
        try {
            AllocateStorage(newElementType, reserved);
        } catch (...) {
            SetEmpty();  // no buffer behind the reservation: nothing may be read
            throw;
        }
    }
    size = cElements;
    elementType = newElementType;
    fillValue = std::move(newFill);
}

void NcVariantArray::Unpack(int unpackedType, const NcVariant& scaleFactor, const NcVariant& addOffset) {
    if (unpackedType == elementType) {
        VisitNcType(
            elementType,
            [&]<typename T>(NcTypeTag<T>) {
                if constexpr (!kIsNcNumeric<T>) {
                    throw "cannot unpack strings";
                } else {
                    const T scale = std::get<T>(scaleFactor);
                    const T offset = std::get<T>(addOffset);
                    if (fillValue.index() == eNcEmpty) {
                        RescaleInPlace(Data<T>(), size, scale, offset);
                    } else {
                        RescaleInPlace(Data<T>(), size, scale, offset, std::get<T>(fillValue));
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
    NcScalar newFill = fillValue;
    void* expanded = unpackedType == NC_FLOAT
                         ? ExpandBuffer<float>(elementType, storage, size, reserved, newFill, scale, offset)
                         : ExpandBuffer<double>(elementType, storage, size, reserved, newFill, scale, offset);
    ReleaseStorage();
    storage = expanded;
    m_cbStorage = BufferBytes(reserved, unpackedType == NC_FLOAT ? sizeof(float) : sizeof(double));
    elementType = unpackedType;
    fillValue = std::move(newFill);
}

NcVariant NcVariantArray::operator[](long index) const {
    NcVariant value;
    Get(index, value);
    return value;
}

void NcVariantArray::Get(long index, NcVariant& value) const {
    if (index < 0 || index >= size) {
        ThrowInternal(L"bad index in NcVariantArray");
    }
    VisitNcType(
        elementType,
        [&]<typename T>(NcTypeTag<T>) {
            if constexpr (std::is_same_v<T, std::string>) {
                AssignText(value, Data<std::string>()[index]);
            } else if constexpr (std::is_same_v<T, NcCharSlot>) {
                const auto width = static_cast<size_t>(stringWidth);
                const char* chars = Data<char>() + static_cast<size_t>(index) * width;
                if (fillValue.index() == eNcEmpty) {
                    AssignText(value, std::string_view(chars, width));
                    return;
                }
                std::string_view slice(chars, width);
                slice = slice.substr(0, std::min(slice.find('\0'), slice.size()));
                if (slice == std::get<std::string>(fillValue)) {
                    AssignEmpty(value);
                } else {
                    AssignText(value, slice);
                }
            } else {
                const T element = Data<T>()[index];
                if (fillValue.index() != eNcEmpty && element == std::get<T>(fillValue)) {
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
    size = 0;
    reserved = 0;
}

}  // namespace ZorvoDSG::System
