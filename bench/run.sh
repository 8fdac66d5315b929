#!/usr/bin/env bash
# Runs all comparisons of the linux build and shows them as one table; "./dev bench"
# builds first. Arguments go to the timed part, such as --benchmark_filter=token.
set -euo pipefail
programs="$(cd "$(dirname "$0")/.." && pwd)/build/linux/bench"

# Downloaded files go into memory if there is enough, so that no disk is measured.
base=$programs
if [ -w /dev/shm ] && [ "$(df --output=avail -B1M /dev/shm | tail -n1)" -gt 500 ]; then base=/dev/shm; fi
TMPDIR=$(mktemp -d "$base/pavonix-bench-XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT

"$programs/bench" "$@"
"$programs/heap_bench"

# A count of instructions is the same on a busy machine; rows as in harness/table.cpp.
valgrind --quiet --tool=callgrind --collect-atstart=no --callgrind-out-file="$TMPDIR/instructions" \
  "$programs/token_instructions"
awk '/^desc: Trigger: Client Request:/ { name = $NF }
     /^totals:/ { count[name] = $2 / 10 }
     END {
       for (bits = 1024; bits <= 2048; bits += 1024) {
         ours = count["token-" bits]; theirs = count["arithmetic-" bits]
         printf "%-50s %8.3f M %8.3f M %7.2f %7s   1.03 %s\n", bits "-bit token / LibTomMath, instructions",
                ours / 1e6, theirs / 1e6, ours / theirs, "", ours / theirs <= 1.03 ? "met" : "missed"
       }
     }' "$TMPDIR"/instructions.[1-4]
