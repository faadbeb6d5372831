// How commands enter the command line.
#pragma once

#include <guiddef.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "CommandLine.h"

namespace CLI {
class App;
}

namespace ZOTDam::Client {

// The commands of the program, or those that stand behind one of its commands.
class CommandSet {
public:
    // The command that the user gives becomes `chosenAction`.
    CommandSet(CLI::App& parentApp, Action& chosenAction) : parent{parentApp}, chosen{chosenAction} {}

    // Adds a command: `examples` are uses of it as one would type them behind the name of the program,
    // `declare` tells the parser where the arguments go, `run` carries the command out.
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

    // Adds a command that only leads to others.
    CommandSet AddSet(const char* name, const char* description);

private:
    CLI::App& AddCommand(const char* name, const char* description,
                         std::initializer_list<std::string_view> examples, Action action);

    CLI::App& parent;
    Action& chosen;
};

// Arguments that commands declare. Each is required, but for the one that takes any number of numbers.
void AddArgument(CLI::App& command, const char* name, std::string& text, const char* description);
void AddArgument(CLI::App& command, const char* name, std::int32_t& number, const char* description);
void AddArgument(CLI::App& command, const char* name, GUID& scheme, const char* description);
void AddArgument(CLI::App& command, const char* name, std::set<std::int32_t>& numbers,
                 const char* description);

void AddFlag(CLI::App& command, const char* name, bool& flag, const char* description);

// Adds an option with a value, which the help calls by the name of its type.
void AddOption(CLI::App& command, const char* name, const char* type, std::optional<std::string>& text,
               const char* description);

// Adds a paragraph to the help of a command, before its examples.
void AddToHelp(CLI::App& command, const char* paragraph);

}  // namespace ZOTDam::Client
