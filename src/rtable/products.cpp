#include "rtable/products.h"

#include <algorithm>
#include <cstdlib>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/indexing_functions.h"
#include "rtable/rtable_object.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- operands, as matrices

enum Shape { rowVector, columnVector, matrix };

Shape shapeOf(DAG r) {
  switch (subtypeOf(r)) {
    case subtypeRowVector: return rowVector;
    case subtypeColumnVector: return columnVector;
    default: return matrix;
  }
}

// A Vector is a matrix of one row or column.
struct Factor {
  DAG r;
  Shape shape;
  std::int64_t rows, columns;

  explicit Factor(DAG r) : r(r), shape(shapeOf(r)) {
    rows = shape == rowVector ? 1 : extentOf(r, 0);
    columns = shape == matrix ? extentOf(r, 1) : shape == rowVector ? extentOf(r, 0) : 1;
  }
  DAG at(std::int64_t i, std::int64_t j) const {
    const std::int32_t index[] = {static_cast<std::int32_t>(shape == rowVector ? j : i), static_cast<std::int32_t>(j)};
    DAG element = selectElement(r, index);
    return element ? element : null;
  }
};

DAG countOf(std::int64_t n) { return simpl(NewInteger(n)); }

// What a pair of shapes refuses; null where there is a product.
constexpr const char* refusals[3][3] = {
    // row                                     column                                matrix
    {"cannot multiply two row Vectors",        nullptr,                              nullptr},
    {nullptr,                                  "cannot multiply two column Vectors",
     "cannot multiply a column Vector and a Matrix"},
    {"cannot multiply a Matrix and row Vector", nullptr,                             nullptr},
};

void checkSizes(const Factor& a, const Factor& b) {
  if (a.columns == b.rows) return;
  if (a.shape == rowVector && b.shape == columnVector) KernelException("vector lengths must be the same");
  if (a.shape == rowVector)
    KernelException("vector dimension (%1) must be the sameas the matrix row dimension (%2)", countOf(a.columns),
                    countOf(b.rows));
  if (b.shape == columnVector)
    KernelException("vector dimension (%1) must be the sameas the matrix column dimension (%2)", countOf(b.rows),
                    countOf(a.columns));
  KernelException("first matrix column dimension (%1) <> second matrix row dimension (%2)", countOf(a.columns),
                  countOf(b.rows));
}

// ---- the elements of the product

// The sum over k of a[i, k] b[k, j]: numbers are added as they come; with anything else the sum is one object, which
// is simplified as a whole.
DAG elementOfProduct(const Factor& a, const Factor& b, std::int64_t i, std::int64_t j) {
  DAG total = cons0;
  std::int64_t k = 1;
  for (; k <= a.columns; ++k) {
    DAG x = a.at(i, k), y = b.at(k, j);
    if (!isNumeric(x) || !isNumeric(y)) break;
    total = simpl(add(total, simpl(mul(x, y))));
  }
  passWork(16 * a.columns);
  if (k > a.columns) return total;
  DAG sum = newl2(static_cast<Word>(2 * (a.columns - k + 1)) + 3, SUM);
  Word at = 1;
  sum[at++] = total;
  sum[at++] = cons1;
  for (; k <= a.columns; ++k) {
    sum[at++] = NewPROD(a.at(i, k), b.at(k, j));
    sum[at++] = cons1;
  }
  return simpl(sum);
}

DAG newProduct(RTableSettings settings, Word subtype, std::int64_t rows, std::int64_t columns) {
  settings.subtype = subtype;
  settings.dimensions = subtype == subtypeMatrix ? 2 : 1;
  const auto r = static_cast<std::int32_t>(rows), c = static_cast<std::int32_t>(columns);
  std::int32_t bounds[] = {1, subtype == subtypeRowVector ? c : r, 1, c};
  return RTableCreate(settings, DAG(), bounds, DataMode::cleared);
}

// ---- small integers, in machine arithmetic

// The elements of `lines` rows (or columns) one after the other; the largest magnitude, or -1 when one is no small
// integer.
std::int64_t readSmallIntegers(const Factor& f, bool byRows, std::int32_t* to) {
  const std::int64_t lines = byRows ? f.rows : f.columns, length = byRows ? f.columns : f.rows;
  std::int64_t largest = 0;
  for (std::int64_t line = 1; line <= lines; ++line)
    for (std::int64_t k = 1; k <= length; ++k) {
      DAG x = byRows ? f.at(line, k) : f.at(k, line);
      if (!isImmediate(x) || (isZeroImmediate(x) && x != cons0)) return -1;
      *to++ = immediateValue(x);
      largest = std::max<std::int64_t>(largest, std::abs(std::int64_t{immediateValue(x)}));
    }
  return largest;
}

