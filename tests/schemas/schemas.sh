#!/usr/bin/env bash
# Checks the schemas: they accept correct files, and they reject files that the library would reject, misread or ignore
# in part. The last line counts the checks; the exit code is 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_packages libxml2-utils

# Validates the standard input as a file with the given name.
validate() {
    cat >"$folder/$1"
    scripts/validate.sh "$folder/$1" 2>&1 | tee "$folder/log"
}

is_rejected_with() {
    ! validate "$1" && grep -q -- "$2" "$folder/log"
}

# accepts NAME TITLE <<XML
accepts() { check "$1: $2" validate "$1"; }

# rejects NAME TITLE REASON <<XML: the reason is a part of the validator's message.
rejects() { check "$1: $2" is_rejected_with "$1" "$3"; }

balanced=381b4222-f694-41f0-9685-ff5bb260df2e
long_text=$(printf 'x%.0s' {1..260})

# The parts of a function. Each case below changes one of them.
attributes='ID="1" Flag="1" Type="1" Name="LightName" Group="Group1Name"'
items='<DisplayItem Label="On" Option="1"/><DisplayItem Label="Off" Option="0"/>'
display="<Display><AC>$items</AC><DC>$items</DC></Display>"
default="<Default ACParamIndex='0' DCParamIndex='1'>
    <DefaultItem GUID='$balanced' ACParamIndex='0' DCParamIndex='0'/></Default>"
command='<CommandItem ID="1" Event="1" Flag="0" State="0" ParamIndex1="0" ParamIndex2="1" SpecInfo1=""/>'
check_item='<CheckExistItem CheckFlag="1" Param1="a" Param2="b" Param3="" Param4=""/>'
families="<Commands><CommandFamily>$command$check_item</CommandFamily></Commands>"
commands="<Commands>$command</Commands>"

base() { echo "<ZOTBase><Functions>$*</Functions></ZOTBase>"; }
defaults() { echo "<ZOTDefault><Functions>$*</Functions></ZOTDefault>"; }
user() { echo "<OrloPowerCfg><PowerSchemes>$*</PowerSchemes></OrloPowerCfg>"; }
spec() { echo "<ZOTBase><Functions/><SpecSchemes>$*</SpecSchemes></ZOTBase>"; }
function_of() { echo "<Function $attributes>$*</Function>"; }

validate_samples() { scripts/validate.sh >"$folder/log" 2>&1; }
check 'the samples' validate_samples

# The examples of the document are complete files. The root element determines the kind of file.
examples_of() {
    awk '/^```xml$/ { inside = 1; next } /^```$/ { if (inside) printf "%c", 0; inside = 0 } inside' "$1"
}

while IFS= read -r -d '' example; do
    case $example in
        *'<ZOTBase'*) name=ZOTBase.xml ;;
        *'<ZOTDefault'*) name=ZOTDefault.xml ;;
        *'<OrloPowerCfg'*) name=ZOTPowercfg.xml ;;
        *) name=StringTable.xml ;;
    esac
    accepts "$name" 'the example in docs/data-files.md' <<<"$example"
done < <(examples_of docs/data-files.md)

# ---- The base catalogue --------------------------------------------------------------------------------------------

accepts ZOTBase.xml 'children of a function in any order' <<<"$(base "$(function_of "$families$default$display")")"
accepts ZOTBase.xml 'a family that has only checks, beside another one' <<<"$(base "$(function_of "$display$default
    <Commands><CommandFamily>$check_item</CommandFamily><CommandFamily>$command</CommandFamily></Commands>")")"
rejects ZOTBase.xml 'a function without "Commands", with which the reading ends' 'Missing child element' \
    <<<"$(base "$(function_of "$display$default")")"
rejects ZOTBase.xml 'a command outside of the families, which is not read' \
    "'CommandItem': This element is not expected" \
    <<<"$(base "$(function_of "$display$default$commands")")"
rejects ZOTBase.xml 'a negative id, which the catalogue does not take' "The value '-1' is less than the minimum" \
    <<<"$(base "<Function ${attributes/ID=\"1\"/ID=\"-1\"}>$display$default$families</Function>")"
rejects ZOTBase.xml 'two functions with one id' 'Duplicate key-sequence' \
    <<<"$(base "$(function_of "$display$default$families")$(function_of "$display$default$families")")"
rejects ZOTBase.xml 'a name that is too long, with which the reading ends' 'exceeds the allowed maximum length' \
    <<<"$(base "<Function ${attributes/LightName/$long_text}>$display$default$families</Function>")"
