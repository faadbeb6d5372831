#include "Output.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

using Json = nlohmann::ordered_json;
using Row = std::array<std::string, 3>;

Json ParamJson(std::int32_t functionId, const ParamValue& value) {
    return {{"id", functionId}, {"ac", value.ACParamIndex}, {"dc", value.DCParamIndex}};
}

Json ToJson(const CountReport& report) {
    return {{"count", report.functions}};
}

Json ToJson(const ParamsReport& report) {
    Json params = Json::array();
    for (const auto& [functionId, value] : report.params)
        params.push_back(ParamJson(functionId, value));
    return {{"scheme", SchemeGuid(report.scheme)},
            {"source", report.defaults ? "default" : "user"},
            {"parameters", params}};
}

Json ToJson(const SetReport& report) {
    Json json = {{"scheme", SchemeGuid(report.stored.scheme)}};
    json.update(ParamJson(report.stored.functionId, report.stored.value));
    json["hidden"] = report.hidden;
    return json;
}

Json ToJson(const ResetReport& report) {
    return {{"reset", report.reset}};
}

void WriteTable(std::ostream& out, const Params& params) {
    std::vector<Row> rows = {{"ID", "AC", "DC"}};
    for (const auto& [functionId, value] : params)
        rows.push_back({std::to_string(functionId), std::to_string(value.ACParamIndex),
                        std::to_string(value.DCParamIndex)});
    std::array<std::size_t, std::tuple_size_v<Row>> widths = {};
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            out << (i == 0 ? "" : "  ") << std::setw(static_cast<int>(widths[i])) << row[i];
        out << '\n';
    }
}

void Write(std::ostream& out, const CountReport& report) {
    out << report.functions << (report.functions == 1 ? " function\n" : " functions\n");
}

void Write(std::ostream& out, const ParamsReport& report) {
    out << "Scheme: " << SchemeTitle(report.scheme) << '\n'
        << "Source: " << (report.defaults ? "defaults" : "user settings") << "\n\n";
    WriteTable(out, report.params);
}

void Write(std::ostream& out, const SetReport& report) {
    const auto& [scheme, functionId, value] = report.stored;
    out << "Stored in " << SchemeTitle(scheme) << ":\n\n";
    WriteTable(out, {{functionId, value}});
    if (report.hidden)
        out << "\nFunction " << functionId << " is hidden on this display, so \"params\" does not list it.\n";
}

void Write(std::ostream& out, const ResetReport& report) {
    out << (report.reset ? "The user settings are reset to the defaults.\n" : "There is nothing to reset.\n");
}

}  // namespace

void WriteText(std::ostream& out, const Report& report) {
    std::visit([&](const auto& made) { Write(out, made); }, report);
}

void WriteJson(std::ostream& out, const Report& report) {
    out << std::visit([](const auto& made) { return ToJson(made); }, report).dump(2) << '\n';
}

}  // namespace ZOTDam::Client
