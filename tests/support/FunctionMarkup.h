// Functions of the defaults with all the data that clients see: names, groups, display items and commands.
#pragma once

#include "support/SettingsTest.h"

namespace ZOTDam::Test {

inline std::string Options(std::initializer_list<std::string> options) {
    std::string items;
    for (const std::string& option : options)
        items += "<DisplayItem Option=\"" + option + "\"/>";
    return items;
}

inline std::string Labels(std::initializer_list<std::string> labels) {
    std::string items;
    for (const std::string& label : labels)
        items += "<DisplayItem Label=\"" + label + "\"/>";
    return items;
}

// The parts of a function besides its ID. A test sets the parts that it checks.
struct FunctionParts {
    std::string attributes = {};
    std::string acItems = {};
    std::string dcItems = {};
    std::string commands = {};
    ParamValue defaults = {};
    std::string defaultItems = {};
};

inline std::string IndexAttributes(const ParamValue& value) {
    return " ACParamIndex=\"" + std::to_string(value.ACParamIndex) + "\" DCParamIndex=\"" +
           std::to_string(value.DCParamIndex) + "\"";
}

inline std::string DefaultItem(const std::string& guid, const ParamValue& value) {
    return "<DefaultItem GUID=\"" + guid + "\"" + IndexAttributes(value) + "/>";
}

inline std::string FunctionWith(std::int32_t id, const FunctionParts& parts) {
    return "<Function ID=\"" + std::to_string(id) + "\" " + parts.attributes + "><Display><AC>" +
           parts.acItems + "</AC><DC>" + parts.dcItems + "</DC></Display><Commands>" + parts.commands +
           "</Commands><Default" + IndexAttributes(parts.defaults) + ">" + parts.defaultItems +
           "</Default></Function>";
}

}  // namespace ZOTDam::Test
