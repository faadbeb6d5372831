#include "Completion.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <string_view>
#include <vector>

#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

// The words that may follow a command, or the program itself, whose path is empty.
struct CommandWords {
    std::string path;  // each word is preceded by a space
    std::vector<std::string> words;
};

void AddOnce(std::vector<std::string>& words, std::string_view word) {
    if (std::ranges::find(words, word) == words.end())
        words.emplace_back(word);
}

void AddWords(std::vector<std::string>& words, const CLI::Option& option, const CLI::App& app) {
    for (const std::string& name : option.get_lnames())
        AddOnce(words, "--" + name);
    if (option.get_name() == "SCHEME" || option.get_name() == "OTHER")
        for (const std::string& word : SchemeWords())
            AddOnce(words, word);
    if (option.get_name() == "COMMAND")
        for (const CLI::App* command : app.get_subcommands({}))
            AddOnce(words, command->get_name());
    if (option.get_name() == "SHELL")
        for (const char* const shell : {"bash", "powershell"})
            AddOnce(words, shell);
}

CommandWords WordsOf(const CLI::App& app, const CLI::App& command, const std::string& path,
                     const std::vector<std::string>& general) {
    CommandWords result{path, {}};
    for (const CLI::App* inner : command.get_subcommands({}))
        AddOnce(result.words, inner->get_name());
    for (const CLI::Option* option : command.get_options())
        AddWords(result.words, *option, app);
    for (const std::string& word : general)
        AddOnce(result.words, word);
    return result;
}

// The options of the program, which may also follow each command.
std::vector<std::string> GeneralWords(const CLI::App& app) {
    std::vector<std::string> words;
    for (const CLI::Option* option : app.get_options())
        AddWords(words, *option, app);
    std::erase(words, "--version");
    std::erase(words, "--licenses");
    return words;
}

std::vector<CommandWords> AllCommandWords(const CLI::App& app) {
    const std::vector<std::string> general = GeneralWords(app);
    std::vector<CommandWords> all = {WordsOf(app, app, {}, general)};
    for (const CLI::App* command : app.get_subcommands({})) {
        const std::string path = " " + command->get_name();
        all.push_back(WordsOf(app, *command, path, general));
        for (const CLI::App* inner : command->get_subcommands({}))
            all.push_back(WordsOf(app, *inner, path + " " + inner->get_name(), general));
    }
    return all;
}

std::string Joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : separator).append(word);
    return text;
}

}  // namespace

std::string BashCompletion(const CLI::App& app) {
    std::string paths;
    std::string words;
    for (const CommandWords& command : AllCommandWords(app)) {
        if (!command.path.empty())
            paths.append(paths.empty() ? "'" : " | '").append(command.path).append("'");
        words += "        '" + command.path + "') words='" + Joined(command.words, " ") + "' ;;\n";
    }
    return R"(_zotdamctl() {
    local command= words= word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case "$command $word" in
            )" +
           paths + R"() command="$command $word" ;;
        esac
    done
    case "$command" in
)" + words +
           R"(    esac
    case "${COMP_WORDS[COMP_CWORD-1]}" in
        --color) words='auto always never' ;;
        --program-files | --program-data | --output | --wait | --with) words= ;;
    esac
    COMPREPLY=($(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -o default -F _zotdamctl zotdamctl zotdamctl.exe
)";
}

std::string PowerShellCompletion(const CLI::App& app) {
    std::string words;
    for (const CommandWords& command : AllCommandWords(app))
        words += "        '" + command.path + "' = '" + Joined(command.words, "', '") + "'\n";
    return R"(Register-ArgumentCompleter -Native -CommandName zotdamctl, zotdamctl.exe -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)
    $words = @{
)" + words +
           R"(    }
    $command = ''
    foreach ($element in $commandAst.CommandElements | Select-Object -Skip 1) {
        if ($element.Extent.EndOffset -lt $cursorPosition -and $words.ContainsKey("$command $element")) {
            $command = "$command $element"
        }
    }
    $words[$command] | Where-Object { $_ -like "$wordToComplete*" } | ForEach-Object {
        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
    }
}
)";
}

}  // namespace ZOTDam::Client
