#include <gtest/gtest.h>
#include <set>

#include "kernel_fixture.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/offsets.h"
#include "rtable/selection.h"

namespace korel::test {

namespace {

DAG made(Word storage, RTableOrder order, std::int32_t rows, std::int32_t columns, std::int32_t b1, std::int32_t b2) {
  RTableSettings settings;
  settings.storage = storage;
  settings.order = order;
  settings.dimensions = 2;
  settings.b1 = b1;
  settings.b2 = b2;
  std::int32_t bounds[2 * maxDimensions] = {1, rows, 1, columns};
  return RTableCreate(settings, DAG(), bounds, DataMode::initialised);
}

bool isKept(Word storage, std::int32_t i, std::int32_t j, std::int32_t b1, std::int32_t b2) {
  switch (storage) {
    case storageDiagonal: return i == j;
    case storageBand: return i - j <= b1 && j - i <= b2;
    case storageUpper: return i <= j;
    case storageStrictUpper: return i < j;
    case storageUpperHessenberg: return i <= j + 1;
    case storageLower: return i >= j;
    case storageStrictLower: return i > j;
    case storageLowerHessenberg: return j <= i + 1;
    default: return true;
  }
}

}  // namespace

// Each stored position has a cell of its own within the count; but for bands, whose diagonals keep unused slots, no
// cell is left over.
TEST(Offsets, EachStoredPositionOnce) {
  for (Word storage = storageDiagonal; storage <= storageLowerHessenberg; ++storage)
    for (RTableOrder order : {fortranOrder, cOrder})
      for (std::int32_t rows = 0; rows <= 6; ++rows)
        for (std::int32_t columns = 0; columns <= 6; ++columns) {
          DAG r = made(storage, order, rows, columns, 1, 2);
          const bool isBand = storage == storageBand;
          const std::int32_t b1 = isBand ? tailOf(r, 2) : 0, b2 = isBand ? tailOf(r, 1) : 0;
          std::set<std::int64_t> cells;
          std::size_t kept = 0;
          forEachIndex(boundsOf(r), 2, [&](const std::int32_t* index) {
            const std::int64_t cell = offsetOf(r, index);
            ASSERT_EQ(cell >= 0, isKept(storage, index[0], index[1], b1, b2))
                << storage << " at " << index[0] << ", " << index[1] << " of " << rows << " by " << columns;
            if (cell >= 0) cells.insert(cell);
            kept += cell >= 0;
          });
          EXPECT_EQ(cells.size(), kept) << storage << " " << order << " " << rows << " by " << columns;
          if (!cells.empty()) {
            EXPECT_LT(*cells.rbegin(), std::int64_t{rawField(r, rtableCount)});
          }
          if (!isBand) {
            EXPECT_EQ(cells.size(), rawField(r, rtableCount)) << storage << rows << columns;
          }
        }
}

// Columns of an upper triangle follow one another.
TEST(Offsets, UpperTriangleByColumns) {
  DAG square = made(storageUpper, fortranOrder, 3, 3, 0, 0), wide = made(storageUpper, fortranOrder, 2, 3, 0, 0);
  auto at = [](DAG r, std::int32_t i, std::int32_t j) {
    const std::int32_t index[] = {i, j};
    return offsetOf(r, index);
  };
  EXPECT_EQ(at(square, 1, 1) + 10 * at(square, 1, 2) + 100 * at(square, 2, 3), 410);
  EXPECT_EQ(at(wide, 1, 3) * 10 + at(wide, 2, 3), 34);
}

TEST(Offsets, RoutinesAreNamedByTheAxes) {
  auto name = [](const char* rtable, bool assigns) {
    char text[routineNameLength + 1];
    accessRoutineName(valueOf(rtable), assigns, text);
    return std::string(text);
  };
  EXPECT_EQ(name("rtable(1..2,1..2)", false), "selectTWODRectFortran");
  EXPECT_EQ(name("rtable(symmetric,1..2,1..2,order=C_order)", true), "assignSymmetricTWODUppTriC");
  EXPECT_EQ(name("rtable(scalar[3],1..2,1..2,storage=sparse)", false), "selectScalarTWODKorelSparse");
  EXPECT_EQ(name("rtable(1..2,datatype=integer[4],storage=sparse)", true), "assignONEDNagSparse");
  EXPECT_EQ(name("rtable(symmetric,zero,1..2,1..2)", true), "assignSymmetricTWODChained");
  EXPECT_EQ(name("rtable()", true) + name("rtable(1..1,storage=empty)", false), "assignZERODselectEmpty");
}

}  // namespace korel::test
