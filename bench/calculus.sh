#!/usr/bin/env bash
# Derivatives and series against other systems:   bench/calculus.sh BUILD
# Each row is done COPIES times in one process, each time in a variable of its own, so that nothing remembered helps. A
# figure is the CPU time of one copy in milliseconds: that of the process less that of an idle one, over COPIES; the
# better one of two runs. A dash stands for a system that isn't installed, can't say it, or gives up in no time; `>`
# for one that took longer than the limit of 20 s. `ratio` is Korel's time over that of the best other system. Behind
# each time stands the peak memory of the process that did all copies, in megabytes.
build=$(cd "$1" && pwd)
. "$(dirname "$0")/beside.sh"
python=$(pythonWith sympy)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

start() {  # SYSTEM: runs the program on standard input
  local run=(/usr/bin/time -o "$scratch/peak" -f %M timeout $limit)
  case $1 in
    korel)  "${run[@]}" "$build/bin/korelTTY" -q ;;
    gp)     "${run[@]}" gp -q -f --default parisize=500000000 /dev/stdin ;;
    ginac)  "${run[@]}" ginsh ;;
    maxima) "${run[@]}" maxima --very-quiet --batch-string="$(cat)" ;;
    sympy)  "${run[@]}" "$python" - ;;
  esac >/dev/null 2>&1
}
prelude() { [ "$1" = sympy ] && echo 'from sympy import *'; }
# text SYSTEM COPIES TEMPLATE: the template for the variables x1, x2, ..., in the place of VAR.
text() {
  prelude "$1"
  for ((k = 1; k <= $2; ++k)); do
    [ "$1" = sympy ] && echo "x$k = Symbol('x$k')"
    echo "${3//VAR/x$k}"
  done
}
milliseconds() {  # SYSTEM, program on standard input; `>` beyond the limit
  local TIMEFORMAT='%U %S' spent program status
  program=$(cat)
  spent=$( { time start "$1" <<< "$program"; } 2>&1 )
  awk -v t="$spent" -v limit=$limit 'BEGIN { split(t, part, " "); s = part[1] + part[2]; if (s > 0.9*limit) print ">"; else printf "%.1f", 1000*s }'
}
figure() {  # SYSTEM COPIES TEMPLATE: milliseconds and megabytes
  if [ -z "$3" ] || ! available "$1"; then echo - -; return; fi
  local best= idle=${idle[$1]} ms
  for round in 1 2; do
    ms=$(text "$1" "$2" "$3" | milliseconds "$1")
    [ "$ms" = '>' ] && { echo '> -'; return; }
    best=$(lesser "${best:-$ms}" "$ms")
  done
  awk -v ms="$best" -v idle="$idle" -v copies="$2" 'BEGIN { t = (ms - idle)/copies; printf "%.3f ", (t > 0.001 ? t : 0.001) }'
  tail -1 "$scratch/peak" | awk '{ printf "%.0f", $1/1024 }'
}

systems='korel gp ginac maxima sympy'
declare -A idle
for system in $systems; do available "$system" && idle[$system]=$(prelude "$system" | milliseconds "$system"); done

# row NAME COPIES KOREL GP GINAC MAXIMA SYMPY
row() {
  local name=$1 copies=$2 figures='' memory='' t m
  shift 2
  for system in $systems; do
    # The slow ones need no more than one copy.
    n=$copies; [ "$system" = sympy ] && n=1
    read -r t m <<< "$(figure "$system" $n "$1")"
    figures+="$t " memory+="$m "; shift
  done
  printRow "$name" 34 "$figures" '' "$memory"
}

printf '%-34s' 'Derivatives and series (ms, MB)'; printf ' %10s   MB' $systems; printf ' %8s\n' ratio
nest=''; for k in 1 2 3 4 5 6 7 8 9 10 11 12; do nest+='e=sin(e)*exp(VAR)+e^2: '; done
row 'derivative of a 12-fold nest' 10 \
  'e := VAR: to 12 do e := sin(e)*exp(VAR) + e^2 end do: diff(e, VAR):' '' \
  "e=VAR: ${nest}diff(e, VAR):" \
  'e:VAR$ for i thru 12 do e:sin(e)*exp(VAR)+e^2$ diff(e,VAR)$' \
  'e = VAR
for i in range(12): e = sin(e)*exp(VAR) + e**2
diff(e, VAR)'
row '200th derivative of x^2*sin(3*x)' 20 \
  'diff(VAR^2*sin(3*VAR), VAR$200):' '' 'diff(VAR^2*sin(3*VAR), VAR, 200):' 'diff(VAR^2*sin(3*VAR), VAR, 200)$' \
  'diff(VAR**2*sin(3*VAR), VAR, 200)'
row '200th derivative of x^150*exp(x)' 5 \
  'diff(VAR^150*exp(VAR), VAR$200):' '' 'diff(VAR^150*exp(VAR), VAR, 200):' 'diff(VAR^150*exp(VAR), VAR, 200)$' \
  'diff(VAR**150*exp(VAR), VAR, 200)'
row 'tan(sin(x)) - sin(tan(x)) to x^60' 20 \
  'series(tan(sin(VAR)) - sin(tan(VAR)), VAR, 60):' 'tan(sin(VAR+O(VAR^60)))-sin(tan(VAR+O(VAR^60)));' \
  'series(tan(sin(VAR))-sin(tan(VAR)), VAR==0, 60):' 'taylor(tan(sin(VAR))-sin(tan(VAR)),VAR,0,59)$' \
  'series(tan(sin(VAR)) - sin(tan(VAR)), VAR, 0, 60)'
row 'exp(sin(x) + cos(x)) to x^100' 20 \
  'series(exp(sin(VAR) + cos(VAR)), VAR, 100):' 'exp(sin(VAR+O(VAR^100)))*exp(cos(VAR+O(VAR^100))-1);' \
  'series(exp(sin(VAR)+cos(VAR)), VAR==0, 100):' 'taylor(exp(sin(VAR)+cos(VAR)),VAR,0,99)$' \
  'series(exp(sin(VAR) + cos(VAR)), VAR, 0, 100)'
row '1/(1 - x - x^2) to x^1000' 20 \
  'series(1/(1 - VAR - VAR^2), VAR, 1000):' '1/(1-VAR-VAR^2+O(VAR^1000));' \
  'series(1/(1-VAR-VAR^2), VAR==0, 1000):' 'taylor(1/(1-VAR-VAR^2),VAR,0,999)$' 'series(1/(1 - VAR - VAR**2), VAR, 0, 1000)'
row 'ln(1 + x)*(1 + x)^(1/3) to x^200' 20 \
  'series(ln(1 + VAR)*(1 + VAR)^(1/3), VAR, 200):' 'log(1+VAR+O(VAR^200))*(1+VAR+O(VAR^200))^(1/3);' \
  'series(log(1+VAR)*(1+VAR)^(1/3), VAR==0, 200):' 'taylor(log(1+VAR)*(1+VAR)^(1/3),VAR,0,199)$' \
  'series(log(1 + VAR)*(1 + VAR)**Rational(1, 3), VAR, 0, 200)'
