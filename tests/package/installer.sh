# shellcheck shell=bash
# Checks of the installer, which tests/package/package.sh sources. They use a wine prefix in which the folders that an
# installation changes are real folders, not links to those of the first prefix.
# shellcheck disable=SC2154  # package.sh sets the variables

# The files in the main folder of a package that are installed with the programs.
files_of_runtime='BUILDINFO|LICENSE|THIRD-PARTY|spdx'
installer_prefix=$folder/installer-prefix
drive=$installer_prefix/drive_c
programs="$drive/Program Files/Orlo/QUEN Power Management"
settings="$drive/ProgramData/Orlo Corporation/QUEN Power Management"

make_installer_prefix() {
    mkdir -p "$drive"/{windows,'Program Files'}
    cp -a "$first_prefix"/{*.reg,.update-timestamp,dosdevices} "$installer_prefix"
    cp -a "$first_prefix/drive_c/users" "$drive"
    ln -s "$first_prefix"/drive_c/windows/* "$drive/windows"
    rm -f "$drive"/windows/{Installer,temp}
    mkdir "$drive"/windows/{Installer,temp}
}

installed() { WINEPREFIX=$installer_prefix wine "$@"; }
msi() { installed msiexec "$1" "Z:$2" "${@:3}" /qn; }
stop_installer_prefix() { WINEPREFIX=$installer_prefix wineserver --kill; }

# make_installer TREE VERSION: makes another installer in the temporary folder, from an unpacked package.
make_installer() { package/msi.py --tree "$1" --version "$2" --output "$folder/ZOTDam-$2.msi"; }

is_same_installer() {
    make_installer "$installation/$package" "$version" && cmp "$folder/ZOTDam-$version.msi" "$build/$installer"
}

# Prints the rows of a table without its three header lines.
rows_of() { msiinfo export "$build/$installer" "$1" | tr -d '\r' | tail -n +4; }
property() { rows_of Property | sed -n "s/^$1\t//p"; }
rights_of_settings() { rows_of MsiLockPermissionsEx | cut -f 2-4; }

# Prints the names of the components that an uninstallation removes or an installation overwrites.
unprotected_samples() {
    local samples
    samples=$(rows_of FeatureComponents | sed -n 's/^samples\t//p')
    [ -n "$samples" ] || echo 'no samples'
    rows_of Component | grep -wF "$samples" | awk -F '\t' '$4 != 16 + 128 + 256 { print $1 }'
}

programs_without_version() {
    rows_of File | awk -F '\t' -v version="$version.0" '$3 ~ /[.](dll|exe)$/ && $5 != version'
}
# Prints the files without the backups of the client, whose names contain the time.
files_in() { [ ! -d "$1" ] || find "$1" -type f ! -name '*.backup' -printf '%P\n'; }
names_of_samples() { (cd 'samples/Program Files/Orlo/QUEN Power Management' && find . -type f -printf '%P\n'); }
names_of_runtime() {
    printf '%s\n' ZOTDam.dll zotdamctl.exe
    find "$installation/$package" -maxdepth 1 -type f -printf 'ZOTDam/%P\n' | grep -E "$files_of_runtime"
}
version_in_apps() {
    installed reg query 'HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall' /s | tr -d '\r' |
        sed -n -e '/DisplayName .* ZOTDam for QUEN Power Management$/,/^$/s/.*DisplayVersion *REG_SZ *//p'
}
has_files() { (cd "$programs/ZOTDam" && ls "$@"); }
client() { installed 'C:\Program Files\Orlo\QUEN Power Management\zotdamctl.exe' "$@"; }
is_last_line_of_licence() { [ "$(tail -n 1 "$programs/ZOTDam/LICENSE")" = "$1" ]; }
is_program() { cmp "$build/bin/$1" "$programs/$1"; }

# The base catalogue of an OEM, which is on the machine before the installation.
write_own_catalogue() {
    mkdir -p "$programs/data"
    sed 's/<ZOTBase>/<!-- An OEM --><ZOTBase>/' \
        'samples/Program Files/Orlo/QUEN Power Management/data/ZOTBase.xml' >"$programs/data/ZOTBase.xml"
}

# Changes one installed data file, and makes the client write two others.
change_data() {
    echo '<!-- An OEM -->' >>"$programs/StringTable.xml" && client adopt 1 2 && client set balanced 1 0 1
}
data_files() { (cd "$drive" && find 'Program Files/Orlo' ProgramData -name '*.xml*' -exec sha256sum {} +); }

