# shellcheck shell=bash
# Checks of the NuGet package, which tests/package/package.sh sources.
# shellcheck disable=SC2154  # package.sh sets the variables

native=$folder/nuget/build/native

names_in_nupkg() { cmake -E tar tf "$build/$nupkg"; }
unpack_nupkg() { mkdir "$folder/nuget" && (cd "$folder/nuget" && cmake -E tar xf "$1"); }
validate_nupkg() { python3 tests/package/nupkg_test.py "$1" "$2"; }
validate_xml() {
    xmllint --nonet --noout "$folder/nuget"/{*.nuspec,*.xml,_rels/.rels} "$native"/*.{natvis,props,targets}
}

compiles_with_nupkg() { tool gcc-posix -std=c11 -fsyntax-only -I "$native/include" examples/quickstart/quickstart.c; }

is_same_nupkg() {
    package/nupkg.py --tree "$installation/$package" --version "$version" --output "$folder/$nupkg" &&
        cmp "$folder/$nupkg" "$build/$nupkg"
}

# Prints the problems of a package without the library that the targets name.
problems_of_damaged_nupkg() {
    cp -r "$folder/nuget" "$folder/damaged" && rm "$folder/damaged/build/native/lib/x64/ZOTDam.lib" &&
        (cd "$folder/damaged" && cmake -E tar cf "$folder/damaged.nupkg" --format=zip -- *) &&
        validate_nupkg "$folder/damaged.nupkg" "$version"
}

check 'the NuGet package has the same content as the package' is_same_nupkg
check 'the NuGet package can be unpacked' unpack_nupkg "$PWD/$build/$nupkg"
check 'the NuGet package has the files of a native package' lists names_in_nupkg <<'NAMES'
BUILDINFO
LICENSE
README.md
THIRD-PARTY-NOTICES.txt
ZOTDam.nuspec
ZOTDam.spdx.json
[Content_Types].xml
_rels/.rels
build/native/ZOTDam.natvis
build/native/ZOTDam.props
build/native/ZOTDam.targets
build/native/bin/x64/ZOTDam.dll
build/native/include/ZOTDam.h
build/native/include/ZOTDamClient.h
build/native/include/ZOTDamTypes.h
build/native/lib/x64/ZOTDam.lib
NAMES
check 'the XML of the NuGet package is well-formed' validate_xml
check 'the NuGet package is valid' validate_nupkg "$build/$nupkg" "$version"
check 'another version is detected' fails validate_nupkg "$build/$nupkg" 99.0.0
check 'a missing file is detected' lists problems_of_damaged_nupkg <<'PROBLEM'
build/native/ZOTDam.targets names lib\x64\ZOTDam.lib, which does not exist
PROBLEM
for file in include/*.h; do
    check "the NuGet package has ${file##*/}" cmp "$native/$file" "include/${file##*/}"
done
check 'a program compiles with the headers of the NuGet package' compiles_with_nupkg
check 'the NuGet package has ZOTDam.dll' cmp "$native/bin/x64/ZOTDam.dll" "$build/bin/ZOTDam.dll"
check 'the NuGet package has ZOTDam.lib' cmp "$native/lib/x64/ZOTDam.lib" "$build/ZOTDam.lib"
