#!/usr/bin/env bash
# The Excel Cell benchmark: a drawing of FIELDS texts with an ExcelCell
# field each, naming cells of one workbook of about 5 MB beside the drawing
# (ROWS rows of 10 columns; the default 80,000 make 5 MB), brought up to
# date by `cadhost update`: once with every field new, once more with
# nothing changed. In the same run,
# Debian's python3-openpyxl loads the same workbook and reads the same
# cells. Each line gives the wall time, the processor time and the peak
# memory of the
# process.
#
#     bench/run_excel_bench.sh [BUILD_FOLDER] [FIELDS] [ROWS]
#
# BUILD_FOLDER is a build configured with -DQM_BUILD_BENCH=ON (default
# build-bench, configured and built here if missing).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-bench}
fields=${2:-10000}
rows=${3:-80000}
if [[ ! -x $build/bin/bench_RunMeasured || ! -x $build/bin/bench_ExcelCellDrawingMake || ! -x $build/bin/cadhost ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_BENCH=ON -DQM_BUILD_TESTS=OFF > /dev/null
  cmake --build "$build"
fi
data=$build/bench-data/excel_${fields}f_${rows}r
rm -rf "$data"
/usr/bin/python3 "$root/bench/make_bench_workbook.py" "$data" "$rows" "$fields"
"$build/bin/bench_ExcelCellDrawingMake" "$data" > "$data/make.txt"
drawing=$data/cells.dxf
settings=$build/bench-data/settings

source "$root/bench/measure.sh"

echo "drawing: $fields fields over one workbook of $(( $(stat -c %s "$data/book.xlsx") / 1024 )) KB"
: > "$data/nothing.qms"
measure "open only" "$data/open.log" "$build/bin/cadhost" --settings "$settings" --script "$data/nothing.qms" "$drawing"
measure "update (every field new)" "$data/update1.log" "$build/bin/cadhost" update "$drawing" --settings "$settings"
measure "update (nothing changes)" "$data/update2.log" "$build/bin/cadhost" update "$drawing" --settings "$settings"
cat "$data/update1.log" "$data/update2.log"
measure "openpyxl, the same cells" "$data/openpyxl.log" /usr/bin/python3 "$root/bench/openpyxl_read_cells.py" "$data"
cat "$data/openpyxl.log"
