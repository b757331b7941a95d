// Linear algebra on doubles for the procedures of lib/lapack.krl: LAPACK and BLAS, found when they are first needed.
//
// Each function is written for the kernel (include/korelshlib.h) and works on the data of its arguments where they lie:
// rectangular arrays of float[8] or complex[8] in the order of Fortran. Nothing with a destructor is alive when an error
// is raised, for an error leaves by a jump.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <korelshlib.h>
#include <limits>

namespace {

// ---- the library

void* library = nullptr;

constexpr const char* libraryNames[] = {"libopenblas.so.0", "libopenblas.so", "liblapack.so.3", "liblapack.so"};

/// The routine, by its Fortran name. Errors tell what is missing.
void* routine(MKernelVector kv, const char* name) {
  for (const char* file : libraryNames)
    if (library == nullptr) library = dlopen(file, RTLD_LAZY);
  if (library == nullptr)
    kv->error("LAPACK is not installed: libopenblas.so.0 (Debian: libopenblas0) or liblapack.so.3 is needed");
  void* address = dlsym(library, name);
  if (address == nullptr) kv->error("the library of linear algebra has no %1", kv->toKorelString(name));
  return address;
}

/// Calls a routine, whose type is what it is given: all arguments of Fortran are addresses.
template <class... Addresses>
void call(MKernelVector kv, const char* name, Addresses... addresses) {
  reinterpret_cast<void (*)(Addresses...)>(routine(kv, name))(addresses...);
}
/// The same by the format of the data: d... for real, z... for complex numbers.
template <class... Addresses>
void callFor(MKernelVector kv, bool isComplex, const char* real, const char* complex, Addresses... addresses) {
  call(kv, isComplex ? complex : real, addresses...);
}

// ---- arguments

struct Matrix {
  double* data;
  int rows, columns;
  bool isComplex;
};

constexpr const char* formatExpected =
    "rectangular array of float[8] or complex[8] in Fortran_order expected, instead got %1";

int extent(MKernelVector kv, ALGEB r, M_INT dimension) {
  return static_cast<int>(kv->rtableUpperBound(r, dimension) - kv->rtableLowerBound(r, dimension) + 1);
}

/// A vector is a matrix of one column.
Matrix matrixOf(MKernelVector kv, ALGEB r, bool isWritten) {
  if (!kv->isRTable(r)) kv->error(formatExpected, r);
  RTableSettings s;
  kv->rtableGetSettings(&s, r);
  const M_INT n = s.num_dimensions;
  const bool isDoubles = s.data_type == DATATYPE_FLOAT64 || s.data_type == DATATYPE_COMPLEXF64;
  if (!isDoubles || s.storage != STORAGE_RECTANGULAR || !kv->isNULL(s.index_functions) || n < 1 || n > 2 ||
      (n == 2 && s.order != ORDER_FORTRAN))
    kv->error(formatExpected, r);
  if (isWritten && s.read_only) kv->error("cannot assign to a read-only %1", kv->toKorelName("Array", TRUE));
  return {static_cast<double*>(kv->rtableData(r)), extent(kv, r, 1), n == 2 ? extent(kv, r, 2) : 1,
          s.data_type == DATATYPE_COMPLEXF64};
}

void checkCount(MKernelVector kv, ALGEB args, M_INT count) {
  if (kv->numArgs(args) != count) kv->error("wrong number of arguments");
}
void checkSameFormat(MKernelVector kv, const Matrix& a, const Matrix& b) {
  if (a.isComplex != b.isComplex) kv->error("arrays of one data type expected");
}
void checkShape(MKernelVector kv, bool fits) {
  if (!fits) kv->error("dimensions do not match");
}
/// What LAPACK says of its own arguments would be a fault of this file; a number above 0 tells of a `failure`.
void checkInfo(MKernelVector kv, int info, const char* failure) {
  if (info < 0) kv->error("LAPACK refuses argument %1", kv->toKorelInteger(-info));
  if (info > 0) kv->error(failure);
}

template <class T>
T* block(MKernelVector kv, std::size_t count) {
  return static_cast<T*>(kv->alloc(std::max<std::size_t>(count, 1) * sizeof(T)));
}

int leading(const Matrix& a) { return std::max(a.rows, 1); }

/// Calls `run(work, lwork)` twice: for the length that the routine wants, and with a work space of it.
template <class Run>
void withWorkSpace(MKernelVector kv, bool isComplex, Run run) {
  double wanted[2] = {0, 0};
  run(wanted, -1);
  const int length = std::max(static_cast<int>(wanted[0]), 1);
  run(block<double>(kv, std::size_t(length) * (isComplex ? 2 : 1)), length);
}

/// Two columns of real and imaginary parts as complex numbers.
void zip(const double* re, const double* im, double* to, int count) {
  for (int i = 0; i < count; ++i) {
    to[2 * i] = re[i];
    to[2 * i + 1] = im[i];
  }
}

/// The eigenvectors of a real matrix: a pair of conjugate ones stands in two columns, real part and imaginary part.
void unpackVectors(const double* wi, const double* packed, double* to, int n) {
  const auto column = std::size_t(n);
  for (int j = 0; j < n; ++j) {
    const double* re = packed + column * j;
    for (int i = 0; i < n; ++i) {
      const bool isPair = wi[j] != 0 && j + 1 < n;
      to[2 * (column * j + i)] = re[i];
      to[2 * (column * j + i) + 1] = isPair ? re[column + i] : 0;
      if (!isPair) continue;
      to[2 * (column * (j + 1) + i)] = re[i];
      to[2 * (column * (j + 1) + i) + 1] = -re[column + i];
    }
    if (wi[j] != 0 && j + 1 < n) ++j;
  }
}

/// Whether a triangle of `a`, the factors of a matrix, is as good as singular: rounding hides that from LAPACK itself.
bool isSingularTriangle(MKernelVector kv, const Matrix& a, int& info) {
  const int n = std::min(a.rows, a.columns), ld = leading(a);
  const char* half = a.rows >= a.columns ? "U" : "L";
  double* work = block<double>(kv, 4 * std::size_t(n));
  void* more = a.isComplex ? static_cast<void*>(block<double>(kv, std::size_t(n))) : block<int>(kv, std::size_t(n));
  double condition = 1;  // its reciprocal
  callFor(kv, a.isComplex, "dtrcon_", "ztrcon_", "1", half, "N", &n, a.data, &ld, &condition, work, more, &info);
  return n != 0 && condition < std::numeric_limits<double>::epsilon();
}

}  // namespace

