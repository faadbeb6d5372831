#include "report/Page.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

#include "DataFiles.h"
#include "report/Html.h"
#include "report/Machine.h"
#include "report/PageStyle.h"
#include "Scheme.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

std::string Span(const char* kind, const std::string& text) {
    return Tag("span", Escaped(text), std::string{" class=\""} + kind + "\"");
}

std::string Row(const std::string& cells) {
    return Tag("tr", cells) + "\n";
}

std::string Section(const std::string& heading, const std::string& content) {
    return Tag("h2", heading) + "\n" + content;
}

// ---- The machine ----

std::string MachineSection() {
    Texts facts = DescribeMachine();
    facts.emplace_back("Base catalogue", Utf8(PathOf(BaseCatalogue)));
    facts.emplace_back("Defaults file", Utf8(PathOf(Defaults)));
    facts.emplace_back("User settings file", Utf8(PathOf(UserSettings)));
    facts.emplace_back("String table", Utf8(NeutralStringTable()));
    std::string rows;
    for (const auto& [heading, text] : facts)
        rows += Row(Tag("th", Escaped(heading), " scope=\"row\"") + Tag("td", Escaped(text)));
    return Tag("table", "\n" + rows, " class=\"facts\"") + "\n";
}

// ---- The schemes ----

// The numbers of options in the order of the list. If `zeroIsUnlimited`, 0 is the largest number.
std::vector<std::int64_t> NumbersOf(const Options& options, bool zeroIsUnlimited) {
    constexpr std::int64_t unlimited = std::numeric_limits<std::int64_t>::max();
    std::vector<std::int64_t> numbers;
    for (const Option& option : options)
        numbers.push_back(option.option == 0 && zeroIsUnlimited ? unlimited : option.option);
    return numbers;
}

enum class Order : unsigned char { None, Ascending, Descending };

Order OrderOf(const std::vector<std::int64_t>& numbers) {
    if (numbers.size() < 2)
        return Order::None;
    if (std::ranges::adjacent_find(numbers, std::greater_equal{}) == numbers.end())
        return Order::Ascending;
    return std::ranges::adjacent_find(numbers, std::less_equal{}) == numbers.end() ? Order::Descending
                                                                                   : Order::None;
}

Order OrderOf(const Options& options) {
    const Order order = OrderOf(NumbersOf(options, false));
    return order != Order::None ? order : OrderOf(NumbersOf(options, true));
}

// Returns a bar that is empty for the smallest option and full for the largest one, or an empty string if the
// options have no order.
std::string BarOf(const Options& options, std::int32_t index) {
    const Order order = OrderOf(options);
    const auto position = static_cast<std::size_t>(index);
    if (order == Order::None || index < 0 || position >= options.size())
        return {};
    const std::size_t last = options.size() - 1;
    const std::size_t rank = order == Order::Descending ? last - position : position;
    const std::string filled =
        Tag("span", "", " style=\"width: " + std::to_string(100 * rank / last) + "%\"");
    return Tag("span", filled,
               " class=\"bar\" role=\"img\" aria-label=\"" + std::to_string(rank + 1) + " of " +
                   std::to_string(last + 1) + "\"");
}

// The value of a function in a scheme for one power source.
struct CellValue {
    std::int32_t index;
    std::int32_t defaultIndex;
};

std::string LabelOf(const Options& options, std::int32_t index) {
    if (index >= 0 && static_cast<std::size_t>(index) < options.size())
        return options[static_cast<std::size_t>(index)].label;
    return options.empty() && index == 0 ? "no options" : "no option " + std::to_string(index);
}

std::string CellOf(const Options& options, const std::optional<CellValue>& value) {
    if (!value)
        return Tag("td", Span("id", "not available"));
    const auto [index, defaultIndex] = *value;
    const bool isChanged = index != defaultIndex;
    std::string content = Span("label", LabelOf(options, index));
    if (isChanged)
        content += Span("default", "default: " + LabelOf(options, defaultIndex));
    return Tag("td", content + BarOf(options, index),
               " data-index=\"" + std::to_string(index) + "\"" + (isChanged ? " class=\"changed\"" : ""));
}

// Returns nothing if the scheme has no value of the function. A missing default is 0.
std::optional<CellValue> ValueOf(const SchemeValues& scheme, std::int32_t id,
                                 std::int32_t ParamValue::*index) {
    const auto value = scheme.values.find(id);
    if (value == scheme.values.end())
        return {};
    const auto byDefault = scheme.defaults.find(id);
    return CellValue{value->second.*index, byDefault != scheme.defaults.end() ? byDefault->second.*index : 0};
}

std::string FunctionRow(std::int32_t id, const CatalogueFunction& function,
                        const std::vector<SchemeValues>& schemes) {
    std::string cells = Tag("th", Escaped(function.name) + " " + Span("id", std::to_string(id)),
                            " scope=\"row\" data-id=\"" + std::to_string(id) + "\"");
    for (const SchemeValues& scheme : schemes)
        cells += CellOf(function.acOptions, ValueOf(scheme, id, &ParamValue::ACParamIndex)) +
                 CellOf(function.dcOptions, ValueOf(scheme, id, &ParamValue::DCParamIndex));
    return Row(cells);
}

