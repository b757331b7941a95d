# Rtables from outside: constructor, elements and blocks, options.

# The forms of the constructor.
rtable();
rtable(1..0);
Array(-1..1, [p, q]);
Array(1..2, 1..2, [[1], 5]);
Array([[1, 2], [3, 4]], order = C_order);
rtable([[1, 2, 3], [4, 5, 6]], subtype = Matrix, transpose);
rtable([1, 2], subtype = Vector[row]);
Array(1..3, [a], fill = x); Array(1..3, fill = x, [a]);
Array(1..3, 7);
Array(1..2, 1..2, (i, j) -> 10*i + j);
Array(1..2, {1 = a, 2 = b});
Array(0..1, 0..1, {(0, 1) = c}, fill = d);
t := array(1..2, [u, v]): Array(t);
rtable(1..2, table([1 = s]), fill = 9);
rtable(Array([1, 2]), datatype = float[8]);
rtable(symmetric, 1..2, 1..2, [[1, 2], [2, 3]], subtype = Matrix);
rtable(identity, 1..2, 1..2, storage = rectangular);
rtable(constant[5], 1..2, storage = rectangular);
A := Array(1..2, [1, 2], readonly): A[1] := 3;

# A procedure is asked once for each element, and for the first fill when 0 doesn't fit.
n := 0: F := proc(i) global n; n := n + 1; `if`(i = 1, a, b) end proc:
rtable(1..3, F, datatype = symbol), n;
rtable(1..3, datatype = symbol);
rtable(1..2, proc() error "no element here" end proc);

# Random elements, the same after each start: within the range, as many as the density tells.
Array(1..4, random(1..6)); Array(1..2, frandom(2..3), datatype = float[8]); Array(1..3, random(), datatype = integer[8]);
R := Array(1..1000, random(5..7, 0.25), datatype = integer[1]): {seq(v, v = R)}; rtable_num_elems(R, NonZero);
rtable(1..2, random(1, 2, 3)); rtable(1..2, random(x)); rtable(1..2, random(2)); rtable(1..2, random(1..x));
rtable(1..2, random(2..1)); rtable(1..2, frandom(1..1)); rtable(1..2, randomly(1));

# What can't be made.
rtable(1..x);
rtable(3..1);
rtable(seq(1..1, i = 1..64));
rtable(1..2, nothing);
rtable(1..2, nothing = 3);
rtable(1..2, (a + b) = 3);
rtable(x -> x);
rtable({1 = 2});
rtable(sin(1));
rtable(1..2, sin(1));
rtable(1..2, {x});
rtable(1..2, {x = 1});
rtable(1..2, {3 = 1});
rtable(1..2, {1 = 1}, transpose = true);
rtable(1..2, transpose = true);
rtable(1..2, 1..2, transpose = true);
Array(1..2, [1, 2], transpose = true);
rtable(1..2, [[1]], subtype = Matrix);
rtable(1..2, 1..2, subtype = Vector);
rtable(1..2, 1..2, subtype = Vector[row]);
rtable(0..2, subtype = Vector[row]);
rtable(1..2, Array([[1]]));
rtable(table([1 = 2]));
rtable(array(1..2), subtype = Matrix);
rtable([1, 2], transpose = true);
rtable(0..2, storage = diagonal);
rtable(1..2, storage = band[1, 1]);
rtable(1..2, storage = triangular[upper]);
rtable(0..2, storage = sparse, datatype = float[8]);
rtable(storage = sparse, datatype = float[8]);
rtable(1..10^5, 1..10^5);
rtable(1..2^31 - 1, datatype = complex[8]);
Array(1..2, [x], datatype = float[8]);
Array(1..2, 1..2, subtype = Matrix);

# Options of the wrong form.
for way in [foo, foo[1], 3, rectangular[1], band, band[1], triangular, triangular[], triangular[upper, strict, upper],
          triangular[1], triangular[middle], triangular[strict], triangular[upper, lower], Hessenberg,
          Hessenberg[middle], sparse[middle], sparse[-1]] do
  try rtable(1..2, 1..2, storage = way) catch: print(way, lasterror) end try
