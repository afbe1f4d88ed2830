#include "FeatureSources.h"

#include <algorithm>

#include "Names.h"
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

using ZorvoDSG::Host::IXMLDOMDocument;

namespace zdsg {

std::string DatasetPlace(const std::filesystem::path& path, const std::string& fullGroupName) {
    return fullGroupName.empty() ? path.string() : path.string() + ", group " + fullGroupName;
}

OpenedFile OpenFeatureClasses(const std::filesystem::path& path, IXMLDOMDocument* ncml,
                              const ZorvoNetCDFDSG::OpenOptions& options, const std::vector<size_t>* datasets) {
    OpenedFile opened;
    // What the library logs while opening (variables it leaves out, assumed grid mappings) is what
    // `zdsg inspect` is for; features are read without it.
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>> files;
    try {
        files = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 0, ncml, log, options);
    } catch (...) {
        opened.refusals.push_back({path.string(), CurrentExceptionText(path)});
        return opened;
    }
    for (size_t i = 0; i < files.size(); ++i) {
        if (datasets != nullptr && std::find(datasets->begin(), datasets->end(), i) == datasets->end()) {
            continue;
        }
        const auto& file = files[i];
        if (file->Variables().empty()) {
            continue;
        }
        std::string where = DatasetPlace(path, file->FullGroupName());
        try {
            auto featureClass = ZorvoDSG::BasicFeatureClass::s_Open(file, ZorvoDSG::eFeatureUnknown, nullptr);
            opened.classes.push_back({i, std::move(where), std::move(featureClass)});
        } catch (...) {
            opened.refusals.push_back({std::move(where), CurrentExceptionText(path)});
        }
    }
    return opened;
}

}  // namespace zdsg
