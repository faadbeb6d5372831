#include "commands/CommandSet.h"

#include <charconv>
#include <CLI/CLI.hpp>
#include <utility>

#include "Error.h"
#include "Scheme.h"

namespace ZOTDam::Client {

std::optional<std::int32_t> TryParseNumber(const std::string& text) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end)
        return {};
    return number;
}

std::int32_t ParseNumber(const std::string& name, const std::string& text) {
    const auto number = TryParseNumber(text);
    if (!number)
        throw UsageError{name + " must be a whole number from -2147483648 to 2147483647, not \"" + text +
                         "\"."};
    return *number;
}

void CommandSet::Add(const char* name, const char* description,
                     std::initializer_list<std::string_view> examples, Report (*run)(const GUID& scheme)) {
    const auto scheme = std::make_shared<GUID>();
    AddArgument(AddCommand(name, description, examples, [scheme, run] { return run(*scheme); }), "SCHEME",
                *scheme, "The power scheme");
}

CommandSet CommandSet::AddSet(const char* name, const char* description) {
    CLI::App& command = *parent.add_subcommand(name, description);
    command.require_subcommand(1);
    return {command, chosen};
}

CLI::App& CommandSet::AddCommand(const char* name, const char* description,
                                 std::initializer_list<std::string_view> examples, Action action) {
    CLI::App& command = *parent.add_subcommand(name, description);
    std::string footer = "Examples:\n";
    for (const std::string_view example : examples)
        footer.append("  zotdamctl ").append(example).append("\n");
    command.footer(footer + "\n" + parent.get_footer());
    command.callback([&chosenAction = chosen, action = std::move(action)] { chosenAction = action; });
    return command;
}

void AddArgument(CLI::App& command, const char* name, std::string& text, const char* description) {
    command.add_option(name, text, description)->required()->type_name("");
}

void AddArgument(CLI::App& command, const char* name, std::int32_t& number, const char* description) {
    const auto parse = [&number, name](const std::string& text) { number = ParseNumber(name, text); };
    command.add_option_function<std::string>(name, parse, description)->required()->type_name("");
}

void AddArgument(CLI::App& command, const char* name, GUID& scheme, const char* description) {
    const auto parse = [&scheme](const std::string& text) { scheme = ParseScheme(text); };
    command.add_option_function<std::string>(name, parse, description)->required()->type_name("");
}

void AddArgument(CLI::App& command, const char* name, std::set<std::int32_t>& numbers,
                 const char* description) {
    const auto parse = [&numbers, name](const std::vector<std::string>& texts) {
        for (const std::string& text : texts)
            numbers.insert(ParseNumber(name, text));
    };
    command.add_option_function<std::vector<std::string>>(name, parse, description)->type_name("");
}

void AddArgument(CLI::App& command, const char* name, std::optional<std::string>& text,
                 const char* description) {
    command.add_option(name, text, description)->type_name("");
}

void AddArgument(CLI::App& command, const char* name, std::optional<GUID>& scheme, const char* description) {
    const auto parse = [&scheme](const std::string& text) { scheme = ParseScheme(text); };
    command.add_option_function<std::string>(name, parse, description)->type_name("");
}

void AddArgument(CLI::App& command, const char* name, std::vector<std::string>& texts,
                 const char* description) {
    command.add_option(name, texts, description)->required()->type_name("");
}

void AddOptionalArgument(CLI::App& command, const char* name, std::vector<std::string>& texts,
                         const char* description) {
    command.add_option(name, texts, description)->type_name("");
}

void AddFlag(CLI::App& command, const char* name, bool& flag, const char* description) {
    command.add_flag(name, flag, description);
}

void AddOption(CLI::App& command, const char* name, const char* type, std::optional<std::string>& text,
               const char* description) {
    command.add_option(name, text, description)->type_name(type);
}

void AddRequiredOption(CLI::App& command, const char* name, const char* type, std::string& text,
                       const char* description) {
    command.add_option(name, text, description)->required()->type_name(type);
}

void AddToHelp(CLI::App& command, const char* paragraph) {
    command.footer(paragraph + command.get_footer());
}

}  // namespace ZOTDam::Client