end do:
for way in [integer[x], integer[3], float[x], float[4], complex[x], complex[4], (1..2)[3]] do
  try rtable(1..2, datatype = way) catch: print(way, lasterror) end try
end do:
for way in [subtype = 3, subtype = Vector[up], subtype = Tensor, order = up, readonly = 2, transpose = 2, attributes = 2] do
  try rtable(1..2, way) catch: print(way, lasterror) end try
end do:

# Data types as they are told again.
for way in [integer[1], integer[8], float[8], complex[8], float, complex(float), complex(sfloat), complex(float[8]), sfloat,
          posint, anything] do
  print(way, ArrayOptions(Array(1..0, datatype = way), datatype))
end do:
UseHardwareFloats := false: ArrayOptions(Array(1..0, datatype = float), datatype); UseHardwareFloats := true:
for way in [sparse, sparse[5], sparse[upper], sparse[3, lower], empty, diagonal, band[1, 5], rectangular, triangular[upper],
          triangular[strict, lower], Hessenberg[lower], scalar] do
  R := rtable(1..3, 1..3, storage = way);
  print(way, rtable_options(R, storage), rtable_num_elems(R), rtable_num_elems(R, Allocated), rtable_num_elems(R, Bytes))
end do:

# Elements and blocks; indices from the end, but in an Array.
M := rtable([[1, 2, 3], [4, 5, 6]], subtype = Matrix): V := rtable([7, 8, 9], subtype = Vector[column]):
A := Array(-2..2, [a, b, c, d, e]):
M[1, 2], M[-1, -1], V[-1], A[-1], A[2];
M[1, 1..2]; M[1..2, -1]; M[2..1, 1..3]; M[[2, 1], [3, 1..2]]; V[2..3]; A[-1..1]; A[[2, -2]];
V[1..0]; V[3..1]; V[0..1]; V[4]; V[0]; V[x]; V[1, 1]; M[1]; M[1, x..y]; M[1, [x]]; A[-3..-2]; A[10^20];
B := Array(1..2, 1..2, [[1, 2], [3, 4]]): B[2]; B[]; B[1, 1, 1];
M[1, 2] := w: M[2, 1..2] := V[1..2]: M;
V[1..3] := rtable([0], subtype = Vector[column]): V;
V[[1, 3]] := z: V;
V[1..2] := Array([1, 2, 3]); V[1..2] := M; V[5] := 1; V := V: V[1] := [V];
V[2] := 'V[2]';
rtable_normalize_index(M, -1, 1..2), rtable_normalize_index(M, [1, -1..-1], 1); rtable_normalize_index(M, 1, 1, 1);
Z := Array(): Z[] := 4: Z[], Z;
# What stands in an element is evaluated when it is read; nothing that a sequence couldn't hold.
y := 'y': E := Array(1..3, [y]): E[2] := NULL: y := 5: E[1], E[2], E[3]; y := 'y': E[1];
G := Array(1..2, [x -> x^2, table([1 = 2])]): G[1](3), G[2][1]; Array(1..1)[1];

# Ranks are compared before any index is looked at; a block that is too small for one dimension was cut for those before.
M[1..9] := V; M[9] := V[1..2]; M[9, 1..2] := M[1..1, 1..1]; B := Array(1..2, 1..3, fill = 7): B[1..2, 1..2] := Array(1..1, 1..3); B; B[[9, x], 1];
# One array for all who hold it; a procedure changes its caller's.
C := A: C[0] := changed: A[0]; p := proc(X) X[0] := inside end proc: p(A): A[0];
f := map(x -> x^2, Array([1, 2, 3])); select(x -> x > 1, f); map(x -> x + 1, rtable(symmetric, [[1, 2], [2, 3]]));
evalb(f = Array([1, 4, 9])), evalb(f = Array([1, 4, 8])), EqualEntries(f, Array([1, 4., 9])), EqualStructure(f, Array(1..3));
op(0, M), nops(M), op(1, M), evalb(op(2, M) = {seq(seq((i, j) = M[i, j], j = 1..3), i = 1..2)}); op(3, M); op(4, M);
op(0, V), op(1, f), op(2, f), evalb(op(3, f) = {1 = 1, 2 = 4, 3 = 9}), op(4, f); nops(f); op(5, f);
type(M, rtable), type(M, Array), type(f, Array), type(Array(1..2, datatype = float[8]), hfarray);

