#!/usr/bin/env bash
# The load benchmark: makes a DXF of about 100 MB (once), loads it with the
# host and with ezdxf, and reports both times, their ratio and the host's
# peak memory against the file's size.
#
#     bench/run_bench.sh [BUILD_FOLDER] [MEGABYTES]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
megabytes=${2:-100}
if [[ ! -x $build/bin/bench_DxfLoadBench ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build" --target bench_DxfLoadBench
fi
data=$build/bench-data
mkdir -p "$data"
drawing=$data/big_${megabytes}mb.dxf
[[ -f $drawing ]] || /usr/bin/python3 "$root/bench/make_big_dxf.py" "$drawing" "$megabytes"

echo "== host"
host=$("$build/bin/bench_DxfLoadBench" "$drawing" --save "$data/saved.dxf")
echo "$host"
echo "== ezdxf"
ez=$(/usr/bin/python3 "$root/bench/ezdxf_load.py" "$drawing")
echo "$ez"

value() { sed -n "s/^$1=//p" <<< "$2"; }
host_seconds=$(value load_seconds "$host")
ez_seconds=$(value load_seconds "$ez")
file_bytes=$(value file_bytes "$host")
peak=$(value peak_bytes "$host")
echo "== result"
awk -v h="$host_seconds" -v e="$ez_seconds" -v f="$file_bytes" -v p="$peak" 'BEGIN {
  printf "file: %.1f MB\n", f / 1048576
  printf "host load: %.2f s, ezdxf load: %.2f s, ratio: %.1fx (target at least 20x)\n", h, e, e / h
  printf "host peak memory: %.1f MB = %.2f x the file (target under 3x)\n", p / 1048576, p / f
}'
