# Entries of tables through every way in which a statement reaches them.

# An entry that holds a procedure or a table is assigned, whoever keeps the table.
T := table([f = (x -> x^2), g = table([1 = 2])]):
assigned(T[f]), assigned(T[g]), assigned(T[g][1]), assigned(T[h]), assigned(T[g][2]);
p := proc(name) local t; t := table([f = (x -> x^2)]); assigned(t[name]), t[f](7) end proc: p(f), p(h);

# In a procedure an entry is stored under one index without a reference on the way: numbers, strings and
# names at once, the rest by the long way, with the same result.
fill := proc() local t, i;
  for i to 3 do t[i] := i^2; t[-i] := cat("s", i); t[i/2] := a end do;
  t[[1, 2]] := 1/2; t["k"] := 2.5; t[x + y] := -7; t[NULL] := 0; t[1, 2] := [t[1], u]; t[4] := 10^20;
  [t[3], t[-3], t[3/2], t[[1, 2]], t["k"], t[y + x], t[], t[1, 2], t[4], t[5]]
end proc: fill();
# An index is evaluated once, and before the table is looked at.
side := proc() local t, n; n := 0; t[f(n)] := 1; t[op([2, 3])] := 5; [t[2, 3], t[f(0)]] end proc: side();
count := proc() local t, k, step; k := 0; step := proc() k := k + 1; k end proc;
  t[step()] := 10; t[step()] := 20; [t[1], t[2], k] end proc: count();
# Removing, replacing and hiding entries.
remove1 := proc() local t; t[1] := 2; t[1] := 't[1]'; t[2] := 3; t[2] := 4; [assigned(t[1]), t[2]] end proc: remove1();
# A parameter or global as the base; a protected name; a list member.
set := proc(t, i, v) t[i] := v end proc: set(S, 1, 5): set(S, 2, x): S[1], S[2], S[3];
q := proc() global S; S[1] := 6; S[1] + S[2] end proc: q();
l := proc() local v; v := [1, 2, 3]; v[2] := 7; v end proc: l();
# The value of a statement and of % is the value stored.
d := proc() local t; t[1] := 5; % + 1 end proc: d();
# At the top a value that holds its own target is refused.
R[1] := R[1] + 1; R[1] := 1: R[1] := R[1] + 1;

# A table keeps all its entries when it widens, and its copies and comparisons see them.
big := proc(n) local t, i, s; for i to n do t[i] := 2*i end do; for i to n do t[-i] := t[i] + 1 end do;
  s := 0; for i from -n to n do if assigned(t[i]) then s := s + t[i] end if end do;
  [s, t[1], t[n], t[-n], assigned(t[n + 1]), nops([indices(t)])] end proc: big(2500);
for i to 3000 do B[i, i + 1] := i end do: nops([indices(B)]), B[7, 8], B[8, 7];
for i to 3000 do B[i, i + 1] := evaln(B[i, i + 1]) end do: nops([indices(B)]), B[7, 8]; B[1, 2] := 3: [indices(B)];

# Comparisons of what locals and parameters hold, in all kinds, and what stays undecided.
c := proc(a, b) local u; u := a; [evalb(u < b), evalb(u <= b), evalb(u = b), evalb(u <> b), `if`(u < b, 1, 2)] end proc:
c(1, 2), c(2, 2), c(10^20, 10^20 + 1), c(-10^20, 3), c(1/2, 0.5), c(-0., 0);
w := proc(a, b) if a < b then less elif a = b then same else more end if end proc:
w(1, 2), w(2, 2), w(3, 2), w(-10^30, 10^30), w("a", "b"), w(1/3, 0.33);
w(x, 1);
v := proc(a, b) if a = b then same elif a <> b then other end if end proc:
v(x, x), v(x, y), v([1], [1]), v((1, 2), 3), v(1.0, 1), v(undefined, undefined);
n := proc(a) local i; i := 0; while i < a do i := i + 3 end do; i end proc: n(10), n(10.5), n(-1);

# Counted loops step through small integers and beyond, by any step, whatever the body does to the variable.
for k from 2^30 - 3 to 2^30 + 2 do lprint(k) end do:
for k from 3 by -2 to -4 do lprint(k) end do: k;
for k from 1 to 10 do k := 2*k end do: k;
for k from 1/2 to 3 do end do: k;
for k from 1 by 1/2 to 3 do end do: k;
for k to 4 do k := k + 0.5 end do: k;
for k to 2 do k := "x" end do;
for printlevel to 2 do end do: printlevel; printlevel := 1:

# Sums and products fold exact numbers on the way, in the order in which they stand.
e := proc(a, b) [a*b, a^3*b, a/b, a*b + x, x + a*b, a^2 + b^2, 2*a*b - 1, a*b*y, a^(-2)] end proc:
e(2, 3); e(10^15, -10^15); e(1/2, 4); e(0, 5); e(0.5, 2); e(x, 2);
e(1, 0);
add(k^30, k = 1..30) - add(k^30, k = [seq(j, j = 1..30)]); add(k*x, k = 1..4), mul(k, k = 1..25), add(1/k, k = 1..10);
