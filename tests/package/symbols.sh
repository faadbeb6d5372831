# shellcheck shell=bash
# Checks of the PDB files and of the debugger views, which tests/package/package.sh sources.
# shellcheck disable=SC2154  # package.sh sets the variables

belongs_to() { python3 tests/package/symbols_test.py "$build/bin/$2" "$build/bin/$1"; }
public_names() { llvm-pdbutil dump --publics "$build/bin/$1" | sed -n 's/.*S_PUB32 .*`\(.*\)`$/\1/p'; }
public_exports() { public_names ZOTDam.pdb | grep -xFf "$folder/exports"; }
internal_names() { public_names ZOTDam.pdb | grep '^_ZN6ZOTDam'; }
names_of_modules() { llvm-pdbutil dump --modules "$build/bin/$1" | sed -n 's/.*Obj: `\(.*\)`.*/\1/p'; }
has_module() { names_of_modules "$1" | grep -x "$2"; }
can_be_read() { ! llvm-pdbutil dump --all "$build/bin/$1" 2>&1 >/dev/null | grep .; }
views_type() { xmllint --xpath "//*[@Name='$1']" "$installation/$package/debug/ZOTDam.natvis"; }

check 'ZOTDam.pdb has the eighteen exports' lists public_exports <"$folder/exports"
check 'ZOTDam.pdb has internal functions' internal_names
check 'ZOTDam.pdb names its modules as if they were built in /ZOTDam' \
    has_module ZOTDam.pdb /ZOTDam/build/release/src/CMakeFiles/ZOTDam.dir/module/DllMain.cpp.obj
check 'ZOTDam.dll names its PDB file' belongs_to ZOTDam.pdb ZOTDam.dll
check 'zotdamctl.exe names its PDB file' belongs_to zotdamctl.pdb zotdamctl.exe
check 'a PDB file of another program is detected' fails belongs_to zotdamctl.pdb ZOTDam.dll
for pdb in ZOTDam.pdb zotdamctl.pdb; do
    check "$pdb can be read as a whole" can_be_read "$pdb"
    check "$pdb does not contain the folder of the build" fails grep -qF "$PWD" "$build/bin/$pdb"
done
for type in 'ZOTDam::List<*>' ZOTDam::ParamTree 'ZOTDam::CountedPointer<*>'; do
    check "Visual Studio has a view of $type" views_type "$type"
done
