#include "rtable/rtable_settings.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/indexing_functions.h"
#include "rtable/rtable_object.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

bool usesHardwareFloats() { return Environment->frame->envVars[envUseHardwareFloats] == ini("true"); }

RTableSettings CopyRTableSettings(DAG r, bool keepShape) {
  RTableSettings s;
  s.datatype = datatypeOf(r);
  s.elementType = r[rtableElementType];
  s.subtype = subtypeOf(r);
  s.order = isCOrder(r) ? cOrder : fortranOrder;
  s.attributes = r[rtableAttributes];
  if (!keepShape) return s;
  s.storage = storageOf(r);
  if (s.storage == storageBand) s.b1 = tailOf(r, 2);
  if (s.storage == storageSparse) s.b1 = static_cast<std::int32_t>(rawField(r, rtableCount));
  if (tailLength(s.storage) != 0) s.b2 = tailOf(r, 1);
  s.readOnly = rtableFlag(r, rtableReadOnly) != 0;
  s.foreign = rtableFlag(r, rtableForeign) != 0;
  s.dimensions = static_cast<int>(dimensionsOf(r));
  s.functions = indexingFunctions(r);
  return s;
}

namespace {

void setStorage(RTableSettings& s, Word storage) {
  s.storage = storage;
  s.b1 = -1;
  s.b2 = storage == storageSparse ? 0 : -1;
}

}  // namespace

void InheritRTableSettings(RTableSettings& settings, DAG r) {
  settings.datatype = datatypeOf(r);
  settings.elementType = r[rtableElementType];
  settings.subtype = subtypeOf(r);
  settings.order = isCOrder(r) ? cOrder : fortranOrder;
  if (storageOf(r) == storageSparse) setStorage(settings, storageSparse);
}

