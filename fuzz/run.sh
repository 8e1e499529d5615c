#!/usr/bin/env bash
# fuzz/run.sh <build folder> <seconds> [target...]
#
# Runs each fuzz target (all three by default: fuzz_formulario fuzz_documento fuzz_peticion)
# for the given seconds, one after the other, with ASan and UBSan on, its seeds
# (<build>/fuzz/seeds/<target>) and its dictionary (<build>/fuzz/<target>.dict). What a run
# finds stays for the next one in <build>/fuzz/corpus/<target>/; a crashing input is written
# to <build>/fuzz/crashes/<target>/ and libFuzzer's output to <build>/fuzz/logs/<target>.log.
# Prints per target the executions, executions per second, corpus size and crashes, and exits
# non-zero when any target crashed (or could not run).
#
# The build folder is one configured with
#   cmake -S . -B <build> -DCMAKE_CXX_COMPILER=clang++ -DCAMBIOIP_FUZZ=ON -DBUILD_TESTING=OFF
#   cmake --build <build> --target fuzz
set -u

if [ $# -lt 2 ]; then
  echo "usage: $0 <build folder> <seconds> [target...]" >&2
  exit 2
fi
build=$(cd "$1" 2>/dev/null && pwd) || { echo "$0: no build folder $1" >&2; exit 2; }
seconds=$2
shift 2
case "$seconds" in
  ''|*[!0-9]*) echo "$0: seconds must be a whole number, not '$seconds'" >&2; exit 2 ;;
esac
if [ $# -gt 0 ]; then
  targets=("$@")
else
  targets=(fuzz_formulario fuzz_documento fuzz_peticion)
fi
dir="$build/fuzz"

# The targets' racks and documents live in a scratch folder of this run (in memory when
# /dev/shm is writable, so that the saves' fsync costs nothing), removed whatever happens.
if [ -w /dev/shm ]; then base=/dev/shm; else base="$dir"; fi
scratch=$(mktemp -d "$base/cambioip-fuzz.XXXXXX") || exit 2
trap 'rm -rf "$scratch"' EXIT

count_files() { find "$1" -maxdepth 1 -type f 2>/dev/null | wc -l; }

status=0
report=()
for target in "${targets[@]}"; do
  exe="$dir/$target"
  if [ ! -x "$exe" ]; then
    echo "$0: $exe is missing: cmake --build $build --target fuzz" >&2
    report+=("$(printf '%-16s %12s %10s %8s %8s' "$target" - - - 'no run')")
    status=1
    continue
  fi
  corpus="$dir/corpus/$target"
  crashes="$dir/crashes/$target"
  log="$dir/logs/$target.log"
  mkdir -p "$corpus" "$crashes" "$dir/logs"
  before=$(count_files "$crashes")
  echo "== $target: $seconds s (log: $log)"
  # -close_fd_mask=2: the program's own diagnostics on standard error are dropped; libFuzzer's
  # output and the sanitizers' reports keep a descriptor of their own.
  TMPDIR="$scratch" \
  ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:symbolize=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}" \
  UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}" \
    "$exe" -max_total_time="$seconds" -timeout=25 -print_final_stats=1 -close_fd_mask=2 \
      -dict="$dir/$target.dict" -artifact_prefix="$crashes/" "$corpus" "$dir/seeds/$target" >"$log" 2>&1
  code=$?

  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  [ -n "$runs" ] || runs=$(grep -o '^#[0-9]*' "$log" | tail -1 | tr -d '#')
  [ -n "$runs" ] || runs=0
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
  [ -n "$rate" ] || rate=$(( seconds > 0 ? runs / seconds : runs ))
  units=$(grep -o 'corp: [0-9]*' "$log" | tail -1 | grep -o '[0-9]*$')
  [ -n "$units" ] || units=0
  found=$(( $(count_files "$crashes") - before ))
  if [ "$code" -ne 0 ] && [ "$found" -eq 0 ]; then
    found=1
  fi
  if [ "$found" -gt 0 ]; then
    status=1
    echo "   CRASH (exit $code):"
    grep -E 'ERROR: |SUMMARY: |fuzz rule broken|Test unit written to' "$log" | head -8 | sed 's/^/   /'
  fi
  report+=("$(printf '%-16s %12s %10s %8s %8s' "$target" "$runs" "$rate" "$units" "$found")")
done

echo
printf '%-16s %12s %10s %8s %8s\n' target executions 'exec/s' corpus crashes
for line in "${report[@]}"; do
  echo "$line"
done
exit $status
