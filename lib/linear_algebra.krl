# Linear algebra: elimination, and what follows from it. Exact elements stay exact; with a float among them the pivots are
# the largest, and the work is done with guard digits.

# ---- parts of Matrices

Dimensions := proc(a::rtable)
  description "Dimensions(a): the numbers of rows and columns of a Matrix, the length of a Vector, the ranges of an Array";
  op(`if`(op(0, a) = 'Array', 2, 1), a)
end proc:
RowCount := proc(a::Matrix)
  description "RowCount(a): the number of rows";
  op(1, a)[1]
end proc:
ColumnCount := proc(a::Matrix)
  description "ColumnCount(a): the number of columns";
  op(1, a)[2]
end proc:
Row := proc(a::Matrix, i::{integer, range})
  description "Row(a, i), Row(a, i..j): a row as a Vector, or the sequence of several";
  local k, n;
  n := ColumnCount(a);
  if type(i, 'integer') then a[i, 1..n] else seq(a[k, 1..n], k = i) end if
end proc:
Column := proc(a::Matrix, j::{integer, range})
  description "Column(a, j), Column(a, i..j): a column as a Vector, or the sequence of several";
  local k, n;
  n := RowCount(a);
  if type(j, 'integer') then a[1..n, j] else seq(a[1..n, k], k = j) end if
end proc:
SubMatrix := proc(a::Matrix, rows::{integer, range, list}, columns::{integer, range, list})
  description "SubMatrix(a, rows, columns): the Matrix of some rows and columns, each an index, a range or a list of them";
  a[`if`(type(rows, 'integer'), [rows], rows), `if`(type(columns, 'integer'), [columns], columns)]
end proc:
SubVector := proc(v::Vector, places::{integer, range, list})
  description "SubVector(v, places): the Vector of some elements, by an index, a range or a list of them";
  v[`if`(type(places, 'integer'), [places], places)]
end proc:
DeleteRow := proc(a::Matrix, i::integer)
  description "DeleteRow(a, i): a without one row";
  a[[1..i - 1, i + 1..RowCount(a)], 1..ColumnCount(a)]
end proc:
DeleteColumn := proc(a::Matrix, j::integer)
  description "DeleteColumn(a, j): a without one column";
  a[1..RowCount(a), [1..j - 1, j + 1..ColumnCount(a)]]
end proc:
Diagonal := proc(a::Matrix)
  description "Diagonal(a): the elements of the diagonal as a column Vector";
  local i;
  Vector([seq(a[i, i], i = 1..min(op(1, a)))])
end proc:
Trace := proc(a::Matrix)
  description "Trace(a): the sum of the elements of the diagonal of a square Matrix";
  local i;
  `linearalgebra/square`(a);
  add(a[i, i], i = 1..RowCount(a))
end proc:

`linearalgebra/square` := proc(a)
  description "linearalgebra/square(a): refuses a Matrix that is not square";
  if RowCount(a) <> ColumnCount(a) then error "square Matrix expected, but received one of %1 rows and %2 columns", op(1, a) end if
end proc:

# ---- elimination, on lists of rows in a table

# Numbers are simple as they are; other expressions are brought to a form in which 0 is 0.
`linearalgebra/simple` := proc(x)
  description "linearalgebra/simple(x): x in a form that is 0 when its value is";
  if type(x, {'numeric', 'complex'('numeric')}) then return x end if;
  try normal(x) catch: x end try
end proc:

# Writable copy of the elements, and whether there are floats.
`linearalgebra/copy` := proc(a)
  description "linearalgebra/copy(a): a writable rectangular copy of a Matrix with elements of any type";
  local i, j;
  rtable(1..RowCount(a), 1..ColumnCount(a), (i, j) -> a[i, j], subtype = 'Matrix')
end proc:

# The row from `row` on whose element in `column` makes the best pivot; 0 when all are zero.
`linearalgebra/pivot` := proc(w, row, column, floats)
  description "linearalgebra/pivot(w, row, column, floats): the row of the pivot, or 0";
  local i, best, size, largest;
  best, largest := 0, 0;
  for i from row to RowCount(w) do
    if w[i, column] <> 0 then
      if not floats then return i end if;
      size := evalf(abs(w[i, column]));
      if size > largest then best, largest := i, size end if
    end if
  end do;
  best
end proc:

