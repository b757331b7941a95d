# Arrays of doubles are used in place, in either order, with and without `var`.
C := Array(1 .. 2, 1 .. 3, [[1, 2, 3], [4, 5, 6]], datatype = float[8], order = C_order):
F := Array(1 .. 2, 1 .. 3, [[1, 2, 3], [4, 5, 6]], datatype = float[8], order = Fortran_order):
get := proc(A, i, j) A[i, j] end: evalhf(get(C, 1, 3)), evalhf(get(F, 1, 3)), evalhf(get(C, 2, 1)), evalhf(get(F, 2, 1)), evalhf(F[2, 2]);
put := proc(A, i, j, v) A[i, j] := v; A[i, j] end: evalhf(put(C, 1, 2, -7)), evalhf(put(var(F), 2, 3, -8)); C, F;
evalhf(C); evalhf(get(C, 1.9, 2.1));
# Every rank, lower bounds other than 1, and the order of the loop against that of the data.
V := hfarray(-2 .. 2, 0 .. 1, 5 .. 6): fill := proc(A) local i, j, k; for i from -2 to 2 do for j from 0 to 1 do
  for k from 5 to 6 do A[i, j, k] := 100*i + 10*j + k end do end do end do; A[-2, 1, 6] end: evalhf(fill(V)), V[2, 0, 5], V[-2, 1, 6];
# A table is a copy; `var` writes it back.
A := array(0 .. 3, [1, 2, 3, 4]): double := proc(A) local i; for i from 0 to 3 do A[i] := 2*A[i] end do; A[3] end:
evalhf(double(A)), A[3]; evalhf(double(var(A))), A[0], A[1], A[2], A[3]; evalhf(A[1] + A[2]);
B := array(1 .. 2, 1 .. 2, [[1/2, x], [3, 4]]): x := 10: evalhf(B[1, 2]*B[1, 1]); one := proc(A) A[2, 2] := 1/3 end: evalhf(one(var(B))), B[2, 2], B[1, 2];
E := array(1 .. 3): evalhf(E[2]); set := proc(A, i) A[i] := i end: evalhf(set(var(E), 2)); E[1], E[2];
outer := proc() local L; L := array(1 .. 2, [5, 6]); evalhf(set(var(L), 1)); L[1] + L[2] end: outer();
# An rtable of anything else is a copy too, and each format takes its elements back.
M := Array(1 .. 2, 1 .. 2, [[1, 2], [3, 4]]): evalhf(put(M, 1, 1, 9)), M[1, 1]; evalhf(put(var(M), 1, 1, 9)), M[1, 1];
N := Array(1 .. 2, 1 .. 2, [[1, 2], [3, 4]], datatype = integer[4]): evalhf(put(var(N), 2, 1, 5)), N[2, 1]; evalhf(put(var(N), 2, 1, 0.5)); N[2, 1];
S := rtable(symmetric, 1 .. 3, 1 .. 3, datatype = float[8], subtype = Matrix): evalhf(put(var(S), 1, 3, 4)); S[3, 1], S[1, 3];
T := rtable(triangular[upper], 1 .. 2, 1 .. 2, [[1, 2], [0, 3]], subtype = Matrix): evalhf(get(T, 2, 1)), evalhf(get(T, 1, 2));
W := Array(1 .. 3, storage = sparse): W[2] := 5: evalhf(W[1] + W[2]); K := Array(1 .. 2, [1, y]): evalhf(K[1]);
R := Array(1 .. 2, [1, 2], datatype = float[8], readonly = true): evalhf(R[2]); evalhf(set(R, 1)); R[1];
Z := Array(1 .. 2, [1 + I, 2], datatype = complex[8]): evalhf(Z[2]); type(evalhf(V), hfarray);
# Arrays made on the way, with their initial values; they can be passed on and handed out.
f := proc() local A, B; A := array(1 .. 2, 1 .. 2, [[1, 2], [3, 4]]); B := hfarray([5, 6, 7]); A[2, 1]*B[3] end: evalhf(f());
f := proc(n) local A, i; A := hfarray(1 .. n); for i to n do A[i] := i^2 end do; A end: evalhf(f(3)); g := proc(n) local A; A := f(n); A[n] end: evalhf(g(7));
hfarray(1 .. 2, 0 .. 1), hfarray(1 .. 3, [1, 1/2]), hfarray([[1, 2], [3, 4]]), hfarray(1 .. 0);
many := n -> hfarray(seq(1 .. 1, i = 1 .. n)): rtable_num_dims(many(63)); many(64);
hfarray(1 .. infinity); hfarray(1 .. 2.5); hfarray(1 .. undefined); hfarray(3 .. 1); hfarray(1 .. 10^5, 1 .. 10^5); hfarray(1 .. 10^12);
hfarray(u); hfarray(3); hfarray(); hfarray(1 .. n); hfarray(1 .. 2, [1, 2, 3]); hfarray(symmetric, 1 .. 2, 1 .. 2); hfarray([1, 2], 1 .. 2);
# An index is checked for its number and against the bounds; what is indexed must be an array.
evalhf(C[1]); evalhf(C[1, 2, 3]); evalhf(C[0, 1]); evalhf(C[1, 4]); evalhf(get(C, undefined, 1)); evalhf(get(C, 1, 10^300)); evalhf(get(C, C, 1));
f := proc(x) x[1] end: evalhf(f(3)); f := proc() local a; a[1] end: evalhf(f()); evalhf(unknown[1]); evalhf([1, 2][1]);
t[1] := 2: evalhf(t[1]); evalhf(array(symmetric, 1 .. 2, 1 .. 2)); Q := array(symmetric, 1 .. 2, 1 .. 2): evalhf(Q[1, 2]);
evalhf(C + 1); evalhf(sin(C)); evalhf(get(C, 1, 1)*C); J := many(62): evalhf(J); J := many(61): type(evalhf(J), hfarray);
# Roots of polynomials: the coefficients, the constant one first.
a := array(1 .. 4, [-6, 11, -6, 1]): re := array(1 .. 3): im := array(1 .. 3): evalhf(evalhf_polynom(a, 1, var(re), var(im)));
sort([seq(evalf(re[i], 8), i = 1 .. 3)]), evalb(max(seq(abs(im[i]), i = 1 .. 3)) < 1e-12);
a := hfarray(0 .. 2, 1 .. 2, [[2, 0], [0, -3], [-1, 0]]): evalhf(evalhf_polynom(a, 1, var(re), var(im))); sort([seq(evalf(im[i], 8), i = 1 .. 2)]);
a := hfarray([0, 0, 1]): evalhf(evalhf_polynom(a, 1, var(re), var(im))), re[1], im[2];
evalhf(evalhf_polynom(a, 1, re, var(im))); evalhf(evalhf_polynom(a, 1, var(re), im)); evalhf(evalhf_polynom(a, 1, var(5), var(im)));
evalhf(evalhf_polynom(hfarray([1, 2, 0]), 1, var(re), var(im))); evalhf(evalhf_polynom(hfarray([1, 2, 3, 4, 5]), 1, var(re), var(im)));
evalhf(evalhf_polynom(hfarray(1 .. 2, 1 .. 3), 1, var(re), var(im))); evalhf(evalhf_polynom(hfarray([1e300, 1e-300]), 1, var(re), var(im)));
evalhf(evalhf_polynom(hfarray([1, undefined, 1]), 1, var(re), var(im)));
evalhf(evalhf_polynom(a, 1, var(re))); evalhf(evalhf_polynom(5, 1, var(re), var(im)));
