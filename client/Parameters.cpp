#include "Parameters.h"

namespace ZOTDam::Client {

Params CollectParams(decltype(&GetParameter) enumerate, const GUID& scheme) {
    Params params;
    auto collect = MakeCallback<IGetParameterCallback>(
        [&](std::int32_t functionId, const ParamValue* value) { params.emplace(functionId, *value); });
    enumerate(&scheme, &collect);
    return params;
}

Table ParamTable() {
    return Table{{{"ID"},
                  {"Function", Align::Left},
                  {"Plugged in (index)", Align::Left},
                  {"On battery (index)", Align::Left}}};
}

std::vector<std::string> ParamCells(std::int32_t id, const ParamValue& value,
                                    const FunctionCatalogue& catalogue) {
    const CatalogueFunction& function = FindFunction(catalogue, id);
    return {std::to_string(id), FunctionNameText(catalogue, id),
            IndexText(function.acOptions, value.ACParamIndex),
            IndexText(function.dcOptions, value.DCParamIndex)};
}

Json ParamJson(std::int32_t id, const ParamValue& value, const FunctionCatalogue& catalogue) {
    const CatalogueFunction& function = FindFunction(catalogue, id);
    const Option* const ac = SelectOption(function.acOptions, value.ACParamIndex);
    const Option* const dc = SelectOption(function.dcOptions, value.DCParamIndex);
    return {{"id", id},
            {"name", FunctionNameJson(catalogue, id)},
            {"acIndex", value.ACParamIndex},
            {"acOption", NumberJson(ac)},
            {"acLabel", LabelJson(ac)},
            {"dcIndex", value.DCParamIndex},
            {"dcOption", NumberJson(dc)},
            {"dcLabel", LabelJson(dc)}};
}

Json FunctionNameJson(const FunctionCatalogue& catalogue, std::int32_t id) {
    return catalogue.contains(id) ? Json(FindFunction(catalogue, id).name) : Json();
}

std::string FunctionNameText(const FunctionCatalogue& catalogue, std::int32_t id) {
    return catalogue.contains(id) ? FindFunction(catalogue, id).name : "(not in the catalogue)";
}

}  // namespace ZOTDam::Client
