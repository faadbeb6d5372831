#include "doctor/Files.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

// Reading of a scheme stops at the first function that cannot be read. Missing functions are added only if at
// least one function was read.
constexpr char SchemeIsEmpty[] = "the library treats the scheme as empty and does not add the defaults";
constexpr char RestIsDefault[] =
    "in this scheme, the library uses the defaults of this function and of the following ones";

class UserScheme {
public:
    UserScheme(const CatalogueOptions* catalogueOptions, Findings& fileFindings)
        : catalogue{catalogueOptions}, findings{fileFindings} {}

    void Check(const Element& function, bool isFirst) {
        CheckContent(function, {Attributes::ID, Attributes::ACParamIndex, Attributes::DCParamIndex}, {}, {},
                     findings);
        const OptionCounts* options = nullptr;
        if (const std::wstring* const text = function.FindAttribute(Attributes::ID))
            options = CheckId(function, NumberFrom(function, Attributes::ID, *text, findings));
        else
            findings.Add(function, "missing-id", "\"ID\" is missing",
                         (isFirst ? SchemeIsEmpty : RestIsDefault) +
                             std::string{"; it cannot store values in the scheme"});
        CheckParameters(function, options,
                        isFirst ? SchemeIsEmpty : std::string{RestIsDefault} + ", and stores them", findings);
    }

private:
    // Returns the options of the function, or null if the catalogue does not contain it.
    const OptionCounts* CheckId(const Element& function, std::int32_t id) {
        ids.Check(function, id, "the library uses the first one", findings);
        if (catalogue == nullptr)
            return nullptr;
        const auto known = catalogue->find(id);
        if (known != catalogue->end())
            return &known->second;
        findings.Add(function, "unknown-function", "the catalogue has no function " + std::to_string(id),
                     "the library lists its parameters, but no command applies them");
        return nullptr;
    }

    const CatalogueOptions* catalogue;
    Findings& findings;
    UniqueIds ids;
};

void CheckFunctions(const Element& scheme, const CatalogueOptions* catalogue, Findings& findings) {
    const auto functions = scheme.ChildrenNamed(Elements::Function);
    if (functions.empty())
        findings.Add(scheme, "empty-scheme", "the scheme has no \"Function\"", SchemeIsEmpty);
    UserScheme userScheme{catalogue, findings};
    for (const Element* const function : functions)
        userScheme.Check(*function, function == functions.front());
}

void CheckSchemes(const Element& powerSchemes, const CatalogueOptions* catalogue, Findings& findings) {
    CheckContent(powerSchemes, {}, {}, {Elements::PowerScheme}, findings);
    UniqueGuids guids;
    for (const Element* const scheme : powerSchemes.ChildrenNamed(Elements::PowerScheme)) {
        CheckContent(*scheme, {Attributes::GUID}, {}, {Elements::Function}, findings);
        const std::wstring* const guid = scheme->FindAttribute(Attributes::GUID);
        if (guid == nullptr)
            findings.Add(
                *scheme, "missing-guid", "\"GUID\" is missing",
                "the library finds neither this scheme nor the following ones, and adds the defaults "
                "of such a scheme at each use");
        else if (CheckGuid(*scheme, Attributes::GUID, *guid, findings))
            guids.Check(*scheme, *guid, findings);
        CheckFunctions(*scheme, catalogue, findings);
    }
}

}  // namespace

void CheckUserSettings(const Element& root, const CatalogueOptions* catalogue, Findings& findings) {
    CheckContent(root, {}, {Elements::CommonSettings, Elements::PowerSchemes}, {}, findings);
    CheckCommonSettings(root, "the library uses the default", findings);
    if (const Element* const powerSchemes = root.ChildNamed(Elements::PowerSchemes))
        CheckSchemes(*powerSchemes, catalogue, findings);
}

}  // namespace ZOTDam::Client
