// The product `inner` of arrays that are tables.

#include <cstdint>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/remember.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "rtable/products.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

enum Kind { plainVector, rowOfTable, columnOfTable, matrixOfTable };

struct Operand {
  DAG reference;  // the name, or the table itself
  DAG table;
  Kind kind;
  std::int64_t lower[2], upper[2];

  std::int64_t extent(int k) const { return upper[k] - lower[k] + 1; }
};

DAG tableOf(DAG x) {
  if (isName(x)) x = valuenv(x, false);
  return isTag(x, TABLE) && isArrayTable(x) ? x : DAG();
}

// The index bounds, which are integers.
void Dimensions(Operand& a) {
  DAG bounds = asSequence(a.table[tableBounds]);
  const Word n = memberCount(bounds);
  if (n != 1 && n != 2) KernelException("invalid table dimensions");
  for (Word k = 0; k < n; ++k) {
    DAG range = bounds[k + 1];
    if (!isTag(range, RANGE) || !readLongLong(range[1], a.lower[k]) || !readLongLong(range[2], a.upper[k]))
      KernelException("invalid table dimensions");
  }
  DAG function = a.table[tableFunction];
  auto isCalled = [&](const char* name) { return isName(function) && hasText(function, name); };
  a.kind = n == 2 ? matrixOfTable : isCalled("row") ? rowOfTable : isCalled("column") ? columnOfTable : plainVector;
}

// The entry, past the indexing functions that only say how a vector stands.
DAG entryAt(const Operand& a, DAG key) {
  if (a.kind != matrixOfTable) {
    PairAddress pair = search(key.word, a.table[tableEntries]);
    return pair == notFound ? DAG() : simpl(eval(pairValue(pair)));
  }
  FoundEntry found = lookUpEntry(key, a.reference, a.table);
  return found.value == absent ? DAG() : simpl(eval(found.value));
}
bool isUndefinedElement(DAG x) { return isTag(x, TABLEREF); }

DAG VectorSelect(const Operand& a, std::int64_t i) {
  DAG x = entryAt(a, simpl(NewInteger(i)));
  if (!x || isUndefinedElement(x)) KernelException("undefined elements in vector");
  return x;
}
DAG MatrixSelect(const Operand& a, std::int64_t i, std::int64_t j) {
  DAG x = entryAt(a, simpl(new3(EXPSEQ, simpl(NewInteger(i)), simpl(NewInteger(j)))));
  if (!x || isUndefinedElement(x)) KernelException("undefined elements in matrix");
  return x;
}

// As a matrix: element i, j from 1.
struct View {
  const Operand& a;
  bool isRow;  // of a vector

  std::int64_t rows() const { return a.kind == matrixOfTable ? a.extent(0) : isRow ? 1 : a.extent(0); }
  std::int64_t columns() const { return a.kind == matrixOfTable ? a.extent(1) : isRow ? a.extent(0) : 1; }
  DAG at(std::int64_t i, std::int64_t j) const {
    if (a.kind == matrixOfTable) return MatrixSelect(a, a.lower[0] + i - 1, a.lower[1] + j - 1);
    return VectorSelect(a, a.lower[0] + (isRow ? j : i) - 1);
  }
};

DAG elementOf(const View& a, const View& b, std::int64_t i, std::int64_t j) {
  const std::int64_t n = a.columns();
  DAG sum = newl2(static_cast<Word>(2 * n) + 1, SUM);
  for (std::int64_t k = 1; k <= n; ++k) {
    sum[static_cast<Word>(2 * k) - 1] = NewPROD(a.at(i, k), b.at(k, j));
    sum[static_cast<Word>(2 * k)] = cons1;
  }
  passWork(16 * n);
  return simpl(sum);
}

DAG range(std::int64_t n) { return simpl(new3(RANGE, cons1, simpl(NewInteger(n)))); }

// A row or column of the product is a plain vector.
DAG multiply(const View& a, const View& b) {
  if (a.columns() != b.rows()) KernelException("non matching dimensions for vector/matrix product");
  const std::int64_t rows = a.rows(), columns = b.columns();
  const bool hasRows = a.a.kind == matrixOfTable || !a.isRow, hasColumns = b.a.kind == matrixOfTable || b.isRow;
  if (!hasRows && !hasColumns) return elementOf(a, b, 1, 1);
  DAG ranges =
      hasRows && hasColumns ? new3(EXPSEQ, range(rows), range(columns)) : new2(EXPSEQ, range(hasRows ? rows : columns));
  DAG product = maketable(DAG(), simpl(ranges), TableKind::array);
  updategen(product);
  for (std::int64_t i = 1; i <= rows; ++i)
    for (std::int64_t j = 1; j <= columns; ++j) {
      DAG row = simpl(NewInteger(i)), column = simpl(NewInteger(j));
      DAG key = hasRows && hasColumns ? simpl(new3(EXPSEQ, row, column)) : hasRows ? row : column;
      storeEntry(key, product, elementOf(a, b, i, j));
    }
  return product;
}

DAG multiplyTables(const Operand& a, const Operand& b) {
  if (a.kind == matrixOfTable && b.kind == rowOfTable) KernelException("incorrect use of row vector in product");
  if (a.kind == columnOfTable && b.kind == matrixOfTable) KernelException("incorrect use of column vector in product");
  const bool vectors = a.kind != matrixOfTable && b.kind != matrixOfTable;
  if (vectors && a.kind == b.kind && a.kind != plainVector) KernelException("incorrect types of vectors in product");
  const bool isOuter = a.kind == columnOfTable && b.kind == rowOfTable;
  return multiply(View{a, !isOuter}, View{b, isOuter});
}

DAG MatrixMult(DAG x, DAG y) {
  Operand a{x, tableOf(x), plainVector, {}, {}}, b{y, tableOf(y), plainVector, {}, {}};
  if (!a.table || !b.table) return evalsysf("linalg/matmult", newSequence({x, y}));
  Dimensions(a);
  Dimensions(b);
  return multiplyTables(a, b);
}

}  // namespace

DAG builtin::inner(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 2) wrongParameters(call);
  DAG product = MatrixMult(call.arguments[1], call.arguments[2]);
  for (Word i = 3; i <= n; ++i) {
    updategen(product);
    product = MatrixMult(product, call.arguments[i]);
    collectInLoop();
  }
  return product;
}

}  // namespace korel
