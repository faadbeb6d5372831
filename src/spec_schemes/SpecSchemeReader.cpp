#include "spec_schemes/SpecSchemeReader.h"

#include <utility>

#include "platform/FalseOnException.h"
#include "platform/GuidString.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// Reads one level: the GUID of each element, and the rest of its record with `readContent`.
template <class Record, class ReadContent>
bool ReadLevel(IXMLDOMElement* parent, const CXmlName& elementName, const CXmlName& guidName,
               GUID Record::*guid, List<Record>& records, ReadContent readContent) {
    bool complete = true;
    for (const IXMLDOMElementPtr& element : SelectChildren(parent, elementName)) {
        Record record;
        std::wstring guidText;
        if (!ReadAttribute(element, guidName, guidText) || !readContent(element, record))
            complete = false;
        else if (ParseGuid(guidText.c_str(), record.*guid))
            records.push_back(std::move(record));
    }
    return complete;
}

}  // namespace

bool CSpecSchemeReader::ReadSchemes(List<SpecSchemeRecord>& schemes) const noexcept {
    schemes.clear();
    return FalseOnException([&] {
        CXmlZOTBase* base = BaseCatalogueDocument.Get();
        if (base == nullptr)
            return false;
        List<SpecSchemeRecord> read;
        const bool complete =
            ReadLevel(base->SpecSchemes(), Elements::SchemeItem, Attributes::SchemeGUID,
                      &SpecSchemeRecord::scheme, read, [](IXMLDOMElement* element, SpecSchemeRecord& record) {
                          return ReadSubGroups(element, record.subGroups);
                      });
        schemes = std::move(read);
        return complete;
    });
}

bool CSpecSchemeReader::ReadSubGroups(IXMLDOMElement* scheme, List<SpecSubGroupRecord>& subGroups) noexcept {
    return FalseOnException([&] {
        return ReadLevel(scheme, Elements::SubGroup, Attributes::SubGroupGUID, &SpecSubGroupRecord::subGroup,
                         subGroups, [](IXMLDOMElement* element, SpecSubGroupRecord& record) {
                             return ReadPowerSettings(element, record.powerSettings);
                         });
    });
}

bool CSpecSchemeReader::ReadPowerSettings(IXMLDOMElement* subGroup,
                                          List<SpecPowerSettingRecord>& powerSettings) noexcept {
    return FalseOnException([&] {
        return ReadLevel(subGroup, Elements::PowerSetting, Attributes::PowerSettingGUID,
                         &SpecPowerSettingRecord::powerSetting, powerSettings,
                         [](IXMLDOMElement* element, SpecPowerSettingRecord& record) {
                             return ReadAttribute(element, Attributes::ACValue, record.acValue) &&
                                    ReadAttribute(element, Attributes::DCValue, record.dcValue);
                         });
    });
}

}  // namespace ZOTDam