# Damages the programs, and deletes a data file whose content is that of the samples.
damage_installation() {
    rm "$programs/ZOTDam.dll" "$programs/de-DE/StringTable.xml"
    echo damaged >"$programs/zotdamctl.exe"
}

check_repair() {
    check "$1: a missing file is installed again" is_program ZOTDam.dll
    check "$1: a damaged file is replaced" is_program zotdamctl.exe
    check "$1: existing data files are kept, and a missing one is installed again" lists data_files <"$folder/data"
}

# Another build of the same version, and the next version, with other samples, which must not replace the data files.
make_next_versions() {
    cp -r "$installation/$package" "$folder/next"
    find "$folder/next/samples" -type f -exec sed -i '$s/$/<!-- next -->/' {} +
    echo rebuilt >>"$folder/next/LICENSE"
    make_installer "$folder/next" "$version"
    echo next >>"$folder/next/LICENSE"
    make_installer "$folder/next" 99.0.0
}

say 'Installing'
check 'the package and the installer have the same content' is_same_installer
check 'the installer installs for all users' lists property ALLUSERS <<<1
check 'the guide for administrators names the upgrade code' grep -qF "$(property UpgradeCode)" docs/deploy.md
check 'users may change the settings, and only the system and administrators have full access' \
    lists rights_of_settings <<'RIGHTS'
SettingsFolder	CreateFolder	D:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1301bf;;;BU)
RIGHTS
check 'data files are never overwritten and never removed' lists unprotected_samples </dev/null
check 'the programs have their version' lists programs_without_version </dev/null
make_installer_prefix
write_own_catalogue
check 'the installers of the next versions are made' make_next_versions

check 'the installation' msi /i "$PWD/$build/$installer"
{ names_of_runtime && echo data/ZOTBase.xml; } >"$folder/installed"
check 'it installs the programs only' lists files_in "$programs" <"$folder/installed"
check 'it creates the folder of the settings' test -d "$settings"
check 'the installed client prints its version' lists client --version <<<"zotdamctl $version"
check 'the product is listed in "Apps"' lists version_in_apps <<<"$version"

check 'the samples are added' msi /i "$PWD/$build/$installer" ADDLOCAL=samples
{ names_of_runtime && names_of_samples; } >"$folder/installed"
check 'the samples are installed' lists files_in "$programs" <"$folder/installed"
check 'an existing base catalogue is kept' grep -q 'An OEM' "$programs/data/ZOTBase.xml"
check 'the data files are changed' change_data
data_files >"$folder/data"

damage_installation
check 'the second installation' msi /i "$PWD/$build/$installer"
check_repair 'the second installation'
damage_installation
# These properties are those that "msiexec /fa" sets on Windows. The msiexec of wine does not have this option.
check 'the repair' msi /i "$PWD/$build/$installer" REINSTALL=ALL REINSTALLMODE=a
check_repair 'the repair'

check 'another build of the version is installed' msi /i "$folder/ZOTDam-$version.msi"
check 'it replaces the files' is_last_line_of_licence rebuilt
check 'it replaces the entry in "Apps"' lists version_in_apps <<<"$version"

check 'the update' msi /i "$folder/ZOTDam-99.0.0.msi"
check 'it replaces the files' is_last_line_of_licence next
check 'it replaces the entry in "Apps"' lists version_in_apps <<<99.0.0
check 'the update keeps the data files' lists data_files <"$folder/data"

check 'an older version is not installed' fails msi /i "$PWD/$build/$installer"
check 'the later version is still installed' lists version_in_apps <<<99.0.0

check 'the removal' msi /x "$folder/ZOTDam-99.0.0.msi"
names_of_samples >"$folder/installed"
check 'it removes the programs' lists files_in "$programs" <"$folder/installed"
check 'it removes the entry in "Apps"' lists version_in_apps </dev/null
check 'the removal keeps the data files' lists data_files <"$folder/data"

check 'the installation of one feature' msi /i "$PWD/$build/$installer" ADDLOCAL=development
check 'it installs the feature and the programs' has_files include/ZOTDam.h ../ZOTDam.dll ../zotdamctl.exe
check 'it keeps the data files of an earlier installation' lists data_files <"$folder/data"
check 'the feature is removed' msi /i "$PWD/$build/$installer" REMOVE=development
{ names_of_runtime && names_of_samples; } >"$folder/installed"
check 'the programs and the data files remain' lists files_in "$programs" <"$folder/installed"
stop_installer_prefix
