#include "Workbench.h"

#include <iterator>
#include <map>

#include "DataFiles.h"

namespace ZOTDam::Bench {

namespace {

constexpr GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
constexpr GUID HighPerformance = {
    0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}};
constexpr wchar_t BalancedText[] = L"381b4222-f694-41f0-9685-ff5bb260df2e";
constexpr wchar_t HighPerformanceText[] = L"8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c";

// A callback that does nothing, because the baseline has no callbacks.
template <class Interface>
Interface* IgnoreItems() {
    static auto callback = MakeCallback<Interface>([](auto...) {});
    return &callback;
}

std::map<std::int32_t, ParamValue> ParametersFor(int functions) {
    std::map<std::int32_t, ParamValue> values;
    for (int id = 1; id <= functions; ++id)
        values[id] = {id % 2, id % 3};
    return values;
}

}  // namespace

Workbench::Workbench(int functions) : size{functions} {
    Test::WriteFile(installation.DefaultsFile(), DefaultsFile(size));
    Test::WriteFile(BaselineDefaultsFile(), DefaultsFile(size));
    Test::WriteFile(installation.BaseFile(), BaseFile(size));
    Test::WriteFile(installation.StringTableFile(), StringTable());
    WriteUserFiles();
    library.emplace();
    params.emplace(ParametersFor(size));
}

std::vector<Case> Workbench::Cases() {
    FillLibrary();
    defaults.emplace(installation.DefaultsFile());
    base.emplace(installation.BaseFile());
    stringTable.emplace(installation.StringTableFile());
    baseFunctions = CollectFunctions(*base);
    recordsToAdd = BaseFunctions();

    std::vector<Case> cases;
    for (const auto& group :
         {CatalogueCases(), ParameterCases(), SavingCases(&PlainDocument::SaveAtomically, ""),
          SavingCases(&PlainDocument::Save, PlainSaveSuffix)})
        cases.insert(cases.end(), group.begin(), group.end());
    cases.push_back(FirstAnswerCase());
    cases.push_back(ExitCase());
    return cases;
}

void Workbench::FillLibrary() {
    Text text;
    library->GetFunctionInfo(IgnoreItems<IGetFunctionInfoCallback>());
    library->GetSpecScheme(IgnoreItems<IGetSpecSchemeCallback>());
    library->GetCommonSetting(L"Missing", text);
    library->TEVGetParam(&Balanced);
}

void Workbench::UnloadLibrary() {
    // Freed first, because these records hold nodes of the library's documents.
    recordsToAdd.records.clear();
    library.reset();
}

// ---- The exports that only read ----

std::function<void()> Workbench::UnlessTooLong(std::function<void()> baseline) const {
    constexpr int largestSize = 1000;
    return size <= largestSize ? std::move(baseline) : std::function<void()>{};
}

std::vector<Case> Workbench::CatalogueCases() {
    return {
        {"GetFuncCount", [this] { library->GetFuncCount(); }},
        {"GetFunctionBase", [this] { library->GetFunctionBase(IgnoreItems<IGetFunctionBaseCallback>()); },
         [this] { ReadBase(*base); }},
        {"GetFunctionBaseUnSupported",
         [this] { library->GetFunctionBaseUnSupported(IgnoreItems<IGetFunctionBaseCallback>()); },
         [this] { ReadBase(*base); }},
        {"GetFunctionInfo", [this] { library->GetFunctionInfo(IgnoreItems<IGetFunctionInfoCallback>()); },
         UnlessTooLong([this] { TranslateFunctions(*defaults, *stringTable); })},
        {"GetSpecScheme", [this] { library->GetSpecScheme(IgnoreItems<IGetSpecSchemeCallback>()); },
         [this] { ReadSpecSchemes(*base); }},
    };
}

