// Generates random data files. They contain any number of the elements that such a file may have, and most of
// them also contain errors. The same random numbers produce the same files.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/Random.h"

namespace ZOTDam::Test {

class FileGenerator {
public:
    explicit FileGenerator(Random& source) : random{source} {}

    std::string Defaults();
    std::string UserSettings();
    std::string Base();
    std::string StringTable();

private:
    using Attributes = std::vector<std::pair<const char*, std::string>>;

    template <class MakeRoot>
    std::string Document(MakeRoot makeRoot);
    std::string DocumentType();
    std::string Encoded(const std::string& xml);

    std::string Element(const std::string& name, const Attributes& attributes = {},
                        const std::vector<std::string>& children = {});
    std::string WrongElement(const std::string& name, const std::string& attributes,
                             const std::string& children);
    std::string Attribute(const char* name, const std::string& value);
    std::string BetweenElements();

    template <class MakePart>
    std::vector<std::string> Several(MakePart makePart);

    std::string DefaultsFunction();
    std::string Display();
    std::string DisplayItem();
    std::string Default();
    std::string CommandItem();
    std::string BaseFunction();
    std::string CommandFamily();
    std::string CheckExistItem();
    std::string SchemeItem();
    std::string SubGroup();
    std::string PowerSetting();
    std::string PowerScheme();
    std::string Entry();
    std::string CommonSettings();

    std::string Number(int limit);
    std::string Text();
    std::string Guid();

    bool InjectsError() { return trouble != 0 && random.OneIn(trouble); }

    Random& random;
    std::size_t trouble = 0;  // one in this many parts of the document is wrong; 0 for no errors
};

}  // namespace ZOTDam::Test
