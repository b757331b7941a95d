# 10^5 entries: stored, read, counted, walked and deleted meanwhile.
n := 10^5: t := table():
for i to n do t[i] := i^2 end do:
add(t[i], i = 1..n), nops([indices(t)]), nops([entries(t)]);
for e in [indices(t)] do if irem(e[1], 3) <> 0 then t[e[1]] := evaln(t[e[1]]) end if end do:
nops([indices(t)]), t[3], t[4], assigned(t[4]), assigned(t[99999]);
for i by 3 to n do t[i] := -i end do: nops([indices(t)]), t[1], t[4], add(e[1], e = [entries(t)]);
# Keys of every kind, and sequences of them.
s := table(): for i to 300 do for j to 100 do s[i, j] := i + j end do end do:
s[300, 100], s[1, 1], s[301, 1], nops([indices(s)]), add(add(s[i, j], i = 1..300), j = 1..100);
for i to 20000 do s[k || i] := i; s["s" || i] := -i; s[i/7] := 2*i end do:
s[k20000], s["s12345"], s[20/7], s[2], nops([indices(s)]);
# A table that holds itself can be walked, copied by name and left alone.
c := table(): c[1] := 'c': c[2] := [c, c]: nops([indices(c)]), c[1], c[2];
# Keys of one bucket stand in the order in which they came; the last takes the place of one that goes.
o := table(): for i from 400 by -1 to 1 do o[i*2^18] := i end do:
for i in [300, 1, 17] do o[i*2^18] := evaln(o[i*2^18]) end do: o[300*2^18] := 0:
map(op, [entries(o)])[90..110], map(op, [entries(o)])[375..398];
