#!/usr/bin/env bash
# Makes Shotly.dot, the delivered document template, a Word 97 template, from Shotly.fodt with LibreOffice. The
# same source gives the same bytes.
# Usage: make_template.sh [OUTPUT]   (default: Shotly.dot beside this script)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
output=${1:-$here/Shotly.dot}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

soffice "-env:UserInstallation=file://$work/profile" --headless --norestore --nodefault \
    --convert-to 'dot:MS Word 97 Vorlage' --outdir "$work" "$here/Shotly.fodt" >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; exit 1; }
[[ -s $work/Shotly.dot ]] || { cat "$work/log" >&2; exit 1; }
cp "$work/Shotly.dot" "$output"