namespace {

bool isNamed(DAG x, const char* text) { return isName(x) && hasText(x, text); }
// The name of an option's value that may be indexed; 0 when it has none.
DAG baseOf(DAG value) {
  DAG base = isTag(value, TABLEREF) ? value[1] : value;
  return isName(base) ? base : DAG();
}

// ---- storage

void takeBand(RTableSettings& s, DAG value) {
  DAG widths = isTag(value, TABLEREF) ? asSequence(value[2]) : null;
  auto isWidth = [](DAG x) { return isInteger(x) && FitIntoWord(x); };
  if (memberCount(widths) != 2 || !everyMember(widths, isWidth)) KernelException("band expects two integer parameters");
  setStorage(s, storageBand);
  s.b1 = static_cast<std::int32_t>(LongLongValue(widths[1]));
  s.b2 = static_cast<std::int32_t>(LongLongValue(widths[2]));
}

// The row of the storage axis that is written so; the axis' length when none is.
Word rowFor(const char* name, const char* first, const char* second) {
  auto same = [](const char* a, const char* b) { return a == b || (a && b && std::strcmp(a, b) == 0); };
  Word row = 0;
  while (row < storageKindCount && !(same(storageAxis[row].name, name) && same(storageAxis[row].first, first) &&
                                     same(storageAxis[row].second, second)))
    ++row;
  return row;
}

void takeTriangular(RTableSettings& s, DAG value) {
  if (!isTag(value, TABLEREF)) KernelException("triangular[] storage expects parameters");
  DAG parts = asSequence(value[2]);
  const Word n = memberCount(parts);
  if (n == 0) KernelException("too few parameters to triangular[] storage");
  if (n > 2) KernelException("too many parameters to triangular[] storage");
  if (!everyMember(parts, isName)) KernelException("triangular[] storage expects name parameters");
  bool strict = false;
  const char* half = nullptr;
  bool bothHalves = false;
  for (Word i = 1; i <= n; ++i) {
    const bool isHalf = hasText(parts[i], "upper") || hasText(parts[i], "lower");
    if (!isHalf && !hasText(parts[i], "strict")) KernelException("unrecognized argument %1 to triangular[]", parts[i]);
    bothHalves |= isHalf && half != nullptr;
    if (isHalf) half = textOf(parts[i]);
    else strict = true;
  }
  if (n == 1 && half == nullptr) KernelException("invalid arguments %1 to triangular[]", parts[1]);
  if (n == 2 && (bothHalves || half == nullptr))
    KernelException("invalid arguments %1,%2 to triangular[]", parts[1], parts[2]);
  setStorage(s, rowFor("triangular", half, strict ? "strict" : nullptr));
}

void takeHessenberg(RTableSettings& s, DAG value) {
  DAG parts = isTag(value, TABLEREF) ? asSequence(value[2]) : null;
  if (memberCount(parts) != 1) KernelException("upper or lower expected for Hessenberg[] storage");
  if (!isNamed(parts[1], "upper") && !isNamed(parts[1], "lower"))
    KernelException("unrecognized argument %1 to Hessenberg[]", parts[1]);
  setStorage(s, rowFor("Hessenberg", textOf(parts[1]), nullptr));
}

void takeSparse(RTableSettings& s, DAG value) {
  setStorage(s, storageSparse);
  if (!isTag(value, TABLEREF)) return;
  DAG parts = asSequence(value[2]);
  for (Word i = memberCount(parts); i > 0; --i) {
    DAG part = parts[i];
    if (isInteger(part) && FitIntoWord(part) && LongLongValue(part) > 0)
      s.b1 = static_cast<std::int32_t>(LongLongValue(part));
    else if (isNamed(part, "upper")) s.b2 = upperSparse;
    else if (isNamed(part, "lower")) s.b2 = lowerSparse;
    else KernelException("unrecognized sparse storage qualifier, %1", part);
  }
}

struct IndexedStorage {
  const char* name;
  void (*take)(RTableSettings& s, DAG value);
};
constexpr IndexedStorage indexedStorages[] = {
    {"band", takeBand},
    {"triangular", takeTriangular},
    {"Hessenberg", takeHessenberg},
    {"sparse", takeSparse},
};

void takeStorage(RTableSettings& s, DAG value) {
  s.tellsStorage = true;
  DAG base = baseOf(value);
  if (!base) KernelException("unrecognized storage format, %1", value);
  for (const IndexedStorage& row : indexedStorages)
    if (hasText(base, row.name)) return row.take(s, value);
  const Word row = rowFor(textOf(base), nullptr, nullptr);
  if (row == storageKindCount) KernelException("unrecognized storage format, %1", value);
  if (isTag(value, TABLEREF)) KernelException("invalid index to %1 storage", base);
  setStorage(s, row);
}

// ---- data type

struct HardwareFormat {
  const char* name;
  const char *noInteger, *noSize;
  Word bySize[9];  // data type by the number of bytes; 0: none
};
constexpr HardwareFormat hardwareFormats[] = {
    {"integer",
     "n should be an integer for integer[n]",
     "n should be 1, 2, 4, or 8 for integer[n]",
     {0, dataInteger8, dataInteger16, 0, dataInteger32, 0, 0, 0, dataInteger64}},
    {"float",
     "n should be an integer for float[n]",
     "n should be 8 for float[n]",
     {0, 0, 0, 0, 0, 0, 0, 0, dataFloat64}},
    {"complex",
     "n should be an integer for complex[n]",
     "n should be 8 for complex[n]",
     {0, 0, 0, 0, 0, 0, 0, 0, dataComplexFloat64}},
};

Word sizedFormat(const HardwareFormat& row, DAG index) {
  DAG n = singleMember(index);
  if (isSequence(n) || !isInteger(n)) KernelException(row.noInteger);
  const std::int64_t size = FitIntoWord(n) ? LongLongValue(n) : 0;
  if (size < 1 || size > 8 || row.bySize[size] == 0) KernelException(row.noSize);
  return row.bySize[size];
}

void setDatatype(RTableSettings& s, Word datatype, DAG elementType) {
  s.datatype = datatype;
  s.elementType = elementType;
}

// complex(t), for the types of floats; false for any other type.
bool takeComplex(RTableSettings& s, DAG value) {
  if (!isTag(value, FUNCTION) || value[1] != ini("complex") || memberCount(value[2]) != 1) return false;
  DAG part = value[2][1];
  const bool plain = part == ini("float"), software = part == ini("sfloat");
  const bool sized = isTag(part, TABLEREF) && part[1] == ini("float");
  if (sized) setDatatype(s, sizedFormat(hardwareFormats[2], part[2]), ini("anything"));
  else if (plain && usesHardwareFloats()) setDatatype(s, dataComplexFloat64, ini("anything"));
  else if (plain || software) setDatatype(s, dataComplexFloat, ini("sfloat"));
  return sized || plain || software;
}

void takeDatatype(RTableSettings& s, DAG value) {
  if (ParseHardwareDatatypeOption(value, s) || takeComplex(s, value)) return;
  setDatatype(s, dataDag, value == ini("float") ? ini("sfloat") : value);
}

}  // namespace