std::vector<Case> Workbench::ParameterCases() {
    const auto readScheme = [this] { ReadScheme(BaselineUserFile(), BalancedText); };
    return {
        {"GetParameter", [this] { library->GetParameter(&Balanced, IgnoreItems<IGetParameterCallback>()); },
         readScheme},
        {"GetParameterDefault",
         [this] { library->GetParameterDefault(&Balanced, IgnoreItems<IGetParameterDefaultCallback>()); },
         [this] { ReadDefaultParameters(*defaults); }},
        {"GetParameterDefault (bare walk)",
         [this] { library->GetParameterDefault(&Balanced, IgnoreItems<IGetParameterDefaultCallback>()); },
         [this] { WalkDefaultParameters(*defaults); }},
        {"TEVGetParam", [this] { library->TEVGetParam(&Balanced); }, readScheme},
        {"GetFuncCurValue",
         [this] {
             FuncCurValue value;
             library->GetFuncCurValue(static_cast<std::uint32_t>(size / 2), &value);
         }},
        {"GetCommandInfo",
         [this] { library->GetCommandInfo(&Balanced, IgnoreItems<IGetCommandInfoCallback>()); }, readScheme},
        {"GetDiffFuncList",
         [this] {
             Text names;
             Text values;
             library->GetDiffFuncList(&Balanced, &HighPerformance, 1, names, values);
         },
         UnlessTooLong([this] {
             ReadScheme(BaselineUserFile(), BalancedText);
             ReadScheme(BaselineUserFile(), HighPerformanceText);
             TranslateDifferences(*defaults, *stringTable);
         })},
        {"GetCommonSetting",
         [this] {
             Text value;
             library->GetCommonSetting(L"User", value);
         },
         [this] { ReadSetting(BaselineUserFile()); }},
    };
}

// ---- The exports that save ----

std::vector<Case> Workbench::SavingCases(SaveDocument save, std::string_view suffix) {
    const auto writeUserFiles = [this] { WriteUserFiles(); };
    const auto named = [&](std::string name) { return name.append(suffix); };
    return {
        {named("SetParameter"), [this] { library->SetParameter(&Balanced, params->get()); },
         [this, save] { WriteScheme(BaselineUserFile(), BalancedText, save); }, writeUserFiles,
         writeUserFiles},
        {named("SetCommonSetting"), [this] { library->SetCommonSetting(L"User", L"value"); },
         [this, save] { WriteSetting(BaselineUserFile(), save); }},
        {named("ResetDefault"), [this] { library->ResetDefault(); },
         [this, save] { ResetSettings(*settings, BaselineUserFile(), save); },
         [this] {
             WriteUserFiles();
             Text value;
             library->GetCommonSetting(L"User", value);
         },
         [this] {
             WriteUserFiles();
             settings.emplace(BaselineUserFile());
         }},
        {named("InitCommonSetting"), [this] { library->InitCommonSetting(); },
         [this, save] { ReplaceSettings(*defaults, *base, BaselineDefaultsFile(), save); }},
        {named("AddFunctionDefault"), [this] { library->AddFunctionDefault(&recordsToAdd); },
         [this, save] { ReplaceFunctions(*defaults, baseFunctions, BaselineDefaultsFile(), save); }},
    };
}

Case Workbench::FirstAnswerCase() {
    return {"load to first answer",
            [this] {
                library.emplace();
                library->GetFuncCount();
            },
            [this] { ReadCatalogue(PlainDocument{BaselineDefaultsFile()}); },
            [this] {
                UnloadLibrary();
                Test::WriteFile(installation.DefaultsFile(), DefaultsFile(size));
                Test::WriteFile(BaselineDefaultsFile(), DefaultsFile(size));
            }};
}

Case Workbench::ExitCase() {
    return {"ZOTDamExit", [this] { library->ZOTDamExit(); },
            [this] {
                for (auto* const document : {&defaults, &base, &stringTable, &settings})
                    document->reset();
            },
            [this] {
                UnloadLibrary();
                library.emplace();
                FillLibrary();
            },
            [this] {
                baseFunctions.clear();
                defaults.emplace(installation.DefaultsFile());
                base.emplace(installation.BaseFile());
                stringTable.emplace(installation.StringTableFile());
                settings.emplace(installation.UserFile());
            }};
}

FunctionBaseHolder Workbench::BaseFunctions() const {
    FunctionBaseHolder holder;
    auto keep = MakeCallback<IGetFunctionBaseCallback>(
        [&](const FunctionBaseRecord* record) { holder.records.push_back(*record); });
    library->GetFunctionBase(&keep);
    return holder;
}

void Workbench::WriteUserFiles() const {
    Test::WriteFile(installation.UserFile(), UserFile(size));
    Test::WriteFile(BaselineUserFile(), UserFile(size));
}

std::filesystem::path Workbench::BaselineUserFile() const {
    return installation.UserFile().parent_path() / L"Baseline.xml";
}

std::filesystem::path Workbench::BaselineDefaultsFile() const {
    return installation.DefaultsFile().parent_path() / L"Baseline.xml";
}

}  // namespace ZOTDam::Bench