extern "C" {

/// multiply(A, B, C): C := A . B
ALGEB korel_multiply(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 3);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), false), b = matrixOf(kv, KOREL_ARG(args, 2), false),
               c = matrixOf(kv, KOREL_ARG(args, 3), true);
  checkSameFormat(kv, a, b);
  checkSameFormat(kv, a, c);
  checkShape(kv, a.columns == b.rows && c.rows == a.rows && c.columns == b.columns);
  if (c.data == a.data || c.data == b.data) kv->error("the product needs an array of its own");
  const int lda = leading(a), ldb = leading(b), ldc = leading(c);
  const double one[2] = {1, 0}, zero[2] = {0, 0};
  if (c.rows != 0 && c.columns != 0)
    callFor(kv, a.isComplex, "dgemm_", "zgemm_", "N", "N", &a.rows, &b.columns, &a.columns, one, a.data, &lda, b.data,
            &ldb, zero, c.data, &ldc);
  return KOREL_ARG(args, 3);
}

/// solve(A, B): B := X with A . X = B; A gets its factors
ALGEB korel_solve(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 2);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), true), b = matrixOf(kv, KOREL_ARG(args, 2), true);
  checkSameFormat(kv, a, b);
  checkShape(kv, a.rows == a.columns && b.rows == a.rows);
  int* pivots = block<int>(kv, std::size_t(a.rows));
  const int ld = leading(a);
  int info = 0;
  callFor(kv, a.isComplex, "dgesv_", "zgesv_", &a.rows, &b.columns, a.data, &ld, pivots, b.data, &ld, &info);
  checkInfo(kv, info, "the matrix is singular");
  return KOREL_ARG(args, 2);
}

/// leastsquares(A, B): the first columns(A) rows of B := X that minimizes |A . X - B|; A gets its factors
ALGEB korel_least_squares(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 2);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), true), b = matrixOf(kv, KOREL_ARG(args, 2), true);
  checkSameFormat(kv, a, b);
  checkShape(kv, b.rows == std::max(a.rows, a.columns));
  const int lda = leading(a), ldb = leading(b);
  int info = 0;
  withWorkSpace(kv, a.isComplex, [&](double* work, int length) {
    callFor(kv, a.isComplex, "dgels_", "zgels_", "N", &a.rows, &a.columns, &b.columns, a.data, &lda, b.data, &ldb, work,
            &length, &info);
  });
  constexpr const char* failure = "the matrix does not have full rank";
  checkInfo(kv, info, failure);
  if (isSingularTriangle(kv, a, info)) kv->error(failure);
  return KOREL_ARG(args, 2);
}

