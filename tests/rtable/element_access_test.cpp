// Every storage, format, order, rank and shape against a plain model: a map from index to value, and the rules of one
// shape each.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/complex/complex.h"
#include "numbers/float/float.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/selection.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel::test {

namespace {

using Index = std::vector<std::int32_t>;

struct Model {
  std::string shape;  // "" for none
  bool symmetric = false;
  int sign = 1;  // of the mirrored element
  std::map<Index, int> cells;

  // What the shape tells of a position, before any storage; nothing where it leaves the element open.
  std::optional<int> fixedAt(const Index& x) const {
    const bool diagonal = std::all_of(x.begin(), x.end(), [&](std::int32_t i) { return i == x[0]; });
    const int i = x[0], j = x.size() > 1 ? x[1] : 0;
    auto zeroIf = [](bool outside) { return outside ? std::optional<int>(0) : std::nullopt; };
    if (shape == "zero") return 0;
    if (shape == "identity") return diagonal ? 1 : 0;
    if (shape == "scalar[3]") return diagonal ? 3 : 0;
    if (shape == "scalar[2,7]") return i == 2 ? 7 : 0;
    if (shape == "unit[2]") return i == 2 ? 1 : 0;
    if (shape == "diagonal") return zeroIf(!diagonal);
    if (shape == "triangular[upper]") return zeroIf(j < i);
    if (shape == "triangular[lower]") return zeroIf(j > i);
    if (shape == "triangular[upper,unit]") return diagonal ? 1 : zeroIf(j < i);
    if (shape == "triangular[lower,unit]") return diagonal ? 1 : zeroIf(j > i);
    if (shape == "Hessenberg[upper]") return zeroIf(j + 1 < i);
    if (shape == "Hessenberg[lower]") return zeroIf(i + 1 < j);
    if (shape == "band[1,2]") return zeroIf(i - j > 1 || j - i > 2);
    if (shape == "skewsymmetric") return zeroIf(diagonal);
    if (shape == "symmetric,triangular[upper]") return zeroIf(!diagonal);
    return std::nullopt;
  }
  int read(const Index& x) const {
    if (auto fixed = fixedAt(x)) return *fixed;
    auto cell = cells.find(x);
    return cell == cells.end() ? 0 : cell->second;
  }
  bool write(const Index& x, int value) {
    if (auto fixed = fixedAt(x)) return value == *fixed;
    cells[x] = value;
    if (symmetric && x[0] != x[1]) cells[{x[1], x[0]}] = sign * value;
    return true;
  }
};

struct Combination {
  const char* shape;
  Word storage;
  int rank;
};
// Storages that hold all that the shape leaves open.
constexpr Combination combinations[] = {
    {"", storageRectangular, 1},
    {"", storageRectangular, 2},
    {"", storageRectangular, 3},
    {"", storageSparse, 1},
    {"", storageSparse, 2},
    {"", storageSparse, 3},
    {"symmetric", storageUpper, 2},
    {"symmetric", storageLower, 2},
    {"symmetric", storageRectangular, 2},
    {"symmetric", storageSparse, 2},
    {"skewsymmetric", storageStrictUpper, 2},
    {"skewsymmetric", storageStrictLower, 2},
    {"skewsymmetric", storageRectangular, 2},
    {"skewsymmetric", storageSparse, 2},
    {"triangular[upper]", storageUpper, 2},
    {"triangular[upper]", storageRectangular, 2},
    {"triangular[upper]", storageSparse, 2},
    {"triangular[lower]", storageLower, 2},
    {"triangular[lower]", storageRectangular, 2},
    {"triangular[upper,unit]", storageStrictUpper, 2},
    {"triangular[lower,unit]", storageStrictLower, 2},
    {"triangular[upper,unit]", storageRectangular, 2},
    {"Hessenberg[upper]", storageUpperHessenberg, 2},
    {"Hessenberg[lower]", storageLowerHessenberg, 2},
    {"Hessenberg[lower]", storageRectangular, 2},
    {"diagonal", storageDiagonal, 2},
    {"diagonal", storageRectangular, 2},
    {"band[1,2]", storageBand, 2},
    {"band[1,2]", storageRectangular, 2},
    {"identity", storageEmpty, 2},
    {"identity", storageRectangular, 2},
    {"zero", storageEmpty, 2},
    {"zero", storageRectangular, 1},
    {"zero", storageSparse, 3},
    {"identity", storageEmpty, 3},
    {"identity", storageSparse, 2},
    {"diagonal", storageRectangular, 1},
    {"diagonal", storageRectangular, 3},
    {"diagonal", storageDiagonal, 3},
    {"diagonal", storageSparse, 2},
    {"scalar[3]", storageEmpty, 2},
    {"scalar[3]", storageRectangular, 2},
    {"scalar[3]", storageScalar, 2},
    {"scalar[3]", storageDiagonal, 2},
    {"scalar[2,7]", storageEmpty, 1},
    {"scalar[2,7]", storageRectangular, 1},
    {"unit[2]", storageEmpty, 1},
    {"unit[2]", storageRectangular, 1},
    {"unit[2]", storageSparse, 1},
    {"hermitian", storageUpper, 2},
    {"hermitian", storageRectangular, 2},
    {"hermitian", storageLower, 2},
    {"symmetric", storageUpperHessenberg, 2},
    {"skewsymmetric", storageLowerHessenberg, 2},
    {"triangular[upper]", storageUpperHessenberg, 2},
    {"band[1,2]", storageSparse, 2},
    {"Hessenberg[upper]", storageSparse, 2},
    {"symmetric,triangular[upper]", storageRectangular, 2},
};

DAG rtableFor(const Combination& combination, Word datatype, Word order, int side) {
  RTableSettings settings;
  settings.storage = combination.storage;
  settings.datatype = datatype;
  settings.order = order;
  settings.dimensions = combination.rank;
  settings.b1 = combination.storage == storageBand ? 1 : -1;
  settings.b2 = combination.storage == storageBand ? 2 : 0;
  if (combination.shape[0] != 0) settings.functions = simpl(asSequence(valueOf(combination.shape)));
  std::int32_t bounds[2 * maxDimensions];
  for (int k = 0; k < combination.rank; ++k) {
    bounds[2 * k] = 1;
    bounds[2 * k + 1] = side;
  }
  return RTableCreate(settings, DAG(), bounds, DataMode::initialised);
}

std::string errorOfStore(DAG r, const Index& index, int value) {
  return errorOf([&] { assignElement(r, index.data(), immediate(value)); });
}

// An element as the number that it is, whatever the format.
double numberAt(DAG r, const Index& index) {
  DAG value = selectElement(r, index.data());
  return FloatValue(simpl(cxRealPart(value)));
}

void agreesWithModel(const Combination& combination, Word datatype, Word order, std::mt19937& random) {
  constexpr int side = 5;
  DAG r = rtableFor(combination, datatype, order, side);
  Model model{combination.shape, false, 1, {}};
  model.symmetric = model.shape == "symmetric" || model.shape == "hermitian" || model.shape == "skewsymmetric";
  if (model.shape == "skewsymmetric") model.sign = -1;
  auto draw = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  for (int step = 0; step < 250; ++step) {
    Index index(static_cast<std::size_t>(combination.rank));
    for (auto& i : index) i = 1 + draw(side);
    char name[routineNameLength + 1];
    accessRoutineName(r, true, name);
    if (draw(2) == 0) {
      const int value = draw(3) == 0 ? draw(2) : draw(200) - 100;
      std::string message = errorOfStore(r, index, value);
      ASSERT_EQ(message.empty(), model.write(index, value)) << name << " " << value << ": " << message;
    }
    ASSERT_EQ(numberAt(r, index), model.read(index)) << name << " datatype " << datatype << " at " << index[0];
  }
  forEachIndex(boundsOf(r), dimensionsOf(r), [&](const std::int32_t* at) {
    Index index(at, at + combination.rank);
    ASSERT_EQ(numberAt(r, index), model.read(index)) << combination.shape << " " << combination.storage;
  });
}

}  // namespace

