# What the benchmarks share that set Korel beside other systems: sourced by number_theory.sh and calculus.sh.
# `systems` names the columns, Korel first. Figures are in milliseconds, `-` for none, `>` beyond the limit of time.
export GPRC=/dev/null
limit=20  # seconds

pythonWith() {  # MODULES: the first Python that has them
  for p in python3 /usr/bin/python3; do
    command -v "$p" >/dev/null && "$p" -c "import $1" 2>/dev/null && echo "$p" && return
  done
}
available() {  # SYSTEM
  case $1 in
    korel) true ;;
    sympy) [ -n "$python" ] ;;
    ginac) command -v ginsh ;;
    *) command -v "$1" ;;
  esac >/dev/null
}
lesser() { awk -v a="$1" -v b="$2" 'BEGIN { print a < b ? a : b }'; }

# printRow NAME WIDTH FIGURES REFERENCE MEMORY: the figures, each with its megabytes if there are any, and Korel's over that
# of the system in column REFERENCE, if one is given, and over the least one of the others.
printRow() {
  awk -v name="$1" -v width="$2" -v f="$3" -v reference="$4" -v m="$5" 'BEGIN {
    n = split(f, t, " "); withMemory = split(m, memory, " "); best = 0
    for (i = 2; i <= n; ++i) if (t[i] + 0 > 0 && (best == 0 || t[i] + 0 < best)) best = t[i] + 0
    printf "%-" width "s", name
    for (i = 1; i <= n; ++i) { printf " %10s", t[i]; if (withMemory) printf " %4s", memory[i] }
    if (reference != "") printf " %8s", (t[reference] + 0 > 0 ? sprintf("%.2f", t[1]/t[reference]) : "-")
    printf " %8s\n", (best > 0 ? sprintf("%.2f", t[1]/best) : "-") }'
}
