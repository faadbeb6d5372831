// The names of the elements and attributes of the data files. Each constant is named after its element or
// attribute, except TextEntry, TextValue and TextKey of the string table.
#pragma once

namespace ZOTDam {

namespace Elements {

// The root elements of the files that the library writes: ZOTPowercfg.xml and ZOTDefault.xml.
inline constexpr wchar_t OrloPowerCfg[] = L"OrloPowerCfg";
inline constexpr wchar_t ZOTDefault[] = L"ZOTDefault";

inline constexpr wchar_t CommonSettings[] = L"CommonSettings";

inline constexpr wchar_t Functions[] = L"Functions";
inline constexpr wchar_t Function[] = L"Function";
inline constexpr wchar_t Display[] = L"Display";
inline constexpr wchar_t AC[] = L"AC";
inline constexpr wchar_t DC[] = L"DC";
inline constexpr wchar_t DisplayItem[] = L"DisplayItem";
inline constexpr wchar_t Default[] = L"Default";
inline constexpr wchar_t DefaultItem[] = L"DefaultItem";
inline constexpr wchar_t Commands[] = L"Commands";
inline constexpr wchar_t CommandFamily[] = L"CommandFamily";
inline constexpr wchar_t CommandItem[] = L"CommandItem";
inline constexpr wchar_t CheckExistItem[] = L"CheckExistItem";

inline constexpr wchar_t PowerSchemes[] = L"PowerSchemes";
inline constexpr wchar_t PowerScheme[] = L"PowerScheme";

inline constexpr wchar_t SpecSchemes[] = L"SpecSchemes";
inline constexpr wchar_t SchemeItem[] = L"SchemeItem";
inline constexpr wchar_t SubGroup[] = L"SubGroup";
inline constexpr wchar_t PowerSetting[] = L"PowerSetting";

inline constexpr wchar_t TextEntry[] = L"data";
inline constexpr wchar_t TextValue[] = L"value";

}  // namespace Elements

namespace Attributes {

inline constexpr wchar_t ID[] = L"ID";
inline constexpr wchar_t Flag[] = L"Flag";
inline constexpr wchar_t Type[] = L"Type";
inline constexpr wchar_t Name[] = L"Name";
inline constexpr wchar_t Group[] = L"Group";

inline constexpr wchar_t Label[] = L"Label";
inline constexpr wchar_t Option[] = L"Option";

inline constexpr wchar_t GUID[] = L"GUID";
inline constexpr wchar_t ACParamIndex[] = L"ACParamIndex";
inline constexpr wchar_t DCParamIndex[] = L"DCParamIndex";

inline constexpr wchar_t Event[] = L"Event";
inline constexpr wchar_t State[] = L"State";
inline constexpr wchar_t ParamIndex1[] = L"ParamIndex1";
inline constexpr wchar_t ParamIndex2[] = L"ParamIndex2";
inline constexpr wchar_t SpecInfo1[] = L"SpecInfo1";

inline constexpr wchar_t CheckFlag[] = L"CheckFlag";
inline constexpr wchar_t Param1[] = L"Param1";
inline constexpr wchar_t Param2[] = L"Param2";
inline constexpr wchar_t Param3[] = L"Param3";
inline constexpr wchar_t Param4[] = L"Param4";

inline constexpr wchar_t SchemeGUID[] = L"SchemeGUID";
inline constexpr wchar_t SubGroupGUID[] = L"SubGroupGUID";
inline constexpr wchar_t PowerSettingGUID[] = L"PowerSettingGUID";
inline constexpr wchar_t ACValue[] = L"ACValue";
inline constexpr wchar_t DCValue[] = L"DCValue";

inline constexpr wchar_t TextKey[] = L"name";

}  // namespace Attributes

}  // namespace ZOTDam
