# Floats of rtables: `evalf`, and constants in arrays of doubles.

# Exact elements become software floats, symbols stay; the element type says so.
A := Array(1..2, [1/3, 2]): evalf(A); A; evalf(Array(1..2, [1/3, x])); evalf(A, 5);
evalf(Array(1..2, [1, 2], datatype = integer[4], readonly = true));
S := evalf(rtable(symmetric, 1..2, 1..2, [[1/3, 1/7], [1/7, 2]], subtype = Matrix)): S[2, 1], rtable_options(S, datatype);
P := evalf(Array(1..3, [0, 1/3, 0], storage = sparse)): P[2], rtable_options(P, storage, datatype);
# Doubles stay doubles, in a copy, unless hardware floats are off or digits are asked for.
H := Array(1..2, [1/3, 2], datatype = float[8]): E := evalf(H): rtable_options(E, datatype); E[1] := 5: H[1];
evalf(H, 20); UseHardwareFloats := false: evalf(H); UseHardwareFloats := true:
evalf([Array(1..1, [1 + I/3], datatype = complex[8]), 1/3]);
# Constants are stored with all digits of a double, whatever `Digits` is.
Digits := 3: K := Array(1..5, [Pi, sqrt(2), -infinity, exp(1)/7, gamma], datatype = float[8]): K[1], K[2], K[3], K[4], K[5];
C := rtable(constant[Pi], 1..2, datatype = float[8]): C[2]; Digits := 10:
H[1] := undefined: H[1]; H[1] := x; H[1] := sqrt(-1);
# Software floats are rounded to Digits when they are stored.
A := rtable(1..2, [1.23456789012345, 1/3], datatype = sfloat): A[1], A[2]; Digits := 4: A[1] := Pi: A[2] := 2.71828: A[1], A[2]; Digits := 10:
rtable(rtable(1..1, [1/3], datatype = float[8]), datatype = sfloat)[1], rtable(1..1, [1.23456789012345 + I], datatype = complex(sfloat))[1];
