#include "SettingsExport.h"

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <utility>

#include "Error.h"
#include "Scheme.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

constexpr char Format[] = "zotdamctl-export";
constexpr int Version = 1;

std::string OptionNumbers(const Options& options) {
    std::string numbers;
    for (const Option& option : options)
        numbers += std::to_string(option.option) + ",";
    return numbers;
}

// FNV-1a with 64 bits.
std::uint64_t HashOf(const std::string& text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

Json SchemeExport(const StoredScheme& stored, const FunctionCatalogue& catalogue) {
    Json params = Json::array();
    for (const auto& [id, value] : stored.params)
        params.push_back(ParamJson(id, value, catalogue));
    return {{"scheme", SchemeGuid(stored.scheme)},
            {"schemeName", SchemeNameJson(stored.scheme)},
            {"parameters", params}};
}

// The conversion of the JSON library would change a number that does not fit.
std::int32_t ParseNumber(const Json& json) {
    const bool fits = json.is_number_unsigned()
                          ? std::in_range<std::int32_t>(json.get<std::uint64_t>())
                          : json.is_number_integer() && std::in_range<std::int32_t>(json.get<std::int64_t>());
    if (json.is_number() && !fits)
        throw Error{json.dump() + " is not a 32-bit integer"};
    return json.get<std::int32_t>();
}

StoredScheme ParseSchemeExport(const Json& json) {
    StoredScheme stored{ParseScheme(json.at("scheme").get<std::string>()), {}};
    for (const Json& param : json.at("parameters"))
        stored.params[ParseNumber(param.at("id"))] = {ParseNumber(param.at("acIndex")),
                                                      ParseNumber(param.at("dcIndex"))};
    return stored;
}

SettingsExport ParseJson(const Json& json) {
    if (!json.is_object() || json.value("format", Json()) != Format ||
        json.value("version", Json()) != Version)
        throw Error{"it has another format or version"};
    SettingsExport exported{json.at("catalogue").at("fingerprint"), {}};
    for (const Json& scheme : json.at("schemes"))
        exported.settings.schemes.push_back(ParseSchemeExport(scheme));
    for (const Json& setting : json.at("commonSettings"))
        exported.settings.commonSettings.emplace_back(setting.at("name"), setting.at("value"));
    return exported;
}

// Returns the reason of a failure as a clause, without the internal name of the exception.
std::string ReasonOf(const std::exception& error) {
    std::string reason = error.what();
    if (dynamic_cast<const Json::exception*>(&error) != nullptr)
        reason.erase(0, reason.find("] ") + 2);
    if (reason.ends_with('.'))
        reason.pop_back();
    return reason;
}

}  // namespace

std::string FingerprintOf(const FunctionCatalogue& catalogue) {
    std::string text;
    for (const auto& [id, function] : catalogue)
        text += std::to_string(id) + ":" + OptionNumbers(function.acOptions) + ";" +
                OptionNumbers(function.dcOptions) + "\n";
    char digits[17];
    std::snprintf(digits, std::size(digits), "%08x%08x", static_cast<unsigned>(HashOf(text) >> 32),
                  static_cast<unsigned>(HashOf(text)));
    return digits;
}

Json ExportJson(const StoredSettings& settings, const FunctionCatalogue& catalogue) {
    Json schemes = Json::array();
    // The library cannot store a scheme without parameters.
    for (const StoredScheme& stored : settings.schemes)
        if (!stored.params.empty())
            schemes.push_back(SchemeExport(stored, catalogue));
    Json commonSettings = Json::array();
    for (const auto& [name, value] : settings.commonSettings)
        commonSettings.push_back({{"name", name}, {"value", value}});
    return {{"format", Format},
            {"version", Version},
            {"catalogue", {{"fingerprint", FingerprintOf(catalogue)}, {"count", catalogue.size()}}},
            {"schemes", schemes},
            {"commonSettings", commonSettings}};
}

SettingsExport ParseExport(const std::string& content, const std::filesystem::path& file) {
    try {
        return ParseJson(Json::parse(content));
    } catch (const std::exception& error) {
        throw Error{ErrorKind::UnreadableFile,
                    "The file " + Utf8(file) + " is not an export of zotdamctl: " + ReasonOf(error) + ".",
                    file};
    }
}

std::string XmlOf(const StoredSettings& settings) {
    std::string xml = "<OrloPowerCfg><PowerSchemes>";
    for (const StoredScheme& stored : settings.schemes) {
        xml += "<PowerScheme GUID=\"" + SchemeGuid(stored.scheme) + "\">";
        for (const auto& [id, value] : stored.params)
            xml += "<Function ID=\"" + std::to_string(id) + "\" ACParamIndex=\"" +
                   std::to_string(value.ACParamIndex) + "\" DCParamIndex=\"" +
                   std::to_string(value.DCParamIndex) + "\"/>";
        xml += "</PowerScheme>";
    }
    return xml + "</PowerSchemes></OrloPowerCfg>";
}

}  // namespace ZOTDam::Client
