// An installation of a given size, with the loaded library and the documents of the baseline.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Baseline.h"
#include "Measurement.h"
#include "support/Installation.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Bench {

// Marks the cases whose baseline uses the DOM's save, which neither flushes to the disk nor is atomic.
inline constexpr std::string_view PlainSaveSuffix = " (DOM's save)";

class Workbench {
public:
    explicit Workbench(int functions);

    // Returns the exports, ordered so that no export affects a later one.
    std::vector<Case> Cases();

    // Makes the library load all data that it can hold.
    void FillLibrary();

private:
    std::vector<Case> CatalogueCases();
    std::vector<Case> ParameterCases();
    std::vector<Case> SavingCases(SaveDocument save, std::string_view suffix);
    Case FirstAnswerCase();
    Case ExitCase();

    void UnloadLibrary();

    // Returns no baseline if looking up each text in the DOM would take minutes.
    std::function<void()> UnlessTooLong(std::function<void()> baseline) const;

    void WriteUserFiles() const;
    FunctionBaseHolder BaseFunctions() const;

    // The baseline writes to separate files, in the folders of the library's files.
    std::filesystem::path BaselineUserFile() const;
    std::filesystem::path BaselineDefaultsFile() const;

    int size;
    Test::Installation installation;
    std::optional<Library> library;
    ComScope com;
    std::optional<PlainDocument> defaults;
    std::optional<PlainDocument> base;
    std::optional<PlainDocument> stringTable;
    std::optional<PlainDocument> settings;
    std::vector<PlainFunction> baseFunctions;
    std::optional<ParamHolder> params;
    FunctionBaseHolder recordsToAdd;
};

}  // namespace ZOTDam::Bench
