// The fixture of the tests of commands that read the base catalogue.
#pragma once

#include "client/ClientTest.h"

namespace ZOTDam::Test {

// Function 1 has all possible parts, function 2 only the required ones, and function 3 does not even have a
// command.
inline constexpr char ThreeBaseFunctions[] = R"(<ZOTBase><CommonSettings Warning="10"/><Functions>
    <Function ID="1" Type="2" Flag="3" Name="DimKey" Group="ScreenKey">
        <Display><AC><DisplayItem Label="BrightKey" Option="100"/><DisplayItem Label="DarkKey" Option="20"/></AC>
            <DC><DisplayItem Label="DarkKey" Option="20"/></DC></Display>
        <Default ACParamIndex="0" DCParamIndex="1">
            <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="1" DCParamIndex="0"/></Default>
        <Commands>
            <CommandFamily><CommandItem ID="4" Event="5" State="6" ParamIndex1="0" ParamIndex2="1" Flag="7"
                SpecInfo1="Dim"/><CheckExistItem CheckFlag="8" Param1="a" Param2="b" Param3="c" Param4="d"/>
            </CommandFamily><CommandFamily/>
        </Commands>
    </Function>
    <Function ID="2" Type="0" Flag="0" Name="SleepKey" Group="">
        <Display/><Default ACParamIndex="0" DCParamIndex="0"/>
        <Commands><CommandFamily><CommandItem ID="9" SpecInfo1=""/></CommandFamily></Commands></Function>
    <Function ID="3" Name="CameraKey"><Commands/></Function>
</Functions></ZOTBase>)";

class BaseCatalogueTest : public ClientTest {
protected:
    BaseCatalogueTest() { WriteBase(ThreeBaseFunctions); }

    std::string BaseTitle() const { return "The base catalogue " + Utf8(installation.BaseFile()); }

    void ExpectNeedsBaseCatalogue(const Arguments& arguments) const {
        std::filesystem::remove(installation.BaseFile());
        ExpectError(arguments, Failure, BaseTitle() + " does not exist.");
    }
};

}  // namespace ZOTDam::Test
