// Oversized content in each of the four data files. The sizes are larger in the long run.
#include "support/CheckingClient.h"
#include "support/HostileFileTest.h"
#include "support/Repeat.h"
#include "support/Stress.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

std::string ManyAttributes(int count) {
    std::string attributes;
    for (int i = 0; i < count; ++i)
        attributes += " A" + std::to_string(i) + "=\"v\"";
    return attributes;
}

std::string ManyFunctions(int count) {
    std::string functions;
    for (int id = 10; id < 10 + count; ++id)
        functions += "<Function ID=\"" + std::to_string(id) +
                     "\" ACParamIndex=\"1\" DCParamIndex=\"1\"><Display/><Commands/>"
                     "<Default ACParamIndex=\"0\" DCParamIndex=\"0\"/></Function>";
    return functions;
}

std::vector<HostileContent> OversizedContents() {
    const int many = Rounds(1000, 20000);
    const std::string longText(static_cast<std::size_t>(Rounds(300000, 4000000)), 'x');
    return {
        {"LongValues", {}, longText},
        {"LongText", {}, "plain", longText},
        {"LongComment", {}, "plain", "<!--" + longText + "-->"},
        {"LongElementName", {}, "plain", "<" + longText + "/>"},
        {"LongAttributeName", {}, "plain", {}, longText + "=\"v\""},
        // A DOM may compare every attribute of an element with all others, which takes quadratic time.
        {"ManyAttributes", {}, "plain", {}, ManyAttributes(Rounds(500, 10000))},
        {"ManyComments", {}, "plain", Repeat("<!---->", many)},
        {"ManyInstructions", {}, "plain", Repeat("<?a?>", many)},
        {"ManySections", {}, "plain", Repeat("<CommonSettings/>", many)},
        {"ManyFunctions", {}, "plain", ManyFunctions(many)},
        {"ManyEntries", {}, "plain", Repeat("<data name=\"k\"><value>v</value></data>", many)},
        {"ManyItems", {}, "plain", Repeat("<DisplayItem/><DefaultItem GUID=\"x\"/><CommandItem/>", many)},
        {"ManySchemes", {}, "plain", Repeat("<PowerScheme GUID=\"x\"/><SchemeItem SchemeGUID=\"x\"/>", many)},
    };
}

}  // namespace

class LargeFileTest : public HostileFileTest, public testing::WithParamInterface<HostileCase> {};

INSTANTIATE_TEST_SUITE_P(, LargeFileTest,
                         testing::Combine(testing::ValuesIn(Targets()),
                                          testing::ValuesIn(OversizedContents())),
                         NameOfCase);

TEST_P(LargeFileTest, EveryExportSurvivesLargeFile) {
    const auto& [target, content] = GetParam();
    Write(target, content);
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
}

}  // namespace ZOTDam::Test
