// conf.json as the workspace writes it and reads it back.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <stdexcept>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/json/ZorvoJSONValues.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/workspace/detail/WorkspaceConf.h>

namespace ZorvoNetCDFDSG {

// One object without white space: version, entries in the order they were added, the file records
// newest first with the names and types of their feature classes.
void NetCDFWorkspace::ToJSON(ZorvoDSG::ZorvoJSONWriter& writer) const {
    writer.StartObject();
    ZorvoDSG::WriteJSONPlainKey(writer, "version");
    ZorvoDSG::WriteJSONText(writer, m_version);
    ZorvoDSG::WriteJSONPlainKey(writer, "entries");
    writer.StartArray();
    for (const Entry& entry : m_entries) {
        writer.StartObject();
        ZorvoDSG::WriteJSONPlainKey(writer, "path");
        ZorvoDSG::WriteJSONText(writer, entry.path.string());
        ZorvoDSG::WriteJSONPlainKey(writer, "includeSubdirs");
        writer.Bool(entry.includeSubdirs);
        writer.EndObject();
    }
    writer.EndArray();
    ZorvoDSG::WriteJSONPlainKey(writer, "files");
    writer.StartArray();
    for (const FileRecord& record : m_files) {
        writer.StartObject();
        ZorvoDSG::WriteJSONPlainKey(writer, "file");
        ZorvoDSG::WriteJSONText(writer, record.file->NcPath().string());
        ZorvoDSG::WriteJSONPlainKey(writer, "timestamp");
        writer.Uint64(record.timestamp);
        ZorvoDSG::WriteJSONPlainKey(writer, "featureClasses");
        writer.StartArray();
        for (const auto& featureClass : record.featureClasses) {
            writer.StartObject();
            ZorvoDSG::WriteJSONPlainKey(writer, "name");
            ZorvoDSG::WriteJSONText(writer, featureClass->Name());
            ZorvoDSG::WriteJSONPlainKey(writer, "featureType");
            ZorvoDSG::WriteJSONText(writer, ZorvoDSG::FeatureTypeName(featureClass->FeatureType()));
            ZorvoDSG::WriteJSONPlainKey(writer, "extent");
            writer.StartObject();
            writer.EndObject();
            writer.EndObject();
        }
        writer.EndArray();
        writer.EndObject();
    }
    writer.EndArray();
    writer.EndObject();
}

// The version and the entries; the files are found again from the entries (ReopenEntries).
void NetCDFWorkspace::FromJSON(const std::string& text) {
    detail::ConfContent content;
    try {
        content = detail::ParseConf(text);
    } catch (const std::runtime_error& e) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace,
                                  L"conf.json: " + ZorvoDSG::Host::Utf8ToWide(e.what()), m_path);
    }
    m_version = content.version;
    for (detail::ConfEntry& entry : content.entries) {
        m_entries.push_back({std::move(entry.path), entry.includeSubdirs, NextEntryId()});
    }
}

}  // namespace ZorvoNetCDFDSG
