#!/bin/sh
# Rows on the debugger:   bench/debugger.sh BUILD
# Programs of calls and of loops, with statements that are profiled, with a break point whose condition is false, and with
# a watch on another name, beside the same program without. Processor time in seconds, the least of five in one process.
korel=$1/bin/korelTTY
"$korel" -q -s <<'KRL' | awk -F '\t' '{ printf "%-44s %11.3f ms %11.3f ms %8.2f  the program alone\n", $1, $3 / 1000, $2 / 1000, $3 / $2 }'
fib := proc(n) if n < 2 then n else fib(n - 1) + fib(n - 2) end if end proc:
loop := proc(n) local k, s; s := 0; for k to n do s := s + k; if irem(k, 3) = 0 then s := s - 1 end if end do; s end proc:
calls := proc() fib(23) end proc: rounds := proc() loop(500000) end proc:
least := proc(work) local k; trunc(10^6*min(seq(time(work()), k = 1..5))) end proc:
plain[calls] := least(calls): plain[rounds] := least(rounds):
row := proc(text, work) INTERFACE_CHAR(cat("", text, "\t", convert(max(plain[work], 1000), string), "\t", convert(least(work), string), "\n")) end proc:
debugopts('addwatch' = 'nobody'): row("fib(23), a watch is armed", calls): row("5*10^5 rounds, a watch is armed", rounds): debugopts('watchtable' = []):
debugopts('stopat' = [fib, 1, n < 0], 'stopat' = [loop, 3, k < 0]):
row("fib(23), a condition is false", calls): row("5*10^5 rounds, a condition is false", rounds):
debugopts('traceproc' = fib, 'traceproc' = loop): row("fib(23), statements profiled", calls): row("5*10^5 rounds, statements profiled", rounds):
KRL
