// Damages XML at random.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "support/Random.h"

namespace ZOTDam::Test {

class Mutator {
public:
    explicit Mutator(Random& source) : random{source} {}

    std::string Mutate(std::string xml) {
        for (int changes = 1 + random.Below(4); changes > 0; --changes)
            random.Below(3) == 0 ? ChangeBytes(xml) : ChangeStructure(xml);
        return xml;
    }

private:
    void ChangeBytes(std::string& xml) {
        if (xml.empty())
            return;
        const std::size_t position = random.Below(xml.size());
        switch (random.Below(4)) {
            case 0:
                xml[position] = static_cast<char>(xml[position] ^ (1 << random.Below(8)));
                break;
            case 1:
                xml.insert(position, 1, static_cast<char>(random.Below(256)));
                break;
            case 2:
                xml.erase(position, random.Below(40));
                break;
            default:
                xml.resize(position);
        }
    }

    // Changes only tags, so that most results are still well-formed.
    void ChangeStructure(std::string& xml) {
        std::vector<std::string> tags = Split(xml);
        const std::size_t tag = random.Below(tags.size());
        switch (random.Below(5)) {
            case 0:
                tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(tag));
                break;
            case 1:
                tags.insert(tags.begin() + random.Below(tags.size()), tags[tag]);
                break;
            case 2:
                std::swap(tags[tag], tags[random.Below(tags.size())]);
                break;
            case 3:
                RemoveAttribute(tags[tag]);
                break;
            default:
                ReplaceValue(tags[tag]);
        }
        xml.clear();
        for (const std::string& kept : tags)
            xml += kept;
    }

    // Splits the XML in front of each "<". The first piece is the text before the first tag.
    static std::vector<std::string> Split(const std::string& xml) {
        std::vector<std::string> tags(1);
        for (const char character : xml) {
            if (character == '<')
                tags.emplace_back();
            tags.back() += character;
        }
        return tags;
    }

    static void RemoveAttribute(std::string& tag) {
        const std::size_t begin = tag.find(' ');
        const std::size_t end = tag.find("\" ", begin);
        if (begin != std::string::npos && end != std::string::npos)
            tag.erase(begin, end + 1 - begin);
    }

    void ReplaceValue(std::string& tag) {
        static const std::vector<std::string> values = {"",
                                                        "-1",
                                                        "0",
                                                        "7",
                                                        "8",
                                                        "2147483648",
                                                        "-2147483649",
                                                        "99999999999999999999",
                                                        "abc",
                                                        " 1",
                                                        "1 ",
                                                        "&lt;",
                                                        "&#x10FFFF;",
                                                        std::string(259, 'x'),
                                                        std::string(260, 'x'),
                                                        std::string(70000, '9'),
                                                        "{}",
                                                        "\xc3\xa9",
                                                        "381B4222-F694-41F0-9685-FF5BB260DF2E",
                                                        "00000000-0000-0000-0000-000000000000"};
        const std::size_t begin = tag.find("=\"");
        const std::size_t end = tag.find('"', begin + 2);
        if (begin != std::string::npos && end != std::string::npos)
            tag.replace(begin + 2, end - begin - 2, values[random.Below(values.size())]);
    }

    Random& random;
};

}  // namespace ZOTDam::Test
