#!/usr/bin/env bash
# Whole programs against the same programs elsewhere:   bench/programs.sh BUILD [PROGRAM...]
# Each bench/programs/NAME.krl stands beside the same program for Python 3, PARI/GP and Maxima (.py,
# .gp, .mac), as far as those are installed and can say it; all print the same result. A figure is the
# CPU time of a process in milliseconds, user and system, the least of ROUNDS rounds (5), which take
# turns; the time of a process that does nothing is taken off, since starts differ more than programs
# do. SYSTEMS in the environment names some of krl, py, gp and mac. `ratio` is Korel's time over the better one of Python's and GP's.
build=$(cd "$1" && pwd); shift
cd "$(dirname "$0")/programs" || exit 2
rounds=${ROUNDS:-5}
# The interpreter itself, rather than a wrapper that looks for it.
python=$(for p in /usr/bin/python3 python3; do command -v "$p" && break; done)
gp=$(command -v gp)
maxima=$(command -v maxima)
systems=${SYSTEMS:-krl ${python:+py} ${gp:+gp} ${maxima:+mac}}
export GPRC=/dev/null

start() {  # SYSTEM FILE: runs the program
  case $1 in
    krl) "$build/bin/korelTTY" -q ;;
    py)  "$python" -I -S - ;;
    gp)  "$gp" -q -f --default parisize=1000000000 /dev/stdin ;;
    mac) "$maxima" --very-quiet --batch-string="$(cat)" ;;
  esac < "$2" 2>&1
}
milliseconds() {  # SYSTEM FILE
  local TIMEFORMAT='%U %S' spent
  spent=$( { time start "$1" "$2" >/dev/null; } 2>&1 )
  awk -v t="$spent" 'BEGIN { split(t, part, " "); printf "%d", 1000*(part[1] + part[2]) + 0.5 }'
}

declare -A least
measure() {  # NAME
  local round system spent
  for system in $systems; do least[$1,$system]=; done
  for ((round = 0; round < rounds; ++round)); do
    for system in $systems; do
      [ -e "$1.$system" ] || continue
      [ "$system" = mac ] && [ $round -gt 0 ] && continue  # seconds a program: one round does
      spent=$(milliseconds "$system" "$1.$system")
      [ -n "${least[$1,$system]}" ] && [ "${least[$1,$system]}" -le "$spent" ] || least[$1,$system]=$spent
    done
  done
}
row() {  # NAME
  local system cells=
  for system in krl py gp mac; do
    if [ -z "${least[$1,$system]:-}" ]; then cells+=" -"
    elif [ "$1" = nothing ]; then cells+=" ${least[$1,$system]}"
    else cells+=" $((${least[$1,$system]} - ${least[nothing,$system]}))"
    fi
  done
  awk -v name="$1" -v cells="$cells" 'BEGIN {
    split(cells, t, " "); best = "-"
    for (i = 2; i <= 3; ++i) if (t[i] != "-" && (best == "-" || t[i] + 0 < best + 0)) best = t[i] + 0
    ratio = best == "-" || name == "nothing" ? "-" : sprintf("%.2f", t[1] / (best < 1 ? 1 : best))
    printf "%-16s %8s %8s %8s %8s %8s\n", name, t[1], t[2], t[3], t[4], ratio }'
}

printf '%-16s %8s %8s %8s %8s %8s\n' 'CPU ms' korel python gp maxima ratio
measure nothing
row nothing
if [ $# -eq 0 ]; then
  set -- $(for f in *.krl; do [ "$f" = nothing.krl ] || echo "${f%.krl}"; done)
fi
for name in "$@"; do measure "$name"; row "$name"; done
