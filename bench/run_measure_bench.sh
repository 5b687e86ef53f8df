#!/usr/bin/env bash
# The measurement benchmark: a drawing of OBJECTS polylines and circles, one
# pick of PICKED of them into the Objects Area page with every other event of
# the page on that list, and an AcArea field over them evaluated by the host
# and summed with ezdxf in the same run.
#
#     bench/run_measure_bench.sh [BUILD_FOLDER] [OBJECTS] [PICKED]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing). Targets: the pick with
# its RefreshValue under 1 s, every other event under 16 ms, the evaluation
# under 50 ms and at least 100 times faster than ezdxf's sum, and the two
# sums equal to 1e-9.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
objects=${2:-200000}
picked=${3:-100000}
if [[ ! -x $build/bin/bench_MeasurePageBench || ! -f $build/bin/Quillmark.arx ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build" --target bench_MeasurePageBench Quillmark QuillmarkEval
fi
data=$build/bench-data/measure
mkdir -p "$data"

echo "== host"
host=$("$build/bin/bench_MeasurePageBench" "$data" "$objects" "$picked")
echo "$host"
echo "== ezdxf"
ez=$(/usr/bin/python3 "$root/bench/ezdxf_measure.py" "$data/measure.dxf" "$data/picked.txt")
echo "$ez"

value() { sed -n "s/^$1=//p" <<< "$2"; }
echo "== result"
awk -v select="$(value select_and_refresh_value "$host")" -v slowest="$(value slowest_event_seconds "$host")" \
    -v name="$(value slowest_event "$host")" -v evaluate="$(value evaluate_seconds_median "$host")" \
    -v ezsum="$(value ezdxf_sum_seconds "$ez")" -v a="$(value area_sum "$host")" -v b="$(value ezdxf_area_sum "$ez")" \
    -v picked="$(value picked "$host")" 'BEGIN {
  printf "selection of %d objects with RefreshValue: %.3f s (target under 1 s)\n", picked, select
  printf "slowest other event: %s, %.1f ms (target under 16 ms)\n", name, slowest * 1000
  printf "evaluation of %d handles: %.1f ms (target under 50 ms)\n", picked, evaluate * 1000
  printf "ezdxf sum of the same: %.1f ms, ratio %.0fx (target at least 100x)\n", ezsum * 1000, ezsum / evaluate
  d = a - b; if (d < 0) d = -d
  printf "sums: host %.10g, ezdxf %.10g, relative difference %.1e (target under 1e-9)\n", a, b, d / b
  failed = select >= 1 || slowest >= 0.016 || evaluate >= 0.05 || ezsum / evaluate < 100 || d / b >= 1e-9
  if (failed) { print "a target was missed"; exit 1 }
}'
