// Copies of the records that GetSpecScheme enumerates, which remain valid after the call, and their XML.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <rpc.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

// The GUIDs are stored as text.
struct SpecPowerSetting {
    std::string guid;
    std::int32_t ac = 0;
    std::int32_t dc = 0;

    bool operator==(const SpecPowerSetting&) const = default;
};

inline void PrintTo(const SpecPowerSetting& setting, std::ostream* out) {
    *out << setting.guid << " AC " << setting.ac << " DC " << setting.dc;
}

struct SpecSubGroup {
    std::string guid;
    std::vector<SpecPowerSetting> powerSettings = {};

    bool operator==(const SpecSubGroup&) const = default;
};

inline void PrintTo(const SpecSubGroup& subGroup, std::ostream* out) {
    *out << subGroup.guid << " " << testing::PrintToString(subGroup.powerSettings);
}

struct SpecScheme {
    std::string guid;
    std::vector<SpecSubGroup> subGroups = {};

    bool operator==(const SpecScheme&) const = default;
};

inline void PrintTo(const SpecScheme& scheme, std::ostream* out) {
    *out << scheme.guid << " " << testing::PrintToString(scheme.subGroups);
}

inline std::string GuidText(const GUID& guid) {
    RPC_CSTR allocated = nullptr;
    EXPECT_EQ(UuidToStringA(const_cast<GUID*>(&guid), &allocated), RPC_S_OK);
    std::string text = reinterpret_cast<const char*>(allocated);
    RpcStringFreeA(&allocated);
    return text;
}

inline SpecSubGroup CopyOf(const SpecSubGroupRecord& record) {
    SpecSubGroup copy = {GuidText(record.subGroup)};
    for (const SpecPowerSettingRecord& setting : record.powerSettings)
        copy.powerSettings.push_back({GuidText(setting.powerSetting), setting.acValue, setting.dcValue});
    return copy;
}

// Copies a record. The bytes between the GUID and the list must be zero.
inline SpecScheme CopyOf(const SpecSchemeRecord& record) {
    const auto* const bytes = reinterpret_cast<const char*>(&record);
    EXPECT_TRUE(std::all_of(bytes + offsetof(SpecSchemeRecord, reserved),
                            bytes + offsetof(SpecSchemeRecord, subGroups),
                            [](char byte) { return byte == 0; }));
    SpecScheme copy = {GuidText(record.scheme)};
    for (const SpecSubGroupRecord& subGroup : record.subGroups)
        copy.subGroups.push_back(CopyOf(subGroup));
    return copy;
}

// ---- XML ----

inline std::string SettingXml(const std::string& guid, const std::string& ac, const std::string& dc) {
    return "<PowerSetting PowerSettingGUID=\"" + guid + "\" ACValue=\"" + ac + "\" DCValue=\"" + dc + "\"/>";
}

inline std::string SubGroupXml(const std::string& guid, const std::string& settings = {}) {
    return "<SubGroup SubGroupGUID=\"" + guid + "\">" + settings + "</SubGroup>";
}

inline std::string SchemeXml(const std::string& guid, const std::string& subGroups = {}) {
    return "<SchemeItem SchemeGUID=\"" + guid + "\">" + subGroups + "</SchemeItem>";
}

}  // namespace ZOTDam::Test
