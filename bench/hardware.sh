#!/usr/bin/env bash
# Numeric programs by `evalhf` beside other languages:   bench/hardware.sh BUILD [PROGRAM...]
# Each bench/hardware/NAME.krl stands beside the same program in Lua, Python, NumPy (.numpy) and C, which print the same
# result. A figure is the CPU time of a process in milliseconds, user and system, the least of ROUNDS rounds (5), which
# take turns; the time of a process that does nothing is taken off. C is compiled with -O2 and takes no part in the
# compilation's time. The last columns are Korel's time over that of Lua 5.4 and of C.
build=$(cd "$1" && pwd); shift
cd "$(dirname "$0")/hardware" || exit 2
rounds=${ROUNDS:-5}
python=$(for p in /usr/bin/python3 python3; do command -v "$p" && break; done)
lua=$(command -v lua5.4); luajit=$(command -v luajit); cc=$(command -v cc)
binaries=$(mktemp -d); trap 'rm -rf "$binaries"' EXIT
has_numpy=; [ -n "$python" ] && "$python" -c 'import numpy' 2>/dev/null && has_numpy=yes
systems="krl ${lua:+lua} ${luajit:+jit} ${python:+py} ${has_numpy:+numpy} ${cc:+c}"
export OPENBLAS_NUM_THREADS=1

start() {  # SYSTEM NAME: runs the program
  case $1 in
    krl)   "$build/bin/korelTTY" -q < "$2.krl" ;;
    lua)   "$lua" "$2.lua" ;;
    jit)   "$luajit" "$2.lua" ;;
    py)    "$python" -I -S "$2.py" ;;
    numpy) "$python" "$2.numpy" ;;
    c)     "$binaries/$2" ;;
  esac 2>&1
}
exists() {  # SYSTEM NAME
  case $1 in jit) [ -e "$2.lua" ] ;; *) [ -e "$2.$1" ] ;; esac
}

declare -A least
measure() {  # NAME
  local round system spent TIMEFORMAT='%U %S'
  [ -n "$cc" ] && "$cc" -O2 -o "$binaries/$1" "$1.c" -lm
  for ((round = 0; round < rounds; ++round)); do
    for system in $systems; do
      exists "$system" "$1" || continue
      spent=$( { time start "$system" "$1" >/dev/null; } 2>&1 | awk '{ printf "%d", 1000*($1 + $2) + 0.5 }')
      [ -n "${least[$1,$system]}" ] && [ "${least[$1,$system]}" -le "$spent" ] || least[$1,$system]=$spent
    done
  done
}
row() {  # NAME
  local system spent cells=
  for system in krl lua jit py numpy c; do
    if [ -z "${least[$1,$system]:-}" ]; then cells+=" -"
    else
      spent=$((${least[$1,$system]} - ${least[nothing,$system]}))
      cells+=" $((spent < 0 ? 0 : spent))"
    fi
  done
  awk -v name="$1" -v cells="$cells" 'BEGIN {
    split(cells, t, " ")
    for (i = 2; i <= 6; i += 4) ratio[i] = t[i] == "-" ? "-" : sprintf("%.2f", t[1] / (t[i] < 1 ? 1 : t[i]))
    printf "%-12s %7s %8s %8s %8s %8s %8s %10s %8s\n", name, t[1], t[2], t[3], t[4], t[5], t[6], ratio[2], ratio[6] }'
}

printf '%-12s %7s %8s %8s %8s %8s %8s %10s %8s\n' 'CPU ms' korel lua5.4 luajit python numpy 'C -O2' 'over lua' 'over C'
measure nothing
[ $# -eq 0 ] && set -- logistic mandelbrot matrix calls sines
for name; do
  measure "$name"
  row "$name"
done
