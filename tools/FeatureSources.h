#pragma once
// Opens one file as the library's feature classes, one per dataset (the file, or each of its groups),
// without a workspace. Never throws for what the file holds: what the library refuses is returned
// as a refusal naming the file and group.

#include <zorvodsg/netcdf/OpenOptions.h>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace ZorvoDSG::Host {
class IXMLDOMDocument;
}

namespace ZorvoDSG {
class BasicFeatureClass;
}

namespace zdsg {

struct OpenedClass {
    size_t dataset = 0;  // index among the file's datasets
    std::string where;   // as in Refusal
    std::shared_ptr<ZorvoDSG::BasicFeatureClass> featureClass;
};

struct Refusal {
    std::string where;  // the path, and the group for a file with groups
    std::string text;
};

struct OpenedFile {
    std::vector<OpenedClass> classes;
    std::vector<Refusal> refusals;
};

// A dataset without variables (the root of a file whose data sits in groups) holds no features and
// is passed over without a refusal. With `datasets` given, only those datasets are opened.
OpenedFile OpenFeatureClasses(const std::filesystem::path& path, ZorvoDSG::Host::IXMLDOMDocument* ncml,
                              const ZorvoNetCDFDSG::OpenOptions& options,
                              const std::vector<size_t>* datasets = nullptr);

// Where a dataset is: "PATH", or "PATH, group /ship/".
std::string DatasetPlace(const std::filesystem::path& path, const std::string& fullGroupName);

}  // namespace zdsg
