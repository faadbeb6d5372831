// An installation of a given size with the library on it, and the documents of the floor beside.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Floor.h"
#include "Measurement.h"
#include "support/Installation.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Bench {

// Marks the cases whose floor saves as the DOM does: not through to the disk, and not in one step.
inline constexpr std::string_view PlainSaveSuffix = " (DOM's save)";

class Workbench {
public:
    explicit Workbench(int functions);

    // The exports, in an order in which none disturbs a later one.
    std::vector<Case> Cases();

    // Makes the library hold all that it can hold.
    void FillLibrary();

private:
    std::vector<Case> CatalogueCases();
    std::vector<Case> ParameterCases();
    std::vector<Case> SavingCases(SaveDocument save, std::string_view suffix);
    Case FirstAnswerCase();
    Case ExitCase();

    void UnloadLibrary();

    // No floor where asking the DOM for each text would take minutes.
    std::function<void()> UnlessTooLong(std::function<void()> floor) const;

    void WriteUserFiles() const;
    FunctionBaseHolder BaseFunctions() const;

    // The floor writes to files of its own beside those of the library.
    std::filesystem::path FloorUserFile() const;
    std::filesystem::path FloorDefaultsFile() const;

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
    FunctionBaseHolder handedOver;
};

}  // namespace ZOTDam::Bench
