#!/usr/bin/env bash
# The Text File benchmark: a drawing of FIELDS texts with a Text File field
# each, naming FILES text files of BYTES bytes beside the drawing (relative
# paths), brought up to date by `cadhost update`: once with every field new,
# once more with nothing changed, and once after every file changed. Each
# line gives the wall time, the processor time and the peak memory of the
# process. Last, the
# phases of one update in process (bench_TextFileUpdatePhases) on a copy of
# the drawing as made: reading it, two update passes, writing it.
#
#     bench/run_textfile_bench.sh [BUILD_FOLDER] [FIELDS] [FILES] [BYTES]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
fields=${2:-10000}
files=${3:-100}
bytes=${4:-10240}
if [[ ! -x $build/bin/bench_RunMeasured || ! -x $build/bin/bench_TextFileDrawingMake || ! -x $build/bin/bench_TextFileUpdatePhases || ! -x $build/bin/cadhost ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build"
fi
data=$build/bench-data/textfiles_${fields}f_${files}x${bytes}
rm -rf "$data"
mkdir -p "$build/bench-data"
"$build/bin/bench_TextFileDrawingMake" "$data" "$fields" "$files" "$bytes" > "$build/bench-data/textfiles_make.txt"
drawing=$data/textfiles.dxf
settings=$build/bench-data/settings
cp "$drawing" "$data/as_made.dxf"

# Wall time, processor time and peak memory of a command, its output kept
# in a file.
source "$root/bench/measure.sh"

echo "drawing: $fields fields over $files files of $bytes bytes, $(( $(stat -c %s "$drawing") / 1024 )) KB"
: > "$data/nothing.qms"
measure "open only" "$data/open.log" "$build/bin/cadhost" --settings "$settings" --script "$data/nothing.qms" "$drawing"
measure "update (every field new)" "$data/update1.log" "$build/bin/cadhost" update "$drawing" --settings "$settings"
measure "update (nothing changes)" "$data/update2.log" "$build/bin/cadhost" update "$drawing" --settings "$settings"
for note in "$data"/notes/*.txt; do printf 'changed\r\n' >> "$note"; done
measure "update (every file changed)" "$data/update3.log" "$build/bin/cadhost" update "$drawing" --settings "$settings"
cat "$data/update1.log" "$data/update2.log" "$data/update3.log"
echo "phases of one update, in process:"
"$build/bin/bench_TextFileUpdatePhases" "$data/as_made.dxf" "$data/phases.dxf" 2
