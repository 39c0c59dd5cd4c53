#!/usr/bin/env bash
# Builds the Debian packages: build/package/shotly_*.deb and shotly-webengine_*.deb, looked at by lintian.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$root/build/package

"$root/scripts/setup.sh"
"$root/scripts/build.sh" package
rm -rf "$folder"/*.deb "$folder/_CPack_Packages"
umask 022
(cd "$folder" && cpack --config CPackConfig.cmake >cpack.log 2>&1) || {
    cat "$folder/cpack.log" >&2
    exit 1
}
rm -rf "$folder/_CPack_Packages"
desktop-file-validate "$root/packaging/shotly.desktop"
# The program has no internet address that its identifier could begin with.
appstreamcli validate --no-net --override=cid-desktopapp-is-not-rdns=info "$folder/packaging/shotly.metainfo.xml" >"$folder/appstream.log" || {
    cat "$folder/appstream.log" >&2
    exit 1
}
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$folder"/*.deb
for package in "$folder"/*.deb; do
    echo "package: ${package#"$root"/}, $(stat --format %s "$package" | numfmt --to iec)B"
done
