// Kills processes at random moments while they save in a loop. The file must then have either the complete
// old content or the complete new content.
#include <functional>
#include <random>

#include "support/DataFiles.h"
#include "support/FunctionDefaultsTest.h"
#include "support/ParentInstallation.h"
#include "support/Stress.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

constexpr int FunctionCount = 40;

// The two states of the file differ in length, so that a mixture is detected.
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

// An export that saves, and the file that it writes.
struct Saver {
    std::string name;
    void (*save)(const Library& dll, State state);
    std::filesystem::path (Installation::*file)() const;
};

const std::vector<Saver> Savers = {
    {"SetParameter", StoreParameters, &Installation::UserFile},
    {"SetCommonSetting", StoreSetting, &Installation::UserFile},
    {"AddFunctionDefault", StoreFunctions, &Installation::DefaultsFile},
};

void PrintTo(const Saver& saver, std::ostream* out) {
    *out << saver.name;
}

const Saver& SaverOf(const std::wstring& name) {
    return *std::ranges::find_if(
        Savers, [&](const Saver& saver) { return std::filesystem::path{name} == saver.name; });
}

[[noreturn]] void SaveInALoop(const std::function<void(State)>& save) {
    save(State::Short);
    SignalReady();
    for (;;) {
        save(State::Long);
        save(State::Short);
    }
}

constexpr wchar_t SavesInALoop[] = L"saves-in-a-loop";
constexpr wchar_t SavesWithTheDomInALoop[] = L"saves-with-the-dom-in-a-loop";

const RegisterRole SavesInALoopRole{SavesInALoop, [](const std::vector<std::wstring>& arguments) -> int {
                                        EnterInstallation(arguments);
                                        const Library dll;
                                        const Saver& saver = SaverOf(arguments.at(2));
                                        SaveInALoop([&](State state) { saver.save(dll, state); });
                                    }};

VARIANT AsVariant(const OwnedBstr& text) {
    VARIANT variant;
    V_VT(&variant) = VT_BSTR;
    V_BSTR(&variant) = text.get();
    return variant;
}

// Saves as a program that uses only the DOM does. The two states are read from files next to the one that it
// saves.
const RegisterRole SavesWithTheDomInALoopRole{
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
        SaveInALoop(
            [&](State state) { (state == State::Short ? shortDocument : longDocument)->save(target); });
    }};

// The DOM drops white space, so it saves a file in a different form from the one that it read.
std::string RewriteWithDom(const std::filesystem::path& file) {
    const ComScope com;
    const auto document = NewDocument();
    Load(*document, file);
    const OwnedBstr path{SysAllocString(file.c_str())};
    document->save(AsVariant(path));
    return ReadFile(file);
}

// Waits in a loop for a number of microseconds, because a sleep is not precise enough.
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

class KilledSaveTest : public FunctionDefaultsTest, public testing::WithParamInterface<Saver> {
protected:
    std::filesystem::path File() const { return (installation.*GetParam().file)(); }

    std::filesystem::path PathWith(const char* extension) const {
        std::filesystem::path file = File();
        return file += extension;
    }

    // Saves the state and returns the content of the file.
    std::string Save(State state) {
        GetParam().save(Dll(), state);
        return ReadFile(File());
    }

    void SetUp() override {
        Save(State::Short);  // a new file has a different declaration from one that is saved again
        longContent = Save(State::Long);
        shortContent = Save(State::Short);
    }

    // Kills processes that run the role. Returns how often the file had neither of the two states after a
    // kill.
    int KillSavers(const wchar_t* role, int kills) {
        std::mt19937 random{1};
        const std::string& name = GetParam().name;
        int spoiled = 0;
        for (int kill = 0; kill < kills; ++kill) {
            SecondProcess saver{role, WithFolders(installation, {{name.begin(), name.end()}, File()})};
            SpinFor(static_cast<int>(random() % 15000));
            saver.Kill();
            const std::string content = ReadFile(File());
            spoiled += content != shortContent && content != longContent;
            interrupted += std::filesystem::exists(TemporaryFileOf(File()));
        }
        return spoiled;
    }

    std::string longContent;
    std::string shortContent;
    int interrupted = 0;  // kills that left a temporary file
};

INSTANTIATE_TEST_SUITE_P(, KilledSaveTest, testing::ValuesIn(Savers), CaseName<Saver>);

TEST_P(KilledSaveTest, KilledProcessLeavesOldOrNewFile) {
    const int kills = Rounds(12, 1000);
    const int spoiled = KillSavers(SavesInALoop, kills);
    EXPECT_EQ(spoiled, 0);
    ShowFigure(GetParam().name + ": kills", kills);
    ShowFigure(GetParam().name + ": of these with a new file that was not yet in its place", interrupted);
    ShowFigure(GetParam().name + ": files neither old nor new", spoiled);
    Unload();
    EXPECT_EQ(Save(State::Long), longContent);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(File())));
}

// Shows that the kills happen at the right moments: they interrupt saves that write directly to the file.
TEST_P(KilledSaveTest, KilledProcessDamagesFileSavedByDom) {
    WriteFile(PathWith(".long"), longContent);
    WriteFile(PathWith(".short"), shortContent);
    longContent = RewriteWithDom(PathWith(".long"));
    shortContent = RewriteWithDom(PathWith(".short"));
    const int kills = Rounds(12, 1000);
    const int spoiled = KillSavers(SavesWithTheDomInALoop, kills);
    EXPECT_GT(spoiled, 0);
    ShowFigure(GetParam().name + ", saved by the DOM itself: kills", kills);
    ShowFigure(GetParam().name + ", saved by the DOM itself: files neither old nor new", spoiled);
}

}  // namespace ZOTDam::Test