/// eigen(A, W, V): W := the eigenvalues, the columns of V := the eigenvectors, or V = 0; A is used up
ALGEB korel_eigen(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 3);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), true), w = matrixOf(kv, KOREL_ARG(args, 2), true);
  const bool wantsVectors = !kv->isUnnamedZero(KOREL_ARG(args, 3));
  const Matrix v = wantsVectors ? matrixOf(kv, KOREL_ARG(args, 3), true) : Matrix{nullptr, a.rows, a.rows, true};
  if (!w.isComplex || !v.isComplex) kv->error("arrays of complex[8] expected for the results");
  checkShape(kv, a.rows == a.columns && w.rows == a.rows && w.columns == 1 && v.rows == a.rows && v.columns == a.rows);
  const char* job = wantsVectors ? "V" : "N";
  const int n = a.rows, ld = leading(a), one = 1;
  const auto count = std::size_t(n);
  int info = 0;
  if (a.isComplex) {
    double* reals = block<double>(kv, 2 * count);
    withWorkSpace(kv, true, [&](double* work, int length) {
      call(kv, "zgeev_", "N", job, &n, a.data, &ld, w.data, nullptr, &one, v.data, &ld, work, &length, reals, &info);
    });
  } else {
    double *re = block<double>(kv, count), *im = block<double>(kv, count);
    double* packed = block<double>(kv, wantsVectors ? count * count : 1);
    withWorkSpace(kv, false, [&](double* work, int length) {
      call(kv, "dgeev_", "N", job, &n, a.data, &ld, re, im, nullptr, &one, packed, &ld, work, &length, &info);
    });
    zip(re, im, w.data, n);
    if (wantsVectors) unpackVectors(im, packed, v.data, n);
  }
  checkInfo(kv, info, "the eigenvalues do not converge");
  return KOREL_ARG(args, 2);
}

/// symmetric(A, W, vectors): W := the eigenvalues of a symmetric or Hermitian A, ascending; with `vectors` true, the
/// columns of A := the eigenvectors. Of A the upper triangle is read.
ALGEB korel_symmetric_eigen(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 3);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), true), w = matrixOf(kv, KOREL_ARG(args, 2), true);
  const char* job = kv->korelToBool(KOREL_ARG(args, 3)) == TRUE ? "V" : "N";
  if (w.isComplex) kv->error("array of float[8] expected for the eigenvalues");
  checkShape(kv, a.rows == a.columns && w.rows == a.rows && w.columns == 1);
  const int n = a.rows, ld = leading(a);
  int info = 0;
  double* reals = block<double>(kv, 3 * std::size_t(n));  // of a Hermitian matrix
  withWorkSpace(kv, a.isComplex, [&](double* work, int length) {
    if (a.isComplex) call(kv, "zheev_", job, "U", &n, a.data, &ld, w.data, work, &length, reals, &info);
    else call(kv, "dsyev_", job, "U", &n, a.data, &ld, w.data, work, &length, &info);
  });
  checkInfo(kv, info, "the eigenvalues do not converge");
  return KOREL_ARG(args, 2);
}

/// singular(A, S, U, Vt): S := the singular values, descending; U and Vt := the factors with A = U . S . Vt, or both 0;
/// A is used up
ALGEB korel_singular_values(MKernelVector kv, ALGEB args) {
  checkCount(kv, args, 4);
  const Matrix a = matrixOf(kv, KOREL_ARG(args, 1), true), s = matrixOf(kv, KOREL_ARG(args, 2), true);
  const bool wantsFactors = !kv->isUnnamedZero(KOREL_ARG(args, 3));
  const int m = a.rows, n = a.columns, least = std::min(m, n), most = std::max(m, n);
  Matrix u = {nullptr, m, m, a.isComplex}, vt = {nullptr, n, n, a.isComplex};
  if (wantsFactors) {
    u = matrixOf(kv, KOREL_ARG(args, 3), true);
    vt = matrixOf(kv, KOREL_ARG(args, 4), true);
  }
  if (s.isComplex) kv->error("array of float[8] expected for the singular values");
  checkSameFormat(kv, a, u);
  checkSameFormat(kv, a, vt);
  checkShape(kv, s.rows == least && s.columns == 1 && u.rows == m && u.columns == m && vt.rows == n && vt.columns == n);
  const char* job = wantsFactors ? "A" : "N";
  const int lda = leading(a), ldu = leading(u), ldvt = leading(vt);
  int* integers = block<int>(kv, 8 * std::size_t(least));
  const auto l = std::size_t(least), x = std::size_t(most);
  double* reals = a.isComplex ? block<double>(kv, l * std::max(5 * l + 7, 2 * x + 2 * l + 1)) : nullptr;
  int info = 0;
  withWorkSpace(kv, a.isComplex, [&](double* work, int length) {
    auto run = [&](const char* name, auto... real) {
      call(kv, name, job, &m, &n, a.data, &lda, s.data, u.data, &ldu, vt.data, &ldvt, work, &length, real..., integers,
           &info);
    };
    if (a.isComplex) run("zgesdd_", reals);
    else run("dgesdd_");
  });
  checkInfo(kv, info, "the singular values do not converge");
  return KOREL_ARG(args, 2);
}

}  // extern "C"
