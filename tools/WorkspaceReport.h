#pragma once
// What `zdsg workspace list` and `query` print, as text or JSON.

#include <filesystem>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/workspace/NetCDFWorkspace.h>

namespace zdsg {

void WriteWorkspaceText(const ZorvoNetCDFDSG::NetCDFWorkspace& workspace, std::ostream& out);
void WriteWorkspaceJson(const ZorvoNetCDFDSG::NetCDFWorkspace& workspace, std::ostream& out);

// The "file" members of the "files" of a conf.json; empty when there is none or it cannot be read.
std::set<std::string> RecordedFiles(const std::filesystem::path& conf);

struct QueriedClass {
    std::string name;
    std::string featureType;
    std::string file;
    std::vector<std::string> instanceVariables;     // full names, in order
    std::vector<std::string> observationVariables;  // full names, in order; none for points
};

struct QueryResult {
    std::vector<QueriedClass> classes;
    std::vector<std::string> commonInstanceVariables;     // in every class
    std::vector<std::string> commonObservationVariables;  // in every class that has observations
};

QueryResult MakeQueryResult(ZorvoNetCDFDSG::NetCDFWorkspace& workspace,
                            const std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>>& classes);
void WriteQueryText(const QueryResult& result, std::ostream& out);
void WriteQueryJson(const QueryResult& result, std::ostream& out);

}  // namespace zdsg
