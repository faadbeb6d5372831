// The content of small data files, in the form that the library writes.
#pragma once

#include <cstdint>
#include <string>

namespace ZOTDam::Test {

// A defaults file with the functions 1 and 2.
inline constexpr char TwoFunctions[] = R"(<ZOTDefault><Functions>
    <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    <Function ID="2"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>
</Functions></ZOTDefault>)";

inline std::string FunctionAttributes(std::int32_t id, std::int32_t ac, std::int32_t dc) {
    return "<Function ID=\"" + std::to_string(id) + "\" ACParamIndex=\"" + std::to_string(ac) +
           "\" DCParamIndex=\"" + std::to_string(dc) + "\"";
}

// A function that was already in the file.
inline std::string OldFunction(std::int32_t id, std::int32_t ac, std::int32_t dc) {
    return FunctionAttributes(id, ac, dc) + "/>";
}

// A function that has just been appended.
inline std::string NewFunction(std::int32_t id, std::int32_t ac, std::int32_t dc) {
    return FunctionAttributes(id, ac, dc) + ">\n\t</Function>";
}

inline std::string OldScheme(const std::string& guid, const std::string& functions) {
    return "<PowerScheme GUID=\"" + guid + "\">" + functions + "</PowerScheme>";
}

inline std::string NewScheme(const std::string& guid, const std::string& functions) {
    return OldScheme(guid, "\n\t" + functions);
}

// A user settings file without an XML declaration, in the form that is read and written back.
inline std::string OldUserFile(const std::string& schemes) {
    return "<OrloPowerCfg><PowerSchemes>" + schemes + "</PowerSchemes></OrloPowerCfg>\n";
}

// The user settings file that the library creates when no file exists.
inline std::string NewUserFile(const std::string& schemes) {
    return "<?xml version='1.0' encoding='UTF-8'?>\n" + OldUserFile(schemes);
}

// The same file after it has been read and written again.
inline std::string RewrittenUserFile(const std::string& schemes) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + OldUserFile(schemes);
}

}  // namespace ZOTDam::Test
