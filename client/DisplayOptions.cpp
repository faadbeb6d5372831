#include "DisplayOptions.h"

#include "Text.h"

namespace ZOTDam::Client {

Options OptionsOf(const List<DisplayItem>& items) {
    Options options;
    for (const DisplayItem& item : items)
        options.push_back({item.option, ToUtf8(item.label)});
    return options;
}

std::string OptionsText(const Options& options) {
    if (options.empty())
        return "none";
    std::string text;
    for (std::size_t position = 0; position < options.size(); ++position) {
        const auto& [option, label] = options[position];
        text += (position == 0 ? "" : "  ") + std::to_string(position) + ": " + label + " (" +
                std::to_string(option) + ")";
    }
    return text;
}

Json OptionsJson(const Options& options) {
    Json list = Json::array();
    for (const auto& [option, label] : options)
        list.push_back({{"option", option}, {"label", label}});
    return list;
}

}  // namespace ZOTDam::Client
