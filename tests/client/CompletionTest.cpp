// Tests of zotdamctl completion. tests/completion/completion.sh runs the script in bash.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

using CompletionTest = ClientTest;

TEST_F(CompletionTest, BashScriptListsWordsOfEachCommand) {
    const std::string script = Output({L"completion", L"bash"});
    for (const char* const line :
         {"\n        '') words='count functions ", "\n        ' setting') words='get list set init --help ",
          "\n        ' diff') words='--help balanced high-performance power-saver SCHEME_BALANCED SCHEME_MIN "
          "SCHEME_MAX SCHEME_CURRENT --with --ac --dc --json ",
          "\ncomplete -o default -F _zotdamctl zotdamctl zotdamctl.exe\n"})
        EXPECT_NE(script.find(line), std::string::npos) << line << script;
}

TEST_F(CompletionTest, PowerShellScriptListsWordsOfEachCommand) {
    const std::string script = Output({L"completion", L"powershell"});
    for (const char* const line :
         {"Register-ArgumentCompleter -Native -CommandName zotdamctl, zotdamctl.exe -ScriptBlock {\n",
          "\n        '' = 'count', 'functions', ",
          "\n        ' setting' = 'get', 'list', 'set', 'init', '--help', "})
        EXPECT_NE(script.find(line), std::string::npos) << line << script;
}

TEST_F(CompletionTest, JsonContainsScript) {
    EXPECT_EQ(JsonOutput({L"completion", L"bash"}), Json({{"script", Output({L"completion", L"bash"})}}));
}

TEST_F(CompletionTest, UnknownShellIsRejected) {
    ExpectError({L"completion", L"fish"}, WrongUsage, "SHELL must be bash or powershell, not \"fish\".");
}

}  // namespace ZOTDam::Test