# Fraction-free: the elements below a pivot become minors of the matrix (Bareiss, Math. Comp. 22 (1968), 565-578), each
# division is exact. Gives the rank, the sign of the row exchanges, and the columns of the pivots.
`linearalgebra/eliminate` := proc(w, columns, floats)
  description "linearalgebra/eliminate(w, columns, floats): brings w to row echelon form in place, with pivots in the first columns; [rank, sign, list of pivot columns]";
  local m, n, row, column, k, i, j, sign, before, pivots, p, q;
  m, n := RowCount(w), ColumnCount(w);
  row, sign, before := 1, 1, 1;
  pivots := NULL;
  for column to columns while row <= m do
    k := `linearalgebra/pivot`(w, row, column, floats);
    if k = 0 then next end if;
    if k <> row then
      sign := -sign;
      for j to n do w[row, j], w[k, j] := w[k, j], w[row, j] end do
    end if;
    p := w[row, column];
    for i from row + 1 to m do
      q := w[i, column];
      if floats then
        q := q/p;
        for j from column + 1 to n do w[i, j] := w[i, j] - q*w[row, j] end do
      else
        for j from column + 1 to n do w[i, j] := `linearalgebra/simple`((p*w[i, j] - q*w[row, j])/before) end do
      end if;
      w[i, column] := 0
    end do;
    before := p;
    pivots := pivots, column;
    row := row + 1
  end do;
  [row - 1, sign, [pivots]]
end proc:

# Integers and fractions have a faster way, by machine arithmetic.
`linearalgebra/reduced` := proc(w::Matrix, columns::nonnegint)
  description "linearalgebra/reduced(w, columns): brings a Matrix of integers and fractions to reduced row echelon form in place, with pivots in the first columns; the list of these, or FAIL when w has other elements";
  `kernel/native`("linearalgebra/reduced", w, columns)
end proc:
`linearalgebra/determinant` := proc(a::Matrix)
  description "linearalgebra/determinant(a): the determinant of a Matrix of integers and fractions, FAIL when it has other elements";
  `kernel/native`("linearalgebra/determinant", a)
end proc:

`linearalgebra/floats` := proc(a)
  description "linearalgebra/floats(a): whether an element of the rtable is a float";
  hastype(a, 'float')
end proc:

RowEchelonForm := proc(a::Matrix)
  description "RowEchelonForm(a): an upper triangular Matrix with the same row space; of exact elements without fractions";
  local w;
  w := `linearalgebra/copy`(a);
  `linearalgebra/eliminate`(w, ColumnCount(w), `linearalgebra/floats`(a));
  w
end proc:

ReducedRowEchelonForm := proc(a::Matrix)
  description "ReducedRowEchelonForm(a): the row echelon form with pivots 1 and zeros above them";
  local w;
  w := `linearalgebra/copy`(a);
  `linearalgebra/reduce`(w, ColumnCount(w), `linearalgebra/floats`(a));
  w
end proc:

# From the last pivot up.
`linearalgebra/reduce` := proc(w, columns, floats)
  description "linearalgebra/reduce(w, columns, floats): brings w to reduced row echelon form in place, with pivots in the first columns; the list of these";
  local result, rank, pivots, k, i, j, p, q, n;
  result := `linearalgebra/reduced`(w, columns);
  if result <> FAIL then return result end if;
  if floats then Digits := Digits + 5 end if;
  result := `linearalgebra/eliminate`(w, columns, floats);
  rank, pivots, n := result[1], result[3], ColumnCount(w);
  for k from rank to 1 by -1 do
    p := w[k, pivots[k]];
    for j from pivots[k] to n do w[k, j] := `linearalgebra/simple`(w[k, j]/p) end do;
    for i to k - 1 do
      q := w[i, pivots[k]];
      if q <> 0 then
        for j from pivots[k] to n do w[i, j] := `linearalgebra/simple`(w[i, j] - q*w[k, j]) end do
      end if
    end do
  end do;
  if floats then for i to rank do for j to n do w[i, j] := evalf[Digits - 5](w[i, j]) end do end do end if;
  pivots
end proc:

Rank := proc(a::Matrix)
  description "Rank(a): the number of linearly independent rows";
  local w, pivots;
  w := `linearalgebra/copy`(a);
  pivots := `linearalgebra/reduced`(w, ColumnCount(w));
  `if`(pivots <> FAIL, nops(pivots), `linearalgebra/eliminate`(w, ColumnCount(w), `linearalgebra/floats`(a))[1])
end proc:

