#!/usr/bin/env bash
# Installs the packages of packages.txt that are missing. Says nothing and takes no time when none is.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$root/scripts/packages.txt")
if ! command -v dpkg-query >/dev/null; then
    echo "setup: this is no Debian system; please make sure that you have: ${wanted[*]}" >&2
    exit 0
fi

# dpkg-query fails where it does not know a package; what it knows it has printed all the same.
installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
missing=()
for package in "${wanted[@]}"; do
    grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
done
((${#missing[@]})) || exit 0

echo "setup: installing ${#missing[@]} packages: ${missing[*]}"
as_root=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "setup: please install these packages as root; there is no sudo here" >&2
        exit 1
    fi
    as_root=(sudo)
fi
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -q install --yes --no-install-recommends "${missing[@]}"