std::string HeadOf(const std::vector<SchemeValues>& schemes) {
    std::string titles = Tag("th", "Function", " rowspan=\"2\" scope=\"col\"");
    std::string sources;
    for (const SchemeValues& scheme : schemes) {
        const std::string guid = SchemeGuid(scheme.scheme);
        const std::string title = SchemeTitle(scheme.scheme);
        const std::string name = title == guid ? "other scheme" : title.substr(0, title.find(' '));
        titles += Tag("th",
                      Escaped(name) + Span("scheme", guid) +
                          Span("source", scheme.isStored ? "stored values" : "defaults: nothing is stored"),
                      " colspan=\"2\" scope=\"colgroup\" data-scheme=\"" + guid + "\"");
        sources += Tag("th", "Plugged in", " scope=\"col\"") + Tag("th", "On battery", " scope=\"col\"");
    }
    return Tag("thead", "\n" + Row(titles) + Row(sources)) + "\n";
}

// Returns the functions of the catalogue by group, then the functions that only schemes contain.
std::vector<std::pair<std::int32_t, CatalogueFunction>> FunctionsInOrder(const Overview& overview) {
    const CatalogueFunction unknown = {"unknown function", "not in the catalogue", 0, 0, {}, {}};
    FunctionCatalogue functions = overview.functions;
    for (const SchemeValues& scheme : overview.schemes)
        for (const auto& [id, value] : scheme.values)
            functions.try_emplace(id, unknown);
    std::vector<std::pair<std::int32_t, CatalogueFunction>> inOrder{functions.begin(), functions.end()};
    std::ranges::stable_sort(inOrder, {}, [](const auto& function) { return function.second.group; });
    return inOrder;
}

std::string SchemesSection(const Overview& overview) {
    const std::string columns = std::to_string(1 + 2 * overview.schemes.size());
    std::string rows;
    std::string group;
    for (const auto& [id, function] : FunctionsInOrder(overview)) {
        if (rows.empty() || function.group != group)
            rows += Tag("tr",
                        Tag("th", Escaped(function.group), " colspan=\"" + columns + "\" scope=\"rowgroup\""),
                        " class=\"group\"") +
                    "\n";
        group = function.group;
        rows += FunctionRow(id, function, overview.schemes);
    }
    const std::string table =
        Tag("table", "\n" + HeadOf(overview.schemes) + Tag("tbody", "\n" + rows) + "\n", " id=\"schemes\"");
    return Section("Power schemes",
                   Tag("p",
                       "Values that differ from the default are marked. A bar shows the place "
                       "of an option between the smallest and the largest one.") +
                       "\n" + Tag("div", "\n" + table + "\n", " class=\"wide\"") + "\n");
}

// ---- The common settings ----

std::string CommonSettingsSection(const Overview& overview) {
    std::string rows;
    for (const auto& [name, setting] : overview.commonSettings)
        rows += Row(Tag("td", Escaped(name)) + Tag("td", Escaped(setting.value)) +
                    Tag("td", Escaped(setting.file)));
    if (rows.empty())
        return Section("Common settings", Tag("p", "There are no common settings.") + "\n");
    const std::string head = Row(Tag("th", "Name", " scope=\"col\"") + Tag("th", "Value", " scope=\"col\"") +
                                 Tag("th", "Source", " scope=\"col\""));
    return Section("Common settings",
                   Tag("table", "\n" + Tag("thead", head) + "\n" + Tag("tbody", "\n" + rows) + "\n",
                       " id=\"settings\"") +
                       "\n");
}

// ---- The findings ----

std::string FindingsSection(const Diagnosis& diagnosis) {
    std::string rows;
    for (const Findings& file : diagnosis)
        for (const Finding& finding : file.InOrder()) {
            const std::string line =
                finding.position.line != 0 ? ":" + std::to_string(finding.position.line) : "";
            rows += Row(Tag("td", Tag("code", Escaped(finding.kind))) +
                        Tag("td", Escaped(finding.problem) + "; " + Escaped(finding.consequence) + "<br>" +
                                      Span("place", Utf8(file.Path()) + line)));
        }
    if (rows.empty())
        return Section("Findings of zotdamctl doctor", Tag("p", "no findings") + "\n");
    const std::string head =
        Row(Tag("th", "Kind", " scope=\"col\"") + Tag("th", "Problem and consequence", " scope=\"col\""));
    return Section("Findings of zotdamctl doctor",
                   Tag("table", "\n" + Tag("thead", head) + "\n" + Tag("tbody", "\n" + rows) + "\n",
                       " id=\"findings\"") +
                       "\n");
}

}  // namespace

std::string PageOf(const ReportContent& content) {
    const std::string head =
        "<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width\">\n" +
        Tag("title", "Settings of QUEN Power Management") + "\n" + Tag("style", PageStyle) + "\n";
    const std::string settings =
        content.problem.empty() ? SchemesSection(content.overview) + CommonSettingsSection(content.overview)
                                : Section("Power schemes", Tag("p", Escaped(content.problem)) + "\n");
    const std::string body = Tag("h1", "Settings of QUEN Power Management") + "\n" + MachineSection() +
                             settings + FindingsSection(content.diagnosis);
    return "<!DOCTYPE html>\n" +
           Tag("html", "\n" + Tag("head", "\n" + head) + "\n" + Tag("body", "\n" + body) + "\n",
               " lang=\"en\"") +
           "\n";
}

}  // namespace ZOTDam::Client
