# Linear algebra on random and on ill-conditioned matrices, against identities.
L := proc(a) if type(a, Matrix) then convert(a, `list(list)`) elif type(a, rtable) then convert(a, list) else a end if end proc:

# Random exact matrices against identities.
same := (a, b) -> evalb(L(a) = L(b)):
for n in [1, 2, 3, 7, 15, 30] do
  P := Matrix(n, n, random(-9..9)): Q := Matrix(n, n, random(-9..9)): S := Matrix(n, n, random(-9..9)): d := Determinant(P):
  if not (same(P + Q, Q + P) and same((P . Q) . S, P . (Q . S)) and same(P . (Q + S), P . Q + P . S) and same(Transpose(P . Q), Transpose(Q) . Transpose(P))
      and same(P^3, P . P . P) and Determinant(P . Q) = d*Determinant(Q) and Determinant(Transpose(P)) = d) then print(n) end if;
  if d <> 0 and not (same(P . Inverse(P), IdentityMatrix(n)) and same(P . LinearSolve(P, Q), Q) and Rank(P) = n) then print(n, inverse) end if
end do:
H := Matrix(40, 40, (i, j) -> 1/(i + j - 1)): K := Inverse(H): K[1, 1], K[40, 40], same(H . K, IdentityMatrix(40));

# Floats against exact arithmetic.
P := Matrix(12, 12, random(-99..99)): F := rtable(P, datatype = float[8]): e := MatrixNorm(Inverse(F) - map(evalf, Inverse(P))): evalb(e < 1e-6);
evalb(abs(Determinant(F)/Determinant(P) - 1) < 1e-8), ArrayOptions(Array(F . F), datatype), rtable_is_zero(F . F - P . P); G := 2*F: rtable_is_zero(F + F - G), ArrayOptions(Array(G), datatype);
p, l, u := LUDecomposition(F): evalb(MatrixNorm(p . l . u - F) < 1e-6), evalb(l[1, 2] = 0), u[2, 1];
q, r := QRDecomposition(F): evalb(MatrixNorm(q . r - F) < 1e-6), evalb(MatrixNorm(Transpose(q) . q - IdentityMatrix(12)) < 1e-7), r[12, 1];
