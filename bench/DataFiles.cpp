#include "DataFiles.h"

namespace ZOTDam::Bench {

namespace {

constexpr const char* Schemes[] = {"381b4222-f694-41f0-9685-ff5bb260df2e",
                                   "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
                                   "a1841308-3541-4fab-bc81-f71556f20b4a"};
constexpr int DisplayItems = 3;
constexpr int LabelCount = 20;
constexpr int GroupCount = 10;

// Ids start at 1 so that the refresh-rate functions, 7 and 8, are included at every size.
constexpr int FirstId = 1;

std::string Attribute(const char* name, const std::string& value) {
    return std::string{" "} + name + "=\"" + value + "\"";
}

std::string Attribute(const char* name, int value) {
    return Attribute(name, std::to_string(value));
}

int NameCount(const Sizes& sizes) {
    return sizes.entries - LabelCount - GroupCount;
}

// Distributes the keys over the whole string table.
std::string NameKey(int id, const Sizes& sizes) {
    return "FunctionName" + std::to_string(id * 7 % NameCount(sizes));
}

std::string LabelKey(int number) {
    return "OptionLabel" + std::to_string(number % LabelCount);
}

std::string GroupKey(int number) {
    return "Group" + std::to_string(number % GroupCount) + "Name";
}

std::string DisplayItemsXml(const char* source, int id) {
    std::string xml = std::string{"<"} + source + ">";
    for (int item = 0; item < DisplayItems; ++item)
        xml +=
            "<DisplayItem" + Attribute("Label", LabelKey(id + item)) + Attribute("Option", 59 + item) + "/>";
    return xml + "</" + source + ">";
}

std::string DisplayXml(int id) {
    return "<Display>" + DisplayItemsXml("AC", id) + DisplayItemsXml("DC", id) + "</Display>";
}

std::string DefaultXml(int id) {
    std::string xml = "<Default" + Attribute("ACParamIndex", 0) + Attribute("DCParamIndex", 1) + ">";
    for (const char* scheme : Schemes)
        xml += "<DefaultItem" + Attribute("GUID", scheme) + Attribute("ACParamIndex", id % DisplayItems) +
               Attribute("DCParamIndex", 1) + "/>";
    return xml + "</Default>";
}

std::string CommandItemXml(int number) {
    return "<CommandItem" + Attribute("ID", number) + Attribute("Event", 2) + Attribute("Flag", 1) +
           Attribute("State", 1) + Attribute("ParamIndex1", 0) + Attribute("ParamIndex2", 1) +
           Attribute("SpecInfo1", "SUB_VIDEO VIDEOIDLE") + "/>";
}

std::string CheckItemXml() {
    return "<CheckExistItem" + Attribute("CheckFlag", 1) + Attribute("Param1", "HKLM") +
           Attribute("Param2", "SOFTWARE\\Orlo\\Display") + Attribute("Param3", "Dim") +
           Attribute("Param4", "1") + "/>";
}

std::string FunctionStart(int id, const Sizes& sizes) {
    return "<Function" + Attribute("ID", id) + Attribute("Flag", 3) + Attribute("Type", 1) +
           Attribute("Name", NameKey(id, sizes)) + Attribute("Group", GroupKey(id)) + ">";
}

template <class Element>
std::string Repeat(int count, Element element) {
    std::string xml;
    for (int number = FirstId; number < FirstId + count; ++number)
        xml += element(number) + "\n";
    return xml;
}

constexpr char Declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

}  // namespace

std::string DefaultsFile(const Sizes& sizes) {
    return Declaration +
           ("<ZOTDefault><Functions>\n" + Repeat(sizes.functions,
                                                 [&](int id) {
                                                     return FunctionStart(id, sizes) + DisplayXml(id) +
                                                            "<Commands>" + CommandItemXml(1) +
                                                            CommandItemXml(2) + "</Commands>" +
                                                            DefaultXml(id) + "</Function>";
                                                 })) +
           "</Functions><CommonSettings Default=\"d\"/></ZOTDefault>\n";
}

std::string UserFile(const Sizes& sizes) {
    std::string xml = std::string{Declaration} + "<OrloPowerCfg><PowerSchemes>\n";
    for (const char* scheme : Schemes)
        xml += "<PowerScheme" + Attribute("GUID", scheme) + ">" +
               Repeat(sizes.functions,
                      [&](int id) {
                          return "<Function" + Attribute("ID", id) +
                                 Attribute("ACParamIndex", scheme == Schemes[0] ? 0 : 1) +
                                 Attribute("DCParamIndex", 1) + "/>";
                      }) +
               "</PowerScheme>";
    return xml + "</PowerSchemes><CommonSettings User=\"u\"/></OrloPowerCfg>\n";
}

std::string BaseFile(const Sizes& sizes) {
    return Declaration +
           ("<ZOTBase><CommonSettings Base=\"b\" Other=\"o\"/><Functions>\n" +
            Repeat(sizes.functions,
                   [&](int id) {
                       return FunctionStart(id, sizes) + DisplayXml(id) + DefaultXml(id) +
                              "<Commands><CommandFamily>" + CommandItemXml(1) + CommandItemXml(2) +
                              CheckItemXml() + CheckItemXml() + "</CommandFamily></Commands></Function>";
                   }) +
            "</Functions><SpecSchemes>\n<SchemeItem" + Attribute("SchemeGUID", Schemes[0]) + "><SubGroup" +
            Attribute("SubGroupGUID", Schemes[1]) + ">" +
            Repeat(sizes.functions,
                   [](int number) {
                       return "<PowerSetting" + Attribute("PowerSettingGUID", Schemes[2]) +
                              Attribute("ACValue", number) + Attribute("DCValue", 1) + "/>";
                   })) +
           "</SubGroup></SchemeItem></SpecSchemes></ZOTBase>\n";
}

std::string StringTable(const Sizes& sizes) {
    const auto entry = [](const std::string& key) {
        return "<data" + Attribute("name", key) + "><value>Text of " + key + "</value></data>\n";
    };
    std::string xml = std::string{Declaration} + "<root>\n";
    for (int number = 0; number < NameCount(sizes); ++number)
        xml += entry("FunctionName" + std::to_string(number));
    for (int number = 0; number < LabelCount; ++number)
        xml += entry(LabelKey(number));
    for (int number = 0; number < GroupCount; ++number)
        xml += entry(GroupKey(number));
    return xml + "</root>\n";
}

}  // namespace ZOTDam::Bench
