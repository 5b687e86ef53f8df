#!/usr/bin/env bash
# The Block Count benchmark: the host builds a drawing of REFERENCES block
# references nested three deep (each with three attributes), times the
# page's snapshot of a drawing of SNAPSHOT references and the evaluator's
# count with a layer list, an attribute condition and \nested; ezdxf builds
# the same drawing (bench/ezdxf_blockcount.py --build, faster than reading
# the host's file of it) and counts the same, once memoising each
# definition as the host does and once walking every reference's blocks.
# The counts must agree; the report gives the times and their ratios. Times
# are wall times, best of several runs; the host's processor times are
# given too, since on a shared machine others' load stretches wall time.
#
#     bench/run_blockcount_bench.sh [BUILD_FOLDER] [REFERENCES] [SNAPSHOT]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing). `bench_BlockCountBench
# OUT.dxf N` saves the host's drawing too, and `ezdxf_blockcount.py OUT.dxf`
# counts from that file.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
references=${2:-1000000}
snapshot=${3:-100000}
if [[ ! -x $build/bin/bench_BlockCountBench ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build" --target bench_BlockCountBench
fi
echo "== host"
host=$("$build/bin/bench_BlockCountBench" - "$references" "$snapshot")
echo "$host"
echo "== ezdxf"
ez=$(/usr/bin/python3 "$root/bench/ezdxf_blockcount.py" --build "$references")
echo "$ez"

value() { sed -n "s/^$1=//p" <<< "$2"; }
echo "== result"
if [[ $(value count "$host") != $(value count "$ez") ]]; then
  echo "the counts differ: host $(value count "$host"), ezdxf $(value count "$ez")"
  exit 1
fi
awk -v s="$(value snapshot_seconds "$host")" -v sc="$(value snapshot_cpu_seconds "$host")" \
    -v sf="$(value snapshot_first_seconds "$host")" -v n="$(value snapshot_references "$host")" -v h="$(value count_seconds "$host")" \
    -v hc="$(value count_cpu_seconds "$host")" -v m="$(value memo_seconds "$ez")" \
    -v w="$(value walk_seconds "$ez")" -v r="$references" 'BEGIN {
  printf "snapshot of %d references: %.1f ms (processor %.1f ms; target under 100 ms; the first run %.1f ms)\n", n, s * 1000, sc * 1000, sf * 1000
  printf "count over %d references: host %.1f ms (processor %.1f ms; target under 200 ms)\n", r, h * 1000, hc * 1000
  printf "ezdxf, each definition once: %.0f ms, %.0fx the host\n", m * 1000, m / h
  printf "ezdxf, every reference walked: %.0f ms, %.0fx the host (target at least 100x)\n", w * 1000, w / h
}'
