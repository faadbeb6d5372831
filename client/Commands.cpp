#include "Commands.h"

#include <string>

#include "DataFiles.h"
#include "Error.h"
#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

Params Collect(decltype(&GetParameter) enumerate, const GUID& scheme) {
    Params params;
    auto collect = MakeCallback<IGetParameterCallback>(
        [&](std::int32_t functionId, const ParamValue* value) { params.emplace(functionId, *value); });
    enumerate(&scheme, &collect);
    return params;
}

std::uint32_t RequireCatalogue(const Library& library) {
    const std::uint32_t functions = library.GetFuncCount();
    if (functions != CatalogueUnavailable)
        return functions;
    const std::filesystem::path file = CatalogueFile();
    throw Error{"The catalogue cannot be loaded: the file " + Utf8(file) +
                (exists(file) ? " holds no valid one or is in use by another program." : " does not exist.")};
}

// A function that the library knows neither from the catalogue nor from the user's settings is a typing
// error.
void RequireFunction(const Library& library, const SetCommand& command) {
    if (Collect(library.GetParameterDefault, command.scheme).contains(command.functionId) ||
        Collect(library.GetParameter, command.scheme).contains(command.functionId))
        return;
    throw Error{"The catalogue " + Utf8(CatalogueFile()) + " has no function " +
                std::to_string(command.functionId) + "."};
}

// The library leaves these two out when the display lacks one of their refresh rates.
bool MayBeHidden(std::int32_t functionId) noexcept {
    return functionId == 7 || functionId == 8;
}

// Whether the value arrived but is hidden. Throws when it did not arrive, of which the library tells nothing.
bool VerifyStored(const Library& library, const SetCommand& command) {
    const Params params = Collect(library.GetParameter, command.scheme);
    RequireUserSettingsSaved();
    const auto found = params.find(command.functionId);
    if (found == params.end() && MayBeHidden(command.functionId))
        return true;
    if (found == params.end() || found->second != command.value)
        throw Error{"The value could not be stored in the user settings file " + Utf8(UserSettingsFile()) +
                    "."};
    return false;
}

CountReport Run(const Library& library, const CountCommand& /*command*/) {
    return {RequireCatalogue(library)};
}

ParamsReport Run(const Library& library, const ParamsCommand& command) {
    RequireCatalogue(library);
    if (command.defaults)
        return {command.scheme, true, Collect(library.GetParameterDefault, command.scheme)};
    const Params params = Collect(library.GetParameter, command.scheme);
    RequireUserSettingsIdle();  // the library would have given the defaults for the user's values
    return {command.scheme, false, params};
}

SetReport Run(const Library& library, const SetCommand& command) {
    RequireCatalogue(library);
    RequireFunction(library, command);
    library.SetParameter(&command.scheme, ParamHolder{{{command.functionId, command.value}}}.get());
    return {command, VerifyStored(library, command)};
}

ResetReport Run(const Library& library, const ResetCommand& /*command*/) {
    // The library resets the settings as this process last read them, so it has to read them first.
    Collect(library.GetParameter, Balanced);
    if (!library.ResetDefault()) {
        RequireUserSettingsIdle();
        return {false};
    }
    RequireUserSettingsSaved();
    return {true};
}

}  // namespace

Report Execute(const Library& library, const Command& command) {
    return std::visit([&](const auto& chosen) -> Report { return Run(library, chosen); }, command);
}

}  // namespace ZOTDam::Client
