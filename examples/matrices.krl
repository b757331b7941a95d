# Exact linear algebra on tables: a matrix is a table of entries with its size under `rows` and `columns`.

matrix := proc(lists::list(list))
  local m, i, j;
  m := table([rows = nops(lists), columns = nops(lists[1])]);
  for i to nops(lists) do for j to nops(lists[1]) do m[i, j] := lists[i][j] end do end do;
  eval(m)
end proc:
toLists := m -> [seq([seq(m[i, j], j = 1..m[columns])], i = 1..m[rows])]:
build := proc(r, c, entry)          # by a function of both indices
  local i, j;
  matrix([seq([seq(entry(i, j), j = 1..c)], i = 1..r)])
end proc:
identity := n -> build(n, n, (i, j) -> `if`(i = j, 1, 0)):

product := proc(a, b)
  local i, j, k;
  if a[columns] <> b[rows] then
    error "a matrix of %1 columns cannot multiply one of %2 rows", a[columns], b[rows]
  end if;
  build(a[rows], b[columns], (i, j) -> add(a[i, k]*b[k, j], k = 1..a[columns]))
end proc:
raise := proc(a, n::nonnegint)
  if n = 0 then identity(a[rows])
  elif irem(n, 2) = 1 then product(a, raise(a, n - 1))
  else raise(product(a, a), n/2)
  end if
end proc:

a := matrix([[1, 2], [3, 4]]):
toLists(product(a, a));
fibonacci := matrix([[1, 1], [1, 0]]):
toLists(raise(fibonacci, 100))[1][2];          # 354224848179261915075
product(a, identity(3));

# Elimination to the upper triangle, fractions kept exact. Gives the triangle and the determinant.
eliminate := proc(m)
  local u, n, i, j, k, pivot, factor, determinant;
  u := matrix(toLists(m)); n := m[rows]; determinant := 1;
  for k to n do
    pivot := k;
    while pivot <= n and u[pivot, k] = 0 do pivot := pivot + 1 end do;
    if pivot > n then determinant := 0; next end if;
    if pivot <> k then
      determinant := -determinant;
      for j to u[columns] do u[k, j], u[pivot, j] := u[pivot, j], u[k, j] end do
    end if;
    determinant := determinant*u[k, k];
    for i from k + 1 to n do
      factor := u[i, k]/u[k, k];
      for j from k to u[columns] do u[i, j] := u[i, j] - factor*u[k, j] end do
    end do
  end do;
  [eval(u), determinant]
end proc:
determinant := m -> eliminate(m)[2]:

determinant(a);
hilbert := n -> build(n, n, (i, j) -> 1/(i + j - 1)):
determinant(hilbert(3)), determinant(hilbert(5));   # 1/2160, 1/266716800000
determinant(matrix([[0, 1, 2], [1, 0, 3], [4, -3, 8]]));
determinant(matrix([[1, 2, 3], [4, 5, 6], [7, 8, 9]]));
# Vandermonde's determinant is the product of the differences.
points := [2, 3, 5, 7, 11]:
determinant(build(5, 5, (i, j) -> points[i]^(j - 1))) -
  mul(mul(points[j] - points[i], i = 1..j - 1), j = 2..5);

# Solutions of a x = b by elimination and back substitution.
solveLinear := proc(m, b::list)
  local u, x, i, j, n;
  n := m[rows];
  u := eliminate(build(n, n + 1, (i, j) -> `if`(j > n, b[i], m[i, j])));
  if u[2] = 0 then error "the matrix is singular" end if;
  u := u[1];
  for i from n by -1 to 1 do
    x[i] := (u[i, n + 1] - add(u[i, j]*x[j], j = i + 1..n))/u[i, i]
  end do;
  [seq(x[i], i = 1..n)]
end proc:
solveLinear(matrix([[2, 1, -1], [-3, -1, 2], [-2, 1, 2]]), [8, -11, -3]);   # 2, 3, -1
solveLinear(hilbert(6), [1, 0, 0, 0, 0, 0]);
solveLinear(matrix([[1, 2], [2, 4]]), [1, 1]);

# The inverse, column by column, and a check.
inverse := proc(m)
  local columnsOf, i, j, n;
  n := m[rows];
  columnsOf := [seq(solveLinear(m, [seq(`if`(i = j, 1, 0), i = 1..n)]), j = 1..n)];
  build(n, n, (i, j) -> columnsOf[j][i])
end proc:
toLists(inverse(hilbert(4)));
evalb(toLists(product(hilbert(4), inverse(hilbert(4)))) = toLists(identity(4)));

# Symbols are entries like any other.
determinant(matrix([[x, y], [z, w]]));
