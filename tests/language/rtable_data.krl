# What works on all elements of an rtable: searches, sorting, scans, products, transposition.
M := rtable([[1, 2], [3, 4]], subtype = Matrix): V := rtable([5, 6], subtype = Vector[column]):
R := rtable([5, 6], subtype = Vector[row]): L := A -> [seq(v, v = A)]:

# Elements are found by searches, and changed in copies.
has(M, 3), has(M, 5), has([M], 2), has(Array([1.5, 2], datatype = float[8]), 1.5), has(Array([1], datatype = integer[1]), 1);
has(rtable(identity, 1..2, 1..2), 1), has(rtable(constant[q], 1..2), q), has(rtable(1..9, {4 = s}, storage = sparse), s);
numboccur(M, 3), hastype(M, posint), hastype(M, name), hastype(Array([1.5], datatype = float[8]), float), hastype([V], 5);
N := subs(1 = x, M): L(N), L(M), evalb(subs(7 = x, M) = M); L(eval(Array([x, y]), x = 3)); subs(1 = x, Array([1], datatype = integer[4]));
indices(M); entries(V); indices(rtable(1..9, {4 = s}, storage = sparse)); evalb(length(Array(1..2)) < length(Array(1..2, [x + y, 1])));
# An array that holds itself by way of a table is searched once; a list is seen through.
C := Array(1..2): t := table([1 = C]): C[1] := eval(t): has(C, 0), has(C, 1); C[2] := [C]; C[1] := 0:
map(x -> foo, Array([1, 2], datatype = integer[4])); select(x -> foo, Array([1, 2])); select(x -> x > 1, rtable(identity, 1..2, 1..2));
if M < M then 1 end if; if 1 <= V then 1 end if;

# Sorting, in each format.
L(sort(Array([3, 1, 2]))), L(sort(Array([3, 1, 2], order = C_order), `>`)), L(sort(Array([c, a, "b"]))), L(sort(V, (a, b) -> evalb(a > b)));
for t in [integer[1], integer[2], integer[4], integer[8], float[8]] do
  S := sort(Array([3, -1, 127, 0, -128], datatype = t)); print(L(S), L(sort(S, `>`)), L(sort(S, (a, b) -> evalb(abs(a) < abs(b)))), ArrayOptions(S, datatype))
end do:
L(sort(Array([2^62, -2^62, 5], datatype = integer[8]))); L(sort(rtable(1..5, {2 = 7, 4 = -7}, storage = sparse)));
L(sort(Array([2, 1], datatype = complex[8]))), L(sort(Array([2, 1], datatype = complex[8]), (a, b) -> evalb(Re(a) < Re(b))));
F := Array(1..1000, frandom(-1..1), datatype = float[8]): G := sort(F): evalb(L(G) = sort(L(F))), evalb(L(sort(F, `>`)) = sort(L(F), `>`));
sort(M); sort(Array([a, 1]), `<`); sort(Array([1, 2]), lexorder); sort(V, 3, 4); sort(Array([1, 2]), (a, b) -> 17);

# Scans.
rtable_scanblock(M, [], Sum, Average, Maximum, Minimum, HasZero, HasNonZero, NonZeros);
rtable_scanblock(Array([0, 4, -2]), [], NonZeroSum, NonZeroAverage, NonZeroMaximum, NonZeroMinimum, HasZero, NonZeros);
rtable_scanblock(Array(1..0), [], Maximum, Average, Sum, HasZero), rtable_scanblock(Array(), [], Sum), rtable_scanblock(M, [2..2], Sum);
rtable_scanblock(Array([a, b, a]), [], Sum, Average); rtable_scanblock(rtable(1..2, 1..2, 5, storage = triangular[upper]), [], Sum);
f := proc(v, r) if not assigned(r) then r := 0 end if; r := eval(r) + v; evalb(v < 3) end proc:
rtable_scanblock(M, [], f, Sum), rtable_scanblock(M, [1..2, 2..2], f);
B := Array(1..2000, i -> i - 1000, datatype = integer[2]): rtable_scanblock(B, [], Sum, Maximum, Minimum, NonZeros, NonZeroMinimum, Average);
rtable_scanblock(rtable(B, datatype = float[8]), [], Sum, Maximum, HasZero), rtable_scanblock(B, [5..6], Sum, Maximum);
rtable_scanblock(Array(1..3, 2^62, datatype = integer[8]), [], Sum);
rtable_scanblock(M, []); rtable_scanblock(1, [], Sum); rtable_scanblock(M, 1, Sum); rtable_scanblock(M, [1], Sum);
rtable_scanblock(M, [1..2, 1..2, 1..2], Sum); rtable_scanblock(M, [a..2], Sum); rtable_scanblock(M, [1..3], Sum);
rtable_scanblock(M, [2..1], Sum); rtable_scanblock(M, [], 3); rtable_scanblock(M, [], foo); rtable_scanblock(Array([a, b]), [], Maximum);

