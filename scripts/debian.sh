#!/usr/bin/env bash
# Creates a bare Debian system in build/debian and clones the checked-out commit into it. Then runs scripts/run.sh and
# scripts/test.sh there, which install the packages that they need. Requires root.
#     scripts/debian.sh bookworm|trixie
case $* in
    bookworm | trixie) release=$1 ;;
    *)
        echo "usage: scripts/debian.sh bookworm|trixie" >&2
        exit 2
        ;;
esac
if [ "$(id -u)" -ne 0 ]; then
    echo "scripts/debian.sh makes a system of its own with debootstrap, which only root may do." >&2
    exit 2
fi
source "$(dirname "$0")/common.sh"
system=$PWD/build/debian/$release

inside() {
    chroot "$system" env -i HOME=/root TERM="${TERM:-dumb}" \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        bash -c "cd /root/ZOTDam && $*"
}

release_system() {
    # Wine processes may run for a short time after the last test.
    inside 'for server in build/wine*/; do WINEPREFIX=$PWD/$server wineserver --kill; done' >/dev/null 2>&1 || true
    sleep 1
    local folder
    for folder in dev/shm proc; do
        ! mountpoint -q "$system/$folder" || umount --lazy "$system/$folder"
    done
}

make_system() {
    say "Making a bare Debian ($release)"
    release_system
    rm -rf --one-file-system "$system"
    mkdir -p "$system"
    debootstrap --variant=minbase "$release" "$system" >"$system.log" || {
        cat "$system.log" >&2
        exit 1
    }
    cp /etc/resolv.conf "$system/etc"
    mount -t proc proc "$system/proc"
    mkdir -p "$system/dev/shm"
    mount -t tmpfs -o mode=1777 tmpfs "$system/dev/shm"
    git clone --quiet --no-hardlinks . "$system/root/ZOTDam"
}

# timed SCRIPT: runs the script in the system and prints its duration.
timed() {
    local begin=$SECONDS exit_code=0
    inside "$1" || exit_code=$?
    say "$1 on $release: $((SECONDS - begin)) s, exit code $exit_code"
    return "$exit_code"
}

install_packages debootstrap git
trap release_system EXIT
make_system
timed scripts/run.sh >"$system.run.log"
timed scripts/test.sh
