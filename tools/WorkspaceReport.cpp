#include "WorkspaceReport.h"

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "JsonValue.h"
#include "Names.h"
#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>

namespace zdsg {

namespace {

using ZorvoNetCDFDSG::NetCDFWorkspace;
using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

std::string EntryKind(const NetCDFWorkspace::Entry& entry) {
    std::error_code ec;
    if (!std::filesystem::is_directory(entry.path, ec)) {
        return "file";
    }
    return entry.includeSubdirs ? "directory with subdirectories" : "directory";
}

// Names in every list, in the order of the first.
std::vector<std::string> InEvery(const std::vector<std::vector<std::string>>& lists) {
    if (lists.empty()) {
        return {};
    }
    std::vector<std::string> common;
    for (const std::string& name : lists.front()) {
        const bool bEverywhere = std::all_of(lists.begin() + 1, lists.end(), [&](const auto& list) {
            return std::find(list.begin(), list.end(), name) != list.end();
        });
        if (bEverywhere) {
            common.push_back(name);
        }
    }
    return common;
}

void WriteNames(Writer& w, const char* key, const std::vector<std::string>& names) {
    w.Key(key);
    w.StartArray();
    for (const std::string& name : names) {
        WriteJsonString(w, name);
    }
    w.EndArray();
}

void WriteNamesText(std::ostream& out, const std::string& label, const std::vector<std::string>& names) {
    out << label;
    if (names.empty()) {
        out << " (none)";
    }
    for (size_t i = 0; i < names.size(); ++i) {
        out << (i == 0 ? " " : ", ") << Printable(names[i]);
    }
    out << '\n';
}

}  // namespace

void WriteWorkspaceText(const NetCDFWorkspace& workspace, std::ostream& out) {
    out << "workspace " << Printable(workspace.Path().string()) << " (version " << Printable(workspace.Version())
        << ")\n";
    const auto entries = workspace.Entries();
    out << "entries: " << entries.size() << '\n';
    for (const auto& entry : entries) {
        out << "  " << Printable(entry.path.string()) << " (" << EntryKind(entry) << ")\n";
    }
    const auto records = workspace.FileRecords();
    out << "datasets: " << records.size() << '\n';
    for (const auto& record : records) {
        out << "  " << Printable(record.file->NcPath().string());
        if (!record.file->FullGroupName().empty()) {
            out << " group " << Printable(record.file->FullGroupName());
        }
        out << '\n';
        for (const auto& featureClass : record.featureClasses) {
            out << "    " << Printable(featureClass->Name()) << " ("
                << ZorvoDSG::FeatureTypeName(featureClass->FeatureType()) << ", " << featureClass->cFeatures()
                << " features)\n";
        }
    }
}

void WriteWorkspaceJson(const NetCDFWorkspace& workspace, std::ostream& out) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    w.StartObject();
    w.Key("workspace");
    WriteJsonString(w, workspace.Path().string());
    w.Key("version");
    WriteJsonString(w, workspace.Version());
    w.Key("entries");
    w.StartArray();
    for (const auto& entry : workspace.Entries()) {
        w.StartObject();
        w.Key("path");
        WriteJsonString(w, entry.path.string());
        w.Key("includeSubdirs");
        w.Bool(entry.includeSubdirs);
        w.EndObject();
    }
    w.EndArray();
    w.Key("datasets");
    w.StartArray();
    for (const auto& record : workspace.FileRecords()) {
        w.StartObject();
        w.Key("file");
        WriteJsonString(w, record.file->NcPath().string());
        w.Key("group");
        WriteJsonString(w, record.file->FullGroupName());
        w.Key("featureClasses");
        w.StartArray();
        for (const auto& featureClass : record.featureClasses) {
            w.StartObject();
            w.Key("name");
            WriteJsonString(w, featureClass->Name());
            w.Key("featureType");
            WriteJsonString(w, ZorvoDSG::FeatureTypeName(featureClass->FeatureType()));
            w.Key("features");
            w.Uint64(static_cast<uint64_t>(featureClass->cFeatures()));
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
    }
    w.EndArray();
    w.EndObject();
    out << buffer.GetString() << '\n';
}

std::set<std::string> RecordedFiles(const std::filesystem::path& conf) {
    std::ifstream in(conf, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(text.c_str(), text.size());  // no recursion on deep nesting
    std::set<std::string> files;
    if (document.HasParseError() || !document.IsObject() || !document.HasMember("files") ||
        !document["files"].IsArray()) {
        return files;
    }
    for (const auto& record : document["files"].GetArray()) {
        if (record.IsObject() && record.HasMember("file") && record["file"].IsString()) {
            files.insert(record["file"].GetString());
        }
    }
    return files;
}

QueryResult MakeQueryResult(NetCDFWorkspace& workspace,
                            const std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>>& classes) {
    constexpr uint32_t kByFullName = 4;
    QueryResult result;
    const auto instanceLists = workspace.CommonInstanceVars(classes, kByFullName);
    std::vector<std::shared_ptr<ZorvoDSG::BasicObservationFeatureClass>> observed;
    for (size_t i = 0; i < classes.size(); ++i) {
        QueriedClass queried{classes[i]->Name(), ZorvoDSG::FeatureTypeName(classes[i]->FeatureType()),
                             classes[i]->CFMetadata()->Uri(), instanceLists[i], {}};
        if (auto observations = std::dynamic_pointer_cast<ZorvoDSG::BasicObservationFeatureClass>(classes[i])) {
            queried.observationVariables = workspace.CommonObservationVars({observations}, kByFullName).front();
            observed.push_back(observations);
        }
        result.classes.push_back(std::move(queried));
    }
    result.commonInstanceVariables = InEvery(instanceLists);
    result.commonObservationVariables = InEvery(workspace.CommonObservationVars(observed, kByFullName));
    return result;
}

void WriteQueryText(const QueryResult& result, std::ostream& out) {
    for (const QueriedClass& queried : result.classes) {
        out << Printable(queried.name) << " (" << queried.featureType << ") in " << Printable(queried.file) << '\n';
        WriteNamesText(out, "  instance variables:", queried.instanceVariables);
        if (!queried.observationVariables.empty()) {
            WriteNamesText(out, "  observation variables:", queried.observationVariables);
        }
    }
    out << result.classes.size() << " feature classes\n";
    WriteNamesText(out, "instance variables in every class:", result.commonInstanceVariables);
    WriteNamesText(out, "observation variables in every class:", result.commonObservationVariables);
}

void WriteQueryJson(const QueryResult& result, std::ostream& out) {
    rapidjson::StringBuffer buffer;
    Writer w(buffer);
    w.StartObject();
    w.Key("featureClasses");
    w.StartArray();
    for (const QueriedClass& queried : result.classes) {
        w.StartObject();
        w.Key("name");
        WriteJsonString(w, queried.name);
        w.Key("featureType");
        WriteJsonString(w, queried.featureType);
        w.Key("file");
        WriteJsonString(w, queried.file);
        WriteNames(w, "instanceVariables", queried.instanceVariables);
        WriteNames(w, "observationVariables", queried.observationVariables);
        w.EndObject();
    }
    w.EndArray();
    WriteNames(w, "commonInstanceVariables", result.commonInstanceVariables);
    WriteNames(w, "commonObservationVariables", result.commonObservationVariables);
    w.EndObject();
    out << buffer.GetString() << '\n';
}

}  // namespace zdsg
