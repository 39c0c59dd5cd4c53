#!/usr/bin/env bash
# Shows that the tests catch what they claim: puts one fault after the other into a copy of the tree, builds the
# test that must notice it, and runs it.
# Usage: seed_faults.sh [--fit] [FILE...]   (default: all of tests/faults/*.txt)
# With --fit nothing is built: names the faults that are stale.
#
# A fault is three lines; an empty line ends it, and lines that begin with "#" say what it is:
#   file src/platform/AtomicFile.cpp
#   sed s/old/new/
#   test tst_atomicfile
# The sed command must change exactly one line. Prints "caught", "missed" (no test failed), "stale" (the command
# fits the file no longer) or "broken" (it does not compile, or the test fails without it) for each; the exit
# code is 0 when all were caught.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

fit=
if [[ ${1:-} == --fit ]]; then
    fit=yes
    shift
fi
lists=()
for list in "$@"; do
    lists+=("$(realpath "$list")")
done
((${#lists[@]})) || lists=("$root"/tests/faults/*.txt)

# Desktop tests need one; the others do not mind.
if [[ -z $fit && -z ${SHOTLY_FAULTS_ON_DESKTOP:-} ]]; then
    exec env SHOTLY_FAULTS_ON_DESKTOP=1 "$root/scripts/with-desktop.sh" "$root/scripts/seed_faults.sh" "${lists[@]}"
fi

copy=$root/build/faults
log=$copy/last.log
mkdir -p "$copy"
files=$(mktemp -d)
trap 'rm -rf "$files"' EXIT
original=$files/original
changed=$files/changed
cd "$root"
if [[ -z $fit ]]; then
    # Files that have not changed keep their times, so that a second run builds little.
    git ls-files -z --cached --others --exclude-standard |
        while IFS= read -r -d '' name; do
            [[ -f $name ]] || continue
            cmp -s "$name" "$copy/$name" || { mkdir -p "$copy/$(dirname "$name")" && cp "$name" "$copy/$name"; }
        done
fi
cd "$copy"

builds() {
    "$copy/scripts/build.sh" dev "$1" >"$log" 2>&1
}
passes() {
    ctest --test-dir "$copy/build/dev" --no-tests=error --tests-regex "^$1\$" >"$log" 2>&1
}

declare -A counts=([caught]=0 [missed]=0 [stale]=0 [broken]=0)
declare -A sound=() # tests that pass without a fault
judge() {
    local file=$1 command=$2 test=$3 verdict
    if [[ -z $fit && -z ${sound[$test]:-} ]]; then
        if builds "$test" && passes "$test"; then sound[$test]=yes; else sound[$test]=no; fi
    fi
    cp "$root/$file" "$original"
    sed -E "$command" "$original" >"$changed"
    if [[ $(diff "$original" "$changed" | grep -c '^<') != 1 ]]; then
        verdict=stale
    elif [[ -n $fit ]]; then
        return
    elif [[ ${sound[$test]} == no ]]; then
        verdict=broken
    else
        cp "$changed" "$copy/$file"
        if ! builds "$test"; then
            verdict=broken
        elif passes "$test"; then
            verdict=missed
        else
            verdict=caught
        fi
        cp "$original" "$copy/$file"
    fi
    counts[$verdict]=$((counts[$verdict] + 1))
    printf '%-7s %s: %s (%s)\n' "$verdict" "$file" "$command" "$test"
}

for list in "${lists[@]}"; do
    file='' command='' test=''
    # One empty line more ends the last fault.
    while IFS= read -r line; do
        case $line in
        '#'*) ;;
        'file '*) file=${line#file } ;;
        'sed '*) command=${line#sed } ;;
        'test '*) test=${line#test } ;;
        '')
            [[ -z $file ]] || judge "$file" "$command" "$test" </dev/null
            file='' command='' test=''
            ;;
        *)
            echo "seed_faults: what does \"$line\" mean in $list?" >&2
            exit 2
            ;;
        esac
    done < <(cat "$list"; echo)
done

if [[ -n $fit ]]; then
    echo "${counts[stale]} faults are stale"
else
    echo "caught ${counts[caught]}, missed ${counts[missed]}, stale ${counts[stale]}, broken ${counts[broken]}"
fi
((counts[missed] + counts[stale] + counts[broken] == 0))