rejects ZOTBase.xml 'an item without an attribute, which would get that of the item before' \
    "The attribute 'Option' is required" \
    <<<"$(base "$(function_of "${display/ Option=\"0\"/}$default$families")")"
rejects ZOTBase.xml 'a misspelt attribute' "The attribute 'SpecInfo' is not allowed" \
    <<<"$(base "$(function_of "$display$default${families/SpecInfo1/SpecInfo}")")"
rejects ZOTBase.xml 'a value that is not a number, which would be read as 0' "'abc' is not a valid value" \
    <<<"$(base "$(function_of "${display/Option=\"1\"/Option=\"abc\"}$default$families")")"
rejects ZOTBase.xml 'a power source that does not exist' "'2' is not an element of the set" \
    <<<"$(base "$(function_of "$display$default${families/ParamIndex2=\"1\"/ParamIndex2=\"2\"}")")"
rejects ZOTBase.xml 'a namespace, in which nothing is found' 'No matching global declaration' <<'XML'
<ZOTBase xmlns="urn:catalogue"><Functions/></ZOTBase>
XML
accepts ZOTBase.xml 'a spec scheme' <<<"$(spec "<SchemeItem SchemeGUID='$balanced'><SubGroup SubGroupGUID='$balanced'>
    <PowerSetting PowerSettingGUID='${balanced^^}' ACValue='600' DCValue='-1'/></SubGroup></SchemeItem>")"
rejects ZOTBase.xml 'a GUID in braces, whose scheme is left out' 'is not accepted by the pattern' \
    <<<"$(spec "<SchemeItem SchemeGUID='{$balanced}'/>")"
rejects ZOTBase.xml 'a power setting without a value, whose scheme is left out' "The attribute 'DCValue' is required" \
    <<<"$(spec "<SchemeItem SchemeGUID='$balanced'><SubGroup SubGroupGUID='$balanced'>
    <PowerSetting PowerSettingGUID='$balanced' ACValue='600'/></SubGroup></SchemeItem>")"

# ---- The defaults --------------------------------------------------------------------------------------------------

accepts ZOTDefault.xml 'settings alone' <<<'<ZOTDefault><CommonSettings A="1" B=""/></ZOTDefault>'
accepts ZOTDefault.xml 'a function without options on battery' \
    <<<"$(defaults "$(function_of "<Display><AC>$items</AC></Display>$default$commands")")"
rejects ZOTDefault.xml 'a family, whose commands are not read' "'CommandFamily': This element is not expected" \
    <<<"$(defaults "$(function_of "$display$default$families")")"
rejects ZOTDefault.xml 'a function without "Display", with which the catalogue is lost' 'Missing child element' \
    <<<"$(defaults "$(function_of "$default$commands")")"
rejects ZOTDefault.xml 'a function without "Default", with which the default parameters end' 'Missing child element' \
    <<<"$(defaults "$(function_of "$display$commands")")"
rejects ZOTDefault.xml 'a default item without a GUID, with which the default parameters end' \
    "The attribute 'GUID' is required" \
    <<<"$(defaults "$(function_of "$display${default/GUID=\'$balanced\'/}$commands")")"
rejects ZOTDefault.xml 'two functions with one id' 'Duplicate key-sequence' \
    <<<"$(defaults "$(function_of "$display$default$commands")$(function_of "$display$default$commands")")"
rejects ZOTDefault.xml 'two default items for one scheme' 'Duplicate key-sequence' \
    <<<"$(defaults "$(function_of "$display<Default ACParamIndex='0' DCParamIndex='0'>
    <DefaultItem GUID='$balanced' ACParamIndex='0' DCParamIndex='0'/>
    <DefaultItem GUID='$balanced' ACParamIndex='1' DCParamIndex='1'/></Default>$commands")")"
rejects ZOTDefault.xml 'a default position that no list can have' "The value '-1' is less than the minimum" \
    <<<"$(defaults "$(function_of "$display${default/DCParamIndex=\'1\'/DCParamIndex=\'-1\'}$commands")")"
rejects ZOTDefault.xml 'settings as elements, which are not read' "'CommonSettings'" \
    <<<'<ZOTDefault><CommonSettings><LowBatteryWarning>10</LowBatteryWarning></CommonSettings></ZOTDefault>'
rejects ZOTDefault.xml 'a second section, which is not read' 'This element is not expected' \
    <<<'<ZOTDefault><Functions/><Functions/></ZOTDefault>'

# ---- The user settings ---------------------------------------------------------------------------------------------

