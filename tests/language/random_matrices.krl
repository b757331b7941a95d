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

# Images modulo primes against elimination, whatever the elements: also where the first primes divide minors, or all of them.
p1 := prevprime(2^62): p2 := prevprime(p1): u := rand(-3..3): v := rand(1..4): w := rand(-10^30..10^30):
byElimination := proc(a)
  local b, n, e, k, i, j, q;
  n := ColumnCount(a); b := Matrix(op(1, a), (i, j) -> a[i, j]); e := `linearalgebra/eliminate`(b, n, false)[3];
  for k from nops(e) to 1 by -1 do
    q := b[k, e[k]];
    for j to n do b[k, j] := b[k, j]/q end do;
    for i to k - 1 do q := b[i, e[k]]; for j to n do b[i, j] := b[i, j] - q*b[k, j] end do end do
  end do;
  [e, L(b)]
end proc:
byImages := proc(a) local b; b := Matrix(op(1, a), (i, j) -> a[i, j]); [`linearalgebra/reduced`(b, ColumnCount(b)), L(b)] end proc:
for f in [(i, j) -> u(), (i, j) -> u()/v(), (i, j) -> u()*p1 + max(u() - 1, 0), (i, j) -> (u()*p2 + u())*p1, (i, j) -> w(), (i, j) -> i*w()*u()] do
  for k to 25 do P := Matrix(v() + 1, v() + 1, f); if byImages(P) <> byElimination(P) then print(L(P)) end if end do
end do:
P := Matrix(5, 2, (i, j) -> w()) . Matrix(2, 6, (i, j) -> w()): Rank(P), byImages(P)[1], evalb(byImages(P) = byElimination(P)), Determinant(Matrix(2, 2, (i, j) -> p1*(i + 3*j))) + 3*p1^2;
Determinant(Matrix([[p1, 0], [0, p2]]))/p1/p2, Rank(Matrix([[p1, p1*p2], [1, p2]])), Rank(Matrix([[p1, 0], [0, p1]])), `linearalgebra/reduced`(Matrix([[x]]), 1), Rank(Matrix(3, 0)), Rank(Matrix(2));

# Floats against exact arithmetic.
P := Matrix(12, 12, random(-99..99)): F := rtable(P, datatype = float[8]): e := MatrixNorm(Inverse(F) - map(evalf, Inverse(P))): evalb(e < 1e-6);
evalb(abs(Determinant(F)/Determinant(P) - 1) < 1e-8), ArrayOptions(Array(F . F), datatype), rtable_is_zero(F . F - P . P); G := 2*F: rtable_is_zero(F + F - G), ArrayOptions(Array(G), datatype);
p, l, u := LUDecomposition(F): evalb(MatrixNorm(p . l . u - F) < 1e-6), evalb(l[1, 2] = 0), u[2, 1];
q, r := QRDecomposition(F): evalb(MatrixNorm(q . r - F) < 1e-6), evalb(MatrixNorm(Transpose(q) . q - IdentityMatrix(12)) < 1e-7), r[12, 1];
