#include "rtable/axes.h"

#include "eval/simplify/simplify.h"
#include "numbers/integer/integer.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

constexpr const char* upper = "upper";
constexpr const char* lower = "lower";
constexpr const char* strict = "strict";
const StorageAxis storageAxis[storageKindCount] = {
    // name          first    second   routine        ordered
    {"sparse",       nullptr, nullptr, "NagSparse",   false},
    {"empty",        nullptr, nullptr, "Empty",       false},
    {"diagonal",     nullptr, nullptr, "Diag",        true},
    {"band",         nullptr, nullptr, "Band",        true},
    {"rectangular",  nullptr, nullptr, "Rect",        true},
    {"triangular",   upper,   nullptr, "UppTri",      true},
    {"triangular",   upper,   strict,  "UppTriMinus", true},
    {"Hessenberg",   upper,   nullptr, "UppTriPlus",  true},
    {"triangular",   lower,   nullptr, "LowTri",      true},
    {"triangular",   lower,   strict,  "LowTriMinus", true},
    {"Hessenberg",   lower,   nullptr, "LowTriPlus",  true},
    {"scalar",       nullptr, nullptr, "Scalar",      false},
};

namespace {

// How a format of elements is written: `name[bytes]`; bytes 0 for those that go by objects.
struct DatatypeAxis {
  const char* name;
  std::int32_t bytes;
};
constexpr DatatypeAxis datatypeAxis[datatypeCount] = {
    // name      bytes
    {"",         0},
    {"complex",  0},
    {"integer",  1},
    {"integer",  2},
    {"integer",  4},
    {"integer",  8},
    {"float",    8},
    {"complex",  8},
};

struct SubtypeAxis {
  const char *word, *index;
};
constexpr SubtypeAxis subtypeAxis[] = {
    // word     index
    {"Array",  nullptr},
    {"Matrix", nullptr},
    {"Vector", "column"},
    {"Vector", "row"},
};

DAG indexed(const char* name, std::initializer_list<DAG> index) {
  DAG head = naminstall(name);
  return index.size() == 0 ? head : simpl(new3(TABLEREF, head, simpl(newSequence(index))));
}
DAG indexedByNames(const char* name, const char* first, const char* second) {
  if (first == nullptr) return naminstall(name);
  if (second == nullptr) return indexed(name, {naminstall(first)});
  return indexed(name, {naminstall(first), naminstall(second)});
}

}  // namespace

DAG storageValue(DAG r) {
  const StorageAxis& row = storageAxis[storageOf(r)];
  auto tail = [r](Word fromEnd) { return static_cast<std::int32_t>(rawField(r, lengthOf(r) - fromEnd)); };
  switch (storageOf(r)) {
    case storageBand: return indexed(row.name, {Newint(tail(2)), Newint(tail(1))});
    case storageSparse:
      return tail(1) == 0 ? naminstall(row.name) : indexed(row.name, {naminstall(tail(1) == 1 ? upper : lower)});
    default: return indexedByNames(row.name, row.first, row.second);
  }
}

DAG datatypeValue(Word datatype, DAG elementType) {
  const DatatypeAxis& row = datatypeAxis[datatype];
  switch (datatype) {
    case dataDag: return elementType ? elementType : ini("anything");
    case dataComplexFloat: return simpl(newCall(naminstall(row.name), {ini("sfloat")}));
    default: return indexed(row.name, {Newint(row.bytes)});
  }
}

DAG subtypeValue(Word subtype) {
  return indexedByNames(subtypeAxis[subtype].word, subtypeAxis[subtype].index, nullptr);
}
DAG subtypeWord(Word subtype) { return naminstall(subtypeAxis[subtype].word); }
DAG orderValue(Word order) { return naminstall(order == cOrder ? "C_order" : "Fortran_order"); }

}  // namespace korel
