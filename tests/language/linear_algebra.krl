# Matrices and Vectors as people use them: constructors, arithmetic, linear algebra.
L := proc(a) if type(a, Matrix) then convert(a, `list(list)`) elif type(a, rtable) then convert(a, list) else a end if end proc:
M := Matrix([[1, 2], [3, 4]]): V := Vector([5, 6]): R := Vector[row]([5, 6]): A := Array([1, 2, 3]):

# Constructors.
M, V, R;
L(Matrix(2)), L(Matrix(1, 2, 5)), L(Matrix(2, 2, x)), L(Matrix(2, symbol = m)), L(Vector(2, symbol = v)), L(Vector[row](2, 7));
L(Matrix(2, 3, [1, 2, 3, 4, 5, 6])), L(Matrix([1, 2])), L(Matrix([[1, 2], [3]])), L(Matrix(2, 2, (i, j) -> i - j)), L(Matrix(2, {(1, 2) = 7}));
rtable_options(Matrix(3, 3, [1, 2, 3], shape = diagonal), storage), L(DiagonalMatrix([1, 2])), L(IdentityMatrix(2)), L(ZeroMatrix(1, 2)), L(ZeroVector(2));
L(Vector(3, i -> i^2)), L(Vector([a, b], readonly)), L(Matrix(M)), L(Matrix(A, shape = diagonal)), Matrix(0, 0), Vector(0);
L(Matrix(2, 2, [[1, 2], [2, 3]], shape = symmetric)), rtable_indfns(Matrix(2, shape = [symmetric])), L(Matrix(2, 2, fill = q));
Matrix(); Matrix(2, 2, 3, 4); Vector[up](2); Vector(2, [1, 2, 3]); Matrix([[[1]]]); Matrix(2, 2, [[1, 2], [3, 4]], shape = identity);
type(M, Matrix), type(V, Vector), type(A, Matrix), type(R, Vector), type(3, Matrix), type('M', Matrix);

# <a, b> and <a | b>.
L(<1, 2>), L(<1 | 2>), op(0, <1 | 2>), L(<<1, 2> | <3, 4>>), L(<<1 | 2>, <3 | 4>>), L(<M, R>), L(<M | V>), L(<V, 7>), L(<M, M>), L(<x>);
<M | R>; <A, 1>; '<1, 2>', '<1 | 2>';

# What prints reads back.
for X in [M, R, A, Array(-1..1, [p, q]), Matrix(2, shape = identity), Matrix(2, 2, [[1, 2], [2, 3]], shape = symmetric), Matrix(1, 2, [1.5, 2], datatype = float[8]),
          Array(skewsymmetric, 1..2, 1..2, {(1, 2) = 4}), Vector([1, 2], datatype = integer[2], order = C_order, attributes = [u]), Array(), Matrix(0, 3),
          rtable(1..3, {2 = 5}, storage = sparse, datatype = integer[4])] do
  if not evalb(parse(convert(X, string), statement) = X) then print(X) end if
end do:
rtable(identity, 1..10^5, 1..10^5); Matrix(10^4, shape = zero); rtable(1..10^6, {3 = a}, storage = sparse, subtype = Vector[row]);

# Arithmetic.
L(M + M), L(M - 2*M), L(x*M + M), L(M + 1), L(M/2), M - M, L(-V), L(V + V), L(A + 1), L(A*A), L(A^2), L(1/A), L(2*A - A), L(A + A*x);
L(M . M), L(M^2), M^0, L(M^(-1)), L(M^(-2)), L(M . V), L(R . M), R . V, L(V . R), L(2 . M . V), L(M . (1/M)), L(M^5);
a . b, 2 . 3, (a . b) . c, [1] . 2; L(M . x), L(inner(M, V));
L(Transpose(M)), L(Transpose(V)), op(0, Transpose(R)), L(HermitianTranspose(Matrix([[I, 1]])));
M + V; M*M*V; V*R; A + M; M + Matrix(3); M^x; 2^M; V^2; Matrix(2, 3)^2; M . R; V + 1; Matrix(2, 3) + 1; M . A;

# Rows, columns and parts.
L(Row(M, 1)), L(Column(M, -1)), map(L, [Row(M, 1..2)]), L(SubMatrix(M, 2..1, [1, 1])), L(SubVector(V, [2, 1, 2])), L(DeleteRow(M, 1)), L(DeleteColumn(M, 2)), L(Diagonal(M));
Dimensions(M), Dimensions(V), Dimensions(A), RowCount(M), ColumnCount(M), Trace(M), Minor(M, 1, 1);
Trace(Matrix(2, 3)); Row(V, 1); Row(M, 3); SubMatrix(M, 1, 3);

# Exact linear algebra.
Determinant(M), Rank(M), L(Inverse(M)), L(LinearSolve(M, V)), L(LinearSolve(M, M)), L(RowEchelonForm(M)), L(ReducedRowEchelonForm(Matrix([[1, 2, 3], [2, 4, 7]])));
map(L, NullSpace(Matrix([[1, 2, 3], [2, 4, 6]]))), NullSpace(M), Rank(Matrix([[1, 2, 3], [2, 4, 6]])), Rank(Matrix(2)), Determinant(Matrix(0, 0)), Determinant(Matrix(3));
CharacteristicPolynomial(M, x), VectorNorm(V), VectorNorm(V, 2), VectorNorm(V, 1), MatrixNorm(M), MatrixNorm(M, 1), MatrixNorm(M, Frobenius);
DotProduct(V, V), L(CrossProduct(<1, 0, 0>, <0, 1, 0>));
Inverse(Matrix([[1, 2], [2, 4]])); LinearSolve(Matrix([[1, 1], [1, 1]]), V); LinearSolve(M, <1, 2, 3>); Determinant(Matrix(2, 3)); MatrixNorm(M, 3); CrossProduct(V, V);

# Other forms.
t := array(0..1, 2..3, [[1, 2], [3, 4]]): L(convert(t, Matrix)), convert(M, listlist), convert(t, Array), L(convert(array(2..3, [p, q]), Vector)), L(convert([5, 6], Vector));
u := convert(M, array): evalb(convert(u, listlist) = convert(M, listlist)), L(convert(Array(0..1, [3, 4]), Vector, datatype = float[8])), L(convert(V, Vector)), convert([[1]], Array);
convert(M, Vector); convert(V, Matrix); convert({1}, Array); convert(Array(1..1, 1..1, 1..1), array);
