#include "Report.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "Chart.h"

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

std::string Ratio(const Result& result) {
    return result.baseline > 0 ? Decimal(result.ratio) : "";
}

// The results of an export, by size.
using BySize = std::map<int, Result>;

std::vector<std::pair<std::string, BySize>> ByExport(const std::vector<Result>& results) {
    std::vector<std::pair<std::string, BySize>> grouped;
    std::map<std::string, std::size_t> positions;
    for (const Result& result : results) {
        const auto [position, isNew] = positions.try_emplace(result.name, grouped.size());
        if (isNew)
            grouped.emplace_back(result.name, BySize{});
        grouped[position->second].second[result.size] = result;
    }
    return grouped;
}

// Returns the cost at the largest size, divided by the cost at the previous size.
std::string Slope(const BySize& sizes) {
    if (sizes.size() < 2)
        return "";
    const auto last = std::prev(sizes.end());
    return Decimal(last->second.library / std::prev(last)->second.library);
}

void WriteMarkdown(const std::vector<Result>& results, std::ostream& out) {
    const auto grouped = ByExport(results);
    out << "| Export |";
    for (const auto& [size, result] : grouped.front().second)
        out << ' ' << size << " | baseline | ratio |";
    out << " slope |\n|---|";
    for (std::size_t i = 0; i < grouped.front().second.size(); ++i)
        out << "--:|--:|--:|";
    out << "--:|\n";
    for (const auto& [name, sizes] : grouped) {
        out << "| " << name << " |";
        for (const auto& [size, result] : sizes)
            out << ' ' << Duration(result.library) << " | "
                << (result.baseline > 0 ? Duration(result.baseline) : "") << " | " << Ratio(result) << " |";
        out << ' ' << Slope(sizes) << " |\n";
    }
}

nlohmann::json AsJson(const Result& result) {
    nlohmann::json json = {{"export", result.name},
                           {"functions", result.size},
                           {"rounds", result.rounds},
                           {"libraryMicroseconds", result.library}};
    if (result.baseline > 0) {
        json["baselineMicroseconds"] = result.baseline;
        json["ratio"] = result.ratio;
    }
    return json;
}

}  // namespace

void PrintRow(const Result& result) {
    std::printf("%-34s %6d %10s %10s %8s  %4d rounds\n", result.name.c_str(), result.size,
                Duration(result.library).c_str(),
                result.baseline > 0 ? Duration(result.baseline).c_str() : "", Ratio(result).c_str(),
                result.rounds);
    std::fflush(stdout);
}

void WriteReports(const std::vector<Result>& results, const std::string& json, const std::string& markdown,
                  const std::string& chart) {
    if (!json.empty()) {
        nlohmann::json all = nlohmann::json::array();
        for (const Result& result : results)
            all.push_back(AsJson(result));
        std::ofstream{json} << all.dump(2) << '\n';
    }
    if (!markdown.empty()) {
        std::ofstream file{markdown, std::ios::binary};
        WriteMarkdown(results, file);
    }
    if (!chart.empty()) {
        std::ofstream file{chart, std::ios::binary};
        WriteChart(results, file);
    }
}

}  // namespace ZOTDam::Bench
