#include "rtable/offsets.h"

namespace korel {

namespace {

using Number = std::int64_t;

// ---- rectangular

Number oneDimension(DAG r, const std::int32_t* index) { return Number{index[0]} - lowerBound(r, 0); }

template <RTableOrder order>
Number twoDimensions(DAG r, const std::int32_t* index) {
  const Number i = Number{index[0]} - lowerBound(r, 0), j = Number{index[1]} - lowerBound(r, 1);
  return order == fortranOrder ? i + extentOf(r, 0) * j : i * extentOf(r, 1) + j;
}

template <RTableOrder order>
Number manyDimensions(DAG r, const std::int32_t* index) {
  const Word n = dimensionsOf(r);
  Number offset = 0;
  for (Word step = 0; step < n; ++step) {
    Word k = order == fortranOrder ? n - 1 - step : step;
    offset = offset * extentOf(r, k) + (index[k] - Number{lowerBound(r, k)});
  }
  return offset;
}

Number onlyCell(DAG, const std::int32_t*) { return 0; }

Number diagonal(DAG r, const std::int32_t* index) {
  for (Word k = 1, n = dimensionsOf(r); k < n; ++k)
    if (index[k] != index[0]) return notStored;
  return dimensionsOf(r) == 0 ? 0 : Number{index[0]} - 1;
}

// ---- two dimensions from 1, in the order of Fortran: i, j of r rows and c columns

using Formula = Number (*)(Number i, Number j, Number r);

Number upper(Number i, Number j, Number r) {
  if (i > j) return notStored;
  return (r < j ? r * (2 * j - r - 1) / 2 : j * (j - 1) / 2) + i - 1;
}
Number upperPlus(Number i, Number j, Number r) {
  if (i > j + 1) return notStored;
  return (r < j ? r * (2 * j - r + 1) / 2 : j * (j + 1) / 2) + i - 2;
}
Number upperMinus(Number i, Number j, Number r) {
  if (i >= j) return notStored;
  return (r < j ? r * (2 * j - r - 3) / 2 : (j - 2) * (j - 1) / 2) + i - 1;
}
Number lower(Number i, Number j, Number r) { return i < j ? notStored : (j - 1) * (2 * r - j + 2) / 2 + i - j; }
Number lowerPlus(Number i, Number j, Number r) {
  if (j > i + 1) return notStored;
  return i < j ? (j - 1) * (2 * r - j + 2) / 2 + 2 * i - j : (j - 1) * (2 * r - j + 4) / 2 + i - j;
}
Number lowerMinus(Number i, Number j, Number r) { return i <= j ? notStored : (j - 1) * (2 * r - j) / 2 + i - j - 1; }

template <RTableOrder order, Formula formula, Formula mirrored>
Number triangle(DAG r, const std::int32_t* index) {
  return order == fortranOrder ? formula(index[0], index[1], upperBound(r, 0))
                               : mirrored(index[1], index[0], upperBound(r, 1));
}

// Diagonal after diagonal, each in as many slots as the matrix has rows; b1 of them below the main one.
Number bandFormula(Number i, Number j, Number r, Number b1, Number b2) {
  return i - j > b1 || j - i > b2 ? notStored : i - 1 + r * (j - i + b1);
}
template <RTableOrder order>
Number band(DAG r, const std::int32_t* index) {
  const Number b1 = tailOf(r, 2), b2 = tailOf(r, 1);
  return order == fortranOrder ? bandFormula(index[0], index[1], upperBound(r, 0), b1, b2)
                               : bandFormula(index[1], index[0], upperBound(r, 1), b2, b1);
}

// ---- by storage and order

template <RTableOrder order>
constexpr OffsetFunction triangles[] = {
    triangle<order, upper, lower>,            // triangular[upper]
    triangle<order, upperMinus, lowerMinus>,  // triangular[upper,strict]
    triangle<order, upperPlus, lowerPlus>,    // Hessenberg[upper]
    triangle<order, lower, upper>,            // triangular[lower]
    triangle<order, lowerMinus, upperMinus>,  // triangular[lower,strict]
    triangle<order, lowerPlus, upperPlus>,    // Hessenberg[lower]
};

template <RTableOrder order>
OffsetFunction functionFor(Word storage, Word n) {
  switch (storage) {
    case storageRectangular: return n == 1 ? oneDimension : n == 2 ? twoDimensions<order> : manyDimensions<order>;
    case storageDiagonal: return diagonal;
    case storageBand: return band<order>;
    case storageScalar: return onlyCell;
    default: return triangles<order>[storage - storageUpper];
  }
}

}  // namespace

OffsetFunction offsetFunction(DAG r) {
  const Word storage = storageOf(r), n = dimensionsOf(r);
  return isCOrder(r) ? functionFor<cOrder>(storage, n) : functionFor<fortranOrder>(storage, n);
}

std::int64_t mirroredOffset(DAG r, const std::int32_t* index) {
  const std::int32_t mirrored[] = {index[1], index[0]};
  if (!isWithinBounds(r, 0, mirrored[0]) || !isWithinBounds(r, 1, mirrored[1])) return notStored;
  return offsetOf(r, mirrored);
}

}  // namespace korel