Determinant := proc(a::Matrix)
  description "Determinant(a): the determinant of a square Matrix";
  local w, n, result, i, floats;
  `linearalgebra/square`(a);
  result := `linearalgebra/determinant`(a);
  if result <> FAIL then return result end if;
  n, floats := RowCount(a), `linearalgebra/floats`(a);
  if n = 0 then return 1 end if;
  w := `linearalgebra/copy`(a);
  if floats then Digits := Digits + 5 end if;
  result := `linearalgebra/eliminate`(w, n, floats);
  if result[1] < n then return `if`(floats, 0., 0) end if;
  if floats then return evalf[Digits - 5](result[2]*mul(w[i, i], i = 1..n)) end if;
  result[2]*w[n, n]
end proc:

Minor := proc(a::Matrix, i::integer, j::integer)
  description "Minor(a, i, j): the determinant of a without row i and column j";
  Determinant(DeleteColumn(DeleteRow(a, i), j))
end proc:

# ---- equations

# The right sides stand behind the matrix while it is reduced.
`linearalgebra/solve` := proc(a, b)
  description "linearalgebra/solve(a, b): the table of the solution of a . x = b: the reduced Matrix, its pivots, the number of right sides";
  local w, m, n, k, i, j, pivots, floats, right;
  m, n := RowCount(a), ColumnCount(a);
  k := `if`(type(b, 'Matrix'), ColumnCount(b), 1);
  right := (i, j) -> `if`(type(b, 'Matrix'), b[i, j], b[i]);
  floats := `linearalgebra/floats`(a) or `linearalgebra/floats`(b);
  w := rtable(1..m, 1..n + k, (i, j) -> `if`(j <= n, a[i, j], right(i, j - n)), subtype = 'Matrix');
  pivots := `linearalgebra/reduce`(w, n, floats);
  for i from nops(pivots) + 1 to m do
    for j from n + 1 to n + k do
      if w[i, j] <> 0 then error "the equations have no solution" end if
    end do
  end do;
  w, pivots, k
end proc:

LinearSolve := proc(a::Matrix, b::{Matrix, Vector})
  description "LinearSolve(a, b): x with a . x = b, a Vector or Matrix as b is; unknowns that the equations leave free are 0";
  local w, pivots, k, x, i, j, n;
  if RowCount(a) <> `rtable/extents`(b)[1] then error "a right side of %1 rows expected, but received one of %2", RowCount(a), `rtable/extents`(b)[1] end if;
  n := ColumnCount(a);
  w, pivots, k := `linearalgebra/solve`(a, b);
  x := rtable(1..n, 1..k, subtype = 'Matrix');
  for i to nops(pivots) do
    for j to k do x[pivots[i], j] := w[i, n + j] end do
  end do;
  if type(b, 'Matrix') then x else x[1..n, 1] end if
end proc:

Inverse := proc(a::Matrix)
  description "Inverse(a): the inverse of a square Matrix";
  local n, w;
  `linearalgebra/square`(a);
  n := RowCount(a);
  w := <a | IdentityMatrix(n)>;
  if nops(`linearalgebra/reduce`(w, n, `linearalgebra/floats`(a))) < n then error "singular Matrix" end if;
  w[1..n, n + 1..2*n]
end proc:

NullSpace := proc(a::Matrix)
  description "NullSpace(a): the list of column Vectors of a basis of the x with a . x = 0";
  local w, pivots, free, n, i, j, v, result;
  w, n := `linearalgebra/copy`(a), ColumnCount(a);
  pivots := `linearalgebra/reduce`(w, n, `linearalgebra/floats`(a));
  result := NULL;
  for j to n do
    if not member(j, pivots) then
      v := rtable(1..n, subtype = 'Vector'['column']);
      v[j] := 1;
      for i to nops(pivots) do v[pivots[i]] := -w[i, j] end do;
      result := result, v
    end if
  end do;
  [result]
end proc:

# By the traces of the powers (Faddeev and Leverrier); the divisions are exact.
CharacteristicPolynomial := proc(a::Matrix, x)
  description "CharacteristicPolynomial(a, x): the determinant of x - a, by powers of x";
  local n, m, c, k, p;
  `linearalgebra/square`(a);
  n := RowCount(a);
  m, p := IdentityMatrix(n), x^n;
  for k to n do
    m := a . m;
    c := `linearalgebra/simple`(-Trace(m)/k);
    p := p + c*x^(n - k);
    m := m + c
  end do;
  p
end proc:

# ---- norms and products

VectorNorm := proc(v::Vector, p)
  description "VectorNorm(v), VectorNorm(v, p): the largest absolute value, or the p-th root of the sum of p-th powers";
  local i, n;
  n := op(1, v);
  if nargs = 1 or p = infinity then max(0, seq(abs(v[i]), i = 1..n)) else add(abs(v[i])^p, i = 1..n)^(1/p) end if
