# Whole programs whose results are known: 168 primes below 1000.
sieve := proc(n) local a, i, j, count;
  for i to n do a[i] := true od; count := 0;
  for i from 2 to n do
    if a[i] then count := count + 1; for j from i*i by i to n do a[j] := false od fi
  od;
  count
end proc: sieve(1000);
# 4 ways to set six queens.
queens := proc(n) local place, cols, up, down, count;
  count := 0;
  place := proc(r) local c;
    if r > n then count := count + 1; return fi;
    for c to n do
      if cols[c] <> 1 and up[r+c] <> 1 and down[r-c] <> 1 then
        cols[c] := 1; up[r+c] := 1; down[r-c] := 1;
        place(r + 1);
        cols[c] := 0; up[r+c] := 0; down[r-c] := 0
      fi
    od
  end proc;
  place(1); count
end proc: queens(6);
# Partitions of 100 by Euler's recurrence, remembered.
p := proc(n) option remember; local k, s, g;
  if n < 0 then return 0 elif n = 0 then return 1 fi; s := 0;
  for k while k*(3*k-1)/2 <= n do
    g := p(n - k*(3*k-1)/2) + p(n - k*(3*k+1)/2);
    if irem(k, 2) = 1 then s := s + g else s := s - g fi
  od; s
end proc: p(100), p(200);
# Differentiation written in the language.
d := proc(e, x) local i;
  if type(e, integer) or type(e, fraction) then 0
  elif e = x then 1
  elif type(e, name) then 0
  elif type(e, `+`) then add(d(op(i, e), x), i = 1..nops(e))
  elif type(e, `*`) then add(e/op(i, e)*d(op(i, e), x), i = 1..nops(e))
  elif type(e, `^`) then op(2, e)*op(1, e)^(op(2, e) - 1)*d(op(1, e), x)
  else 'd'(e, x) fi
end proc:
d(x^3 + 2*x*y - 7, x); d((x^2 + 1)^4, x); d(sin(x) + 3, x);
# Convergents of sqrt(2), and e by a continued fraction.
cf := proc(l) local r, i; r := l[-1]; for i from nops(l) - 1 by -1 to 1 do r := l[i] + 1/r od; r end proc:
cf([1, seq(2, i = 1..12)]); cf([2, 1, 2, 1, 1, 4, 1, 1, 6, 1, 1, 8]);
# A stack machine in closures.
machine := proc() local s, push, run;
  s := [];
  push := proc(v) s := [op(s), v] end proc;
  run := proc(code) local c, a, b;
    for c in code do
      if type(c, integer) then push(c)
      else b := s[-1]; a := s[-2]; s := s[1..-3];
        if c = plus then push(a + b) elif c = times then push(a*b) else error "no instruction %1", c fi
      fi
    od; s[1]
  end proc; run
end proc:
machine()([2, 3, plus, 4, times]); machine()([1, 2, over]);
# A bank account each, by modules made in a procedure.
account := proc(start) module() export deposit, balance; local sum; sum := start;
  deposit := proc(n) if n <= 0 then error "deposit must be positive, but got %1", n fi; sum := sum + n end proc;
  balance := () -> sum end module end proc:
a1 := account(10): a2 := account(100): a1:-deposit(5): a1:-balance(), a2:-balance(); a1:-deposit(-1);
# The text of a word backwards, and a count of letters in a table.
reverse := proc(w) local c, r; r := ""; for c in w do r := cat(c, r) od; r end proc: reverse("kernel");
letters := proc(w) local t, c; for c in w do if assigned(t[c]) then t[c] := t[c] + 1 else t[c] := 1 fi od; seq(c = t[c], c = "a".."e") end proc:
letters("abracadabrae");
