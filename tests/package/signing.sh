# shellcheck shell=bash
# Checks of scripts/sign.sh with a key that they make, which tests/package/package.sh sources after the packages were
# reproduced. A server on this machine issues the timestamps.
# shellcheck disable=SC2154  # package.sh sets the variables

keys=$folder/keys
signed=$build/signed
unpacked=$folder/signed/$package

# make_certificate NAME USE: makes a key and a certificate for a purpose.
make_certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -subj "/CN=$1" -days 2 -addext "extendedKeyUsage=$2" \
        -keyout "$keys/$1.key" -out "$keys/$1.pem"
}
make_keys() {
    mkdir "$keys" && echo secret >"$keys/password" &&
        make_certificate publisher codeSigning && make_certificate other codeSigning &&
        make_certificate timestamps critical,timeStamping &&
        openssl pkcs12 -export -in "$keys/publisher.pem" -inkey "$keys/publisher.key" -passout "file:$keys/password" \
            -out "$keys/publisher.p12"
}

start_timestamp_server() {
    python3 tests/package/timestamp_server.py "$keys" >"$folder/port" 2>/dev/null &
    timestamp_server=$!
    until [ -s "$folder/port" ]; do sleep 0.1; done
}

sign_packages() { scripts/sign.sh "$@" -pkcs12 "$keys/publisher.p12" -readpass "$keys/password"; }
unpack_signed() { mkdir "$folder/signed" && (cd "$folder/signed" && cmake -E tar xf "$1"); }
signature_of() { osslsigncode verify -CAfile "$keys/$1.pem" -TSA-CAfile "$keys/timestamps.pem" -in "$2"; }
has_timestamp() { signature_of publisher "$1" | grep -i '^Timestamp verified'; }

# Prints the files of the installer whose content differs from the signed package.
differing_files_of_installer() {
    msiextract --directory "$folder/extracted" "$signed/$installer" >/dev/null
    local extracted="$folder/extracted/Program Files/Orlo/QUEN Power Management" name
    for name in ZOTDam.dll zotdamctl.exe; do
        cmp "$extracted/$name" "$unpacked/bin/$name" || true
    done
}

say 'Signing'
check 'keys are made' make_keys
start_timestamp_server
check 'the packages are signed' sign_packages --timestamp "http://127.0.0.1:$(<"$folder/port")/"
kill "$timestamp_server"
check 'the signed package can be unpacked' unpack_signed "$PWD/$signed/$package.zip"
for file in "$unpacked/bin/ZOTDam.dll" "$unpacked/bin/zotdamctl.exe" "$signed/$installer"; do
    check "the signature of ${file##*/} is valid" signature_of publisher "$file"
    check "the signature of ${file##*/} has a timestamp" has_timestamp "$file"
    check "the signature of ${file##*/} is not that of another publisher" fails signature_of other "$file"
done
check 'the installer contains the signed programs' lists differing_files_of_installer </dev/null
check 'the bill of materials has the checksums of the signed programs' validate_bill "$unpacked/ZOTDam.spdx.json"
check 'the signed client runs' lists wine "$unpacked/bin/zotdamctl.exe" --version <<<"zotdamctl $version"

cp "$build/$installer" "$folder/kept.msi"
echo >>"$build/$installer"
check 'a package that was not reproduced is not signed' fails sign_packages
mv "$folder/kept.msi" "$build/$installer"