end proc:
MatrixNorm := proc(a::Matrix, p)
  description "MatrixNorm(a), MatrixNorm(a, infinity), MatrixNorm(a, 1), MatrixNorm(a, Frobenius): the largest sum of absolute values in a row, in a column, or the root of the sum of squares";
  local i, j;
  if nargs = 1 or p = infinity then max(0, seq(add(abs(a[i, j]), j = 1..ColumnCount(a)), i = 1..RowCount(a)))
  elif p = 1 then max(0, seq(add(abs(a[i, j]), i = 1..RowCount(a)), j = 1..ColumnCount(a)))
  elif p = 'Frobenius' then add(add(abs(a[i, j])^2, j = 1..ColumnCount(a)), i = 1..RowCount(a))^(1/2)
  else error "infinity, 1 or Frobenius expected, but received %1", p end if
end proc:
DotProduct := proc(a::Vector, b::Vector)
  description "DotProduct(a, b): the sum of the products of the elements of two Vectors";
  local i;
  if op(1, a) <> op(1, b) then error "Vectors of one length expected, but received lengths %1 and %2", op(1, a), op(1, b) end if;
  add(a[i]*b[i], i = 1..op(1, a))
end proc:
CrossProduct := proc(a::Vector, b::Vector)
  description "CrossProduct(a, b): the vector product of two Vectors of length 3, as a column Vector";
  if op(1, a) <> 3 or op(1, b) <> 3 then error "Vectors of length 3 expected, but received lengths %1 and %2", op(1, a), op(1, b) end if;
  Vector([a[2]*b[3] - a[3]*b[2], a[3]*b[1] - a[1]*b[3], a[1]*b[2] - a[2]*b[1]])
end proc:

# ---- decompositions in floats

LUDecomposition := proc(a::Matrix)
  description "LUDecomposition(a): Matrices P, L, U with a = P . L . U in floats: a permutation, a unit lower and an upper triangular Matrix";
  local m, n, w, l, p, order, row, i, j, k, q;
  m, n := op(1, a);
  w := map(evalf, `linearalgebra/copy`(a));
  l := rtable(1..m, 1..m, (i, j) -> `if`(i = j, 1., 0.), subtype = 'Matrix');
  order := [seq(i, i = 1..m)];
  for k to min(m, n) do
    row := `linearalgebra/pivot`(w, k, k, true);
    if row = 0 then next end if;
    if row <> k then
      for j to n do w[k, j], w[row, j] := w[row, j], w[k, j] end do;
      for j to k - 1 do l[k, j], l[row, j] := l[row, j], l[k, j] end do;
      order := subsop(k = order[row], row = order[k], order)
    end if;
    for i from k + 1 to m do
      q := w[i, k]/w[k, k];
      l[i, k] := q;
      w[i, k] := 0.;
      for j from k + 1 to n do w[i, j] := w[i, j] - q*w[k, j] end do
    end do
  end do;
  p := rtable(1..m, 1..m, subtype = 'Matrix');
  for i to m do p[order[i], i] := 1 end do;
  p, l, w
end proc:

# Householder's reflections (Golub and Van Loan, Matrix Computations, 5.2).
QRDecomposition := proc(a::Matrix)
  description "QRDecomposition(a): Matrices Q, R with a = Q . R in floats: orthogonal columns and an upper triangular Matrix";
  local m, n, r, q, k, i, j, s, v, t, norm;
  m, n := op(1, a);
  r := map(evalf, `linearalgebra/copy`(a));
  q := rtable(1..m, 1..m, (i, j) -> `if`(i = j, 1., 0.), subtype = 'Matrix');
  for k to min(m - 1, n) do
    norm := evalf(add(r[i, k]^2, i = k..m)^(1/2));
    if norm = 0 then next end if;
    s := `if`(r[k, k] < 0, norm, -norm);
    v := [r[k, k] - s, seq(r[i, k], i = k + 1..m)];
    t := add(i^2, i = v);
    for j from k to n do
      norm := 2*add(v[i - k + 1]*r[i, j], i = k..m)/t;
      for i from k to m do r[i, j] := r[i, j] - norm*v[i - k + 1] end do
    end do;
    for j to m do
      norm := 2*add(v[i - k + 1]*q[j, i], i = k..m)/t;
      for i from k to m do q[j, i] := q[j, i] - norm*v[i - k + 1] end do
    end do;
    for i from k + 1 to m do r[i, k] := 0. end do
  end do;
  q, r
end proc:
