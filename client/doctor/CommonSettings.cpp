#include "doctor/Files.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

void CheckCommonSettings(const Element& root, const std::string& consequence, Findings& findings) {
    const Element* const settings = root.ChildNamed(Elements::CommonSettings);
    if (settings == nullptr)
        return;
    for (const auto& [name, value] : settings->attributes)
        CheckLength(*settings, name, value, "setting-too-long", consequence, findings);
    for (const Element& child : settings->children)
        findings.Add(child, "setting-as-element", "a common setting is an attribute, not an element",
                     "the library ignores it");
}

}  // namespace ZOTDam::Client
