#!/bin/sh
# Prints the benchmark table:   bench/run.sh BUILD
# Each row is a figure of Korel's beside a reference measured in the same run, and their ratio.
build=$1
printf '%-44s %14s %14s %8s  %s\n' row korel reference ratio 'reference is'
for program in store simplify structure parser integer float modular link; do
  [ -x "$build/bin/${program}_bench" ] && "$build/bin/${program}_bench"
done

# Whole processes: the fastest of ten runs each, in milliseconds.
fastest() {
  best=
  for _ in 1 2 3 4 5 6 7 8 9 10; do
    start=$(date +%s%N)
    "$@" >/dev/null 2>&1 </dev/null
    end=$(date +%s%N)
    took=$(((end - start) / 1000))
    if [ -z "$best" ] || [ "$took" -lt "$best" ]; then best=$took; fi
  done
  echo "$best"
}
process_row() {
  awk -v name="$1" -v ours="$2" -v theirs="$3" -v what="$4" 'BEGIN {
    printf "%-44s %11.3f ms %11.3f ms %8.2f  %s\n", name, ours / 1000, theirs / 1000, ours / theirs, what }'
}
korel=$build/bin/korelTTY
process_row 'process start to exit' "$(fastest "$korel" -q -s)" "$(fastest /bin/true)" /bin/true
echo
"$(dirname "$0")/programs.sh" "$build"
"$(dirname "$0")/hardware.sh" "$build"
"$(dirname "$0")/collections.sh" "$build"
"$(dirname "$0")/library.sh" "$build"
"$(dirname "$0")/rtables.sh" "$build"
"$(dirname "$0")/files.sh" "$build"
"$(dirname "$0")/debugger.sh" "$build"
echo
"$(dirname "$0")/external.sh" "$build"
"$(dirname "$0")/polynomials.sh" "$build"
"$(dirname "$0")/modular.sh" "$build"
echo
"$(dirname "$0")/elementary.sh" "$build"
echo
"$(dirname "$0")/calculus.sh" "$build"
"$(dirname "$0")/special.sh" "$build"
if [ -x "$build/bin/printer_bench" ]; then
  echo
  echo 'Printing (of_sink: times as long as the bare sink)'
  "$build/bin/printer_bench" --benchmark_min_time=0.1 2>/dev/null
fi
echo
"$(dirname "$0")/number_theory.sh" "$build"
