// NcML amendments: global attributes, variable removals, renames, attribute-only variables and
// variable attributes, applied to the loaded variables before the lookup maps are built.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <zorvodsg/values/LogCodes.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/xml/XmlDom.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/netcdf/detail/GroupName.h>
#include <zorvodsg/values/Ascii.h>
#include <zorvodsg/values/Exception.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMElement;
using ZorvoDSG::Host::WideToUtf8;

namespace ZorvoNetCDFDSG {

using ZorvoDSG::Exception;
using ZorvoDSG::Variable;
using ZorvoDSG::System::ILog;
using ZorvoDSG::System::NcVariant;

namespace {


std::string_view TrimBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

[[noreturn]] void ThrowBadValue(const std::wstring& value, const std::wstring& type) {
    throw Exception(ZorvoDSG::eInvalidNcML, L"cannot convert \"" + value + L"\" to " + type, {});
}

// Numbers are read in the "C" conventions whatever the process locale, so a document means the same
// on every host. A leading "+" is accepted as VARIANT conversion accepts it.
std::string NumberText(const std::wstring& value) {
    const std::string utf8 = WideToUtf8(value);
    std::string number(TrimBlanks(utf8));
    if (number.size() > 1 && number[0] == '+' && number[1] != '-' && number[1] != '+') {
        number.erase(0, 1);
    }
    return number;
}

std::optional<int64_t> ParseInteger(const std::wstring& value) {
    const std::string text = NumberText(value);
    int64_t result = 0;
    const char* const end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, result);
    if (text.empty() || ec != std::errc() || ptr != end) {
        return std::nullopt;
    }
    return result;
}

std::optional<double> ParseReal(const std::wstring& value) {
    const std::string text = NumberText(value);
    double result = 0.0;
    const char* const end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, result, std::chars_format::general);
    if (text.empty() || ec != std::errc() || ptr != end || !std::isfinite(result)) {
        return std::nullopt;
    }
    return result;
}

template <typename T>
T ToInteger(const std::wstring& value, const std::wstring& type) {
    const std::optional<int64_t> number = ParseInteger(value);
    if (!number || *number < std::numeric_limits<T>::min() || *number > std::numeric_limits<T>::max()) {
        ThrowBadValue(value, type);
    }
    return static_cast<T>(*number);
}

// The value of an NcML attribute element as the attribute value of its type (names compared without
// regard to case). Unsigned and 64-bit types cannot be written through NcML.
NcVariant ConvertNcMLValue(const std::wstring& type, const std::wstring& value) {
    const std::wstring lowerType = ZorvoDSG::System::AsciiLower(type);
    if (lowerType == L"string") {
        return WideToUtf8(value);
    }
    if (lowerType == L"float") {
        const std::optional<double> number = ParseReal(value);
        if (!number || std::fabs(*number) > static_cast<double>(std::numeric_limits<float>::max())) {
            ThrowBadValue(value, type);
        }
        return static_cast<float>(*number);
    }
    if (lowerType == L"double") {
        const std::optional<double> number = ParseReal(value);
        if (!number) {
            ThrowBadValue(value, type);
        }
        return *number;
    }
    if (lowerType == L"char") {
        // A character is written as its code, like a byte.
        return std::string(1, static_cast<char>(ToInteger<signed char>(value, type)));
    }
    if (lowerType == L"byte") {
        return ToInteger<signed char>(value, type);
    }
    if (lowerType == L"short") {
        return ToInteger<short>(value, type);
    }
    if (lowerType == L"int" || lowerType == L"long") {
        return ToInteger<int32_t>(value, type);
    }
    throw Exception(ZorvoDSG::eInternalError, L"unrecognized ncml type", {});
}

struct NcMLAttribute {
    std::wstring name;
    NcVariant value;
};

