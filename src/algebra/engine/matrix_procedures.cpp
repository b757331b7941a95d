// Native procedures of the library's linear algebra, for Matrices of integers and fractions.

#include "algebra/engine/integer_matrix.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "rtable/element_access.h"
#include "rtable/rtable_object.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct Place {
  std::int32_t index[2];
  Place(std::size_t i, std::size_t j) : index{static_cast<std::int32_t>(i + 1), static_cast<std::int32_t>(j + 1)} {}
};

bool isRational(DAG x) { return isImmediate(x) || (x && tagOf(x) <= RATIONAL); }
DAG denominatorOf(DAG x) { return isTag(x, RATIONAL) ? x[2] : cons1; }

struct ScaledMatrix {
  engine::IntegerMatrix integers;
  DAG scale;  // what the determinant is too large by
};

// The elements, each row times its common denominator; false when one is no integer or fraction.
bool readScaled(engine::Arena& arena, DAG matrix, ScaledMatrix& scaled) {
  const auto rows = static_cast<std::size_t>(extentOf(matrix, 0)),
             columns = static_cast<std::size_t>(extentOf(matrix, 1));
  scaled = {{rows, columns, arena.make<DAG>(rows * columns)}, cons1};
  for (std::size_t i = 0; i < rows; ++i) {
    DAG* row = scaled.integers.elements + i * columns;
    DAG common = cons1;
    for (std::size_t j = 0; j < columns; ++j) {
      row[j] = selectElement({matrix, Place(i, j).index, DAG()});
      if (!isRational(row[j])) return false;
      DAG d = denominatorOf(row[j]);
      if (d == cons1 || d == common) continue;
      DAG quotient;
      rem(d, simpl(igcd(common, d)), &quotient);
      common = simpl(mul(common, simpl(quotient)));
    }
    if (common == cons1) continue;
    for (std::size_t j = 0; j < columns; ++j) row[j] = simpl(mul(row[j], common));
    scaled.scale = simpl(mul(scaled.scale, common));
  }
  return true;
}

DAG matrixArgument(const BuiltinCall& call, Word count) {
  DAG matrix = argumentCount(call) == count ? call.arguments[1] : DAG();
  if (!isTag(matrix, RTABLE) || subtypeOf(matrix) != subtypeMatrix) wrongParameters(call);
  return matrix;
}

}  // namespace

// linearalgebra/determinant(a): of a square Matrix; FAIL when an element is no integer or fraction.
DAG native::exactDeterminant(const BuiltinCall& call) {
  DAG matrix = matrixArgument(call, 1);
  if (extentOf(matrix, 0) != extentOf(matrix, 1)) wrongParameters(call);
  engine::Arena arena;
  ScaledMatrix scaled;
  if (!readScaled(arena, matrix, scaled)) return ini("FAIL");
  return mul(engine::determinant(arena, scaled.integers), simpl(power(scaled.scale, -1)));
}

// linearalgebra/reduced(w, n): brings w to reduced row echelon form in place, with pivots among the first n columns,
// and gives the list of these; FAIL, with w untouched, when an element is no integer or fraction.
DAG native::exactReducedMatrix(const BuiltinCall& call) {
  DAG matrix = matrixArgument(call, 2), given = call.arguments[2];
  if (!isImmediate(given) || immediateValue(given) < 0 || immediateValue(given) > extentOf(matrix, 1))
    wrongParameters(call);
  const auto columns = static_cast<std::size_t>(immediateValue(given));
  engine::Arena arena;
  ScaledMatrix scaled;
  if (!readScaled(arena, matrix, scaled)) return ini("FAIL");
  const engine::ReducedMatrix r = engine::reduced(arena, scaled.integers, columns);
  DAG reciprocal = simpl(power(r.denominator, -1));
  auto store = [&](const engine::IntegerMatrix& rows, std::size_t from) {
    for (std::size_t i = 0; i < rows.rows; ++i)
      for (std::size_t j = 0; j < rows.columns; ++j)
        assignElement({matrix, Place(from + i, j).index, DAG()}, simpl(mul(rows.at(i, j), reciprocal)));
  };
  store(r.rows, 0);
  store(r.remainder, r.rank);
  DAG pivots = newl2(static_cast<Word>(r.rank) + 1, EXPSEQ);
  for (std::size_t k = 0; k < r.rank; ++k)
    pivots[static_cast<Word>(k) + 1] = immediate(static_cast<std::int32_t>(r.pivots[k]) + 1);
  return new2(LIST, simpl(pivots));
}

}  // namespace korel
