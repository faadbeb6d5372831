// Tests of the library's lifetime, each in a separate process: the threads and apartments that use the
// library, and the order of its unloading, the end of COM and the end of the process.
#include <windows.h>

#include <array>
#include <functional>
#include <optional>
#include <thread>

#include "support/ParentInstallation.h"
#include "support/SettingsTest.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

constexpr int Success = 0;

class ComApartment {
public:
    explicit ComApartment(COINIT apartment) { CoInitializeEx(nullptr, apartment); }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() { CoUninitialize(); }
};

// A client that can end its use of the library in different ways.
class Client {
public:
    void Load() { module.emplace(Library::ProgramFolder() / L"ZOTDam.dll"); }

    // Makes the library load everything that it caches, and save.
    bool Use(std::int32_t value) const {
        auto ignore = MakeCallback<IGetFunctionInfoCallback>([](std::uint32_t, const FunctionRecord*) {});
        Text setting = {};
        const ParamHolder params{{{1, {value, value}}, {2, {value, value}}}};
        return Count() == 2 && Get<decltype(ZOTDam::GetFunctionInfo)>("GetFunctionInfo")(&ignore) &&
               Get<decltype(ZOTDam::SetParameter)>("SetParameter")(&Balanced, params.get()) &&
               Get<decltype(ZOTDam::TEVGetParam)>("TEVGetParam")(&Balanced) &&
               Get<decltype(ZOTDam::SetCommonSetting)>("SetCommonSetting")(L"Name", L"value") &&
               !Get<decltype(ZOTDam::GetCommonSetting)>("GetCommonSetting")(L"Missing", setting) &&
               ReadStored() == value;
    }

    bool Exit() const { return Get<decltype(ZOTDam::ZOTDamExit)>("ZOTDamExit")(); }

    // Returns whether the exports behave as they must after ZOTDamExit.
    bool HasExited() const {
        return Count() == CatalogueUnavailable && ReadStored() == -1 &&
               !Get<decltype(ZOTDam::SetCommonSetting)>("SetCommonSetting")(L"Name", L"late") && Exit();
    }

    bool Free() {
        module.reset();
        return GetModuleHandleW(L"ZOTDam.dll") == nullptr;
    }

private:
    template <class Function>
    Function* Get(const char* name) const {
        return module->Export<Function*>(name);
    }

    std::uint32_t Count() const { return Get<decltype(ZOTDam::GetFuncCount)>("GetFuncCount")(); }

    std::int32_t ReadStored() const {
        std::int32_t stored = -1;
        auto keep = MakeCallback<IGetParameterCallback>(
            [&](std::int32_t, const ParamValue* value) { stored = value->ACParamIndex; });
        Get<decltype(ZOTDam::GetParameter)>("GetParameter")(&Balanced, &keep);
        return stored;
    }

    std::optional<Module> module;
};

// The client is never destroyed, so that it does not free the library when the process ends.
Client& NewClient() {
    return *new Client;
}

// Runs the action on another thread and waits until that thread has ended.
bool OnAnotherThread(const std::function<bool()>& action) {
    bool result = false;
    std::thread{[&] { result = action(); }}.join();
    return result;
}

constexpr std::array Apartments = {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED};

// ---- Every combination ----

struct Lifetime {
    COINIT apartment = COINIT_MULTITHREADED;
    bool beginsOnAnotherThread = false;
    bool callsExit = false;
    bool freesLibrary = false;
    bool leavesComFirst = false;

    std::string Name() const {
        return std::string{apartment == COINIT_MULTITHREADED ? "Mta" : "Sta"} +
               (beginsOnAnotherThread ? "LoadedByEndedThread" : "OnOneThread") +
               (callsExit ? "WithExit" : "WithoutExit") + (freesLibrary ? "Freed" : "NotFreed") +
               (leavesComFirst ? "AfterCoUninitialize" : "BeforeCoUninitialize");
    }
};

std::vector<Lifetime> Lifetimes() {
    std::vector<Lifetime> lifetimes;
    for (const COINIT apartment : Apartments)
        for (int choice = 0; choice < 16; ++choice)
            lifetimes.push_back(
                {apartment, (choice & 8) != 0, (choice & 4) != 0, (choice & 2) != 0, (choice & 1) != 0});
    return lifetimes;
}

bool EndUse(Client& client, const Lifetime& lifetime) {
    return (!lifetime.callsExit || (client.Exit() && client.HasExited())) &&
           (!lifetime.freesLibrary || client.Free());
}

