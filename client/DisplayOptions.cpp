#include "DisplayOptions.h"

#include "Text.h"

namespace ZOTDam::Client {

Options OptionsOf(const List<DisplayItem>& items) {
    Options options;
    for (const DisplayItem& item : items)
        options.push_back({item.option, ToUtf8(item.label)});
    return options;
}

const Option* SelectOption(const Options& options, std::int32_t index) {
    const auto position = static_cast<std::size_t>(index);
    return index >= 0 && position < options.size() ? &options[position] : nullptr;
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
        list.push_back({{"index", list.size()}, {"option", option}, {"label", label}});
    return list;
}

std::string LabelText(const Option* option) {
    if (option == nullptr)
        return "-";
    return option->label.empty() ? std::to_string(option->option) : option->label;
}

std::string IndexText(const Options& options, std::int32_t index) {
    return LabelText(SelectOption(options, index)) + " (" + std::to_string(index) + ")";
}

std::string OptionText(const Option* option) {
    return LabelText(option) + (option == nullptr ? "" : " (" + std::to_string(option->option) + ")");
}

Json NumberJson(const Option* option) {
    return option == nullptr ? Json() : Json(option->option);
}

Json LabelJson(const Option* option) {
    return option == nullptr ? Json() : Json(option->label);
}

}  // namespace ZOTDam::Client
