#include "params/SchemeReader.h"

#include "params/DefaultReader.h"
#include "params/RefreshRates.h"
#include "params/SchemeSection.h"
#include "params/SchemeWriter.h"
#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// Reads the defaults of a scheme that is missing from the user settings and adds the scheme to them.
bool AddSchemeWithDefaults(CXmlZOTPowercfg& settings, const GUID& scheme, IXMLDOMElement* powerSchemes,
                           ParamMap& out) {
    out.clear();
    if (!ReadDefaultSchemeParameters(scheme, out))
        return false;
    if (WriteSchemeParameters(scheme, powerSchemes, out))
        settings.Save();
    return true;
}

// Adds the functions that are missing from `out` and removes those that the display does not support. A
// single loop does both, because a removal can empty `out`, and the check for the next function must see
// that. Returns true when a function was added.
bool CompleteParameters(const CFunctionTable& table, const GUID& scheme, ParamMap& out) {
    ParamMap defaults;
    bool added = false;
    for (const auto& [id, function] : table.functions) {
        // An empty scheme is never completed. Compatibility: C31.
        if (!out.empty() && !out.contains(id)) {
            if (defaults.empty())
                ReadDefaultSchemeParameters(scheme, defaults);
            out.emplace(id, defaults[id]);
            added = true;
        }
        if (HasUnsupportedRefreshRate(id, function))
            out.erase(id);
    }
    return added;
}

}  // namespace

bool LoadSchemeParameters(CFunctionTable& table, const GUID& scheme, ParamMap& out) noexcept {
    return FalseOnException([&] {
        const bool catalogueLoaded = EnsureFunctionTable(table);
        CXmlZOTPowercfg* settings = OpenUserSettings();
        // Without the user settings, `out` is left unchanged. Compatibility: C4.
        if (settings == nullptr)
            return catalogueLoaded;
        const IXMLDOMElementPtr powerSchemes = settings->PowerSchemes();
        if (!catalogueLoaded || !powerSchemes)
            return false;
        if (!ReadUserSchemeParameters(scheme, powerSchemes, out) &&
            !AddSchemeWithDefaults(*settings, scheme, powerSchemes, out))
            return false;
        const bool added = CompleteParameters(table, scheme, out);
        return !added || SaveSchemeParameters(scheme, out);
    });
}

bool ReadUserSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, ParamMap& out) {
    const IXMLDOMElementPtr schemeElement = FindScheme(powerSchemes, CGuidString{scheme});
    if (!schemeElement)
        return false;
    for (const IXMLDOMElementPtr& function : SelectChildren(schemeElement, Elements::Function)) {
        std::int32_t id = 0;
        ParamValue value;
        // A function with a missing attribute ends the reading. Compatibility: C32.
        if (!ReadAttribute(function, Attributes::ID, id) || !ReadParamValue(function, value))
            break;
        out.try_emplace(out.end(), id, value);
    }
    return true;
}

}  // namespace ZOTDam
