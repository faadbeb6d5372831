#include "report/Overview.h"

#include <algorithm>
#include <iterator>

#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

std::vector<GUID> SchemesOf(const StoredSettings& stored) {
    std::vector<GUID> schemes;
    schemes.reserve(std::size(WindowsSchemes) + stored.schemes.size());
    for (const NamedScheme& named : WindowsSchemes)
        schemes.push_back(named.scheme);
    for (const StoredScheme& other : stored.schemes)
        if (std::ranges::find(schemes, other.scheme) == schemes.end())
            schemes.push_back(other.scheme);
    return schemes;
}

std::vector<SchemeValues> CollectSchemes(const SettingsSnapshot& settings) {
    std::vector<SchemeValues> values;
    for (const GUID& scheme : SchemesOf(settings.Stored()))
        values.push_back({scheme, settings.Stored().Find(scheme) != nullptr,
                          CollectParams(settings.Dll().GetParameter, scheme),
                          CollectParams(settings.Dll().GetParameterDefault, scheme)});
    return values;
}

}  // namespace

Overview ReadOverview() {
    const SettingsSnapshot settings;
    return {ReadCatalogue(settings.Dll()), CollectSchemes(settings), ReadEffectiveSettings(settings)};
}

}  // namespace ZOTDam::Client