bool RunLifetime(const Lifetime& lifetime) {
    Client& client = NewClient();
    std::optional<ComApartment> com{lifetime.apartment};
    const auto begin = [&] {
        client.Load();
        return client.Use(7);
    };
    const auto beginWithOwnCom = [&] {
        const ComApartment comOfThread{lifetime.apartment};
        return begin();
    };
    bool isRight = lifetime.beginsOnAnotherThread ? OnAnotherThread(beginWithOwnCom) : begin();
    isRight = isRight && client.Use(8);
    if (lifetime.leavesComFirst)
        com.reset();
    return EndUse(client, lifetime) && isRight;
}

// The arguments are the folders and the index of the lifetime.
const RegisterRole RunLifetimeRole{
    L"run-lifetime", [](const std::vector<std::wstring>& arguments) {
        EnterInstallation(arguments);
        return RunLifetime(Lifetimes().at(std::stoul(arguments.at(2)))) ? Success : 1;
    }};

// ---- Special cases ----

using Sequence = bool (*)(Client&);

// Performs each step on a new thread. The threads that load, exit and free the library do not initialise COM.
bool PassFromThreadToThread(Client& client) {
    const auto withCom = [&](COINIT apartment, std::int32_t value) {
        return OnAnotherThread([&] {
            const ComApartment com{apartment};
            return client.Use(value);
        });
    };
    const bool isRight = OnAnotherThread([&] {
        client.Load();
        return true;
    });
    return isRight && withCom(COINIT_APARTMENTTHREADED, 6) && withCom(COINIT_MULTITHREADED, 7) &&
           withCom(COINIT_APARTMENTTHREADED, 8) && OnAnotherThread([&] { return client.Exit(); }) &&
           OnAnotherThread([&] { return client.Free(); });
}

// Returns the module with the methods of the objects of the DOM.
HMODULE ModuleOfDom() {
    const OwnedInterface<IXMLDOMDocument> document = NewDocument();
    const auto* const methods = *reinterpret_cast<const wchar_t* const* const*>(document.get());
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       methods[0], &module);
    return module;
}

bool IsLoaded(HMODULE module) {
    HMODULE found = nullptr;
    return GetModuleHandleExW(
               GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
               reinterpret_cast<const wchar_t*>(module), &found) != FALSE;
}

// At the last CoUninitialize, Windows unloads the modules of the classes, even while their objects are in
// use. This system does not, so this function frees the module until it is unloaded. A pinned module stays.
void UnloadAsComDoes(HMODULE module) {
    constexpr int moreThanItsReferences = 100;
    for (int i = 0; i < moreThanItsReferences && IsLoaded(module); ++i)
        FreeLibrary(module);
}

// The loader handles an access violation that occurs while it unloads a module, so the process does not end.
bool hasAccessViolation = false;

LONG WINAPI NoteAccessViolation(EXCEPTION_POINTERS* exception) {
    hasAccessViolation = hasAccessViolation || exception->ExceptionRecord->ExceptionCode ==
                                                   static_cast<DWORD>(EXCEPTION_ACCESS_VIOLATION);
    return EXCEPTION_CONTINUE_SEARCH;
}

template <COINIT Apartment, bool CallsExit>
bool FreeAfterComHasUnloadedDom(Client& client) {
    std::optional<ComApartment> com{Apartment};
    client.Load();
    const bool isRight = client.Use(8);
    const HMODULE dom = ModuleOfDom();
    com.reset();
    UnloadAsComDoes(dom);
    AddVectoredExceptionHandler(1, &NoteAccessViolation);
    return (!CallsExit || client.Exit()) && client.Free() && !hasAccessViolation && isRight;
}

bool FreeWithoutExitOrCom(Client& client) {
    const bool isRight = OnAnotherThread([&] {
        const ComApartment com{COINIT_APARTMENTTHREADED};
        client.Load();
        return client.Use(8);
    });
    return client.Free() && isRight;
}

// A thread that has not initialised COM can use the multithreaded apartment of another thread.
bool UseMtaOfAnotherThread(Client& client) {
    const ComApartment com{COINIT_MULTITHREADED};
    client.Load();
    return OnAnotherThread([&] { return client.Use(8); }) && client.Exit() && client.Free();
}

bool UseInAnotherApartment(Client& client) {
    for (const COINIT apartment : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
        const ComApartment com{apartment};
        client.Load();
        if (!client.Use(8) || !client.Free())
            return false;
    }
    return true;
}

