# The benchmarks' measure: `measure LABEL LOG COMMAND...` runs the command
# with its output in LOG and prints its wall time and peak memory (the
# process's high-water mark, sampled while it runs). Sourced by the
# run_*.sh scripts.
measure() {
  local label=$1 log=$2
  shift 2
  local start end
  start=$(date +%s.%N)
  "$@" > "$log" 2>&1 &
  local pid=$! peak=0 kb
  while kill -0 "$pid" 2> /dev/null; do
    kb=$(sed -n 's/^VmHWM:[[:space:]]*\([0-9]*\).*/\1/p' "/proc/$pid/status" 2> /dev/null || true)
    [[ -n $kb && $kb -gt $peak ]] && peak=$kb
    sleep 0.02
  done
  wait "$pid" || { echo "$label failed:"; cat "$log"; exit 1; }
  end=$(date +%s.%N)
  awk -v l="$label" -v s="$start" -v e="$end" -v p="$peak" \
    'BEGIN { printf "%-28s %7.2f s  peak %7.1f MB\n", l, e - s, p / 1024 }'
}
