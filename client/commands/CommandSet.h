// Adds commands to the command-line parser.
#pragma once

#include <guiddef.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "CommandLine.h"

namespace CLI {
class App;
}

namespace ZOTDam::Client {

// The commands of the program, or the subcommands of one of its commands.
class CommandSet {
public:
    // Parsing stores the selected command in `chosenAction`.
    CommandSet(CLI::App& parentApp, Action& chosenAction) : parent{parentApp}, chosen{chosenAction} {}

    // Adds a command. `examples` are example command lines without the program name, `declare` binds the
    // arguments to the parser, and `run` executes the command.
    template <class Arguments>
    void Add(const char* name, const char* description, std::initializer_list<std::string_view> examples,
             void (*declare)(CLI::App&, Arguments&), Report (*run)(const Arguments&)) {
        const auto arguments = std::make_shared<Arguments>();
        declare(AddCommand(name, description, examples, [arguments, run] { return run(*arguments); }),
                *arguments);
    }

    void Add(const char* name, const char* description, std::initializer_list<std::string_view> examples,
             Report (*run)()) {
        AddCommand(name, description, examples, run);
    }

    // Adds a command whose only argument is a power scheme.
    void Add(const char* name, const char* description, std::initializer_list<std::string_view> examples,
             Report (*run)(const GUID& scheme));

    // Adds a command that consists only of subcommands.
    CommandSet AddSet(const char* name, const char* description);

private:
    CLI::App& AddCommand(const char* name, const char* description,
                         std::initializer_list<std::string_view> examples, Action action);

    CLI::App& parent;
    Action& chosen;
};

// Parse a decimal number of 32 bits. ParseNumber throws a UsageError with the name of the argument.
std::optional<std::int32_t> TryParseNumber(const std::string& text);
std::int32_t ParseNumber(const std::string& name, const std::string& text);

// Declare an argument of a command. All are required, except the set of numbers, which may be empty, and the
// optional ones.
void AddArgument(CLI::App& command, const char* name, std::string& text, const char* description);
void AddArgument(CLI::App& command, const char* name, std::int32_t& number, const char* description);
void AddArgument(CLI::App& command, const char* name, GUID& scheme, const char* description);
void AddArgument(CLI::App& command, const char* name, std::optional<std::string>& text,
                 const char* description);
void AddArgument(CLI::App& command, const char* name, std::optional<GUID>& scheme, const char* description);
void AddArgument(CLI::App& command, const char* name, std::vector<std::string>& texts,
                 const char* description);
void AddArgument(CLI::App& command, const char* name, std::set<std::int32_t>& numbers,
                 const char* description);

void AddOptionalArgument(CLI::App& command, const char* name, std::vector<std::string>& texts,
                         const char* description);

void AddFlag(CLI::App& command, const char* name, bool& flag, const char* description);

// Adds an option with a value. The help shows the value as `type`.
void AddOption(CLI::App& command, const char* name, const char* type, std::optional<std::string>& text,
               const char* description);

// The same for an option that must be specified.
void AddRequiredOption(CLI::App& command, const char* name, const char* type, std::string& text,
                       const char* description);

// Adds a paragraph to the help of a command, before its examples.
void AddToHelp(CLI::App& command, const char* paragraph);

}  // namespace ZOTDam::Client
