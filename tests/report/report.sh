#!/usr/bin/env bash
# Checks the page that "zotdamctl report" writes: it is valid HTML without external references, its cells are those of
# "zotdamctl params --json", and values of the data files are escaped. The last line counts the checks; the exit code is
# 0 if all of them have passed.
source "$(dirname "$0")/../support/checks.sh"

install_toolchain
install_packages libxml2-utils python3
build_targets zotdamctl
make_prefix

cp -r samples/. "$folder"
installation="$folder/Program Files/Orlo/QUEN Power Management"
user_settings="$folder/ProgramData/Orlo Corporation/QUEN Power Management/ZOTPowercfg.xml"
page=$folder/report.html

zotdamctl() {
    wine "$build/bin/zotdamctl.exe" --program-files "$folder/Program Files" --program-data "$folder/ProgramData" "$@"
}

# The program reports unknown elements and wrong nesting, but succeeds.
is_clean_html() { [ -z "$(xmllint --html --noout "$page" 2>&1 | tee /dev/stderr)" ]; }

is_self_contained() { ! grep -nE '<(script|link|img|iframe)|url\(|https?:|@import' "$page"; }

cells_equal_params() {
    local scheme
    for scheme in balanced high-performance power-saver; do
        zotdamctl params "$scheme" --json >"$folder/$scheme.json" || return
        zotdamctl params "$scheme" --default --json >"$folder/$scheme-default.json" || return
    done
    python3 tests/report/report_test.py "$page" "$folder" balanced high-performance power-saver
}

cp "$user_settings" "$folder/before.xml"
check 'the report is written' zotdamctl report --output "$page"
check 'the user settings are unchanged' cmp "$user_settings" "$folder/before.xml"
check 'the page is valid HTML' is_clean_html
check 'the page refers to no other resource' is_self_contained
check 'the page contains the doctor'\''s result' grep -q 'no findings' "$page"
check 'the page contains a common setting with its source' \
    grep -q '<td>LowBatteryWarning</td><td>15</td><td>user settings file</td>' "$page"
check 'the cells are those of params' cells_equal_params
check 'a bar shows the place of an option' \
    grep -q '>40%</span>.*aria-label="2 of 5"><span style="width: 25%">' "$page"
check 'the bar of the option without a limit is full' \
    grep -q '>Never</span><span class="bar" role="img" aria-label="5 of 5"><span style="width: 100%">' "$page"

# ---- Values that have a meaning in HTML ----------------------------------------------------------------------------

sed -i 's,<value>Display brightness<,<value>\&lt;b title="x"\&gt;\&amp;amp;\&apos;<,' "$installation/StringTable.xml"
sed -i 's,LowBatteryWarning="15",LowBatteryWarning="\&lt;script\&gt;\&quot;",' "$user_settings"
check 'the report is replaced' zotdamctl report --output "$page"
check 'the page with such values is valid HTML' is_clean_html
check 'a text is escaped' grep -qF '&lt;b title=&quot;x&quot;&gt;&amp;amp;&#39; <' "$page"
check 'a common setting is escaped' grep -qF '<td>&lt;script&gt;&quot;</td>' "$page"

# ---- Damaged installations -----------------------------------------------------------------------------------------

names_problem() { zotdamctl report --output "$page" && grep -q "$1" "$page" && is_clean_html; }

echo '<OrloPowerCfg>' >"$user_settings"
check 'a page on user settings that are not well-formed' names_problem '<code>not-well-formed</code>'
is_unchanged() { [ "$(cat "$user_settings")" = '<OrloPowerCfg>' ] && [ ! -e "$user_settings.unreadable" ]; }
check 'user settings that are not well-formed are unchanged' is_unchanged
rm "$installation/ZOTDefault.xml"
check 'a page without a catalogue' names_problem 'The catalogue cannot be loaded from'

fails() {
    ! zotdamctl report --output "$folder/none/report.html" 2>"$folder/errors" &&
        grep -q 'none.report.html' "$folder/errors"
}
check 'an error names the file that cannot be written' fails

report_checks
