#include "params/SchemeReader.h"

#include "params/DefaultReader.h"
#include "params/RefreshRates.h"
#include "params/SchemeSection.h"
#include "params/SchemeWriter.h"
#include "platform/Failure.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// A scheme that is read for the first time enters the user settings with its defaults.
bool AdoptDefaults(CXmlZOTPowercfg& settings, const GUID& scheme, IXMLDOMElement* powerSchemes,
                   ParamMap& out) {
    out.clear();
    if (!ReadDefaultSchemeParameters(scheme, out))
        return false;
    if (WriteSchemeParameters(scheme, powerSchemes, out))
        settings.Save();
    return true;
}

// Adds the functions that `out` lacks and removes those that the display cannot serve, in one walk: what is
// removed counts when the next function asks whether `out` is empty. True when a function was added.
bool CompleteParameters(const CFunctionTable& table, const GUID& scheme, ParamMap& out) {
    ParamMap defaults;
    bool added = false;
    for (const auto& [id, function] : table.functions) {
        // Deliberate: an empty scheme is never completed.
        if (!out.empty() && !out.contains(id)) {
            if (defaults.empty())
                ReadDefaultSchemeParameters(scheme, defaults);
            out.emplace(id, defaults[id]);
            added = true;
        }
        if (LacksRefreshRate(id, function))
            out.erase(id);
    }
    return added;
}

}  // namespace

bool LoadSchemeParameters(CFunctionTable& table, const GUID& scheme, ParamMap& out) noexcept {
    return FalseOnException([&] {
        const bool catalogueLoaded = EnsureFunctionTable(table);
        CXmlZOTPowercfg* settings = OpenUserSettings();
        // Deliberate: without the user settings, `out` stays as it is.
        if (settings == nullptr)
            return catalogueLoaded;
        const IXMLDOMElementPtr powerSchemes = settings->PowerSchemes();
        if (!catalogueLoaded || !powerSchemes)
            return false;
        if (!ReadUserSchemeParameters(scheme, powerSchemes, out) &&
            !AdoptDefaults(*settings, scheme, powerSchemes, out))
            return false;
        const bool added = CompleteParameters(table, scheme, out);
        return !added || SaveSchemeParameters(scheme, out);
    });
}

bool ReadUserSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, ParamMap& out) {
    const IXMLDOMElementPtr schemeElement = FindScheme(powerSchemes, CGuidText{scheme});
    if (!schemeElement)
        return false;
    for (const IXMLDOMElementPtr& function : SelectChildren(schemeElement, L"Function")) {
        std::int32_t id = 0;
        ParamValue value;
        // A function that lacks an attribute ends the reading; those behind it count as missing.
        if (!ReadAttribute(function, L"ID", id) || !ReadParamValue(function, value))
            break;
        out.try_emplace(out.end(), id, value);
    }
    return true;
}

}  // namespace ZOTDam
