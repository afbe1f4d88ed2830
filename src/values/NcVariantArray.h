#pragma once
// A run of values of one netCDF type with its fill value: the buffer that cursors read hyperslabs
// into, and that CF unpacking (scale_factor, add_offset) rescales in place.
//
// Storage per element type: NC_BYTE/NC_UBYTE 1 byte, NC_CHAR StringWidth() bytes (fixed width, not
// terminated), NC_SHORT 2, NC_INT/NC_UINT/NC_FLOAT 4, NC_DOUBLE/NC_INT64/NC_UINT64 8, NC_STRING one
// std::string per slot. Numeric and NC_CHAR buffers are 16-byte aligned raw blocks.
// Elements equal to the fill value read back as empty values.
//
// Failures: Exception eInternalError for misuse (bad index, negative counts, size beyond the
// reservation, unsupported element types), std::bad_alloc for exhausted memory (requests above
// 1 TiB count as exhausted), std::bad_variant_access for a fill, scale or offset of the wrong alternative, and a thrown
// `const char*` for the conversions the data cannot undergo ("cannot unpack strings", ...).

#include <cstddef>

#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG::System {

class NcVariantArray {
public:
    // Empty fill value, element type 0, nothing reserved, string width 1.
    NcVariantArray() = default;
    // Counts must not be negative (Exception eInternalError "invalid use of NcVariantArray").
    NcVariantArray(int elementType, const NcVariant& fill, long cReserved, long cStringChars);
    NcVariantArray(const NcVariantArray& other);
    // Moves take the buffer over and leave the source empty. Construction never throws, so
    // containers of NcVariant relocate by moving; assignment copies the fill value (the source keeps
    // it) and so may fail for lack of memory.
    NcVariantArray(NcVariantArray&& other) noexcept;
    NcVariantArray& operator=(const NcVariantArray& other);
    NcVariantArray& operator=(NcVariantArray&& other);
    ~NcVariantArray();

    // Numbers unchanged, text parsed as a double; arrays fail with std::runtime_error.
    static NcScalar s_ToScalar(const NcVariant& value);

    // Empty: no fill value, every element is data.
    const NcScalar& FillValue() const { return m_fillValue; }
    // netCDF type code of the elements; 0 in a default-constructed array.
    int ElementType() const { return m_elementType; }
    // Valid elements.
    std::size_t Size() const { return m_size; }
    // Allocated slots.
    std::size_t Reserved() const { return m_reserved; }
    // NC_CHAR: bytes per element.
    std::size_t StringWidth() const { return m_stringWidth; }

    // Grows only: a larger count discards the contents (size becomes 0) and allocates afresh.
    void SetReserved(long cReserved);
    void SetSize(long cElements);
    // Re-types the reserved buffer for a read of raw (packed) values; reallocates only when the
    // reserved bytes do not suffice or when switching between NC_STRING and the other types.
    // A text fill value stays text; other fill values go through s_ToScalar.
    void ReInit(long cElements, int newElementType, const NcVariant& fill);
    // unpacked = packed * scale + offset, in place or expanded to NC_FLOAT / NC_DOUBLE.
    void Unpack(int unpackedType, const NcVariant& scaleFactor, const NcVariant& addOffset);
    // Element `index`: empty when it equals the fill value (NC_CHAR compared up to its first zero
    // byte), else the value of the element type (NC_CHAR as its StringWidth() bytes).
    NcVariant operator[](std::size_t index) const;
    // The same element written into `value`, whose string storage is reused: what readers that
    // refill one value per element call, so that no temporary value is made per element.
    void Get(std::size_t index, NcVariant& value) const;
    void SetEmpty();
    bool bEmpty() const { return m_size == 0; }

    // Typed view of the buffer (the caller knows the element type); null when nothing is reserved.
    // Data<void>() is the raw buffer for netCDF-C's untyped reads.
    template <typename T>
    T* Data() {
        return static_cast<T*>(m_storage);
    }
    template <typename T>
    const T* Data() const {
        return static_cast<const T*>(m_storage);
    }

private:
    void ReleaseStorage() noexcept;
    // Allocates `cSlots` slots of `type` (zeroed, or empty strings) and installs them; the old
    // buffer must already be released.
    void AllocateStorage(int type, std::size_t cSlots);

    NcScalar m_fillValue;
    int m_elementType = 0;
    std::size_t m_size = 0;
    std::size_t m_reserved = 0;
    std::size_t m_stringWidth = 1;
    void* m_storage = nullptr;       // owned
    std::size_t m_cbStorage = 0;     // bytes of the buffer behind m_storage
    bool m_bStringSlots = false;     // the buffer holds constructed std::string objects
};

}  // namespace ZorvoDSG::System
