#!/usr/bin/env bash
# Tries the Debian packages as users get them: builds them, makes a clean system in a folder, and there installs an
# older version, records and generates with it as an ordinary user, upgrades, does so again, and purges.
# Prints a line for each check and "all passed" at the end. Needs root.
# Usage: package_test.sh
# Everything lies in build/package_test; debs/ there keeps what was downloaded, for the next time.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$root/build/package_test
user_id=1000

# Mounts and processes live in name spaces of their own: the kernel takes them away whatever happens.
if [[ ${1:-} != --inside ]]; then
    if ((EUID != 0)); then
        echo "package_test: a system of its own can only be made by root" >&2
        exit 2
    fi
    "$root/scripts/package.sh"
    mkdir -p "$folder/debs"
    rm -f "$folder/failed.png" "$folder/program.log"
    for old in "$folder"/run-*; do # of runs that were killed
        [[ ! -d $old || -e /proc/${old##*run-} ]] || rm -rf --one-file-system "$old"
    done
    work=$folder/run-$$
    mkdir "$work"
    inside=
    finish() {
        trap - EXIT HUP INT TERM
        [[ -z $inside ]] || kill -KILL "$inside" 2>/dev/null || true
        wait
        rm -rf --one-file-system "$work"
    }
    trap finish EXIT
    trap 'exit 130' HUP INT TERM
    setpriv --pdeathsig KILL unshare --mount --propagation private --pid --fork --kill-child --mount-proc \
        "$root/scripts/package_test.sh" --inside "$work" &
    inside=$!
    code=0
    wait "$inside" || code=$?
    inside=
    [[ ! -e $work/failed.png ]] || cp "$work/failed.png" "$work/program.log" "$folder/"
    exit "$code"
fi
work=$2
tree=$work/tree
log=$work/log

fail() {
    echo "package_test: $1" >&2
    [[ ! -e $log ]] || tail -n 30 "$log" >&2
    exit 1
}
passed() {
    echo "$1"
}
quiet() {
    echo "+ $*" >>"$log"
    "$@" >>"$log" 2>&1 || fail "$1 ${2:-} failed"
}
in_tree() {
    quiet chroot "$tree" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}
apt_get() {
    in_tree apt-get -q --yes "$@"
}
same() {
    cmp -s "$tree/$1" "$tree/$2" || fail "$1 is not as $2"
}
session() {
    SHOTLY_SCREEN=1280x900x24 "$root/scripts/with-desktop.sh" /usr/bin/python3 "$root/scripts/package_session.py" \
        "$1" "$tree" "$user_id" coffee-machine || fail "the session has failed: $(cat "$work/program.log")"
}

# Where this machine has its packages from: lines "address suite component".
sources() {
    # shellcheck disable=SC2016
    apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Identifier: Packages' |
        sed -n "s/^Debian \(.* ${codename}[-a-z]* .*\)/\1/p" | sort -u
}
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(sources | awk -v suite="$codename" '$2 == suite && !seen++ { print $1 }')
[[ -n $mirror ]] || fail "apt knows no source of Debian packages here"

# A clean system: what every Debian has, and one ordinary user.
quiet debootstrap --variant=minbase --include=ca-certificates --cache-dir="$folder/debs" "$codename" "$tree" "$mirror"
sources | sed 's/^/deb /' >"$tree/etc/apt/sources.list"
# How they are reached, too.
apt-config dump | grep -E '^Acquire::(https?::Proxy|Check-)' >"$tree/etc/apt/apt.conf.d/90machine" || true
printf '#!/bin/sh\nexit 101\n' >"$tree/usr/sbin/policy-rc.d" # no services here
chmod +x "$tree/usr/sbin/policy-rc.d"
mount -t proc proc "$tree/proc"
mount -t tmpfs tmpfs "$tree/dev/shm"
mount --bind "$folder/debs" "$tree/var/cache/apt/archives"
mkdir -p /tmp/.X11-unix "$tree/tmp/.X11-unix" "$tree/packages"
mount --bind /tmp/.X11-unix "$tree/tmp/.X11-unix"
in_tree useradd --create-home --uid "$user_id" ann
apt_get update
passed "clean system: $(find "$tree/var/lib/dpkg/info" -name '*.list' | wc -l) packages, none of Shotly's"

# The version before: the same program with another help and another sound.
cp "$root"/build/package/*.deb "$tree/packages"
newer=$(basename "$tree"/packages/shotly_*.deb)
quiet dpkg-deb --raw-extract "$tree/packages/$newer" "$work/older"
sed -i 's/^Version: .*/Version: 0.0.1-1/' "$work/older/DEBIAN/control"
for name in help/features.htm camera.wav Shotly.dot; do
    echo "<!-- of the version before -->" >>"$work/older/usr/share/shotly/$name"
done
(cd "$work/older" && find usr -type f -exec md5sum {} + >DEBIAN/md5sums)
quiet dpkg-deb --root-owner-group --build "$work/older" "$tree/packages/older.deb"

apt_get install --no-install-recommends ./packages/older.deb
[[ ! -e $tree/usr/lib/shotly ]] || fail "the web engine has come along"
passed "installed: version 0.0.1, without the web engine, $(find "$tree/usr" -ipath '*shotly*' -type f | wc -l) files"
session record
home=home/ann
own=$home/.local/share/shotly
same "$own/help/features.htm" usr/share/shotly/help/features.htm
echo "a sound of my own" >"$tree/$own/camera.wav"
find "$tree/$home/Shotly" -type f -exec md5sum {} + | sort >"$work/projects"
cp "$tree/$own/options.ini" "$work/options" 2>/dev/null || true

apt_get install ./packages/"$newer" "./packages/$(basename "$tree"/packages/shotly-webengine_*.deb)"
passed "upgraded: to $(dpkg-query --admindir="$tree/var/lib/dpkg" --show --showformat='${Version}' shotly), with what it recommends"
md5sum --quiet --check "$work/projects" >>"$log" || fail "the upgrade has changed the user's projects"
passed "projects: $(wc -l <"$work/projects") files as they were"
session again
for name in help/features.htm Shotly.dot; do
    same "$own/$name" "usr/share/shotly/$name"
done
! cmp -s "$tree/$own/help/features.htm" "$work/older/usr/share/shotly/help/features.htm" || fail "the help is the older one"
passed "renewed: the user's help and document template"
[[ $(<"$tree/$own/camera.wav") == "a sound of my own" ]] || fail "the user's own sound has gone"
[[ ! -e $work/options ]] || cmp -s "$work/options" "$tree/$own/options.ini" || fail "the options have changed"
passed "kept: the user's own sound, and the options"

without_display() {
    chroot "$tree" setpriv --reuid="$user_id" --regid="$user_id" --clear-groups \
        env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME="/$home" shotly "$@" 2>>"$work/program.log" ||
        fail "shotly $*: $(tail -n 3 "$work/program.log")"
}
listed=$(without_display --list)
[[ $listed == "coffee-machine"* ]] || fail "the list of projects is \"$listed\""
without_display --generate coffee-machine --format all --output "/$home/guide" >>"$log"
[[ -s $tree/$home/guide/index.htm && -s $tree/$home/guide/coffee-machine.pdf ]] || fail "no guide was generated"
passed "commands without a display: $(find "$tree/$home/guide" -type f | wc -l) files of a guide"

find "$tree/home" -type f -exec md5sum {} + | sort >"$work/home"
apt_get purge shotly shotly-webengine
left=$(find "$tree/usr" "$tree/etc" "$tree/opt" "$tree/var/lib/dpkg/info" -iname '*shotly*')
[[ -z $left ]] || fail "after the purge there is still: $left"
passed "purged: nothing of it is left in /usr and /etc"
md5sum --quiet --check "$work/home" >>"$log" || fail "the purge has changed files of the user"
[[ -s $tree/$own/Shotly.mdb && -s $tree/$home/Shotly/coffee-machine/index.htm ]] || fail "the user's files have gone"
passed "survived: $(wc -l <"$work/home") files of the user, his pages and projects among them"
echo "all passed"