// False, with nothing stored, when an element is no small integer or a sum might not fit (bench/rtables.sh, "product of
// exact 100 by 100").
bool fillBySmallIntegers(DAG product, const Factor& a, const Factor& b) {
  const std::int64_t n = a.columns, words = (a.rows + b.columns) * n;
  if (words == 0 || words >= maxLength) return false;
  // A procedure of the user might have the scratch collected.
  if (HasNonKernelIndFun(a.r) || HasNonKernelIndFun(b.r)) return false;
  DAG scratch = newl2(static_cast<Word>(words) + 1, BINARY);
  auto* rows = reinterpret_cast<std::int32_t*>(&scratch[1]);
  std::int32_t* columns = rows + a.rows * n;
  const std::int64_t largestOfA = readSmallIntegers(a, true, rows);
  const std::int64_t largestOfB = largestOfA < 0 ? -1 : readSmallIntegers(b, false, columns);
  constexpr double mostSum = 9e18;
  const bool fits =
      largestOfB >= 0 &&
      static_cast<double>(largestOfA) * static_cast<double>(largestOfB) * static_cast<double>(n) < mostSum;
  for (std::int64_t i = 0; fits && i < a.rows; ++i) {
    passWork(n * b.columns);
    for (std::int64_t j = 0; j < b.columns; ++j) {
      const std::int32_t *row = rows + i * n, *column = columns + j * n;
      std::int64_t sum = 0;
      for (std::int64_t k = 0; k < n; ++k) sum += std::int64_t{row[k]} * column[k];
      const auto at = static_cast<std::int32_t>(i + 1), across = static_cast<std::int32_t>(j + 1);
      const std::int32_t index[] = {subtypeOf(product) == subtypeRowVector ? across : at, across};
      assignElement(product, index, simpl(NewInteger(sum)));
    }
  }
  release(scratch, lengthOf(scratch));
  return fits;
}

void fillProduct(DAG product, const Factor& a, const Factor& b) {
  updategen(product);
  if (fillBySmallIntegers(product, a, b)) return;
  for (std::int64_t i = 1; i <= a.rows; ++i) {
    for (std::int64_t j = 1; j <= b.columns; ++j) {
      const auto row = static_cast<std::int32_t>(i), column = static_cast<std::int32_t>(j);
      const std::int32_t index[] = {subtypeOf(product) == subtypeRowVector ? column : row, column};
      assignElement(product, index, elementOfProduct(a, b, i, j));
    }
    collectInLoop();
  }
}

// ---- the target

DAG valueBehind(DAG x) { return isName(x) ? valuenv(x, false) : x; }

struct SubtypeRefusals {
  const char *subtype, *dimensions;
};
// By the subtype of the product.
constexpr SubtypeRefusals targetRefusals[] = {
    {nullptr, nullptr},
    {"target must be a Matrix", "target Matrix has incorrect dimensions"},
    {"target must be a column Vector", "target Vector has incorrect dimensions"},
    {"target must be a row Vector", "target Vector has incorrect dimensions"},
};

void checkTarget(DAG target, Word subtype, std::int64_t rows, std::int64_t columns) {
  const SubtypeRefusals& refusal = targetRefusals[subtype];
  if (subtypeOf(target) != subtype) KernelException(refusal.subtype);
  const Factor t(target);
  if (t.rows != rows || t.columns != columns) KernelException(refusal.dimensions);
  if (rtableFlag(target, rtableReadOnly) != 0) KernelException("cannot assign to a read-only %1", subtypeWord(target));
}

// The product is complete before anything is stored: the target may be a factor.
DAG storeProduct(DAG target, DAG product) {
  const Word n = dimensionsOf(product);
  std::int32_t index[2] = {1, 1};
  for (index[0] = 1; index[0] <= upperBound(product, 0); ++index[0]) {
    const std::int32_t columns = n == 2 ? upperBound(product, 1) : 1;
    for (index[1] = 1; index[1] <= columns; ++index[1])
      if (DAG element = selectElement(product, index)) assignElement(target, index, element);
  }
  return target;
}

Word subtypeOfProduct(const Factor& a, const Factor& b) {
  if (a.shape == rowVector) return subtypeRowVector;
  return b.shape == columnVector ? subtypeColumnVector : subtypeMatrix;
}

DAG scalarProduct(const Factor& a, const Factor& b, DAG target) {
  if (target && !isName(target)) KernelException("target must be a name");
  DAG value = elementOfProduct(a, b, 1, 1);
  if (target) assign(target, value);
  return value;
}