# Products of Matrices and Vectors.
L(mvMultiply(M, M)), L(mvMultiply(M, V)), L(mvMultiply(R, M)), mvMultiply(R, V), L(mvMultiply(V, R)), op(0, mvMultiply(R, M));
mvMultiply(R, rtable([p, q], subtype = Vector[column])); L(mvMultiply(M, V, 'Z')), L(Z), mvMultiply(R, V, 'z'), z; mvMultiply(M, M, M): L(M);
mvMultiply(M, R); mvMultiply(V, M); mvMultiply(V, V); mvMultiply(R, R); mvMultiply(Array([1]), M); mvMultiply(M, Array([1]));
mvMultiply(V, Array([1])); mvMultiply(1, 2); mvMultiply(1); mvMultiply(1, 2, 3, 4); mvMultiply(M, M, 3); mvMultiply(M, M, V);
mvMultiply(M, V, R); mvMultiply(R, M, V); mvMultiply(R, V, V); mvMultiply(V, R, V); mvMultiply(V, R, rtable(1..1, 1..2, subtype = Matrix));
mvMultiply(M, V, rtable([1, 2, 3], subtype = Vector[column])); mvMultiply(M, rtable([1, 2, 3], subtype = Vector[column]));
mvMultiply(rtable([1, 2, 3], subtype = Vector[row]), M); mvMultiply(M, rtable([[1]], subtype = Matrix));
mvMultiply(rtable([1, 2, 3], subtype = Vector[row]), V);

# Transposition exchanges upper and lower.
T := `kernel/transpose`: L(T(rtable([[1, 2, 3], [4, 5, 6]], subtype = Matrix)));
for way in [triangular[upper], triangular[lower, unit], Hessenberg[upper], band[1, 0], symmetric, skewsymmetric, identity] do
  U := rtable(way, 1..3, 1..3): U[1, 1] := U[1, 1]: try U[2, 1] := 7 catch: U[1, 2] := 7 end try; W := T(U);
  print(rtable_indfns(W), rtable_options(W, storage), W[1, 2], W[2, 1])
end do:
rtable_options(T(rtable(1..2, 1..3, storage = sparse[upper])), storage); T(V); T(3); op(2, T(Array(0..1, 5..7)));

# The data as they are stored; the order of the entries of sparse storage.
L(rtableInfo(rtable(1..2, 1..2, [[1, 2], [3, 4]], storage = triangular[upper]), Raw)), L(rtableInfo('M', RawVector));
S := rtable(1..4, 1..4, storage = sparse, datatype = integer[4]): S[3, 1] := 7: S[1, 3] := 5: S[2, 2] := 6: L(rtableInfo(S, RawVector));
rtable_sort_indices(S): L(rtableInfo(S, RawVector)), S[3, 1]; rtable_sort_indices(S, column): L(rtableInfo(S, RawVector)), S[3, 1];
rtable_sort_indices(S, foo); rtable_sort_indices(S, 3); rtable_sort_indices(M); rtable_sort_indices(3);
rtable_sort_indices(rtable(1..2, 1..2, 1..2, storage = sparse, datatype = float[8]));
rtableInfo(M); rtableInfo(3, Raw); rtableInfo(M, 3); rtableInfo(M, foo);
rtable_is_zero(M), rtable_is_zero(Array(1..3)), rtable_is_zero(rtable(identity, 1..2, 1..2)), rtable_is_zero(rtable(scalar[0], 1..2, 1..2)); rtable_is_zero(3);

# The tables of the old linear algebra.
a := array(1..2, 1..2, [[1, 2], [3, 4]]): b := array(1..2, [5, 6]): E := t -> [seq(t[i], i = 1..2)]:
c := inner(a, a): c[1, 1], c[1, 2], c[2, 1], c[2, 2]; d := inner(a, b): E(d); d := inner(b, a): E(d); inner(b, b), inner(b, a, b);
c := T(a): c[1, 2], c[2, 1]; T(array(1..1, 1..1, 1..1)); T(table()); inner(array(1..2, [5]), b); inner(a, array(1..1)); inner(array(1..2, 1..2), a);
inner(array(1..2, 1..2, 1..2), a);

# Float values, in the format of the hardware where it was theirs.
F := evalf(Array([1/3, 2])): L(F), ArrayOptions(F, datatype); L(evalf(Array([1/3, x]))), ArrayOptions(evalf(Array([1.5], datatype = float[8])), datatype);
UseHardwareFloats := false: ArrayOptions(evalf(Array([1.5], datatype = float[8])), datatype); UseHardwareFloats := true:
L(evalf(rtable(1..3, {2 = 1/3}, storage = sparse))), L(evalf(Array([I/3]))), evalf(rtable(identity, 1..2, 1..2))[1, 1];
