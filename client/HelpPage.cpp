#include "HelpPage.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <string_view>
#include <vector>

namespace ZOTDam::Client {

namespace {

constexpr std::size_t ColumnWidth = 30;

bool IsRepeatable(const CLI::Option& option) {
    return option.get_expected_max() > 1;
}

// Returns the argument as the line of the usage shows it: "[ID...]".
std::string UsageOf(const CLI::Option& argument) {
    const std::string name = argument.get_name(true) + (IsRepeatable(argument) ? "..." : "");
    return argument.get_required() ? name : "[" + name + "]";
}

std::string UsageLine(const CLI::App& command, const std::string& path) {
    std::string usage = "Usage: " + path + " [OPTIONS]";
    for (const CLI::Option* const option : command.get_options())
        if (option->get_positional())
            usage += " " + UsageOf(*option);
    if (command.get_subcommands({}).empty())
        return usage + "\n";
    return usage + (command.get_require_subcommand_min() > 0 ? " SUBCOMMAND\n" : " [SUBCOMMAND]\n");
}

// Returns the names of an option with its type, or the name of an argument.
std::string LeftColumn(const CLI::Option& option) {
    std::string names = option.get_name(option.get_positional(), true);
    if (option.get_type_size() == 0)
        return names;
    if (!option.get_type_name().empty())
        names += " " + option.get_type_name();
    return names + (IsRepeatable(option) ? " ..." : "") + (option.get_required() ? " REQUIRED" : "");
}

std::string HelpRow(const std::string& name, const std::string& description) {
    std::string row = "  " + name;
    row += row.size() < ColumnWidth ? std::string(ColumnWidth - row.size(), ' ')
                                    : "\n" + std::string(ColumnWidth, ' ');
    return row + description + "\n";
}

std::string TitledRows(std::string_view title, const std::string& rows) {
    return rows.empty() ? rows : "\n" + std::string{title} + ":\n" + rows;
}

std::string OptionRows(const CLI::App& command, bool arePositional) {
    std::string rows;
    for (const CLI::Option* const option : command.get_options())
        if (option->get_positional() == arePositional)
            rows += HelpRow(LeftColumn(*option), option->get_description());
    return rows;
}

std::string SubcommandRows(const CLI::App& command) {
    std::string rows;
    for (const CLI::App* const subcommand : command.get_subcommands({}))
        rows += HelpRow(subcommand->get_name(), subcommand->get_description());
    return rows;
}

}  // namespace

std::string HelpPage(const CLI::App& command, const std::string& path) {
    return command.get_description() + "\n" + UsageLine(command, path) +
           TitledRows("Positionals", OptionRows(command, true)) +
           TitledRows("Options", OptionRows(command, false)) +
           TitledRows("Subcommands", SubcommandRows(command)) + "\n" + command.get_footer() + "\n";
}

}  // namespace ZOTDam::Client
