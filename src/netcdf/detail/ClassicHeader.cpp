#include <zorvodsg/netcdf/detail/ClassicHeader.h>

#include <netcdf.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>

namespace ZorvoNetCDFDSG::detail {

namespace {

constexpr uint32_t kDimensionTag = 0x0A;
constexpr uint32_t kVariableTag = 0x0B;
constexpr uint32_t kAttributeTag = 0x0C;

// Big-endian fields of the header, read in order; every count is checked against what is left.
class HeaderReader {
public:
    HeaderReader(const std::filesystem::path& path, uint64_t fileSize, int version)
        : m_in(path, std::ios::binary), m_path(path), m_fileSize(fileSize), m_version(version) {}

    uint64_t Int32() { return Read(4); }
    // Counts and lengths: 8 bytes in CDF-5, 4 otherwise.
    uint64_t Size() { return Read(m_version == 5 ? 8 : 4); }
    // Offsets: 4 bytes in CDF-1, 8 otherwise.
    uint64_t Offset() { return Read(m_version == 1 ? 4 : 8); }

    // `count` items of at least `minBytes` each must fit in what is left of the file.
    void CheckCount(uint64_t count, uint64_t minBytes, const char* what) {
        const uint64_t left = m_fileSize - std::min(m_position, m_fileSize);
        if (minBytes != 0 && count > left / minBytes) {
            Refuse(std::string("the header declares ") + std::to_string(count) + " " + what + " in " +
                   std::to_string(left) + " bytes");
        }
    }
    void Skip(uint64_t bytes) {
        CheckCount(bytes, 1, "bytes");
        m_position += bytes;
        m_in.seekg(static_cast<std::streamoff>(m_position));
    }
    // A name: its length, then its bytes padded to 4. netCDF-C copies names into buffers of
    // NC_MAX_NAME + 1 characters without checking what the header says their length is.
    void SkipName() {
        const uint64_t length = Size();
        if (length > NC_MAX_NAME) {
            Refuse("a name of " + std::to_string(length) + " characters (netCDF allows " +
                   std::to_string(NC_MAX_NAME) + ")");
        }
        Skip((length + 3) / 4 * 4);
    }

    [[noreturn]] void Refuse(const std::string& why) const {
        throw ZorvoDSG::Exception(NC_ENOTNC, ZorvoDSG::Host::Utf8ToWide(why), m_path);
    }

private:
    uint64_t Read(int bytes) {
        unsigned char buffer[8] = {};
        if (!m_in.read(reinterpret_cast<char*>(buffer), bytes)) {
            Refuse("the header ends before the file's description does");
        }
        m_position += static_cast<uint64_t>(bytes);
        uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            value = (value << 8) | buffer[i];
        }
        return value;
    }

    std::ifstream m_in;
    std::filesystem::path m_path;
    uint64_t m_fileSize;
    int m_version;
    uint64_t m_position = 0;
};

uint64_t TypeBytes(uint64_t type) {
    switch (type) {
        case NC_BYTE: case NC_CHAR: case NC_UBYTE: return 1;
        case NC_SHORT: case NC_USHORT: return 2;
        case NC_INT: case NC_FLOAT: case NC_UINT: return 4;
        case NC_DOUBLE: case NC_INT64: case NC_UINT64: return 8;
        default: return 0;
    }
}

// A list: its tag and count (ABSENT is two zeros), then that many items of at least `minBytes`.
uint64_t ListCount(HeaderReader& header, uint32_t tag, uint64_t minBytes, const char* what) {
    const uint64_t actualTag = header.Int32();
    const uint64_t count = header.Size();
    if (actualTag == 0 && count == 0) {
        return 0;
    }
    if (actualTag != tag) {
        header.Refuse(std::string("the header's list of ") + what + " has a wrong tag");
    }
    header.CheckCount(count, minBytes, what);
    return count;
}

void SkipAttributes(HeaderReader& header, uint64_t minSize) {
    const uint64_t count = ListCount(header, kAttributeTag, 3 * minSize, "attributes");
    for (uint64_t i = 0; i < count; ++i) {
        header.SkipName();
        const uint64_t bytes = TypeBytes(header.Int32());
        if (bytes == 0) {
            header.Refuse("an attribute of an unknown type");
        }
        const uint64_t cValues = header.Size();
        header.CheckCount(cValues, bytes, "attribute values");
        header.Skip((cValues * bytes + 3) / 4 * 4);
    }
}

}  // namespace

void CheckClassicHeader(const std::filesystem::path& path) {
    std::error_code ec;
    const uint64_t fileSize = std::filesystem::file_size(path, ec);
    if (ec || fileSize < 4) {
        return;  // netCDF-C says what is wrong with it
    }
    char magic[4] = {};
    std::ifstream(path, std::ios::binary).read(magic, 4);
    if (magic[0] != 'C' || magic[1] != 'D' || magic[2] != 'F' || (magic[3] != 1 && magic[3] != 2 && magic[3] != 5)) {
        return;
    }
    HeaderReader header(path, fileSize, magic[3]);
    header.Skip(4);
    header.Size();  // the record count
    const uint64_t minSize = magic[3] == 5 ? 8 : 4;
    const uint64_t cDimensions = ListCount(header, kDimensionTag, 2 * minSize, "dimensions");
    std::vector<bool> bRecord;  // per dimension: length 0, the record dimension
    bRecord.reserve(cDimensions);
    for (uint64_t i = 0; i < cDimensions; ++i) {
        header.SkipName();
        bRecord.push_back(header.Size() == 0);
    }
    SkipAttributes(header, minSize);
    const uint64_t cVariables = ListCount(header, kVariableTag, 6 * minSize, "variables");
    for (uint64_t i = 0; i < cVariables; ++i) {
        header.SkipName();
        const uint64_t cDims = header.Size();
        header.CheckCount(cDims, minSize, "dimensions of a variable");
        for (uint64_t d = 0; d < cDims; ++d) {
            // netCDF-C indexes its dimensions with these ids, and divides by the lengths of all but a
            // leading record dimension.
            const uint64_t id = header.Size();
            if (id >= cDimensions) {
                header.Refuse("a variable names dimension " + std::to_string(id) + " of " + std::to_string(cDimensions));
            }
            if (d > 0 && bRecord[id]) {
                header.Refuse("a variable has the record dimension in another place than the first");
            }
        }
        SkipAttributes(header, minSize);
        if (TypeBytes(header.Int32()) == 0) {
            header.Refuse("a variable of an unknown type");
        }
        header.Size();    // size
        header.Offset();  // begin
    }
}

}  // namespace ZorvoNetCDFDSG::detail
