#!/usr/bin/env bash
# Feeds the readers and writers of files with what libFuzzer makes of the seeds in tests/corpus, under both
# sanitizers, each for so many seconds; prints one line of figures for each. Ends with an error at the first finding;
# its input stays in build/fuzz/findings.
# SHOTLY_FUZZ_SEED makes two runs begin alike (default: each run another way).
# Usage: fuzz.sh [SECONDS [NAME...]]   (default 300 for each of all programs of tests/fuzz)
#        fuzz.sh keep [NAME...]        takes over into tests/corpus what got further into the code than its seeds
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build/fuzz
corpus=$root/tests/corpus
seconds=${1:-300}
shift || true

# Objects of another compiler, or of other folders, are found again as well.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
"$root/scripts/build.sh" fuzz fuzzers
names=("$@")
((${#names[@]})) || names=(profile statement picture journal html word pdf cursor)

# Files are made and changed a thousand times a second: in memory, if there is room.
work=$(mktemp -d -p "$([[ -w /dev/shm ]] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
trap 'rm -rf "$work"' EXIT
export TMPDIR=$work HOME=$work XDG_RUNTIME_DIR=$work QT_QPA_PLATFORM=offscreen
# No memory for more than 64 million pixels: that has to be survived as well.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:max_allocation_size_mb=256:quarantine_size_mb=32
export UBSAN_OPTIONS=print_stacktrace=1 LSAN_OPTIONS=suppressions=$root/tests/support/leaks.supp:print_suppressions=0

# Texts need no more to show what they do; pictures and pointers have headers that are longer.
options=(-max_len=8192 -timeout=60 -rss_limit_mb=1536 -print_final_stats=1 "-seed=${SHOTLY_FUZZ_SEED:-0}")

if [[ $seconds == keep ]]; then
    for name in "${names[@]}"; do
        cp -r "$corpus/$name" "$work/$name"
        "$build/tests/fuzz/fuzz_$name" "${options[@]}" -merge=1 -use_counters=0 "$work/$name" \
            "$build/corpus/$name" >"$build/fuzz_$name.log" 2>&1
        for file in "$work/$name"/*; do
            seed=$corpus/$name/${file##*/}
            [[ -e $seed ]] || cp "$file" "${seed%/*}/found-$(cut -c1-8 <<<"${file##*/}")"
        done
        echo "$name: $(ls "$corpus/$name" | wc -l) seeds"
    done
    exit
fi

mkdir -p "$build/findings"
for name in "${names[@]}"; do
    mkdir -p "$build/corpus/$name"
    log=$build/fuzz_$name.log
    code=0
    "$build/tests/fuzz/fuzz_$name" "${options[@]}" -max_total_time="$seconds" \
        -artifact_prefix="$build/findings/$name-" "$build/corpus/$name" "$corpus/$name" >"$log" 2>&1 || code=$?
    coverage=$(grep -oE 'cov: [0-9]+ ft: [0-9]+' "$log" | tail -1 || true)
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    memory=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log")
    printf '%-10s %9s executions, %s, at most %s MB\n' "$name" "${executions:-?}" "$coverage" "${memory:-?}"
    if ((code != 0)); then
        grep -vE '^#[0-9]+' "$log" | tail -40 >&2
        exit 1
    fi
done

# What the writer makes of the seeds, for the reader of the tests.
if [[ " ${names[*]} " == *" word "* ]]; then
    mkdir "$work/kept"
    SHOTLY_FUZZ_KEEP=$work/kept "$build/tests/fuzz/fuzz_word" "${options[@]}" -runs=0 "$corpus/word" >/dev/null 2>&1
    count=0
    for file in "$work"/kept/*.doc; do
        /usr/bin/python3 -X utf8 "$root/tests/office/check_word_file.py" "$file" >/dev/null
        count=$((count + 1))
    done
    echo "$count Word documents are as published"
fi
