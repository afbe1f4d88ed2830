// Queries across the feature classes of all the files of a workspace.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <system_error>

#include <zorvodsg/featureclass/BasicObservationFeatureClass.h>
#include <zorvodsg/values/Ascii.h>
#include <zorvodsg/values/LogCodes.h>

namespace ZorvoNetCDFDSG {

namespace {

constexpr uint32_t kMaxCompareMethod = 63;

enum eCompareBit : uint32_t {
    eCompareName = 1,
    eCompareStandardName = 2,
    eCompareFullName = 4,
    eCompareType = 8,
    eCompareUnits = 16,
};

std::string SortKey(const ZorvoDSG::Variable& variable, uint32_t method) {
    std::string key;
    if (method & eCompareName) {
        key += variable.Name();
    }
    if (method & eCompareStandardName) {
        key += variable.StandardName();
    }
    if (method & eCompareFullName) {
        key += variable.NameWithFullGroupName();
    }
    if (method & eCompareType) {
        key += std::to_string(variable.Type());
    }
    if (method & eCompareUnits) {
        key += variable.TryUnitsString();
    }
    return key;
}

// Variables of the file with the larger id first; then by their keys. The keys are made once per
// variable, and variables with equal keys keep their order.
template <class V>
std::vector<std::string> SortedFullNames(const std::vector<V>& variables, uint32_t method) {
    struct Keyed {
        long fileId;
        std::string key;
        const V* variable;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(variables.size());
    for (const V& variable : variables) {
        keyed.push_back({variable.FileId(), SortKey(variable, method), &variable});
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        if (a.fileId != b.fileId) {
            return a.fileId > b.fileId;
        }
        return a.key < b.key;
    });
    std::vector<std::string> names;
    names.reserve(keyed.size());
    for (const Keyed& entry : keyed) {
        names.push_back(entry.variable->NameWithFullGroupName());
    }
    return names;
}

// Whether two paths name one file; a path that names nothing is an error, not a difference.
bool bSameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code ec;
    if (!std::filesystem::exists(a, ec) || !std::filesystem::exists(b, ec)) {
        throw std::filesystem::filesystem_error("equivalent", a, b,
                                                std::make_error_code(std::errc::no_such_file_or_directory));
    }
    return std::filesystem::equivalent(a, b);
}

// One list per class, of the variables `variablesOf` gives, sorted by the method; an empty class list
// gives an empty result without checking the method.
template <class Class, class VariablesOf>
std::vector<std::vector<std::string>> VariableLists(const std::vector<std::shared_ptr<Class>>& classes, uint32_t method,
                                                    VariablesOf&& variablesOf) {
    if (classes.empty()) {
        return {};
    }
    if (method > kMaxCompareMethod) {
        throw std::runtime_error("invalid variable compare method");
    }
    std::vector<std::vector<std::string>> lists;
    for (const auto& featureClass : classes) {
        lists.push_back(SortedFullNames(variablesOf(featureClass), method));
    }
    return lists;
}

}  // namespace

std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> NetCDFWorkspace::BasicFeatureClasses(
    ZorvoDSG::eFeatureType type) {
    std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> classes;
    for (const FileRecord& record : m_files) {
        for (const auto& featureClass : record.featureClasses) {
            if (type == ZorvoDSG::eFeatureUnknown || featureClass->FeatureType() == type) {
                classes.push_back(featureClass);
            }
        }
    }
    return classes;
}

std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> NetCDFWorkspace::BasicFeatureClasses(
    const std::vector<std::pair<std::string, std::filesystem::path>>& requests) {
    std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> classes;
    for (const FileRecord& record : m_files) {
        for (const auto& featureClass : record.featureClasses) {
            const std::string name = featureClass->Name();
            const std::filesystem::path file(featureClass->CFMetadata()->Uri());
            const bool bRequested = std::any_of(requests.begin(), requests.end(), [&](const auto& request) {
                return ZorvoDSG::System::AsciiIEquals(name, request.first) &&
                       (request.second.empty() || bSameFile(request.second, file));
            });
            if (bRequested) {
                classes.push_back(featureClass);
            }
        }
    }
    return classes;
}

std::vector<std::vector<std::string>> NetCDFWorkspace::CommonInstanceVars(
    const std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>>& classes, uint32_t method) {
    return VariableLists(classes, method, [](const auto& featureClass) -> const auto& {
        return featureClass->InstanceVariables();
    });
}

std::vector<std::vector<std::string>> NetCDFWorkspace::CommonObservationVars(
    const std::vector<std::shared_ptr<ZorvoDSG::BasicObservationFeatureClass>>& classes, uint32_t method) {
    return VariableLists(classes, method, [](const auto& featureClass) -> const auto& {
        return featureClass->ObservationVariables();
    });
}

std::variant<std::shared_ptr<ZorvoDSG::IFeatureClass>, std::shared_ptr<ZorvoDSG::System::ILog>>
NetCDFWorkspace::TryMakeQueryFeatureClass(std::string /*name*/, ZorvoDSG::eFeatureType /*type*/,
                                          const std::vector<std::string>& /*names*/,
                                          const ZorvoDSG::SpatialFilter& /*filter*/) {
    m_log.Clear();
    m_log.AddMessage(ZorvoDSG::System::eLogQueryFeatureClass, L"TryMakeQueryFeatureClass");
    return std::shared_ptr<ZorvoDSG::System::ILog>(std::make_shared<NetCDFWorkspaceLog>(m_log));
}

}  // namespace ZorvoNetCDFDSG