// An attribute element; `owner` names the enclosing variable element in the error of an incomplete one.
NcMLAttribute ReadAttributeElement(const IXMLDOMElement& element, const std::wstring& owner) {
    const std::optional<std::wstring> name = element.GetAttribute(L"name");
    const std::optional<std::wstring> type = element.GetAttribute(L"type");
    const std::optional<std::wstring> value = element.GetAttribute(L"value");
    if (!name || !type || !value) {
        throw Exception(ZorvoDSG::eIncompleteNcMLAttribute, owner, {});
    }
    return {*name, ConvertNcMLValue(*type, *value)};
}

}  // namespace

void NetCDFFile::ApplyNcML(IXMLDOMDocument* ncml, ILog& log) {
    if (ncml == nullptr) {
        return;
    }
    const IXMLDOMElement root = ncml->DocumentElement();
    if (root.IsNull()) {
        return;
    }
    if (m_fullGroupName.empty() || m_fullGroupName == "/") {
        ApplyNcMLToGroup(root, log);
        return;
    }
    for (const IXMLDOMElement& group : ncml->SelectNodes("/netcdf/group")) {
        const std::optional<std::wstring> name = group.GetAttribute(L"name");
        if (!name) {
            throw Exception(ZorvoDSG::eInvalidNcML, L"unnamed group", {});
        }
        if (detail::NormalizedGroupName(WideToUtf8(*name)) == m_fullGroupName) {
            ApplyNcMLToGroup(group, log);
            return;
        }
    }
}

void NetCDFFile::ApplyNcMLToGroup(const IXMLDOMElement& group, ILog& log) {
    // Global attributes. There is no enclosing variable element to name in an error.
    for (const IXMLDOMElement& element : group.SelectNodes("attribute")) {
        const NcMLAttribute attribute = ReadAttributeElement(element, L"unnamed variable");
        if (m_globals.SetAttributeValue(WideToUtf8(attribute.name), attribute.value)) {
            log.AddMessage(ZorvoDSG::System::eLogNcMLGlobalAttributeAdded, attribute.name);
        }
    }

    for (const IXMLDOMElement& element : group.SelectNodes("remove[@type = 'variable']")) {
        const std::optional<std::wstring> name = element.GetAttribute(L"name");
        if (!name) {
            throw Exception(ZorvoDSG::eInvalidNcML, L"unnamed variable", {});
        }
        TryRemoveVariableWhileLoading(WideToUtf8(*name));
    }

    for (const IXMLDOMElement& element : group.SelectNodes("variable")) {
        const std::optional<std::wstring> name = element.GetAttribute(L"name");
        if (!name) {
            throw Exception(ZorvoDSG::eInvalidNcML, L"unnamed variable", {});
        }
        const std::optional<std::wstring> orgName = element.GetAttribute(L"orgName");
        const std::wstring& lookupName = orgName ? *orgName : *name;
        const std::string lookupNameUtf8 = WideToUtf8(lookupName);

        Variable* variable = nullptr;
        const auto found = TryGetVariableWhileLoading(lookupNameUtf8);
        if (found == m_variables.end()) {
            log.AddMessage(ZorvoDSG::System::eLogNcMLVariableCreated, lookupName);
            // Not the variable count: after a removal that id may be taken.
            const long id = NextFreeVariableId();
            variable = &m_variables.emplace(id, Variable(this, m_fullGroupName, id, lookupNameUtf8)).first->second;
        } else {
            variable = &found->second;
            if (orgName) {
                log.AddMessage(ZorvoDSG::System::eLogNcMLVariableRenamed, lookupName);
                variable->SetName(WideToUtf8(*name), m_fullGroupName);
            }
        }

        for (const IXMLDOMElement& removal : element.SelectNodes("remove[@type = 'attribute']")) {
            variable->TryRemoveAttribute(WideToUtf8(removal.GetAttribute(L"name").value_or(L"")));
        }
        for (const IXMLDOMElement& addition : element.SelectNodes("attribute")) {
            const NcMLAttribute attribute = ReadAttributeElement(addition, *name);
            if (variable->SetAttributeValue(WideToUtf8(attribute.name), attribute.value)) {
                log.AddMessage(ZorvoDSG::System::eLogNcMLVariableAttributeAdded, attribute.name);
            }
        }
    }
}

}  // namespace ZorvoNetCDFDSG