bool ParseHardwareDatatypeOption(DAG value, RTableSettings& settings) {
  if (value == ini("float") && usesHardwareFloats()) {
    setDatatype(settings, dataFloat64, ini("anything"));
    return true;
  }
  if (!isTag(value, TABLEREF)) return false;
  if (!isName(value[1])) KernelException("unrecognized datatype option, %1", value);
  for (const HardwareFormat& row : hardwareFormats)
    if (hasText(value[1], row.name)) {
      setDatatype(settings, sizedFormat(row, value[2]), ini("anything"));
      return true;
    }
  return false;
}

namespace {

// ---- the other options

void takeSubtype(RTableSettings& s, DAG value) {
  DAG base = baseOf(value);
  if (!base) KernelException("bad subtype option: %1", value);
  DAG index = isTag(value, TABLEREF) ? singleMember(value[2]) : DAG();
  if (hasText(base, "Vector") && index) {
    if (!isNamed(index, "row") && !isNamed(index, "column")) KernelException("row or column expected for Vector index");
    s.subtype = isNamed(index, "row") ? subtypeRowVector : subtypeColumnVector;
  } else if (!index && hasText(base, "Array")) {
    s.subtype = subtypeArray;
  } else if (!index && hasText(base, "Matrix")) {
    s.subtype = subtypeMatrix;
  } else {
    KernelException("%1, %2, or %3[row|column] expected for subtype option", naminstall("Array"), ini("Matrix"),
                    ini("Vector"));
  }
}

void takeOrder(RTableSettings& s, DAG value) {
  const bool c = isNamed(value, "C_order");
  if (!c && !isNamed(value, "Fortran_order")) KernelException("C_order or Fortran_order expected for order option");
  s.order = c ? cOrder : fortranOrder;
}

bool truthOfOption(const char* name, DAG value) {
  if (value != ini("true") && value != ini("false"))
    KernelException("rhs of %1 must be true or false", naminstall(name));
  return value == ini("true");
}
void takeReadOnly(RTableSettings& s, DAG value) { s.readOnly = truthOfOption("readonly", value); }
void takeTranspose(RTableSettings& s, DAG value) { s.transpose = truthOfOption("transpose", value); }
// One indexing function, or a list of them: what prints so is read so.
void takeShape(RTableSettings& s, DAG value) {
  DAG functions = isTag(value, LIST) ? value[1] : asSequence(value);
  if (!everyMember(functions, [](DAG f) { return isName(f) || (isTag(f, TABLEREF) && isName(f[1])); }))
    KernelException("indexing function or list of them expected for shape option");
  s.functions = simpl(functions);
  if (!s.tellsStorage && memberCount(functions) > 0) s.storage = StorageImpliedByIndFun(s.functions, &s.b1, &s.b2);
}
void takeFill(RTableSettings& s, DAG value) { s.fill = value; }
void takeAttributes(RTableSettings& s, DAG value) {
  if (!isTag(value, LIST)) KernelException("list expected for right side of %1 option", naminstall("attributes"));
  s.attributes = value[1];
}

struct Option {
  const char* name;
  void (*take)(RTableSettings& s, DAG value);
};
constexpr Option options[] = {
    {"datatype", takeDatatype}, {"storage", takeStorage},       {"subtype", takeSubtype},
    {"order", takeOrder},       {"readonly", takeReadOnly},     {"transpose", takeTranspose},
    {"fill", takeFill},         {"attributes", takeAttributes}, {"shape", takeShape},
};

}  // namespace

bool readOption(DAG argument, Word subtype, OptionEquation& option) {
  if (isText(argument)) {
    option = {argument, ini("true")};
    return true;
  }
  if (!isTag(argument, EQUATION)) return false;
  if (!isText(argument[1])) KernelException("%1 option must be a name or string", subtypeWord(subtype));
  option = {argument[1], argument[2]};
  return true;
}

bool ParseRTableOption(DAG argument, RTableSettings& settings) {
  OptionEquation option;
  if (!readOption(argument, settings.subtype, option)) return false;
  for (const Option& row : options)
    if (hasText(option.name, row.name)) {
      row.take(settings, option.value);
      return true;
    }
  return false;
}

}  // namespace korel
