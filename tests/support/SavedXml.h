// The expected content of a file that a DOM has saved. DOMs write different line breaks between the tags, and
// different quotes in the XML declaration.
#pragma once

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "support/MsxmlFiles.h"

namespace ZOTDam::Test {

class SavedXml {
public:
    explicit SavedXml(std::string expected) : text{std::move(expected)} {}

    bool operator==(std::string_view saved) const { return InOneForm(text) == InOneForm(saved); }

    friend void PrintTo(const SavedXml& expected, std::ostream* out) { *out << expected.text; }

private:
    // Keeps line breaks that are part of a text, such as those before a tab.
    static std::string InOneForm(std::string_view xml) {
        std::string form{xml};
        Replace(form, "\r\n", "\n");
        if (form.starts_with("<?xml"))
            std::replace(form.begin(), std::find(form.begin(), form.end(), '>'), '"', '\'');
        // A file of a test may have no declaration where the selected form adds one.
        if (ImitatesMsxml())
            Replace(form, "<?xml version='1.0' encoding='UTF-8'?>\n", "");
        Replace(form, ">\n<", "><");
        if (form.ends_with('\n'))
            form.pop_back();
        return form;
    }

    static void Replace(std::string& text, std::string_view old, std::string_view replacement) {
        for (std::size_t i = text.find(old); i != std::string::npos; i = text.find(old, i))
            text.replace(i, old.size(), replacement);
    }

    std::string text;
};

}  // namespace ZOTDam::Test