[[noreturn]] void refuseArrays(DAG first) {
  switch (subtypeOf(first)) {
    case subtypeArray: KernelException("cannot multiply an Array");
    case subtypeMatrix: KernelException("cannot multiply a Matrix and Array");
    default: KernelException("cannot multiply a Vector and Array");
  }
}

// ---- floats of the hardware, in their own arithmetic

struct FloatMatrix {
  double* data;
  std::int64_t rowStep, columnStep;
};
FloatMatrix floatsOf(const Factor& f) {
  auto* data = reinterpret_cast<double*>(dataOf(f.r));
  if (f.shape == rowVector) return {data, f.columns, 1};
  return isCOrder(f.r) && f.shape == matrix ? FloatMatrix{data, f.columns, 1} : FloatMatrix{data, 1, f.rows};
}
bool isPlainFloat(DAG r) {
  return datatypeOf(r) == dataFloat64 && functionCount(r) == 0 && storageOf(r) == storageRectangular &&
         rawField(r, rtableData) != 0;
}

// Column by column of the product, each a sum of columns of the first factor.
DAG productOfFloats(const Factor& a, const Factor& b, Word subtype) {
  RTableSettings settings;
  settings.datatype = dataFloat64;
  DAG product = newProduct(settings, subtype, a.rows, b.columns);
  if (rawField(product, rtableData) == 0) return product;
  const FloatMatrix x = floatsOf(a), y = floatsOf(b), z = floatsOf(Factor(product));
  for (std::int64_t j = 0; j < b.columns; ++j) {
    passWork(a.rows * a.columns);
    double* to = z.data + j * z.columnStep;
    for (std::int64_t k = 0; k < a.columns; ++k) {
      const double factor = y.data[k * y.rowStep + j * y.columnStep];
      const double* from = x.data + k * x.columnStep;
      if (x.rowStep == 1 && z.rowStep == 1)
        for (std::int64_t i = 0; i < a.rows; ++i) to[i] += factor * from[i];
      else
        for (std::int64_t i = 0; i < a.rows; ++i) to[i * z.rowStep] += factor * from[i * x.rowStep];
    }
  }
  return product;
}

// The factors of a product that there is. Errors: those of their shapes and sizes.
void checkFactors(DAG first, DAG second) {
  if (!isTag(first, RTABLE) || !isTag(second, RTABLE)) KernelException("Matrix or Vector expected");
  if (subtypeOf(first) == subtypeArray || subtypeOf(second) == subtypeArray) refuseArrays(first);
}
void checkShapes(const Factor& a, const Factor& b) {
  if (const char* refusal = refusals[a.shape][b.shape]) KernelException(refusal);
  checkSizes(a, b);
}

}  // namespace

DAG builtin::mvMultiply(const BuiltinCall& call) {
  const Word given = argumentCount(call);
  if (given > 3) KernelException("too many arguments");
  if (given < 2) KernelException("too few arguments");
  DAG first = valueBehind(call.arguments[1]), second = valueBehind(call.arguments[2]);
  checkFactors(first, second);
  DAG target = given == 3 ? call.arguments[3] : DAG();
  if (target && !isName(target) && !isTag(target, RTABLE)) KernelException("invalid type of result argument");
  const Factor a(first), b(second);
  checkShapes(a, b);
  if (a.shape == rowVector && b.shape == columnVector) return scalarProduct(a, b, target);
  const Word subtype = subtypeOfProduct(a, b);
  const bool isStored = isTag(target, RTABLE);
  if (isStored) checkTarget(target, subtype, a.rows, b.columns);
  DAG product = newProduct(RTableSettings(), subtype, a.rows, b.columns);
  fillProduct(product, a, b);
  if (isStored) return storeProduct(target, product);
  if (target) assign(target, product);
  return product;
}

// rtable/times(a, b): as mvMultiply, but two factors of hardware floats have a product of such.
DAG native::rtableTimes(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG first = call.arguments[1], second = call.arguments[2];
  checkFactors(first, second);
  const Factor a(first), b(second);
  checkShapes(a, b);
  const bool isScalar = a.shape == rowVector && b.shape == columnVector;
  if (!isPlainFloat(first) || !isPlainFloat(second)) return builtin::mvMultiply(call);
  DAG product = productOfFloats(a, b, isScalar ? Word{subtypeColumnVector} : subtypeOfProduct(a, b));
  return isScalar ? RTableDataOffsetToDag(product, 0) : product;
}

}  // namespace korel
