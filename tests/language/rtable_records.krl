# Records: rtables of every format and storage, saved, and read after a new start.
make := proc()
  local t, way, f, plain, whole;
  [seq(seq(rtable(1..4, 1..3, (i, j) -> i - 2*j, storage = way, datatype = t), way = [rectangular, sparse, sparse[upper], diagonal, band[1, 1],
         triangular[upper], triangular[upper, strict], Hessenberg[upper], triangular[lower], triangular[lower, strict], Hessenberg[lower], scalar, empty]),
       t = [anything, complex(sfloat), integer[1], integer[2], integer[4], integer[8], float[8], complex[8], integer, sfloat]),
   seq(seq(rtable(f, 1..3, 1..3, storage = way), f = [symmetric, triangular[upper], diagonal, zero]), way = [rectangular, sparse, empty]),
   rtable(symmetric, zero, 1..2, 1..2), rtable(), rtable(1..0), rtable(1..2, 1..2, 1..2, (i, j, k) -> x^i*y^j/k, order = C_order),
   rtable([1/3, "text", x -> x^2, [a, {b}]], subtype = Vector[row], readonly, attributes = [mark]), rtable(-1..1, [2^100, -2^31, I]),
   rtable(1..3, [Float(infinity), Float(undefined), -1.5e-300], datatype = float[8])]
end proc:
all := make(): nops(all);
save all, make, "rtables.m":
restart;
read "rtables.m":
again := make():
same := proc(a, b) evalb([op(0, a)] = [op(0, b)] and EqualStructure(a, b) and a = b and [rtable_options(a)] = [rtable_options(b)]) end proc:
[seq(`if`(same(all[i], again[i]), NULL, i), i = 1..nops(all))];
# Not a number equals nothing; a procedure is compared by what it holds.
V := all[-3]: V[1], V[2], V[3](5), V[4]; V[1] := 0; all[-1][1], all[-1][2], all[-1][3]; S := all[2]: S[1, 1], rtable_num_elems(S);
# What was read is written and grows as any other.
S[4, 3] := w: S[1, 2] := 0: S[4, 3], rtable_num_elems(S); N := all[28]: for k to 4 do N[k, 3] := k end do: rtable_num_elems(N), rtable_num_elems(N, Allocated);

# An array that holds itself by way of a table.
A := Array(1..2): t := table([1 = A]): A[1] := eval(t): save A, "itself.m": B := A: A := 'A': read "itself.m": evalb(A[1][1] = A), type(A, Array);

# Arrays as elements of arrays, of the sparse kind as well: what is read of the outer one waits meanwhile.
B := rtable(1 .. 3, 1 .. 2, {(1, 1) = rtable(1 .. 2, [5, 6]), (3, 2) = z}, storage = sparse):
V := rtable(1 .. 2, [B, [x, rtable(1 .. 2, [B, rtable(1 .. 1, [2.5], datatype = float[8])])]]): save V, "nested.m": V := 0: B := 0: read "nested.m":
V[1][1, 1], V[1][3, 2], V[1][2, 2], V[2][1], V[2][2][2][1], evalb(V[2][2][1] = V[1]); save V, "again.m": iolib(2, "nested.m"), evalb(iolib(2, "nested.m") = (iolib(2, "again.m"), iolib(2, "again.m"))[2]);
