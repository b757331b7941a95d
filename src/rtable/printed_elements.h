#pragma once
// What the printer asks of rtables: their elements, however they are stored, and whether they are laid out as a grid.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// The element as it is shown. An element that can't be read doesn't stop the printing: `?[index]` stands for it.
/// Hardware floats of rectangular storage come as HFLOAT. The empty sequence comes quoted.
DAG EvalSelectOneFromRTable(DAG r, const std::int32_t* index);

/// How an rtable looks at a screen.
enum class Appearance {
  plain,        // as its one-dimensional text: no or more than two dimensions, or no elements
  grid,         // rows and columns
  placeholder,  // too large for a screen: a note of what it is
};
struct RTableLayout {
  Appearance appearance;
  std::int64_t rows, columns;
};
/// `most` is the largest extent of a grid; 0 or less stands for any.
RTableLayout layoutOf(DAG r, std::int64_t most);
/// The element at a row and column of the grid, from 0.
DAG gridElement(DAG r, std::int64_t row, std::int64_t column);
/// The note: "1000 x 2000 Matrix, float[8], rectangular". At most `noteLength` characters and a zero.
constexpr int noteLength = 200;
void placeholderNote(DAG r, char* note);

}  // namespace korel