// Random stores and reads; a refused store changes nothing.
TEST(ElementAccess, AgreesWithAPlainModel) {
  constexpr unsigned seed = 20261125;
  std::mt19937 random(seed);
  for (const Combination& combination : combinations)
    for (Word datatype = 0; datatype < datatypeCount; ++datatype)
      for (Word order : {fortranOrder, cOrder}) {
        agreesWithModel(combination, datatype, order, random);
        if (::testing::Test::HasFatalFailure()) return;
      }
}

// The limits of the integer formats, from outside: the last value that fits and the first that doesn't.
TEST(ElementAccess, LimitsOfFormats) {
  struct Limit {
    const char *type, *least, *most, *below, *above;
  };
  constexpr Limit limits[] = {
      {"integer[1]", "-128", "127", "-129", "128"},
      {"integer[2]", "-32768", "32767", "-32769", "32768"},
      {"integer[4]", "-2147483648", "2147483647", "-2147483649", "2147483648"},
      {"integer[8]", "-9223372036854775808", "9223372036854775807", "-9223372036854775809", "9223372036854775808"},
  };
  for (const Limit& limit : limits) {
    std::string type = limit.type;
    say(("A := rtable(1..1, datatype=" + type + "):").c_str());
    for (const char* value : {limit.least, limit.most}) {
      say((std::string("A[1] := ") + value + ":").c_str());
      EXPECT_EQ(evaluated("A[1]"), value);
    }
    for (const char* value : {limit.below, limit.above, "1/2", "1.5", "x", "Float(infinity)", "Float(undefined)"}) {
      std::string said = say((std::string("A[1] := ") + value + ":").c_str());
      EXPECT_EQ(said.substr(0, 22), "Error, unable to store") << type << " " << value;
      EXPECT_EQ(evaluated("A[1]"), limit.most);
    }
  }
}

// A mirrored write whose second half fails leaves the first as it was.
TEST(ElementAccess, BothHalvesOrNone) {
  say("`index/odd` := proc(i, r, v) if nargs = 2 then r[op(i)] elif i[1] > i[2] then error \"no\" "
      "else r[op(i)] := op(v) end if end proc:");
  say("A := rtable(symmetric, odd, 1..2, 1..2, {(1, 1) = 7}, storage=sparse):");
  EXPECT_EQ(say("A[2,1] := 5;"), "Error, (in `index/odd`) no");
  EXPECT_EQ(say("A[1,2] := 5;"), "Error, (in `index/odd`) no");
  EXPECT_EQ(evaluated("A[1,2], A[2,1], A[1,1]"), "0, 0, 7");
}

}  // namespace korel::test
