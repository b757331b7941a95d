#!/usr/bin/env bash
# Primes, factors and sequences of integers against other systems:   bench/number_theory.sh BUILD
# Each row is done COPIES times in one process, with k = 1, 2, ... A figure is the CPU time of one copy in milliseconds,
# as the system itself tells it (GP to the millisecond); the better one of two runs. A dash stands for a system that isn't
# installed or has no such function, `>` for one that took longer than the limit of 20 s. `ratio` is Korel's time over
# that of GP, `best` its time over that of the fastest of the others. Tests of primality are probable ones in all
# systems (strong tests and one of Lucas).
build=$(cd "$1" && pwd)
. "$(dirname "$0")/beside.sh"
python=$(pythonWith sympy,mpmath)
systems='korel gp maxima sympy'

start() {  # SYSTEM: runs the program on standard input
  case $1 in
    korel)  timeout $limit "$build/bin/korelTTY" -q ;;
    gp)     timeout $limit gp -q -f --default parisize=500000000 /dev/stdin ;;
    maxima) timeout $limit maxima --very-quiet --batch-string="$(cat)" ;;
    sympy)  timeout $limit "$python" - ;;
  esac 2>/dev/null
}
text() {  # SYSTEM COPIES EXPRESSION: a program whose last line is the time in milliseconds
  case $1 in
    korel)  echo "t := time(): for k to $2 do $3 end do: printf(\"%.4f\\n\", 1000*(time() - t));" ;;
    gp)     echo "{gettime();for(k=1,$2,$3);print(gettime())}" ;;
    maxima) echo "t:elapsed_run_time()\$ for k thru $2 do $3\$ print(float(1000*(elapsed_run_time()-t)))\$" ;;
    sympy)  printf '%s\n' 'import sympy, mpmath, time' 't = time.process_time()' "for k in range(1, $2 + 1): $3" \
              'print(1000*(time.process_time() - t))' ;;
  esac
}
figure() {  # SYSTEM COPIES EXPRESSION
  if [ -z "$3" ] || ! available "$1"; then echo -; return; fi
  local best= ms
  for round in 1 2; do
    ms=$(text "$1" "$2" "$3" | start "$1" | grep -E '^ *[0-9.]+(e-?[0-9]+)? *$' | tail -1)
    [ -z "$ms" ] && { echo '>'; return; }
    best=$(lesser "${best:-$ms}" "$ms")
  done
  awk -v ms="$best" -v copies="$2" 'BEGIN { printf "%.4f", ms/copies }'
}

row() {  # NAME COPIES KOREL GP MAXIMA SYMPY; the slower ones do a tenth of the copies
  local name=$1 copies=$2 figures=() n
  shift 2
  for system in $systems; do
    n=$copies
    case $system in maxima|sympy) n=$(((copies + 9) / 10)) ;; esac
    figures+=("$(figure "$system" $n "$1")"); shift
  done
  printRow "$name" 40 "${figures[*]}" 2
}

printf '%-40s %10s %10s %10s %10s %8s %8s\n' 'Number theory (ms)' $systems ratio best
# primes near powers of ten, as what has to be added to 10^(digits - 1)
while read -r digits offset copies; do
  e=$((digits - 1))
  row "primality, $digits digits" "$copies" "isprime(10^$e + $offset)" "ispseudoprime(10^$e + $offset)" \
    "primep(10^$e + $offset)" "sympy.isprime(10**$e + $offset)"
done <<< '100 289 400
300 669 40
1000 7 4'
row 'next prime after 10^50' 400 'nextprime(10^50 + 1000*k)' 'nextprime(10^50 + 1000*k)' 'next_prime(10^50 + 1000*k)' \
  'sympy.nextprime(10**50 + 1000*k)'
for half in 15 20 25 30; do
  h=$((half - 1))
  copies=$((half == 15 ? 100 : half == 20 ? 10 : half == 25 ? 2 : 1))
  p="3*10^$h + 10^9*k" q="7*10^$h + 10^10*k"
  row "factors, two primes of $half digits" $copies "factorint(nextprime($p)*nextprime($q))" "factor(nextprime($p)*nextprime($q))" \
    "ifactors(next_prime($p)*next_prime($q))" "sympy.factorint(sympy.nextprime(${p//^/**})*sympy.nextprime(${q//^/**}))"
done
row 'factors of 2^101 - 1' 10 'factorint(2^101 - 1)' 'factor(2^101 - 1)' 'ifactors(2^101 - 1)' 'sympy.factorint(2**101 - 1)'
row 'Bernoulli numbers after the 1000th' 20 'bernoulli(1000 + 2*k)' 'bernfrac(1000 + 2*k)' 'bern(1000 + 2*k)' \
  'mpmath.bernfrac(1000 + 2*k)'
row '10000th Bernoulli number' 1 'bernoulli(10000)' 'bernfrac(10000)' '' 'mpmath.bernfrac(10000)'
row 'Euler numbers after the 1000th' 20 'eulernumber(1000 + 2*k)' 'eulerfrac(1000 + 2*k)' 'euler(1000 + 2*k)' \
  'sympy.euler(1000 + 2*k)'
row 'partitions of 10000 and more' 100 'partitioncount(10000 + k)' 'numbpart(10000 + k)' 'num_partitions(10000 + k)' \
  'sympy.partition(10000 + k)'
row 'millionth number of Fibonacci' 10 'fibonacci(10^6)' 'fibonacci(10^6)' 'fib(10^6)' 'sympy.fibonacci(10**6)'
row 'primes up to 10^9, counted' 1 'primecount(10^9)' 'primepi(10^9)' '' 'sympy.primepi(10**9)'
row 'powers modulo 300 digits' 100 'powermod(3, 10^300 + k, 10^300 + 7)' 'Mod(3, 10^300 + 7)^(10^300 + k)' \
  'power_mod(3, 10^300 + k, 10^300 + 7)' 'pow(3, 10**300 + k, 10**300 + 7)'
