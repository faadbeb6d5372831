#include "params/SchemeWriter.h"

#include <set>

#include "params/SchemeSection.h"
#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

void WriteParamValue(IXMLDOMElement* function, const ParamValue& value) {
    WriteAttribute(function, Attributes::ACParamIndex, value.ACParamIndex);
    WriteAttribute(function, Attributes::DCParamIndex, value.DCParamIndex);
}

bool UpdateFunctions(IXMLDOMElement* schemeElement, const ParamMap& params,
                     std::set<std::int32_t>& handledIds) {
    for (const IXMLDOMElementPtr& function : SelectChildren(schemeElement, Elements::Function)) {
        std::int32_t id = 0;
        if (!ReadAttribute(function, Attributes::ID, id))
            return false;
        if (const auto entry = params.find(id); entry != params.end()) {
            handledIds.insert(id);
            WriteParamValue(function, entry->second);
        }
    }
    return true;
}

// A function is appended when it is complete, because one without an ID would prevent all later saves of its
// scheme (Compatibility: C35).
void AppendFunctions(IXMLDOMElement* schemeElement, const ParamMap& params,
                     const std::set<std::int32_t>& handledIds) {
    for (const auto& [id, value] : params) {
        if (handledIds.contains(id))
            continue;
        const IXMLDOMElementPtr function = CreateElement(schemeElement, Elements::Function);
        WriteAttribute(function, Attributes::ID, id);
        WriteParamValue(function, value);
        AppendChild(schemeElement, function);
    }
}

bool WriteToUserSettings(const GUID& scheme, const ParamMap& params) {
    CXmlZOTPowercfg* settings = OpenUserSettings();
    if (settings == nullptr)
        return false;
    const IXMLDOMElementPtr powerSchemes = settings->PowerSchemes();
    if (!powerSchemes || !WriteSchemeParameters(scheme, powerSchemes, params))
        return false;
    settings->Save();
    return true;
}

}  // namespace

bool SaveSchemeParameters(const GUID& scheme, const ParamMap& params) noexcept {
    return FalseOnException([&] { return WriteToUserSettings(scheme, params); });
}

bool SaveSchemeParameters(const GUID& scheme, const ParamTree& params) noexcept {
    return FalseOnException([&] {
        ParamMap copy;
        for (const ParamTreeNode& node : params)
            copy.emplace_hint(copy.end(), node.functionId, node.value);
        return WriteToUserSettings(scheme, copy);
    });
}

bool WriteSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, const ParamMap& params) {
    const CGuidString guid{scheme};
    IXMLDOMElementPtr schemeElement = FindScheme(powerSchemes, guid);
    if (!schemeElement) {
        schemeElement = CreateElement(powerSchemes, Elements::PowerScheme);
        WriteAttribute(schemeElement, Attributes::GUID, guid.c_str());
        // Appended when it is complete, because a scheme without a GUID hides later ones. Compatibility: C33.
        AppendChild(powerSchemes, schemeElement);
    }
    return WriteFunctionParameters(schemeElement, params);
}

bool WriteFunctionParameters(IXMLDOMElement* schemeElement, const ParamMap& params) {
    std::set<std::int32_t> handledIds;
    const bool updatedAll = UpdateFunctions(schemeElement, params, handledIds);
    AppendFunctions(schemeElement, params, handledIds);
    return updatedAll;
}

bool ResetUserSettings() noexcept {
    return FalseOnException([] {
        CXmlZOTPowercfg* settings = UserSettingsDocument.Get();
        // Without a document, there is nothing to reset. Compatibility: C4.
        if (settings == nullptr)
            return true;
        if (!settings->ResetSkeleton())
            return false;
        settings->Save();
        return true;
    });
}

}  // namespace ZOTDam
