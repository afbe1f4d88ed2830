#include <zorvodsg/workspace/detail/WorkspaceConf.h>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <vector>

#include <zorvodsg/values/Exception.h>
#include <zorvodsg/workspace/detail/AtomicFile.h>

namespace ZorvoNetCDFDSG::detail {

namespace {

[[noreturn]] void Malformed(const std::string& reason) { throw std::runtime_error(reason); }

const rapidjson::Value& Member(const rapidjson::Value& object, const char* name) {
    const auto found = object.FindMember(name);
    if (found == object.MemberEnd()) {
        Malformed(std::string("no \"") + name + "\" member");
    }
    return found->value;
}

ConfEntry ParseEntry(const rapidjson::Value& entry) {
    if (!entry.IsObject()) {
        Malformed("an entry is not an object");
    }
    const rapidjson::Value& path = Member(entry, "path");
    const rapidjson::Value& includeSubdirs = Member(entry, "includeSubdirs");
    if (!path.IsString() || path.GetStringLength() == 0) {
        Malformed("an entry's \"path\" is not a path");
    }
    if (!includeSubdirs.IsBool()) {
        Malformed("an entry's \"includeSubdirs\" is not true or false");
    }
    return {std::filesystem::path(std::string(path.GetString(), path.GetStringLength())), includeSubdirs.GetBool()};
}

// conf.json itself, or a temporary file that a failed write of it left.
bool bConfFileName(const std::string& name) {
    return name == kConfFileName || bTemporaryFileName(name, kConfFileName);
}

}  // namespace

std::string ReadConfText(const std::filesystem::path& path) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    if (ec) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace, L"conf.json cannot be read", path);
    }
    if (size > kMaxConfBytes) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace, L"conf.json is larger than 64 MiB", path);
    }
    std::ifstream in(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.good() && !in.eof()) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace, L"conf.json cannot be read", path);
    }
    return text;
}

ConfContent ParseConf(const std::string& text) {
    rapidjson::Document document;
    // Iterative: a conf.json of a million '[' would otherwise recurse through the stack.
    document.Parse<rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag>(text.c_str(), text.size());
    if (document.HasParseError()) {
        Malformed(std::string("not JSON: ") + rapidjson::GetParseError_En(document.GetParseError()) + " at offset " +
                  std::to_string(document.GetErrorOffset()));
    }
    if (!document.IsObject()) {
        Malformed("not a JSON object");
    }
    ConfContent content;
    const rapidjson::Value& version = Member(document, "version");
    if (!version.IsString()) {
        Malformed("\"version\" is not a text");
    }
    content.version.assign(version.GetString(), version.GetStringLength());
    const rapidjson::Value& entries = Member(document, "entries");
    if (!entries.IsArray()) {
        Malformed("\"entries\" is not an array");
    }
    for (const rapidjson::Value& entry : entries.GetArray()) {
        content.entries.push_back(ParseEntry(entry));
    }
    return content;
}

void RemoveConfFiles(const std::filesystem::path& directory) {
    std::error_code ec;
    std::vector<std::filesystem::path> ours;
    for (const auto& item : std::filesystem::directory_iterator(directory, ec)) {
        if (bConfFileName(item.path().filename().string()) && item.is_regular_file(ec)) {
            ours.push_back(item.path());
        }
    }
    for (const auto& path : ours) {
        std::filesystem::remove(path, ec);
    }
}

}  // namespace ZorvoNetCDFDSG::detail
