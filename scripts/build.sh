#!/usr/bin/env bash
# Builds with one of the presets of CMakePresets.json into build/PRESET.
# Usage: build.sh PRESET [TARGET...]   (without targets: everything)
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

if (($# == 0)); then
    echo "usage: build.sh PRESET [TARGET...]" >&2
    exit 2
fi
preset=$1
shift

cd "$root"
if [[ ! -f build/$preset/build.ninja ]]; then
    launcher=()
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$preset" "${launcher[@]}"
fi
targets=()
(($# == 0)) || targets=(--target "$@")
cmake --build "build/$preset" "${targets[@]}"
