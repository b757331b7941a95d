#!/usr/bin/env bash
# Values of special functions against other systems:   bench/special.sh BUILD
# A figure is the CPU time of one value in microseconds: that of a process that computes so many, less that of an idle one; the
# better one of two runs. Each value has an argument of its own, of full precision. A dash stands for a system that
# isn't installed. `ratio` is Korel's time over that of the other systems. Korel and mpmath keep Zeta(3) and only look it up.
build=$(cd "$1" && pwd)
export GPRC=/dev/null
python=$(for p in python3 /usr/bin/python3; do command -v "$p" >/dev/null && "$p" -c 'import mpmath' 2>/dev/null && echo "$p" && break; done)

start() {  # SYSTEM: runs the program on standard input
  case $1 in
    korel)  timeout 60 "$build/bin/korelTTY" -q ;;
    gp)     timeout 60 gp -q -f /dev/stdin ;;
    mpmath) timeout 60 "$python" - ;;
  esac >/dev/null 2>&1
}
available() {
  case $1 in
    korel) true ;;
    gp) command -v gp ;;
    mpmath) [ -n "$python" ] ;;
  esac >/dev/null
}
prelude() { [ "$1" = mpmath ] && echo 'from mpmath import *'; }
milliseconds() {  # SYSTEM, program on standard input
  local TIMEFORMAT='%U %S' spent program
  program=$(cat)
  spent=$( { time start "$1" <<< "$program"; } 2>&1 )
  awk -v t="$spent" 'BEGIN { split(t, part, " "); print 1000*(part[1] + part[2]) }'
}
# program SYSTEM DIGITS COPIES EXPRESSION: the expression for x = 2 + k/(copies + 7), k to copies.
program() {
  prelude "$1"
  case $1 in
    korel)  echo "Digits := $2: for k to $3 do x := evalf(2 + k/($3 + 7)): $4 end do:" ;;
    gp)     echo "default(realprecision, $2); for (k = 1, $3, x = 2 + k/($3 + 7.); $4);" ;;
    mpmath) printf 'mp.dps = %s\nfor k in range(1, %s + 1):\n    x = 2 + mpf(k)/(%s + 7)\n    %s\n' "$2" "$3" "$3" "$4" ;;
  esac
}
figure() {  # SYSTEM DIGITS COPIES EXPRESSION
  available "$1" || { echo -; return; }
  local best= ms
  for round in 1 2; do
    ms=$(program "$1" "$2" "$3" "$4" | milliseconds "$1")
    best=$(awk -v a="${best:-$ms}" -v b="$ms" 'BEGIN { print a < b ? a : b }')
  done
  awk -v ms="$best" -v idle="${idle[$1]}" -v copies="$3" 'BEGIN { t = 1000*(ms - idle)/copies; printf "%.1f", (t > 0.1 ? t : 0.1) }'
}
declare -A idle
for system in korel gp mpmath; do available "$system" && idle[$system]=$(prelude "$system" | milliseconds "$system"); done

row() {  # NAME DIGITS COPIES KOREL GP MPMATH
  local k g m
  k=$(figure korel "$2" "$3" "$4"); g=$(figure gp "$2" "$3" "$5"); m=$(figure mpmath "$2" "$3" "$6")
  awk -v name="$1" -v d="$2" -v k="$k" -v g="$g" -v m="$m" 'BEGIN {
    printf "%-12s %5d %10s %10s %10s %8s %8s\n", name, d, k, g, m, (g == "-" ? "-" : sprintf("%.2f", k/g)), (m == "-" ? "-" : sprintf("%.2f", k/m)) }'
}
printf '%-12s %5s %10s %10s %10s %8s %8s\n' value digits korel gp mpmath 'to gp' 'to mpmath'
while read -r digits copies; do
  row gamma  "$digits" "$copies" 'GAMMA(x)' 'gamma(x)' 'gamma(x)'
  row 'Zeta(3)' "$digits" "$copies" 'Zeta(3.)' 'zeta(3)' 'zeta(3)'
  row 'Bessel J0' "$digits" "$copies" 'BesselJ(0, x)' 'besselj(0, x)' 'besselj(0, x)'
done <<'ROWS'
20 20000
100 5000
1000 100
ROWS