# Loops run over the elements, the first index fastest; over the entries of a sparse array.
T := Array(1..2, 1..3, [[1, 2, 3], [4, 5, 6]]): for v in T do print(v) end do: add(v, v = T), mul(v, v = T), seq(v^2, v = T);
seq(v, v = rtable(1..10^6, {3 = a}, storage = sparse)), add(v, v = Array(1..0));
seq(v, v = rtable(triangular[upper], 1..2, 1..2, fill = 5)), seq(v, v = rtable(1..2, 1..2, 5, storage = triangular[upper]));

for v in rtable(identity, 1..2, 1..2) do print(v) end do; add(v, v = rtable(identity, 1..2, 1..2, storage = rectangular));

# Counts.
S := rtable(1..4, 1..4, storage = sparse[2], datatype = integer[4]): S[1, 1] := 1: S[2, 2] := 2: S[3, 3] := 3:
seq(rtable_num_elems(S, k), k = [All, NonZero, Stored, NonZeroStored, Bytes, Allocated]);
S[2, 2] := 0: S[4, 4] := 0: rtable_num_elems(S), S[2, 2], S[3, 3], evalb(op(3, S) = {(1, 1) = 1, (3, 3) = 3});
for i to 12 do S[iquo(i + 3, 4), irem(i + 3, 4) + 1] := i end do: rtable_num_elems(S), rtable_num_elems(S, Allocated);
rtable_num_elems(rtable(identity, 1..5, 1..4), NonZero), rtable_num_elems(rtable(constant[3], 1..5, 1..4), NonZero);
rtable_num_elems(M, foo); rtable_num_elems(M, 3); rtable_num_elems(3); rtable_num_elems(M, All, All);
rtable_num_dims(M), rtable_num_dims(Z); rtable_num_dims(x);
rtable_indfns(rtable(symmetric, zero, 1..2, 1..2)); rtable_indfns(M); rtable_indfns(x);

# Options that change the array in place.
Q := Array(0..1, 1..3, [[1, 2, 3], [4, 5, 6]]):
ArrayOptions(Q); rtable_options(Q, order, readonly), rtable_options(Q);
rtable_options(Q, order = C_order, attributes = [mark]): Q; rtable_options(Q, attributes), attributes(Q);
rtable_options(Q, subtype = Matrix): Q[1, 1], Q[-1, 3]; rtable_options(Q, readonly = true), Q[1, 1]; Q[1, 1] := 0;
rtable_options(Q, readonly = false); rtable_options(Q, readonly = 3); rtable_options(Q, datatype = anything);
rtable_options(Q, storage = sparse); rtable_options(Q, order = up); rtable_options(Q, subtype = Vector[row]);
rtable_options(Q, subtype = Tensor); rtable_options(Q, attributes = 3); rtable_options(Q, foo); rtable_options(Q, 3);
rtable_options(Array(1..2), subtype = Matrix); ArrayOptions(Q); ArrayOptions(Array(1..2), subtype); ArrayOptions(x);
K := Array(5..6, {5 = a}, storage = sparse): rtable_options(K, subtype = Vector[column]): K[1], K[2], op(2, K);

# Storage of a few cells is made, counted and shown at once, whatever it spans.
rtable_num_elems(rtable(diagonal, 1..10^5, 1..10^5, fill = 2), NonZero), rtable_num_elems(rtable(1..10^5, 1..10^5, 1, storage = band[1, 0]), NonZero);
R := rtable(1..10^9, 1..10^9, 3, storage = scalar): R, rtable_num_elems(R, NonZero); seq(v, v = rtable(1..2, 1..3, (i, j) -> 10*i + j, storage = Hessenberg[upper]));
for s in [band[1, 2], triangular[upper], triangular[upper, strict], Hessenberg[upper], triangular[lower], triangular[lower, strict], Hessenberg[lower], diagonal] do
  print(s, seq([seq(v, v = rtable(1..n[1], 1..n[2], (i, j) -> 10*i + j, storage = s))], n = [[2, 4], [4, 2], [3, 3], [1, 1]]))
end do:
