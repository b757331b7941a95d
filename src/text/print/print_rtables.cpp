// Rtables: constructor, extents, the elements as nested lists, and the options that make it again.
//
// Elements are read straight from the data block for the storages in which a place follows from the
// index alone. Under the others (band, triangular, Hessenberg, sparse hardware numbers) the text
// holds extents and options only.

#include <algorithm>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "numbers/integer/integer.h"
#include "store/allocator.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

constexpr int maxDimensions = 63;

enum Storage : unsigned { sparse = 0, emptyStorage = 1, diagonal = 2, band = 3, rectangular = 4, scalar = 11 };
enum Subtype : unsigned { array = 0, matrix = 1, columnVector = 2, rowVector = 3 };
enum Datatype : unsigned {
  anyObject = 0,
  complexFloats = 1,
  integer8 = 2,
  integer16 = 3,
  integer32 = 4,
  integer64 = 5,
  float64 = 6,
  complex64 = 7
};

constexpr const char* subtypeNames[] = {"Array", "Matrix", "Vector[column]", "Vector[row]"};
constexpr const char* storageNames[] = {"sparse",
                                        "empty",
                                        "diagonal",
                                        "band",
                                        "rectangular",
                                        "triangular[upper]",
                                        "triangular[upper,strict]",
                                        "Hessenberg[upper]",
                                        "triangular[lower]",
                                        "triangular[lower,strict]",
                                        "Hessenberg[lower]",
                                        "scalar"};
constexpr const char* datatypeNames[] = {"",           "complex(sfloat)", "integer[1]", "integer[2]",
                                         "integer[4]", "integer[8]",      "float[8]",   "complex[8]"};

// The words of an RTABLE that its text depends on.
struct Shape {
  DAG object;
  unsigned dimensions, storage, subtype, datatype;
  bool rowsFirst, readOnly;

  explicit Shape(DAG r) : object(r) {
    dimensions = rtableFlag(r, rtableDimensions);
    readOnly = rtableFlag(r, rtableReadOnly) != 0;
    rowsFirst = rtableFlag(r, rtableOrder) != 0;
    storage = rtableFlag(r, rtableStorage);
    subtype = rtableFlag(r, rtableSubtype);
    datatype = rtableFlag(r, rtableDatatype);
  }
  std::int32_t lower(unsigned k) const { return signedField(rtableFirstBound + 2 * k); }
  std::int32_t upper(unsigned k) const { return signedField(rtableFirstBound + 2 * k + 1); }
  std::int64_t extent(unsigned k) const { return std::int64_t{upper(k)} - lower(k) + 1; }
  std::int32_t signedField(Word place) const { return static_cast<std::int32_t>(rawField(object, place)); }
  std::int32_t tail(Word fromEnd) const { return signedField(lengthOf(object) - fromEnd); }
  bool isHashed() const {
    return storage == sparse && datatype == anyObject && object[rtableElementType] != ini("sfloat");
  }
  bool isReadable() const { return storage == rectangular || storage == scalar || storage == diagonal || isHashed(); }
};

// ---- elements

template <class Element>
Element elementIn(const Shape& shape, std::int64_t offset) {
  Element element;
  std::memcpy(&element, rtableBlock(shape.object) + offset * sizeof element, sizeof element);
  return element;
}

DAG storedElement(const Shape& shape, std::int64_t offset) {
  struct DagPair {
    DAG real, imaginary;
  };
  struct DoublePair {
    double real, imaginary;
  };
  switch (shape.datatype) {
    case complexFloats: {
      auto parts = elementIn<DagPair>(shape, offset);
      return new3(COMPLEX, parts.real ? parts.real : cons0, parts.imaginary ? parts.imaginary : cons0);
    }
    case integer8: return Newint(elementIn<std::int8_t>(shape, offset));
    case integer16: return Newint(elementIn<std::int16_t>(shape, offset));
    case integer32: return Newint(elementIn<std::int32_t>(shape, offset));
    case integer64: return NewInteger(elementIn<std::int64_t>(shape, offset));
    case float64: return NewHFloat(elementIn<double>(shape, offset), false);
    case complex64: {
      auto parts = elementIn<DoublePair>(shape, offset);
      return new3(COMPLEX, NewHFloat(parts.real, false), NewHFloat(parts.imaginary, false));
    }
    default: {
      DAG element = elementIn<DAG>(shape, offset);
      return element ? element : cons0;
    }
  }
}

DAG hashedElement(const Shape& shape, const std::int32_t* index) {
  DAG table = shape.object[rtableData];
  if (!isObject(table)) return cons0;
  DAG key = newl2(shape.dimensions + 1, EXPSEQ);
  for (unsigned k = 0; k < shape.dimensions; ++k) key[k + 1] = Newint(index[k]);
  PairAddress pair = search(simpl(key).word, table);
  return pair == notFound ? cons0 : pairValue(pair);
}

DAG elementAt(const Shape& shape, const std::int32_t* index) {
  if (shape.isHashed()) return hashedElement(shape, index);
  if (shape.storage == scalar) return storedElement(shape, 0);
  if (shape.storage == diagonal) {
    std::int32_t largestLower = shape.lower(0);
    for (unsigned k = 1; k < shape.dimensions; ++k) {
      if (index[k] != index[0]) return cons0;
      largestLower = std::max(largestLower, shape.lower(k));
    }
    return storedElement(shape, index[0] - largestLower);
  }
  std::int64_t offset = 0;
  for (unsigned i = 0; i < shape.dimensions; ++i) {
    unsigned k = shape.rowsFirst ? i : shape.dimensions - 1 - i;
    offset = offset * shape.extent(k) + (index[k] - shape.lower(k));
  }
  return storedElement(shape, offset);
}

void printElement(DAG element) {
  if (isEmptySequence(element)) {
    EmitToken("''");
  } else {
    printObject(element, bindsNothing);
  }
}

// The elements whose first `k` indices are fixed, as lists within lists.
void printLists(const Shape& shape, std::int32_t* index, unsigned k) {
  if (k == shape.dimensions) {
    printElement(elementAt(shape, index));
    return;
  }
  EmitChar('[');
  for (std::int64_t i = shape.lower(k); i <= shape.upper(k); ++i) {
    if (i > shape.lower(k)) EmitChar(',');
    index[k] = static_cast<std::int32_t>(i);
    printLists(shape, index, k + 1);
  }
  EmitChar(']');
}

// ---- parts of the text

void printExtents(const Shape& shape) {
  for (unsigned k = 0; k < shape.dimensions; ++k) {
    if (shape.subtype == array) {
      EmitInteger(shape.lower(k));
      printBetweenBlanks("..");
      EmitInteger(shape.upper(k));
    } else {
      EmitInteger(shape.extent(k));
    }
    EmitChar(',');
  }
}

void printContents(const Shape& shape) {
  bool hasData = rawField(shape.object, rtableData) != 0;
  if (shape.dimensions == 0) {
    EmitToken("fill");
    printBetweenBlanks("=");
    printElement(hasData && shape.isReadable() ? storedElement(shape, 0) : cons0);
    EmitChar(',');
    return;
  }
  if (!shape.isReadable() || (!hasData && !shape.isHashed())) return;
  std::int32_t index[maxDimensions];
  printLists(shape, index, 0);
  EmitChar(',');
}

void printOption(const char* name, const char* value) {
  EmitToken(name);
  printBetweenBlanks("=");
  EmitToken(value);
}

void printOptionList(const char* name, DAG members, Word count) {
  EmitChar(',');
  EmitToken(name);
  printBetweenBlanks("=");
  EmitChar('[');
  for (Word i = 1; i <= count; ++i) {
    if (i > 1) printSeparator(", ");
    printObject(members[i], bindsNothing);
  }
  EmitChar(']');
}

void printStorage(const Shape& shape) {
  printOption("storage", storageNames[std::min<std::size_t>(shape.storage, scalar)]);
  if (shape.storage == band) {
    EmitChar('[');
    EmitInteger(shape.tail(2));
    EmitChar(',');
    EmitInteger(shape.tail(1));
    EmitChar(']');
  } else if (shape.storage == sparse) {
    constexpr std::int32_t upperHalf = 1, lowerHalf = 2;
    if (shape.tail(1) == upperHalf) EmitToken("[upper]");
    if (shape.tail(1) == lowerHalf) EmitToken("[lower]");
  }
}

void printOptions(const Shape& shape) {
  if (shape.datatype == anyObject) {
    EmitToken("datatype");
    printBetweenBlanks("=");
    printObject(shape.object[rtableElementType], bindsNothing);
  } else {
    printOption("datatype", datatypeNames[std::min<std::size_t>(shape.datatype, complex64)]);
  }
  EmitChar(',');
  printStorage(shape);
  EmitChar(',');
  printOption("order", shape.rowsFirst ? "C_order" : "Fortran_order");
  if (shape.readOnly) {
    EmitChar(',');
    EmitToken("readonly");
  }
  DAG attributes = shape.object[rtableAttributes], functions = shape.object[rtableFunctions];
  if (isSequence(attributes) && memberCount(attributes) > 0)
    printOptionList("attributes", attributes, memberCount(attributes));
  // The last member is the link of the ring of indexing functions.
  if (isSequence(functions) && memberCount(functions) > 1)
    printOptionList("shape", functions, memberCount(functions) - 1);
}

}  // namespace

void printRtable(DAG x, int, int) {
  Shape shape(x);
  EmitToken(subtypeNames[shape.subtype]);
  EmitChar('(');
  printExtents(shape);
  printContents(shape);
  printOptions(shape);
  EmitChar(')');
}

}  // namespace korel
