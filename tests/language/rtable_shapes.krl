# Indexing functions: what a shape refuses, and where its name has another index.

# The names.
for f in [zero[1], diagonal[1], identity[1], symmetric[1], antisymmetric[1], skewsymmetric[1], hermitian[1],
          antihermitian[1], skewhermitian[1], unit, unit[x], triangular, triangular[middle], triangular[upper, lower],
          triangular[upper, unit, unit], Hessenberg, Hessenberg[middle], constant, band, band[1], band[1, x], scalar,
          scalar[x, 1], scalar[1, 2, 3]] do
  try rtable(f, 1..2, 1..2) catch: print(f, lastexception) end try
end do:

# The dimensions, bounds and types that they ask for.
rtable(symmetric, 1..2); rtable(band[1, 1], 1..2); rtable(scalar[1], 1..2, 1..2, 1..2); rtable(scalar[1, 2], 1..2, 1..2);
rtable(scalar[1], 1..2); rtable(scalar[3, 1], 1..2); rtable(identity, 1..2); rtable(unit[1], 1..2, 1..2);
rtable(unit[3], 1..2); rtable(constant[x], 1..2, datatype = integer[4]); rtable(scalar[x], 1..2, 1..2, datatype = float);
rtable(identity, 0..2, 0..2, storage = diagonal);
rtable_indfns(rtable(antisymmetric, antihermitian, 1..2, 1..2)), rtable_indfns(rtable(constant[2], 1..2, datatype = float[8]));
seq(rtable_options(rtable(f, 1..3, 1..3), storage), f = [zero, band[1, 0], constant[2], diagonal, scalar[2], hermitian,
    symmetric, antisymmetric, Hessenberg[upper], Hessenberg[lower], triangular[lower], triangular[upper],
    triangular[upper, unit], triangular[lower, unit], identity]);
rtable_options(rtable(unit[2], 1..3), storage);

# What they read where nothing is stored.
all := proc(A) local i, j; seq([seq(A[i, j], j = 1..3)], i = 1..3) end proc:
all(rtable(zero, 1..3, 1..3)); all(rtable(identity, 1..3, 1..3)); all(rtable(scalar[x], 1..3, 1..3));
all(rtable(constant[y], 1..3, 1..3)); all(rtable(triangular[upper, unit], 1..3, 1..3, fill = 7));
all(rtable(Hessenberg[lower], 1..3, 1..3, fill = 7)); all(rtable(band[1, 0], 1..3, 1..3, fill = 7));
all(rtable(identity, 1..3, 1..3, datatype = float[8])); seq(rtable(unit[2], 1..3)[i], i = 1..3);
seq(rtable(scalar[2, z], 1..3)[i], i = 1..3); rtable(identity, 1..2, 1..2, 1..2)[2, 2, 2];

# What they refuse. The array stays as it was.
refused := proc(A) local before, i, result;
  before := all(A); result := NULL;
  for i to nargs - 1 do try A[op(args[i + 1][1])] := args[i + 1][2] catch: result := result, lastexception[2] end try end do;
  result, evalb([before] = [all(A)])
end proc:
refused(rtable(zero, 1..3, 1..3), [[1, 2], 5]);
refused(rtable(constant[5], 1..3, 1..3), [[1, 2], 0]);
refused(rtable(diagonal, 1..3, 1..3), [[1, 2], 5]);
refused(rtable(diagonal, 1..3, 1..3, storage = empty), [[1, 1], 5]);
refused(rtable(diagonal, 1..3, 1..3, storage = triangular[upper, strict]), [[2, 2], 5]);
refused(rtable(band[1, 0], 1..3, 1..3), [[1, 2], 5]);
refused(rtable(band[1, 0], 1..3, 1..3, storage = empty), [[1, 1], 5]);
refused(rtable(band[1, 1], 1..3, 1..3, storage = diagonal), [[1, 2], 5]);
refused(rtable(scalar[5], 1..3, 1..3), [[1, 1], 4], [[1, 2], 5]);
refused(rtable(identity, 1..3, 1..3), [[1, 1], 4], [[1, 2], 1]);
refused(rtable(symmetric, 1..3, 1..3, storage = empty), [[1, 2], 4], [[1, 1], 4]);
refused(rtable(symmetric, 1..3, 1..3, storage = triangular[upper, strict]), [[1, 1], 4]);
refused(rtable(symmetric, 1..3, 1..3, storage = diagonal), [[1, 2], 4]);
refused(rtable(antisymmetric, 1..3, 1..3), [[1, 1], 4]);
refused(rtable(hermitian, 1..3, 1..3), [[1, 1], I], [[1, 1], x]);
refused(rtable(antihermitian, 1..3, 1..3), [[1, 1], 1]);
refused(rtable(triangular[upper], 1..3, 1..3), [[2, 1], 5]);
refused(rtable(triangular[upper], 1..3, 1..3, storage = empty), [[1, 2], 5]);
refused(rtable(triangular[upper], 1..3, 1..3, storage = triangular[upper, strict]), [[1, 1], 5]);
refused(rtable(triangular[lower], 1..3, 1..3), [[1, 2], 5]);
refused(rtable(triangular[lower, unit], 1..3, 1..3), [[1, 1], 5], [[1, 2], 5]);
refused(rtable(Hessenberg[upper], 1..3, 1..3), [[3, 1], 5]);
refused(rtable(Hessenberg[lower], 1..3, 1..3), [[1, 3], 5]);
A := rtable(diagonal, 1..2, 1..2, 1..2): A[1, 1, 2] := 3;
A := rtable(scalar[2, z], 1..3): A[2] := 1; A[1] := 1; A[2] := z: A[1] := 0:
A := rtable(unit[2], 1..3): A[2] := 2; A[1] := 1; A[2] := 1.0:
A := rtable(1..2, storage = empty): A[1]; A[1] := 0;
A := rtable(1..2, 1..2, storage = sparse[upper]): A[2, 1]; A[2, 1] := 1; A[2, 1] := 0: A[1, 2] := 1: A[1, 2];

# Values and their mirrors.
A := rtable(hermitian, 1..2, 1..2): A[1, 2] := 1 + I: A[2, 1]; A[2, 1] := 2 + I: A[1, 2];
A := rtable(antihermitian, 1..2, 1..2): A[1, 2] := 1 + I: A[2, 1]; A[1, 1] := 3*I: A[1, 1];
A := rtable(symmetric, 1..3, 1..3, storage = sparse[lower]): A[1, 3] := 4: A[3, 1], A[1, 3], rtable_num_elems(A);
A := rtable(symmetric, 1..2, 1..3, storage = rectangular): A[1, 3] := 4: A[1, 2] := 3: A[2, 1], A[1, 3];
A := rtable(symmetric, 1..3, 1..3, storage = scalar): A[1, 2] := 4: A[3, 3];

# The first function is the outermost; those of the user see the array behind them.
`index/half` := proc(i, r, v) if nargs = 2 then r[op(i)]/2 else r[op(i)] := 2*op(v) end if end proc:
A := rtable(half, symmetric, 1..2, 1..2): rtable_options(rtable(symmetric, half, 1..2, 1..2), storage); A[1, 2] := 3: A[2, 1], rtable_num_elems(A, NonZero);
B := rtable(half[7], 1..2): B[2] := x: B[2]; rtable(missing, 1..2, storage = sparse)[1];
