// How long the library takes to read its files, beside plain MSXML code that makes the same reads. Prints
// medians of interleaved runs, and their ratio.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "PlainReader.h"
#include "support/Installation.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Bench {

namespace {

constexpr GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};

std::string DefaultsXml(int functions) {
    std::string xml = "<?xml version='1.0' encoding='UTF-8'?>\n<ZOTDefault><Functions>\n";
    for (int id = 100; id < 100 + functions; ++id)
        xml += "<Function ID='" + std::to_string(id) + R"(' Flag='1' Type='2' Name='Function' Group='Group'>
<Display><AC><DisplayItem Label='On' Option='1'/><DisplayItem Label='Off' Option='0'/></AC>
<DC><DisplayItem Label='On' Option='1'/><DisplayItem Label='Off' Option='0'/></DC></Display>
<Commands><CommandItem ID='1' Event='1' Flag='0' State='1' ParamIndex1='0' ParamIndex2='1' SpecInfo1='x'/></Commands>
<Default ACParamIndex='1' DCParamIndex='0'><DefaultItem GUID='381b4222-f694-41f0-9685-ff5bb260df2e'
 ACParamIndex='0' DCParamIndex='1'/></Default></Function>
)";
    return xml + "</Functions></ZOTDefault>";
}

double Milliseconds(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double, std::milli>{std::chrono::steady_clock::now() - start}.count();
}

// Both give the milliseconds that one run has taken.
void Compare(const char* what, const std::function<double()>& library, const std::function<double()>& plain) {
    constexpr int Runs = 31;
    std::vector<double> libraryTimes, plainTimes, ratios;
    for (int i = 0; i < Runs; ++i) {
        libraryTimes.push_back(library());
        plainTimes.push_back(plain());
        ratios.push_back(libraryTimes.back() / plainTimes.back());
    }
    const auto median = [](std::vector<double>& values) {
        std::nth_element(values.begin(), values.begin() + Runs / 2, values.end());
        return values[Runs / 2];
    };
    std::printf("%-48s %8.3f ms %8.3f ms   ratio %.2f\n", what, median(libraryTimes), median(plainTimes),
                median(ratios));
}

void Run(int functions) {
    const Test::Installation installation;
    Test::WriteFile(installation.DefaultsFile(), DefaultsXml(functions));
    auto ignore = MakeCallback<IGetParameterCallback>([](std::int32_t, const ParamValue*) {});
    // The first call stores the scheme in the user settings; it is not timed.
    {
        const Library library;
        library.GetParameter(&Balanced, &ignore);
    }

    std::printf("%d functions %42s %11s\n", functions, "library", "plain MSXML");
    const ComScope com;
    Compare(
        "load the catalogue",
        [] {
            const Library library;
            return Milliseconds([&] { library.GetFuncCount(); });
        },
        [&] { return Milliseconds([&] { PlainCatalogue(installation.DefaultsFile()); }); });
    const Library library;
    library.GetFuncCount();
    Compare(
        "GetParameter of a stored scheme",
        [&] { return Milliseconds([&] { library.GetParameter(&Balanced, &ignore); }); },
        [&] { return Milliseconds([&] { PlainScheme(installation.UserFile()); }); });
    const PlainDocument defaults{installation.DefaultsFile()};
    Compare(
        "GetParameterDefault",
        [&] { return Milliseconds([&] { library.GetParameterDefault(&Balanced, &ignore); }); },
        [&] { return Milliseconds([&] { PlainDefaults(defaults); }); });
}

}  // namespace

}  // namespace ZOTDam::Bench

int main() {
    for (const int functions : {16, 1000})
        ZOTDam::Bench::Run(functions);
}
