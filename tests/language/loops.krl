for i to 3 do i^2 od; i;
for i from 1 to 0 do i od; i;
for i from 3 by -1 to 1 do i end do;
for c from "a" to "e" by 2 do c end do;
s := 0: for k while k < 5 do s := s + k od: s; k;
for x in [p, q] do x od; for x in a + b do x od; for x in "hi" do x od; for x in [] do x od; x;
to 3 do hello od;
# `break` and `next` belong to the innermost loop.
for i to 5 do if i = 2 then next fi; if i = 4 then break fi; i od; i;
for i to 2 do for j to 3 do if j = 2 then break fi; print(i, j) od od;
# Bounds that no loop can have.
for i from z to 3 do od; for i from 1 by z to 3 do od; for i to z do od; for i from "a" to 3 do od;
for i from infinity do 1 od; i; for i from 1 by -1 to infinity do 1 od; for 3 to 4 do od;
for i to 3 do i := "x" od;
do break od; break; next;
while z do od;
if z then 1 fi; if FAIL then 1 else 2 fi; if 1 then 2 fi;
for i from 1 from 2 do od;
for i from 1/2 to 2 do i od;
# A loop variable of these is put back, also after an error.
j := 7; seq(j^2, j = 1..4); add(j, j = 1..10); mul(j, j = 1..5); j; seq(1/(j - 2), j = 1..3); j;
seq(j, j = 1..0); add(j, j = 1..0); mul(j, j = 1..0); seq(c, c = "a".."d"); seq(u, u = {3, 1}); add(w^k, k = 0..3);
seq(j, j = 1..z); seq(j); add(j, 3); y $ 3; (m^2) $ m = 2..4; $ 1..4; y $ n;
# A bound that evaluates to nothing is none that a loop can have; without a bound it runs on.
for i to NULL do od; for i from NULL to 3 do od; for i by NULL to 3 do od; for i do if i > 3 then break fi od; i;
# A character loop goes on from what the body left in its variable, as far as that is a character or its code.
n := 0: for c from "a" to "d" do n := n + 1: if n = 1 then c := 98 fi; print(c) od: c;
for c from "a" to "d" do c := 197/2 od; for c from "a" to "d" do c := 97.5 od; for c from "a" to "d" do c := -10^20 od;
for c from "a" to "d" by 10^20 do print(c) od; [c]; for c from "b" to "a" by -300 do print(c) od; [c];
for c from "ab" to "d" do od; for c from "a" to "bc" do od; for c from "a" to "c" by 1/2 do od; for c from "a" do od;
# Integers of a sum gather beyond a machine word; floats round in the order in which they come.
add(2^62, i = 1..5), add(-2^62, i = 1..3), add(x, x = [2^62, 2^62, -2^63, 2^100, -2^100, 7]);
add(x, x = [10.0^20, 1, -10.0^20]), add(x, x = [1, 10.0^20, -10.0^20, 4]), add(x, x = [3, 1/3, y, 4, 2/3]);
# The variable is changed inside, kept by closures and put back; one that is protected takes no value.
f := proc() local i, g; g := proc() i := 10*i end; add(g() + i, i = 1..3), i end: f();
seq(proc() i end, i = 1..2)[1](); setattribute('z', protected): seq(z, z = 1..3); 
# What a sum or a product has gathered is a part of the fraction, the float or the complex number that follows.
mul(k, k = [10^20, 10^20, 1/7]), add(k, k = [2^62, 2^62, 2^62, 0.*10^20]), mul(k, k = [2^40, 2^40, 1 + I, 3]);
