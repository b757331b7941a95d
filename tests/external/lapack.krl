# The linear algebra of lib/lapack.krl, against what it must satisfy.
small := proc(A) local x; for x in [entries_of(A)] do if abs(x) > 10^(-9) then return false end if end do; true end proc:
entries_of := proc(A) local i, j; if rtable_num_dims(A) = 1 then seq(A[i], i = 1..rtable_num_elems(A)) else seq(seq(A[i, j], j = 1..op(1, A)[2]), i = 1..op(1, A)[1]) end if end proc:
near := proc(A, B) local a, b, i; a := [entries_of(A)]; b := [entries_of(B)]; nops(a) = nops(b) and {seq(evalb(abs(a[i] - b[i]) < 10^(-9)), i = 1..nops(a))} = {true} end proc:
M := proc(rows) rtable(1..nops(rows), 1..nops(rows[1]), rows, args[2..-1], datatype = float[8], subtype = Matrix) end proc:
Z := proc(rows) rtable(1..nops(rows), 1..nops(rows[1]), rows, datatype = complex[8], subtype = Matrix) end proc:
V := proc(values) rtable(1..nops(values), values, datatype = float[8], subtype = Vector[column]) end proc:
n := 20: A := rtable(1..n, 1..n, frandom(-1..1), datatype = float[8], subtype = Matrix): B := rtable(1..n, 1..3, frandom(-1..1), datatype = float[8], subtype = Matrix):

# solve: A . X gives B again; B itself holds X
F := rtable(A): X := rtable(B): lapack_solve(F, X): near(lapack_multiply(A, X), B), near(F, A);
lapack_solve(M([[1, 2], [2, 4]]), V([1, 2])); near(lapack_solve(M([[2]]), V([3])), V([3/2]));
near(lapack_solve(Z([[1, I], [I, 2]]), rtable(1..2, [1 + I, 0], datatype = complex[8])), rtable(1..2, [(2 + 2*I)/3, (1 - I)/3], datatype = complex[8]));

# products, into a new matrix, and into one that is there
near(lapack_multiply(M([[1, 2, 3], [4, 5, 6]]), M([[1], [0], [2]])), M([[7], [16]]));
C := M([[0, 0], [0, 0]]): lapack_multiply(M([[1, 2], [3, 4]]), M([[0, 1], [1, 0]]), C): near(C, M([[2, 1], [4, 3]]));

# eigenvalues: A . V = V . diag(W)
W, E := lapack_eigenvectors(rtable(A)): D := rtable(1..n, 1..n, datatype = complex[8], subtype = Matrix): for i to n do D[i, i] := W[i] end do:
ZA := rtable(A, datatype = complex[8]): near(lapack_multiply(ZA, E), lapack_multiply(E, D)), near(W, lapack_eigenvalues(rtable(A)));
near(lapack_eigenvalues(Z([[1, 0], [0, I]])), rtable(1..2, [1, I], datatype = complex[8]));
S := M([[2, 1], [1, 2]]): near(lapack_symmetric(S), V([1, 3])), trunc(1000*S[1, 1]^2 + 0.5);
H := Z([[2, I], [-I, 2]]): near(lapack_symmetric(H), V([1, 3]));

# singular values: A = U . S . V; the sum of their squares
S, U, VT := lapack_singularfactors(rtable(A)): D := M([seq([seq(`if`(i = j, S[i], 0), j = 1..n)], i = 1..n)]):
near(lapack_multiply(lapack_multiply(U, D), VT), A), near(S, lapack_singularvalues(rtable(A)));
near(lapack_singularvalues(M([[3, 0, 0], [0, 4, 0]])), V([4, 3]));

# least squares, over- and underdetermined
Y := V([1, 2, 2]): lapack_leastsquares(M([[1, 1], [1, 2], [1, 3]]), Y): trunc(1000*Y[1] + 0.5), trunc(1000*Y[2] + 0.5);
Y := V([4, 0]): lapack_leastsquares(M([[1, 1]]), Y): trunc(1000*Y[1] + 0.5), trunc(1000*Y[2] + 0.5);

# complex numbers: factors with which A comes again, and a right side outside of the columns
K := Z([[1, I, 2], [0, 3 - I, 1]]): S, U, VT := lapack_singularfactors(rtable(K)): near(lapack_multiply(lapack_multiply(U, Z([[S[1], 0, 0], [0, S[2], 0]])), VT), K);
Y := rtable(1..3, [1, I, 2], datatype = complex[8]): lapack_leastsquares(Z([[1, 0], [0, 1], [I, I]]), Y): near(Y, rtable(1..3, [2/3 - I, -1/3, Y[3]], datatype = complex[8]));

# columns that depend on each other, exactly or but for rounding
lapack_leastsquares(M([[1, 1], [1, 1], [1, 1]]), V([1, 2, 3])); lapack_leastsquares(Z([[1, I], [I, -1]]), rtable(1..2, [1, 2], datatype = complex[8]));

# what they refuse
lapack_multiply(A, A, A); lapack_solve(A, V([1])); lapack_solve([[1]], V([1])); lapack_multiply(M([[1]]), Z([[1]]));
lapack_solve(M([[1]], order = C_order), V([1])); lapack_solve(rtable(1..1, 1..1, [[1]]), V([1])); lapack_eigenvalues(M([[1, 2]]));
lapack_solve(rtable(symmetric, 1..1, 1..1, datatype = float[8]), V([1])); lapack_solve(M([[1]], readonly), V([1]));
