#include "Workbench.h"

#include <algorithm>
#include <iterator>

namespace ZOTDam::Bench {

namespace {

constexpr wchar_t Balanced[] = L"381b4222-f694-41f0-9685-ff5bb260df2e";
constexpr wchar_t HighPerformance[] = L"8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c";

std::map<std::int32_t, ParamValue> ParametersFor(int functions) {
    std::map<std::int32_t, ParamValue> values;
    for (int id = 1; id <= functions; ++id)
        values[id] = {id % 2, id % 3};
    return values;
}

void Append(std::vector<Case> added, std::vector<Case>& cases) {
    std::ranges::move(added, std::back_inserter(cases));
}

}  // namespace

Workbench::Workbench(const Sizes& sizes, const std::filesystem::path& oldDll)
    : sizes{sizes},
      version{Library::ProgramFolder() / L"ZOTDam.dll"},
      params{ParametersFor(sizes.functions)} {
    Test::WriteFile(installation.BaseFile(), BaseFile(sizes));
    Test::WriteFile(installation.StringTableFile(), StringTable(sizes));
    WriteDefaultsFiles();
    WriteUserFiles();
    if (!oldDll.empty())
        oldVersion.emplace(oldDll);
}

std::vector<Case> Workbench::Cases() {
    LoadDocuments();
    version.Fill();
    version.KeepBaseFunctions();
    if (oldVersion) {
        oldVersion->Fill();
        oldVersion->KeepBaseFunctions();
    }
    AgeFiles();
    std::vector<Case> cases = {{"parse by path", ParseByPath(), {}},
                               {"parse of bytes", ParseOfBytes(), {{Reference::Parse, ParseByPath()}}}};
    for (const auto& group : {CatalogueCases(), ParameterCases(), ChangedFileCases(), SettingSavingCases(),
                              DefaultsSavingCases()})
        Append(group, cases);
    cases.push_back(FirstAnswerCase());
    cases.push_back(ExitCase());
    return cases;
}

std::vector<Case> Workbench::TextCases() {
    LoadDocuments();
    const std::string suffix = " (" + std::to_string(sizes.entries) + " texts)";
    return {Compare("GetFunctionInfo" + suffix, &Version::GetFunctionInfo,
                    {{Reference::Best, {[this] { Best::TranslateFunctions(*defaults, texts); }}}}),
            FirstTextsCase(suffix)};
}

void Workbench::LoadDocuments() {
    defaults.emplace(BaselineDefaultsFile());
    base.emplace(installation.BaseFile());
    stringTable.emplace(installation.StringTableFile());
    texts = Best::IndexTexts(*stringTable);
    baseFunctions = CollectFunctions(*base);
}

// Waits until the library can recognise an unchanged file by its times. The change time cannot be set back.
void Workbench::AgeFiles() {
    Sleep(2100);
}

Run Workbench::ParseByPath() {
    return {[this] { parsed.Load(BaselineUserFile()); }};
}

Run Workbench::ParseOfBytes() {
    return {[this] { parsed.LoadBytes(BaselineUserFile()); }};
}

Case Workbench::Compare(const std::string& name, const Call& call, std::map<Reference, Run> references,
                        const Call& preparation) {
    const auto bind = [&](Version& product) {
        Run run{[call, &product] { call(product); }};
        if (preparation)
            run.preparation = [preparation, &product] { preparation(product); };
        return run;
    };
    if (oldVersion)
        references[Reference::OldVersion] = bind(*oldVersion);
    return {name, bind(version), std::move(references)};
}

// ---- The exports that only read ----

std::vector<Case> Workbench::CatalogueCases() {
    const std::map<Reference, Run> readBase = {{Reference::Baseline, {[this] { ReadBase(*base); }}},
                                               {Reference::Best, {[this] { Best::ReadBase(*base); }}}};
    std::map<Reference, Run> translate = {
        {Reference::Best, {[this] { Best::TranslateFunctions(*defaults, texts); }}}};
    if (IsSmall())
        translate[Reference::Baseline] = {[this] { TranslateFunctions(*defaults, *stringTable); }};
    return {
        Compare("GetFuncCount", &Version::GetFuncCount, {}),
        Compare("GetFunctionBase", &Version::GetFunctionBase, readBase),
        Compare("GetFunctionBaseUnSupported", &Version::GetFunctionBaseUnSupported, readBase),
        Compare("GetFunctionInfo", &Version::GetFunctionInfo, translate),
        Compare("GetSpecScheme", &Version::GetSpecScheme,
                {{Reference::Baseline, {[this] { ReadSpecSchemes(*base); }}},
                 {Reference::Best, {[this] { Best::ReadSpecSchemes(*base); }}}}),
        Compare("GetParameterDefault", &Version::GetParameterDefault,
                {{Reference::Baseline, {[this] { ReadDefaultParameters(*defaults); }}},
                 {Reference::Best, {[this] { Best::ReadDefaultParameters(*defaults); }}}}),
        Compare("GetFuncCurValue", [this](Version& product) { product.GetFuncCurValue(sizes.functions / 2); },
                {}),
    };
}

// These load the user settings unless the file is unchanged.
std::vector<Case> Workbench::ParameterCases() {
    const Run parse = ParseByPath();
    const std::map<Reference, Run> readScheme = {
        {Reference::Parse, parse},
        {Reference::Baseline, {[this] { ReadScheme(BaselineUserFile(), Balanced); }}},
        {Reference::Best, {[this] { Best::ReadScheme(bestDocument, BaselineUserFile(), Balanced); }}}};
    const std::map<Reference, Run> readSetting = {
        {Reference::Parse, parse},
        {Reference::Baseline, {[this] { ReadSetting(BaselineUserFile()); }}},
        {Reference::Best, {[this] { Best::ReadSetting(bestDocument, BaselineUserFile()); }}}};
    std::map<Reference, Run> compareSchemes = {
        {Reference::Parse, parse}, {Reference::Best, {[this] {
                                        Best::CompareSchemes(bestDocument, BaselineUserFile(), Balanced,
                                                             HighPerformance, *defaults, texts);
                                    }}}};
    if (IsSmall())
        compareSchemes[Reference::Baseline] = {[this] {
            ReadScheme(BaselineUserFile(), Balanced);
            ReadScheme(BaselineUserFile(), HighPerformance);
            TranslateDifferences(*defaults, *stringTable);
        }};
    return {Compare("GetParameter", &Version::GetParameter, readScheme),
            Compare("TEVGetParam", &Version::TEVGetParam, readScheme),
            Compare("GetCommandInfo", &Version::GetCommandInfo, readScheme),
            Compare("GetDiffFuncList", &Version::GetDiffFuncList, compareSchemes),
            Compare("GetCommonSetting", &Version::GetCommonSetting, readSetting)};
}

std::vector<Case> Workbench::ChangedFileCases() {
    std::vector<Case> cases = ParameterCases();
    for (Case& changed : cases) {
        changed.name += ChangedSuffix;
        changed.library.preparation = [this] { WriteUserFiles(); };
        for (auto& [reference, run] : changed.references)
            run.preparation = changed.library.preparation;
    }
    return cases;
}

// ---- The exports that save ----

std::map<Reference, Run> Workbench::SavingReferences(const std::function<void(SaveDocument)>& baseline,
                                                     const std::function<void()>& best,
                                                     const std::function<void()>& preparation) {
    return {{Reference::Baseline, {[=] { baseline(&PlainDocument::SaveAtomically); }, preparation}},
            {Reference::PlainSave, {[=] { baseline(&PlainDocument::Save); }, preparation}},
            {Reference::Best, {best, preparation}}};
}

std::vector<Case> Workbench::SettingSavingCases() {
    const auto writeUserFiles = [this] { WriteUserFiles(); };
    const auto resetSettings = [this](SaveDocument save) {
        ResetSettings(*settings, BaselineUserFile(), save);
    };
    return {
        Compare(
            "SetParameter", [this](Version& product) { product.SetParameter(params); },
            SavingReferences([this](SaveDocument save) { WriteScheme(BaselineUserFile(), Balanced, save); },
                             [this] { Best::WriteScheme(bestDocument, BaselineUserFile(), Balanced); },
                             writeUserFiles),
            [this](Version&) { WriteUserFiles(); }),
        Compare("SetCommonSetting", &Version::SetCommonSetting,
                SavingReferences([this](SaveDocument save) { WriteSetting(BaselineUserFile(), save); },
                                 [this] { Best::WriteSetting(bestDocument, BaselineUserFile()); })),
        Compare("ResetDefault", &Version::ResetDefault,
                SavingReferences(
                    resetSettings, [=] { resetSettings(&PlainDocument::SaveByHandle); },
                    [this] {
                        WriteUserFiles();
                        settings.emplace(BaselineUserFile());
                    }),
                [this](Version& product) {
                    WriteUserFiles();
                    product.GetCommonSetting();
                }),
    };
}

std::vector<Case> Workbench::DefaultsSavingCases() {
    const auto replaceSettings = [this](SaveDocument save) {
        ReplaceSettings(*defaults, *base, BaselineDefaultsFile(), save);
    };
    const auto replaceFunctions = [this](SaveDocument save) {
        ReplaceFunctions(*defaults, baseFunctions, BaselineDefaultsFile(), save);
    };
    return {
        Compare("InitCommonSetting", &Version::InitCommonSetting,
                SavingReferences(replaceSettings, [=] { replaceSettings(&PlainDocument::SaveByHandle); })),
        Compare("AddFunctionDefault", &Version::AddFunctionDefault,
                SavingReferences(replaceFunctions, [=] { replaceFunctions(&PlainDocument::SaveByHandle); })),
    };
}

// ---- Loading and unloading ----

Case Workbench::FirstAnswerCase() {
    return Compare(
        "load to first answer",
        [](Version& product) {
            product.Load();
            product.GetFuncCount();
        },
        {{Reference::Baseline,
          {[this] { ReadCatalogue(PlainDocument{BaselineDefaultsFile()}); },
           [this] { WriteDefaultsFiles(); }}},
         {Reference::Best,
          {[this] { Best::ReadCatalogue(bestDocument, BaselineDefaultsFile()); },
           [this] { WriteDefaultsFiles(); }}}},
        [this](Version& product) {
            product.Unload();
            WriteDefaultsFiles();
        });
}

Case Workbench::FirstTextsCase(const std::string& suffix) {
    return Compare(
        "load to GetFunctionInfo" + suffix,
        [](Version& product) {
            product.Load();
            product.GetFunctionInfo();
        },
        {{Reference::Best, {[this] {
              PlainDocument table;
              table.LoadBytes(installation.StringTableFile());
              PlainDocument catalogue;
              catalogue.LoadBytes(BaselineDefaultsFile());
              Best::TranslateFunctions(catalogue, Best::IndexTexts(table));
          }}}},
        &Version::Unload);
}

Case Workbench::ExitCase() {
    const Run baseline = {[this] {
                              for (auto* const document : {&defaults, &base, &stringTable, &settings})
                                  document->reset();
                          },
                          [this] {
                              LoadDocuments();
                              baseFunctions.clear();
                              settings.emplace(BaselineUserFile());
                          }};
    return Compare("ZOTDamExit", &Version::Exit, {{Reference::Baseline, baseline}}, [](Version& product) {
        product.Unload();
        product.Load();
        product.Fill();
    });
}

// ---- Files ----

void Workbench::WriteUserFiles() const {
    const std::string content = UserFile(sizes);
    Test::WriteFile(installation.UserFile(), content);
    Test::WriteFile(BaselineUserFile(), content);
}

void Workbench::WriteDefaultsFiles() const {
    const std::string content = DefaultsFile(sizes);
    Test::WriteFile(installation.DefaultsFile(), content);
    Test::WriteFile(BaselineDefaultsFile(), content);
}

std::filesystem::path Workbench::BaselineUserFile() const {
    return installation.UserFile().parent_path() / L"Baseline.xml";
}

std::filesystem::path Workbench::BaselineDefaultsFile() const {
    return installation.DefaultsFile().parent_path() / L"Baseline.xml";
}

}  // namespace ZOTDam::Bench