bool LoadTwiceAndFreeOnce(Client& client) {
    const ComApartment com{COINIT_APARTMENTTHREADED};
    client.Load();
    {
        Client other;
        other.Load();
        if (!other.Use(7) || other.Free())
            return false;
    }
    return client.Use(8) && client.Exit() && client.Free();
}

bool ExitOnAnotherThread(Client& client) {
    const ComApartment com{COINIT_APARTMENTTHREADED};
    client.Load();
    if (client.Use(8))
        std::thread{[] { ExitProcess(Success); }}.join();
    return false;
}

// Ends the process while another thread is at an arbitrary point in the library.
bool ExitWhileAnotherThreadWorks(Client& client) {
    const HANDLE used = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::thread{[&client, used] {
        const ComApartment com{COINIT_MULTITHREADED};
        client.Load();
        while (client.Use(8))
            SetEvent(used);
    }}.detach();
    for (int use = 0; use < 5; ++use)
        WaitForSingleObject(used, INFINITE);
    return true;
}

const std::map<std::wstring, Sequence> Sequences = {
    {L"EachStepOnNewThread", PassFromThreadToThread},
    {L"FreedAfterComHasUnloadedDom", FreeAfterComHasUnloadedDom<COINIT_MULTITHREADED, false>},
    {L"ExitAfterComHasUnloadedDom", FreeAfterComHasUnloadedDom<COINIT_APARTMENTTHREADED, true>},
    {L"FreedOnThreadWithoutCom", FreeWithoutExitOrCom},
    {L"MtaOfOtherThread", UseMtaOfAnotherThread},
    {L"ReloadedInOtherApartment", UseInAnotherApartment},
    {L"LoadedTwiceAndFreedOnce", LoadTwiceAndFreeOnce},
    {L"ProcessEndedByOtherThread", ExitOnAnotherThread},
    {L"ProcessEndedWhileOtherThreadWorks", ExitWhileAnotherThreadWorks},
};

const RegisterRole RunSequenceRole{L"run-sequence", [](const std::vector<std::wstring>& arguments) {
                                       EnterInstallation(arguments);
                                       return Sequences.at(arguments.at(2))(NewClient()) ? Success : 1;
                                   }};

}  // namespace

class LifetimeTest : public SettingsTest {
protected:
    LifetimeTest() { WriteDefaults(TwoFunctions); }

    DWORD ExitCodeOf(const std::wstring& role, const std::wstring& argument) const {
        return SecondProcess{role, WithFolders(installation, {argument})}.WaitForExit();
    }

    // Expects that the ended process left a complete file and no busy marker.
    void ExpectLastValues() {
        EXPECT_EQ(OpenMutexW(SYNCHRONIZE, FALSE, UserMarker), nullptr);
        EXPECT_TRUE(IsWellFormed(installation.UserFile()));
        EXPECT_EQ(GetParameter(Balanced), (Params{{1, {8, 8}}, {2, {8, 8}}}));
        EXPECT_TRUE(SetParameter(Balanced, {{1, {9, 9}}}));
        EXPECT_EQ(GetParameter(Balanced), (Params{{1, {9, 9}}, {2, {8, 8}}}));
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.UserFile())));
    }
};

class LifetimeCombinationTest : public LifetimeTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(LifetimeCombinationTest, ProcessEndsNormallyAndFileIsComplete) {
    EXPECT_EQ(ExitCodeOf(L"run-lifetime", std::to_wstring(GetParam())), 0u);
    ExpectLastValues();
    EXPECT_NE(UserSettings().find(R"(Name="value")"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(, LifetimeCombinationTest, testing::Range(std::size_t{0}, Lifetimes().size()),
                         [](const testing::TestParamInfo<std::size_t>& info) {
                             return Lifetimes().at(info.param).Name();
                         });

class LifetimeCaseTest : public LifetimeTest, public testing::WithParamInterface<std::wstring> {};

TEST_P(LifetimeCaseTest, ProcessEndsNormallyAndFileIsComplete) {
    EXPECT_EQ(ExitCodeOf(L"run-sequence", GetParam()), 0u);
    ExpectLastValues();
}

std::vector<std::wstring> SequenceNames() {
    std::vector<std::wstring> names;
    names.reserve(std::size(Sequences));
    for (const auto& [name, sequence] : Sequences)
        names.push_back(name);
    return names;
}

INSTANTIATE_TEST_SUITE_P(, LifetimeCaseTest, testing::ValuesIn(SequenceNames()),
                         [](const testing::TestParamInfo<std::wstring>& info) { return Utf8(info.param); });

}  // namespace ZOTDam::Test
