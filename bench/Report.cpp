#include "Report.h"

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "Chart.h"
#include "Targets.h"

namespace ZOTDam::Bench {

namespace {

// Formats a duration with three digits, in a suitable unit.
std::string Duration(double microseconds) {
    static constexpr struct {
        double factor;
        const char* unit;
    } units[] = {{1e6, "s"}, {1e3, "ms"}, {1, "us"}};
    char text[32];
    for (const auto& [factor, unit] : units)
        if (microseconds >= factor) {
            std::snprintf(text, sizeof text, "%.3g %s", microseconds / factor, unit);
            return text;
        }
    std::snprintf(text, sizeof text, "%.0f ns", microseconds * 1000);
    return text;
}

std::string Decimal(double number) {
    char text[32];
    std::snprintf(text, sizeof text, number < 0.095 ? "%.4f" : "%.2f", number);
    return text;
}

// The columns of the table, in the order of the references.
constexpr std::pair<Reference, const char*> Columns[] = {{Reference::Parse, "parse"},
                                                         {Reference::Baseline, "baseline"},
                                                         {Reference::Best, "best"},
                                                         {Reference::PlainSave, "DOM's save"},
                                                         {Reference::OldVersion, "old"}};

std::string Ratio(const Result& result, Reference reference) {
    const auto compared = result.comparisons.find(reference);
    return compared == result.comparisons.end() ? "" : Decimal(compared->second.ratio);
}

// Returns the cost divided by the cost at a tenth of the size, if that was measured.
std::string Slope(const Result& result, const std::vector<Result>& results) {
    for (const Result& smaller : results)
        if (smaller.name == result.name && smaller.size * 10 == result.size)
            return Decimal(result.library / smaller.library);
    return "";
}

std::set<int> SizesOf(const std::vector<Result>& results) {
    std::set<int> sizes;
    for (const Result& result : results)
        sizes.insert(result.size);
    return sizes;
}

void WriteTable(const std::vector<Result>& results, int size, std::ostream& out) {
    out << "| " << size << " functions | time |";
    for (const auto& [reference, name] : Columns)
        out << ' ' << name << " |";
    out << " slope |\n|---|--:|--:|--:|--:|--:|--:|--:|\n";
    for (const Result& result : results) {
        if (result.size != size)
            continue;
        out << "| " << result.name << " | " << Duration(result.library) << " |";
        for (const auto& [reference, name] : Columns)
            out << ' ' << Ratio(result, reference) << " |";
        out << ' ' << Slope(result, results) << " |\n";
    }
}

void WriteMarkdown(const Report& report, std::ostream& out) {
    for (const int size : SizesOf(report.results)) {
        WriteTable(report.results, size, out);
        out << '\n';
    }
    out << "| Target | Measured | Met |\n|---|---|---|\n";
    for (const TargetResult& checked : CheckTargets(report))
        out << "| " << checked.target << " | " << checked.figures << " | " << (checked.isMet ? "yes" : "no")
            << " |\n";
}

nlohmann::json AsJson(const Result& result) {
    nlohmann::json json = {{"export", result.name},
                           {"functions", result.size},
                           {"rounds", result.rounds},
                           {"microseconds", result.library}};
    for (const auto& [reference, name] : Columns)
        if (const auto compared = result.comparisons.find(reference); compared != result.comparisons.end())
            json[name] = {{"microseconds", compared->second.cost}, {"ratio", compared->second.ratio}};
    return json;
}

nlohmann::json AsJson(const Report& report) {
    nlohmann::json json = {{"commit", report.commit}, {"date", report.date}, {"dllBytes", report.dllSize}};
    for (const Result& result : report.results)
        json["results"].push_back(AsJson(result));
    for (const TargetResult& checked : CheckTargets(report))
        json["targets"].push_back(
            {{"target", checked.target}, {"measured", checked.figures}, {"isMet", checked.isMet}});
    return json;
}

}  // namespace

void PrintHead(const Report& report) {
    std::printf("Commit %s, %s\n%-36s %6s %10s", report.commit.c_str(), report.date.c_str(), "", "size",
                "time");
    for (const auto& [reference, name] : Columns)
        std::printf(" %10s", name);
    std::printf("\n");
}

void PrintRow(const Result& result) {
    std::printf("%-36s %6d %10s", result.name.c_str(), result.size, Duration(result.library).c_str());
    for (const auto& [reference, name] : Columns)
        std::printf(" %10s", Ratio(result, reference).c_str());
    std::printf("  %4d rounds\n", result.rounds);
    std::fflush(stdout);
}

void PrintTargets(const Report& report) {
    for (const TargetResult& checked : CheckTargets(report))
        std::printf("%-6s %s: %s\n", checked.isMet ? "met" : "missed", checked.target.c_str(),
                    checked.figures.c_str());
}

void WriteReports(const Report& report, const std::string& json, const std::string& markdown,
                  const std::string& chart) {
    if (!json.empty())
        std::ofstream{json} << AsJson(report).dump(2) << '\n';
    if (!markdown.empty()) {
        std::ofstream file{markdown, std::ios::binary};
        WriteMarkdown(report, file);
    }
    if (!chart.empty()) {
        std::ofstream file{chart, std::ios::binary};
        WriteChart(report.results, file);
    }
}

}  // namespace ZOTDam::Bench
