// The smallest host: the features of one DSG file, with their position and first attribute value;
// given a directory, the feature classes of every file in it, catalogued in the process's workspace.
#include <zorvodsg/zorvodsg.h>

#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: consumer FILE.nc | DIRECTORY\n";
        return 2;
    }
    using namespace ZorvoDSG;
    s_InitUDUnits2("/usr/share/xml/udunits/udunits2.xml");  // classifies coordinates by their units
    if (std::filesystem::is_directory(argv[1])) {
        const auto workspace = ZorvoNetCDFDSG::NetCDFWorkspace::s_GetInMemoryWorkspace();
        workspace->AddDirectory(argv[1], eFeatureUnknown, nullptr, false, true);
        for (const auto& features : workspace->BasicFeatureClasses(eFeatureUnknown)) {
            std::cout << features->Name() << ": " << features->cFeatures() << " features\n";
        }
        return 0;
    }
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    for (const auto& dataset : ZorvoNetCDFDSG::NetCDFFile::s_Open(argv[1], 0, nullptr, log)) {
        const auto features = BasicFeatureClass::s_Open(dataset, eFeatureUnknown, nullptr);
        std::vector<std::string> fields;
        for (const Variable& field : features->InstanceVariables()) {
            fields.push_back(field.NameWithFullGroupName());
        }
        std::cout << features->Name() << ": " << features->cFeatures() << " features\n";
        const auto cursor = features->Search(SpatialFilter(nullptr, {}, Host::WKSEnvelopeZ(), fields, {}));
        while (const auto feature = cursor->Next()) {
            const Host::WKSEnvelopeZ at = feature->Extent();
            std::cout << feature->InstanceID() << ": " << at.XMin << ", " << at.YMin;
            if (feature->cInstanceValues() > 0) {
                std::cout << ", " << fields.front() << " = " << feature->InstanceValue(0);
            }
            std::cout << '\n';
        }
    }
}
