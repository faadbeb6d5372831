#include <cstdio>

#include "Examples.h"

namespace Examples {

// [begin GetCommandInfo]
void ListCommands(const ZOTDam::Library& library, const GUID& scheme) {
    auto print =
        ZOTDam::MakeCallback<ZOTDam::IGetCommandInfoCallback>([](const ZOTDam::CommandInfoRecord* command) {
            std::printf("command %d, event %d, state %d: options %d and %d, \"%s\"\n", command->id,
                        command->event, command->state, command->option1, command->option2,
                        ToUtf8(command->specInfo1).c_str());
        });
    library.GetCommandInfo(&scheme, &print);
}
// [end GetCommandInfo]

// [begin GetDiffFuncList]
void ListDifferences(const ZOTDam::Library& library, const GUID& schemeA, const GUID& schemeB) {
    constexpr std::uint32_t ac = 1;  // 2: on battery
    wchar_t names[ZOTDam::TextCapacity];
    wchar_t values[ZOTDam::TextCapacity];
    if (!library.GetDiffFuncList(&schemeA, &schemeB, ac, names, values)) {
        std::puts("no difference");
        return;
    }
    // Removes and returns the first line. A line ends with a line feed and a carriage return.
    const auto takeLine = [](std::wstring& text) {
        const std::size_t end = text.find(L"\n\r");
        std::wstring line = text.substr(0, end);
        text.erase(0, end == std::wstring::npos ? end : end + 2);
        return line;
    };
    // Each string is truncated separately, so one may have fewer lines than the other.
    std::wstring restOfValues = values;
    for (std::wstring rest = names; !rest.empty();) {
        const std::wstring name = takeLine(rest);
        std::printf("%s: %s\n", ToUtf8(name.c_str()).c_str(), ToUtf8(takeLine(restOfValues).c_str()).c_str());
    }
}
// [end GetDiffFuncList]

}  // namespace Examples
