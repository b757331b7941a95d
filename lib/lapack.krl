# Numerical linear algebra on arrays of doubles, by LAPACK and BLAS: in place, without a copy.
#
# The arrays are rectangular rtables of float[8] or complex[8] in Fortran_order, all of one data type. A vector is a matrix
# of one column. The functions behind the procedures stand in libkorellapack.so beside the archive, which looks for
# the system's library when it is first needed. Each procedure calls its function by a local name that is its own, which
# messages then show.

`lapack/bind` := proc(name::name)
  description "the procedure that calls a function of libkorellapack.so";
  option remember;
  local directory;
  for directory in [libname] do
    try return define_external(name, KOREL, LIB = cat(directory, "/libkorellapack.so"))
    catch "external linking":
    end try
  end do;
  error "libkorellapack.so is in none of the directories of libname"
end proc:

`lapack/result` := proc(rows::nonnegint, columns::nonnegint, kind)
  description "a new matrix";
  rtable(1..rows, 1..columns, datatype = kind, order = Fortran_order, subtype = Matrix)
end proc:

lapack_multiply := proc(A, B, C)
  description "lapack_multiply(A, B), lapack_multiply(A, B, C): the matrix product, in a new matrix or in C";
  local lapack_multiply, product;
  lapack_multiply := `lapack/bind`('korel_multiply');
  if nargs = 3 then product := C
  else product := `lapack/result`(`lapack/rows`(A), `lapack/columns`(B), `lapack/datatype`(A)) end if;
  lapack_multiply(A, B, product)
end proc:

lapack_solve := proc(A, B)
  description "lapack_solve(A, B): the solution of A . X = B, which B holds then; A holds its factors L and U";
  local lapack_solve;
  lapack_solve := `lapack/bind`('korel_solve');
  lapack_solve(A, B)
end proc:

lapack_leastsquares := proc(A, B)
  description "lapack_leastsquares(A, B): the X that is nearest to A . X = B, in the first rows of B, which has as many rows as the longer side of A; A holds its factors";
  local lapack_leastsquares;
  lapack_leastsquares := `lapack/bind`('korel_least_squares');
  lapack_leastsquares(A, B)
end proc:

lapack_eigenvalues := proc(A)
  description "lapack_eigenvalues(A): the eigenvalues as a new vector of complex[8]; A is used up";
  local lapack_eigenvalues, values;
  lapack_eigenvalues := `lapack/bind`('korel_eigen');
  values := rtable(1..`lapack/rows`(A), datatype = complex[8], subtype = Vector[column]);
  lapack_eigenvalues(A, values, 0)
end proc:

lapack_eigenvectors := proc(A)
  description "lapack_eigenvectors(A): the eigenvalues, and a matrix of complex[8] whose columns are the eigenvectors; A is used up";
  local lapack_eigenvectors, n, values, vectors;
  lapack_eigenvectors := `lapack/bind`('korel_eigen');
  n := `lapack/rows`(A);
  values := rtable(1..n, datatype = complex[8], subtype = Vector[column]);
  vectors := `lapack/result`(n, n, complex[8]);
  lapack_eigenvectors(A, values, vectors), vectors
end proc:

lapack_symmetric := proc(A)
  description "lapack_symmetric(A): the eigenvalues of a symmetric or Hermitian matrix, ascending, as a new vector of float[8]; the columns of A hold the eigenvectors then. The upper triangle of A counts";
  local lapack_symmetric, values;
  lapack_symmetric := `lapack/bind`('korel_symmetric_eigen');
  values := rtable(1..`lapack/rows`(A), datatype = float[8], subtype = Vector[column]);
  lapack_symmetric(A, values, true)
end proc:

lapack_singularvalues := proc(A)
  description "lapack_singularvalues(A): the singular values, descending, as a new vector of float[8]; A is used up";
  local lapack_singularvalues, values;
  lapack_singularvalues := `lapack/bind`('korel_singular_values');
  values := rtable(1..min(`lapack/rows`(A), `lapack/columns`(A)), datatype = float[8], subtype = Vector[column]);
  lapack_singularvalues(A, values, 0, 0)
end proc:

lapack_singularfactors := proc(A)
  description "lapack_singularfactors(A): the singular values S, and the matrices U and V with A = U . S . V; A is used up";
  local lapack_singularfactors, m, n, kind, values, u, v;
  lapack_singularfactors := `lapack/bind`('korel_singular_values');
  m := `lapack/rows`(A); n := `lapack/columns`(A); kind := `lapack/datatype`(A);
  values := rtable(1..min(m, n), datatype = float[8], subtype = Vector[column]);
  u := `lapack/result`(m, m, kind); v := `lapack/result`(n, n, kind);
  lapack_singularfactors(A, values, u, v), u, v
end proc:

`lapack/rows` := proc(A::rtable)
  description "the number of rows";
  `lapack/extent`(A, 1)
end proc:

`lapack/columns` := proc(A::rtable)
  description "the number of columns, 1 for a vector";
  `lapack/extent`(A, 2)
end proc:

`lapack/extent` := proc(A, k)
  description "how many indices a dimension has; 1 when there is no such dimension";
  local bounds;
  if rtable_num_dims(A) < k then return 1 end if;
  if rtable_options(A, subtype) = 'Array' then
    bounds := [op(2, A)][k];
    rhs(bounds) - lhs(bounds) + 1
  else [op(1, A)][k] end if
end proc:

`lapack/datatype` := proc(A)
  description "the data type of the elements";
  rtable_options(A, 'datatype')
end proc:
