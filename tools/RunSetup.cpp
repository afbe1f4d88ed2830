#include "RunSetup.h"

#include <iostream>

#include "Names.h"
#include "UnitDatabase.h"
#include <zorvodsg/workspace/NetCDFWorkspace.h>

namespace zdsg {

bool LoadRunResources(const std::string& udunitsOption, const std::string& ncmlOption, RunResources& resources) {
    std::string unitError;
    resources.udunits2 = LoadUDUnits2(udunitsOption, unitError);
    if (!resources.udunits2) {
        std::cerr << "zdsg: " << Printable(unitError) << '\n';
        if (!udunitsOption.empty()) {
            return false;
        }
    }
    if (!ncmlOption.empty()) {
        try {
            resources.ncml = ZorvoNetCDFDSG::NetCDFWorkspace::s_OpenNcMLDocument(ncmlOption);
        } catch (...) {
            std::cerr << "zdsg: " << Printable(CurrentExceptionText()) << '\n';
            return false;
        }
        resources.ncmlPath = ncmlOption;
    }
    return true;
}

}  // namespace zdsg
