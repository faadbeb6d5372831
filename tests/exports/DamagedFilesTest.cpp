// All four data files, damaged by chance.
#include "support/EveryExport.h"
#include "support/Mutator.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

class DamagedFilesTest : public ExportTest {
protected:
    static constexpr char FullDefaults[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<ZOTDefault><Functions>
<Function ID="1" Type="1" Flag="3" Name="Dim" Group="Display"><Display><AC><DisplayItem Label="a" Option="1"/>
<DisplayItem Label="b" Option="2"/></AC><DC><DisplayItem Label="c" Option="3"/></DC></Display>
<Commands><CommandItem Event="1" Flag="2" ID="3" State="4" ParamIndex1="0" ParamIndex2="0" SpecInfo1="s"/>
</Commands>
<Default ACParamIndex="1" DCParamIndex="0">
<DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="0" DCParamIndex="0"/>
<DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="1" DCParamIndex="0"/></Default>
</Function>
<Function ID="7" Name="Rate"><Display><AC><DisplayItem Label="60" Option="60"/>
<DisplayItem Label="48" Option="48"/></AC>
<DC/></Display><Commands/><Default ACParamIndex="0" DCParamIndex="1"/></Function>
</Functions><CommonSettings Setting="default" Other="x"/></ZOTDefault>)";
    static constexpr char FullUserSettings[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<OrloPowerCfg><PowerSchemes><PowerScheme GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c">
<Function ID="1" ACParamIndex="0" DCParamIndex="0"></Function>
<Function ID="7" ACParamIndex="1" DCParamIndex="1"/>
</PowerScheme><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
<Function ID="7" ACParamIndex="0" DCParamIndex="1"/>
</PowerScheme></PowerSchemes><CommonSettings Setting="user"/></OrloPowerCfg>)";
    static constexpr char FullBase[] = R"(<ZOTBase><CommonSettings Setting="base"/><Functions>
<Function ID="1" Type="1" Flag="1" Name="Dim" Group="Display"><Display><AC>
<DisplayItem Label="a" Option="1"/></AC></Display><Default ACParamIndex="0" DCParamIndex="0"/>
<Commands><CommandFamily><CommandItem ID="1" Event="2" State="3" SpecInfo1="s"/>
<CheckExistItem CheckFlag="1" Param1="p" Param4="q"/></CommandFamily><CommandFamily/></Commands>
</Function></Functions><SpecSchemes><SchemeItem SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
<SubGroup SubGroupGUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c">
<PowerSetting PowerSettingGUID="a1841308-3541-4fab-bc81-f71556f20b4a" ACValue="1" DCValue="2"/>
</SubGroup></SchemeItem></SpecSchemes></ZOTBase>)";
    static constexpr char FullStringTable[] =
        R"(<StringTable><data name="Dim"><value>Dim the display</value></data><data name="Rate"><value/>
</data><data name="a"><value><![CDATA[ bright ]]></value></data></StringTable>)";
};

TEST_F(DamagedFilesTest, NoDamageCrashesAnExportOrSpoilsTheUserSettings) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        Mutator mutator{seed};
        WriteDefaults(mutator.Mutated(FullDefaults));
        WriteUserSettings(mutator.Mutated(FullUserSettings));
        WriteBase(mutator.Mutated(FullBase));
        WriteFile(installation.StringTableFile(), mutator.Mutated(FullStringTable));
        CallEveryExport(Dll(), Balanced);
        EXPECT_TRUE(IsXml(installation.UserFile()));
        Unload();
    }
}

}  // namespace ZOTDam::Test
