// An installation of a given size, with the loaded library and the documents of the baselines.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Baseline.h"
#include "BestBaseline.h"
#include "DataFiles.h"
#include "Measurement.h"
#include "support/Installation.h"
#include "Version.h"

namespace ZOTDam::Bench {

// Marks the cases in which the user settings change before each call.
inline constexpr std::string_view ChangedSuffix = " (changed)";

class Workbench {
public:
    // The cases are also measured with another version of the library if its path is not empty.
    explicit Workbench(const Sizes& sizes, const std::filesystem::path& oldDll = {});

    // Returns the exports, ordered so that no export affects a later one.
    std::vector<Case> Cases();

    // Returns the cases whose cost depends on the number of texts.
    std::vector<Case> TextCases();

    // Makes the library load all data that it can hold.
    void FillLibrary() { version.Fill(); }

private:
    using Call = std::function<void(Version&)>;

    void LoadDocuments();
    static void AgeFiles();

    std::vector<Case> CatalogueCases();
    std::vector<Case> ParameterCases();
    std::vector<Case> ChangedFileCases();
    std::vector<Case> SettingSavingCases();
    std::vector<Case> DefaultsSavingCases();
    Case FirstAnswerCase();
    Case FirstTextsCase(const std::string& suffix);
    Case ExitCase();

    // The unit of the exports that load the user settings: the DOM loads that file, without anything else.
    Run ParseByPath();

    // The least that an export costs after the user settings have changed: the file is read and parsed.
    Run ParseOfBytes();

    Case Compare(const std::string& name, const Call& call, std::map<Reference, Run> references,
                 const Call& preparation = {});

    // Returns references whose only difference is how they save.
    static std::map<Reference, Run> SavingReferences(const std::function<void(SaveDocument)>& baseline,
                                                     const std::function<void()>& best,
                                                     const std::function<void()>& preparation = {});

    // Looking up each text in the DOM would take minutes at the largest size.
    bool IsSmall() const { return sizes.functions <= 1000; }

    void WriteUserFiles() const;
    void WriteDefaultsFiles() const;

    // The baselines write to separate files, in the folders of the library's files.
    std::filesystem::path BaselineUserFile() const;
    std::filesystem::path BaselineDefaultsFile() const;

    Sizes sizes;
    Test::Installation installation;
    ComScope com;
    Version version;
    std::optional<Version> oldVersion;
    std::optional<PlainDocument> defaults;
    std::optional<PlainDocument> base;
    std::optional<PlainDocument> stringTable;
    std::optional<PlainDocument> settings;
    PlainDocument parsed;
    PlainDocument bestDocument;
    Best::TextLengths texts;
    std::vector<PlainFunction> baseFunctions;
    ParamHolder params;
};

}  // namespace ZOTDam::Bench
