#include <zorvodsg/featureclass/ObservationVariable.h>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/values/LogCodes.h>

namespace ZorvoDSG {

ObservationVariable::ObservationVariable(const Variable& variable, System::ILog& log) : Variable(variable) {
    ConstructAncillaryVariables(log);
}

ObservationVariable::ObservationVariable(const Variable& variable, long idRowCountVar, long idSampleDim,
                                         System::ILog& log)
    : Variable(variable), m_idRowCountVar(idRowCountVar), m_idSampleDim(idSampleDim) {
    ConstructAncillaryVariables(log);
}

void ObservationVariable::ConstructAncillaryVariables(System::ILog& log) {
    if (!HasAttribute("ancillary_variables")) {
        return;
    }
    ICFMetadata* dataset = CFMetadata();
    for (const std::string& name : ArrayAttributeValue("ancillary_variables")) {
        const auto found = dataset->Name2Var().find(name);
        if (found == dataset->Name2Var().end()) {
            log.AddMessage(System::eLogAncillaryVariableNotFound, Host::Utf8ToWide(name));
            continue;
        }
        if (m_idSampleDim != -1) {
            const auto dims = dataset->Var2Dims().find(found->second);
            if (dims == dataset->Var2Dims().end() || dims->second.empty() || dims->second.front() != m_idSampleDim) {
                continue;
            }
        }
        m_ancillaryVariables.push_back(dataset->GetVariable(found->second));
    }
}

}  // namespace ZorvoDSG
