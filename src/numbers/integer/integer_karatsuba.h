#pragma once
// Products in extended columns: the school method and Karatsuba's on digits of base 10000.
//
// A column is a digit position that holds a signed 32-bit value while products are being summed.
// Carries are passed on only when a column may overflow: a settled column lies below `KaraColMax`, and
// nine products of digits fit on top of that, so nine rows of ten run without a test. One pass of
// `SoftIntNormalize` makes digits of the columns in the end.
//
// Columns are never negative between the steps, and a carry never leaves the la + lb - 1 columns of the
// whole product, because its top column stays far below the ceiling.
//
// These routines need little scratch beside their operands. The packed products of integer_groups.h
// are faster (bench/integer_bench.cpp) but need memory in proportion; they are held against these.

#include <cstdint>

#include "store/dag.h"

namespace korel {

constexpr std::int32_t KaraColMax = 1073630000;  // 107363 * 10000
constexpr Word KaraCutoff = 16;                  // digits: below, the school method
constexpr Word karatsubaEntryLength = 26;        // words: below, `KaratsubaProduct` doesn't split

/// r[0..la+lb-1) = a * b in columns. Columns above b's lb digits are cleared by the caller. r may be b.
void KaraStdMulOver(const Word* a, const Word* b, Word* r, Word la, Word lb);
/// r[0..la+lb-1) += a * b in columns.
void KarStdMulAdd(const Word* a, const Word* b, Word* r, Word la, Word lb);
/// Sum of two digit arrays; gives its length, one more than the longer when a carry comes out.
Word KaraAdd(const Word* a, const Word* b, Word* r, Word la, Word lb);
/// y[0..n) += x[0..n) in columns.
void KarExtAdd(const Word* x, Word* y, Word n);
/// y[0..n) -= x[0..n) in columns, with m columns of y to borrow from.
void KarExtSub(const Word* x, Word* y, Word n, Word m);
/// r = a * b (clear) or r += a * b in columns; `buffer` has `CalcBufSize(la, lb)` words. `room`: columns
/// that r has, la + lb - 1 or more; what a carry has taken above the product is borrowed back from there.
void KarMulAdd(const Word* a, const Word* b, Word* r, Word la, Word lb, Word* buffer, bool clear, Word room);
/// Words of scratch that `KarMulAdd` needs for operands of x and y digits.
std::int64_t CalcBufSize(Word x, Word y);
/// The scratch object, of n words or more.
DAG KaraBufAlloc(Word n);

/// Product of heap integers that aren't zero, in `r` (length a + length b - 1 words), which may be b.
DAG KaratsubaProduct(DAG a, DAG b, DAG r);

}  // namespace korel
