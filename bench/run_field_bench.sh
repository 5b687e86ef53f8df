#!/usr/bin/env bash
# The field benchmark: makes a drawing of TABLES tables of 20 rows and 30
# columns and FIELDS texts that each hold a Table Cell field (once), then
# measures with cadhost:
#   - loading the drawing alone (a session that does nothing);
#   - the same session with a pick on the Table Cell page of the last cell of
#     the last table, which walks every table of the drawing;
#   - `cadhost update` bringing every field up to date, and a second update
#     that changes nothing.
# Each line gives the wall time, the processor time and the peak memory of
# the process.
#
#     bench/run_field_bench.sh [BUILD_FOLDER] [TABLES] [FIELDS]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
tables=${2:-1000}
fields=${3:-100000}
if [[ ! -x $build/bin/bench_RunMeasured || ! -x $build/bin/bench_FieldDrawingMake || ! -x $build/bin/cadhost ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build"
fi
data=$build/bench-data
mkdir -p "$data"
drawing=$data/fields_${tables}t_${fields}f.dxf
settings=$data/settings
if [[ ! -f $drawing ]]; then
  "$build/bin/bench_FieldDrawingMake" "$drawing" "$tables" "$fields" > "$data/make.txt"
fi
point=$(sed -n 's/^last_table_cell_point=//p' "$data/make.txt")

# Wall time, processor time and peak memory of a command, its output kept
# in a file.
source "$root/bench/measure.sh"

printf 'field at 0,-25\ntype "QM Table Cell"\npoint %s\nclick 200\nprint control 202\ncancel\n' "$point" > "$data/pick.qms"
: > "$data/nothing.qms"
echo "drawing: $tables tables, $fields fields, $(( $(stat -c %s "$drawing") / 1048576 )) MB"
measure "open only" "$data/open.log" "$build/bin/cadhost" --settings "$settings" --script "$data/nothing.qms" "$drawing"
measure "open and pick a cell" "$data/pick.log" "$build/bin/cadhost" --settings "$settings" --script "$data/pick.qms" "$drawing"
grep -q '"Table(<' "$data/pick.log" || { echo "the pick found no cell:"; cat "$data/pick.log"; exit 1; }
measure "update (every field)" "$data/update1.log" "$build/bin/cadhost" update "$drawing" -o "$data/updated.dxf" --settings "$settings"
measure "update (nothing changes)" "$data/update2.log" "$build/bin/cadhost" update "$data/updated.dxf" --settings "$settings"
cat "$data/update1.log" "$data/update2.log"
