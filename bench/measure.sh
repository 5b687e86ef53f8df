# The benchmarks' measure: `measure LABEL LOG COMMAND...` runs the command
# with its output in LOG and prints its wall time, its processor time and
# its peak memory, as the system counted them when it ended (bench_RunMeasured,
# so that nothing polls the command while it runs). Sourced by the
# run_*.sh scripts after they set build to their build folder.
measure() {
  "$build/bin/bench_RunMeasured" "$@" || exit 1
}
