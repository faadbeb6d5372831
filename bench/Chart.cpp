#include "Chart.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

namespace ZOTDam::Bench {

namespace {

constexpr int Columns = 5;
constexpr double PanelWidth = 190;
constexpr double PanelHeight = 150;
constexpr double PlotWidth = 140;
constexpr double PlotHeight = 100;
constexpr double Left = 38;
constexpr double Top = 28;

// The range of every panel, in decades of microseconds.
constexpr double LowestDecade = -2;
constexpr double HighestDecade = 8;

struct Point {
    double size;
    double cost;
};

// Converts costs and sizes to positions in a panel.
struct Scale {
    double smallest;
    double largest;

    double X(double size) const {
        return Left + PlotWidth * std::log10(size / smallest) / std::log10(largest / smallest);
    }
    static double Y(double cost) {
        const double decade = std::clamp(std::log10(std::max(cost, 1e-9)), LowestDecade, HighestDecade);
        return Top + PlotHeight * (HighestDecade - decade) / (HighestDecade - LowestDecade);
    }
};

void DrawLine(const std::vector<Point>& points, const Scale& scale, const char* style, std::ostream& out) {
    if (points.empty())
        return;
    out << "<polyline class=\"" << style << "\" points=\"";
    for (const Point& point : points)
        out << scale.X(point.size) << ',' << Scale::Y(point.cost) << ' ';
    out << "\"/>\n";
}

void DrawAxes(const std::vector<Result>& results, const Scale& scale, std::ostream& out) {
    static constexpr std::pair<double, const char*> costs[] = {{1, "1 us"}, {1e3, "1 ms"}, {1e6, "1 s"}};
    for (const auto& [cost, label] : costs) {
        out << "<line class=\"grid\" x1=\"" << Left << "\" x2=\"" << Left + PlotWidth << "\" y1=\""
            << Scale::Y(cost) << "\" y2=\"" << Scale::Y(cost) << "\"/>\n";
        out << "<text class=\"end\" x=\"" << Left - 4 << "\" y=\"" << Scale::Y(cost) + 3 << "\">" << label
            << "</text>\n";
    }
    for (const Result& result : results)
        out << "<text class=\"middle\" x=\"" << scale.X(result.size) << "\" y=\"" << Top + PlotHeight + 12
            << "\">" << result.size << "</text>\n";
}

std::vector<Point> Costs(const std::vector<Result>& results, Reference reference) {
    std::vector<Point> points;
    for (const Result& result : results)
        if (const auto compared = result.comparisons.find(reference); compared != result.comparisons.end())
            points.push_back({static_cast<double>(result.size), compared->second.cost});
    return points;
}

void DrawPanel(const std::string& name, const std::vector<Result>& results, const Scale& scale,
               std::ostream& out) {
    std::vector<Point> library;
    library.reserve(results.size());
    for (const Result& result : results)
        library.push_back({static_cast<double>(result.size), result.library});
    out << "<text class=\"title\" x=\"" << Left << "\" y=\"" << Top - 8 << "\">" << name << "</text>\n";
    DrawAxes(results, scale, out);
    DrawLine(Costs(results, Reference::Baseline), scale, "baseline", out);
    DrawLine(Costs(results, Reference::Best), scale, "best", out);
    DrawLine(library, scale, "library", out);
}

constexpr char Style[] =
    "<style>text{font:9px sans-serif;fill:#333}.title{font-weight:bold}.end{text-anchor:end}"
    ".middle{text-anchor:middle}.grid{stroke:#ddd}polyline{fill:none;stroke-width:1.6}"
    ".best{stroke:#5a8f29;stroke-dasharray:1 "
    "2}.library{stroke:#0b62a4}.baseline{stroke:#c2571a;stroke-dasharray:4 3}</style>\n";

}  // namespace

void WriteChart(const std::vector<Result>& results, std::ostream& out) {
    std::vector<std::string> names;
    std::map<std::string, std::vector<Result>> panels;
    Scale scale{1e9, 0};
    for (const Result& result : results) {
        if (panels[result.name].empty())
            names.push_back(result.name);
        panels[result.name].push_back(result);
        scale.smallest = std::min<double>(scale.smallest, result.size);
        scale.largest = std::max<double>(scale.largest, result.size);
    }
    const int rows = (static_cast<int>(names.size()) + Columns - 1) / Columns;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Columns * PanelWidth << "\" height=\""
        << rows * PanelHeight + 20 << "\">\n"
        << Style << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t row = i / Columns;
        out << "<g transform=\"translate(" << static_cast<double>(i % Columns) * PanelWidth << ' '
            << static_cast<double>(row) * PanelHeight << ")\">\n";
        DrawPanel(names[i], panels[names[i]], scale, out);
        out << "</g>\n";
    }
    out << "<text x=\"" << Left << "\" y=\"" << rows * PanelHeight + 10
        << "\">cost over the number of functions: the library (line), its baseline (dashed) "
           "and the best baseline (dotted)</text>\n</svg>\n";
}

}  // namespace ZOTDam::Bench
