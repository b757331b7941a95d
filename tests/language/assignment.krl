# A name evaluates fully; a name assigned to itself is unassigned.
a := b; b := 3; a; a := 'a'; a; assigned(a), assigned(b);
# All right sides are evaluated first.
p, q := 1, 2; p, q := q, p; p; q; p, q := 1; p, q := 1, 2, 3;
c := c + 1; c;
# Tables come into being by an assignment to an entry.
t[1] := 5; eval(t); t[x, y] := 6; t[1] + t[x, y]; t[2]; t; nops([indices(t)]); t[1] := 't[1]'; t[1];
t[3] := t;
# Lists are copied; a negative index counts from the end.
l := [1, 2, 3]; l[2] := 7; l; l[-1] := 9; l; l[4] := 1; l[1, 1] := 1; l[1] := NULL;
f(2) := 5; f(2); f(3);
libname := 3; 'libname' := 3; lasterror := 1;
1 := 2; x + y := 3; f(x) := 3; (a, b, 1) := (1, 2, 3);
# Values before.
11; 12; 13; %; %%; %%%;
_EnvX := 1; _EnvX; Digits := 0; Digits := 5; 1/3.; Digits := 10; Digits := 268435449; Order := infinity; Rounding := -1;
printlevel := 2^40;
# A value is remembered by a procedure, or by one made for a name without value; never in place of another value.
g := 5: g(2) := 3; g; g := [1, 2]: g(1) := 2; g; t4 := table([1 = 2]): t4(1) := 2; t4[a](1) := 2; t4[1];
md := module() export e; end module: md(1) := 2; u2(2)(3) := 1; try g(2) := 3 catch "ineffective": lasterror end try;
u2[a](1) := 5; u2[a](1), u2[w](1), u2(1);
# The changed list goes to the name that was written, and not to the one that this stands for.
la := 'lb': lb := [1, 2]: la[1] := 7: la, lb;
# A statement that runs on behalf of `parse` leaves the values before alone; one value or several.
7; [parse("z7 := 3", statement), %]; 7; [parse("(z7, y7) := (3, 4)", statement), %];
# A member of a module that is assigned its own reference is without value again.
m7 := module() export e; e := 1 end module: m7[e] := 'm7[e]': assigned(m7:-e); m7[e] := 4: m7:-e;
