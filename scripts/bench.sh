#!/usr/bin/env bash
# Builds the benchmarks for release and runs them on private displays of 1920 x 1080 and 3840 x 2160 pixels. Prints
# one table for each, as plain text: medians in milliseconds, and ours divided by what is measured beside it.
# Usage: bench.sh [NAME...]   (default: every bench_* program; NAME is one of them, without "bench_")
# Programs that do not look at the screen run at the first size only.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
sizes=(1920x1080 3840x2160)
depends_on_size=" bench_capture "

cd "$root"
names=("${@/#/bench_}")
if (($# == 0)); then
    names=()
    for source in bench/bench_*.cpp; do
        names+=("$(basename "$source" .cpp)")
    done
fi
scripts/build.sh release "${names[@]}" >&2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR=$work

print_table() {
    python3 - "$1" "$2" <<'END'
import json
import sys

COUNTERS = ["median_ms", "least_ms", "program_ms", "ratio"]
STANDARD = """name family_index per_family_instance_index run_name run_type repetitions repetition_index threads
    iterations real_time cpu_time time_unit label error_occurred error_message""".split()


def figure(value):
    return f"{value:.3f}" if value < 10 else f"{value:.1f}" if value < 1000 else f"{value:.0f}"


with open(sys.argv[1], encoding="utf-8") as file:
    rows = json.load(file)["benchmarks"]
table = [("", "ours ms", "beside ms", "ratio", "beside")]
for row in rows:
    name = row["name"].split("/iterations")[0]
    if row.get("error_occurred"):
        sys.exit(f"{name}: {row['error_message']}")
    others = [f"{key} {figure(row[key])}" for key in row if key not in COUNTERS and key not in STANDARD]
    beside = row.get("least_ms", row.get("program_ms"))
    ours = row.get("median_ms", row["real_time"])
    table.append((
        name,
        figure(ours) if "median_ms" in row else f"{figure(ours)} {row['time_unit']}",
        figure(beside) if beside is not None else "",
        f"{row['ratio']:.2f}" if "ratio" in row else "",
        "; ".join(filter(None, [row.get("label", "")] + others)),
    ))
widths = [max(len(line[column]) for line in table) for column in range(5)]
print(f"{sys.argv[2]}\n")
for line in table:
    cells = [line[0].ljust(widths[0])] + [line[i].rjust(widths[i]) for i in (1, 2, 3)] + [line[4]]
    print("    " + "  ".join(cells).rstrip())
print()
END
}

for name in "${names[@]}"; do
    for size in "${sizes[@]}"; do
        [[ $size == "${sizes[0]}" || $depends_on_size == *" $name "* ]] || continue
        if [[ $name == bench_run ]]; then # a run has no peer: it says in words how it went
            SHOTLY_SCREEN=${size}x24 scripts/with-desktop.sh "build/release/bench/$name" 2>"$work/log"
            echo
            continue
        fi
        SHOTLY_SCREEN=${size}x24 scripts/with-desktop.sh "build/release/bench/$name" --benchmark_out="$work/out.json" \
            --benchmark_out_format=json >"$work/log" 2>&1 || {
            cat "$work/log" >&2
            echo "bench: $name fails at $size" >&2
            exit 1
        }
        print_table "$work/out.json" "$name, display of $size"
    done
done
