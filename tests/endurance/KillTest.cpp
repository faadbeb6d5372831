// Processes that save in a loop and are killed at random moments. The file they save is then what it was
// before the save or what it was to become: whole, and nothing in between.
#include <functional>
#include <random>

#include "support/DataFiles.h"
#include "support/Endurance.h"
#include "support/FunctionDefaultsTest.h"
#include "support/InstallationOfParent.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

constexpr int FunctionCount = 40;

// The two states between which a file changes are of different length: a mixture would be seen.
enum class State { Short, Long };

void StoreParameters(const Library& dll, State state) {
    const std::int32_t value = state == State::Short ? 1 : 1000000;
    std::map<std::int32_t, ParamValue> params;
    for (int id = 0; id < FunctionCount; ++id)
        params[id] = {value, value};
    dll.SetParameter(&Balanced, ParamHolder{params}.get());
}

void StoreSetting(const Library& dll, State state) {
    dll.SetCommonSetting(L"Setting", std::wstring(state == State::Short ? 10 : 4000, L'x').c_str());
}

void StoreFunctions(const Library& dll, State state) {
    FunctionBaseHolder holder;
    for (int id = 0; id < (state == State::Short ? 10 : FunctionCount); ++id)
        holder.records.push_back(Record(id));
    dll.AddFunctionDefault(&holder);
}

// One export that saves, and the file to which it does.
struct Saver {
    std::string name;
    void (*save)(const Library& dll, State state);
    std::filesystem::path (Installation::*file)() const;
};

const std::vector<Saver> savers = {
    {"SetParameter", StoreParameters, &Installation::UserFile},
    {"SetCommonSetting", StoreSetting, &Installation::UserFile},
    {"AddFunctionDefault", StoreFunctions, &Installation::DefaultsFile},
};

void PrintTo(const Saver& saver, std::ostream* out) {
    *out << saver.name;
}

const Saver& SaverOf(const std::wstring& name) {
    return *std::ranges::find(savers, std::string{name.begin(), name.end()}, &Saver::name);
}

[[noreturn]] void SaveForEver(const std::function<void(State)>& save) {
    save(State::Short);
    SignalReady();
    for (;;) {
        save(State::Long);
        save(State::Short);
    }
}

constexpr wchar_t SavesInALoop[] = L"saves-in-a-loop";
constexpr wchar_t SavesWithTheDomInALoop[] = L"saves-with-the-dom-in-a-loop";

const RegisterRole savesInALoop{SavesInALoop, [](const std::vector<std::wstring>& arguments) -> int {
                                    EnterInstallation(arguments);
                                    const Library dll;
                                    const Saver& saver = SaverOf(arguments.at(2));
                                    SaveForEver([&](State state) { saver.save(dll, state); });
                                }};

VARIANT AsVariant(const OwnedBstr& text) {
    VARIANT variant;
    V_VT(&variant) = VT_BSTR;
    V_BSTR(&variant) = text.get();
    return variant;
}

// As a program does that has nothing but the DOM. The two states come from files beside the one that it
// saves.
const RegisterRole savesWithTheDomInALoop{
    SavesWithTheDomInALoop, [](const std::vector<std::wstring>& arguments) -> int {
        const ComScope com;
        const std::wstring& file = arguments.at(3);
        const auto shortDocument = NewDocument();
        const auto longDocument = NewDocument();
        Load(*shortDocument, file + L".short");
        Load(*longDocument, file + L".long");
        VARIANT target;
        const OwnedBstr path{SysAllocString(file.c_str())};
        V_VT(&target) = VT_BSTR;
        V_BSTR(&target) = path.get();
        SaveForEver(
            [&](State state) { (state == State::Short ? shortDocument : longDocument)->save(target); });
    }};

// The DOM drops white space: it saves a file in another form than the one that it read.
std::string RewrittenByTheDom(const std::filesystem::path& file) {
    const ComScope com;
    const auto document = NewDocument();
    Load(*document, file);
    const OwnedBstr path{SysAllocString(file.c_str())};
    document->save(AsVariant(path));
    return ReadFile(file);
}

// Returns when so many microseconds have passed, which no sleep does exactly enough.
void SpinFor(int microseconds) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    do
        QueryPerformanceCounter(&now);
    while ((now.QuadPart - start.QuadPart) * 1000000 < frequency.QuadPart * microseconds);
}

}  // namespace

class KillTest : public FunctionDefaultsTest, public testing::WithParamInterface<Saver> {
protected:
    std::filesystem::path File() const { return (installation.*GetParam().file)(); }

    std::filesystem::path Beside(const char* extension) const {
        std::filesystem::path file = File();
        return file += extension;
    }

    // What the file holds when it has been saved whole.
    std::string Saved(State state) {
        GetParam().save(Dll(), state);
        return ReadFile(File());
    }

    void SetUp() override {
        Saved(State::Short);  // a file that is made has another declaration than one that is saved again
        longContent = Saved(State::Long);
        shortContent = Saved(State::Short);
    }

    // Kills processes of the role, and counts the files that are neither of the two then.
    int FilesSpoiled(const wchar_t* role, int kills) {
        std::mt19937 random{1};
        const std::string& name = GetParam().name;
        int spoiled = 0;
        for (int kill = 0; kill < kills; ++kill) {
            SecondProcess saver{role, WithFolders(installation, {{name.begin(), name.end()}, File()})};
            SpinFor(static_cast<int>(random() % 15000));
            saver.Kill();
            const std::string content = ReadFile(File());
            spoiled += content != shortContent && content != longContent;
            interrupted += std::filesystem::exists(SiblingOf(File()));
        }
        return spoiled;
    }

    std::string longContent;
    std::string shortContent;
    int interrupted = 0;  // saves whose new file was there but not yet in its place
};

INSTANTIATE_TEST_SUITE_P(, KillTest, testing::ValuesIn(savers), CaseName<Saver>);

TEST_P(KillTest, LeavesTheOldOrTheNewFile) {
    const int kills = Rounds(12, 1000);
    const int spoiled = FilesSpoiled(SavesInALoop, kills);
    EXPECT_EQ(spoiled, 0);
    ShowFigure(GetParam().name + ": kills", kills);
    ShowFigure(GetParam().name + ": of these with a new file that was not yet in its place", interrupted);
    ShowFigure(GetParam().name + ": files neither old nor new", spoiled);
    Unload();
    EXPECT_EQ(Saved(State::Long), longContent);
    EXPECT_FALSE(std::filesystem::exists(SiblingOf(File())));
}

// Shows that the kills come at the right moments: what writes into the file itself is met by them.
TEST_P(KillTest, OfASaveByTheDomItselfSpoilsFiles) {
    WriteFile(Beside(".long"), longContent);
    WriteFile(Beside(".short"), shortContent);
    longContent = RewrittenByTheDom(Beside(".long"));
    shortContent = RewrittenByTheDom(Beside(".short"));
    const int kills = Rounds(12, 1000);
    const int spoiled = FilesSpoiled(SavesWithTheDomInALoop, kills);
    EXPECT_GT(spoiled, 0);
    ShowFigure(GetParam().name + ", saved by the DOM itself: kills", kills);
    ShowFigure(GetParam().name + ", saved by the DOM itself: files neither old nor new", spoiled);
}

}  // namespace ZOTDam::Test