accepts ZOTPowercfg.xml 'a new file, as the library writes it' <<XML
<?xml version="1.0" encoding="UTF-8"?>
<OrloPowerCfg><CommonSettings/><PowerSchemes><PowerScheme GUID="$balanced">
	<Function ID="-3" ACParamIndex="-1" DCParamIndex="2147483647">
	</Function></PowerScheme></PowerSchemes></OrloPowerCfg>
XML
accepts ZOTPowercfg.xml 'no section' <<<'<OrloPowerCfg/>'
rejects ZOTPowercfg.xml 'another root element' 'No matching global declaration' <<<'<PowerCfg/>'
rejects ZOTPowercfg.xml 'a scheme without a GUID, which hides those after it' "The attribute 'GUID' is required" \
    <<<"$(user '<PowerScheme/>')"
rejects ZOTPowercfg.xml 'a GUID with white space, which is another text' 'is not accepted by the pattern' \
    <<<"$(user "<PowerScheme GUID=' $balanced'/>")"
rejects ZOTPowercfg.xml 'two schemes with one GUID' 'Duplicate key-sequence' \
    <<<"$(user "<PowerScheme GUID='$balanced'/><PowerScheme GUID='$balanced'/>")"
rejects ZOTPowercfg.xml 'two functions with one id in a scheme' 'Duplicate key-sequence' \
    <<<"$(user "<PowerScheme GUID='$balanced'><Function ID='1' ACParamIndex='0' DCParamIndex='0'/>
    <Function ID='1' ACParamIndex='1' DCParamIndex='1'/></PowerScheme>")"
rejects ZOTPowercfg.xml 'a function without a value, which hides those after it' \
    "The attribute 'DCParamIndex' is required" \
    <<<"$(user "<PowerScheme GUID='$balanced'><Function ID='1' ACParamIndex='0'/></PowerScheme>")"
rejects ZOTPowercfg.xml 'a number that does not fit' 'is not a valid value' \
    <<<"$(user "<PowerScheme GUID='$balanced'>
    <Function ID='1' ACParamIndex='2147483648' DCParamIndex='0'/></PowerScheme>")"
rejects ZOTPowercfg.xml 'text in a section' 'Character content' <<<"$(user 'balanced')"

# ---- String tables -------------------------------------------------------------------------------------------------

accepts StringTable.xml 'a language copy' <<<'<StringTable><data name="On"><value>Ein</value></data></StringTable>'
accepts StringTable.xml 'an empty text' <<<'<StringTable><data name="On"><value/></data></StringTable>'
rejects StringTable.xml 'an entry without a text, which hides later ones' 'Missing child element' \
    <<<'<StringTable><data name="On"/></StringTable>'
rejects StringTable.xml 'an entry without a name, which is never found' "The attribute 'name' is required" \
    <<<'<StringTable><data><value>On</value></data></StringTable>'
rejects StringTable.xml 'two entries of one name' 'Duplicate key-sequence' <<'XML'
<StringTable><data name="On"><value>On</value></data><data name="On"><value>Off</value></data></StringTable>
XML
rejects StringTable.xml 'a text that would be cut' 'exceeds the allowed maximum length' \
    <<<"<StringTable><data name='On'><value>$long_text</value></data></StringTable>"
rejects StringTable.xml 'text that is not well-formed' 'parser error' <<<'<StringTable>'
rejects Strings.xml 'a file of another name' 'none of the data files' <<<'<StringTable/>'

# ---- The export of zotdamctl ----------------------------------------------------------------------------------------

install_toolchain
install_packages python3-jsonschema
build_targets ZOTDam zotdamctl
make_prefix

# is_export FILE: whether the file is valid against the schema of the export.
is_export() {
    python3 -c '
import json, sys
import jsonschema
with open("schemas/export.schema.json") as schema, open(sys.argv[1]) as document:
    jsonschema.validate(json.load(document), json.load(schema))' "$1"
}

# exports_valid_file: exports the settings of the samples.
exports_valid_file() {
    wine "$build/bin/zotdamctl.exe" --program-files 'samples\Program Files' --program-data 'samples\ProgramData' \
        export "$(winepath -w "$folder")\\export.json"
    is_export "$folder/export.json"
}

# is_rejected_without KEY: whether the export is not valid without this key.
is_rejected_without() {
    sed "s/\"$1\"/\"other\"/" "$folder/export.json" >"$folder/changed.json"
    ! is_export "$folder/changed.json"
}

check 'export.schema.json: the export of the samples is valid' exports_valid_file
for key in format version fingerprint schemes commonSettings scheme acIndex dcIndex; do
    check "export.schema.json: \"$key\" is required" is_rejected_without "$key"
done

report_checks
