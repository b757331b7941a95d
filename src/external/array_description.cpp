#include "eval/simplify/simplify.h"
#include "external/type_tree.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "rtable/axes.h"
#include "rtable/indexing_functions.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool isWord(DAG x, const char* text) { return isText(x) && hasText(x, text); }

// ---- ranges

bool readEnd(DAG end, ArrayBound& bound) {
  if (isInteger(end)) {
    if (!FitIntoWord(end)) return false;
    bound.value = static_cast<std::int32_t>(LongLongValue(end));
    return true;
  }
  if (!isName(end)) return false;
  bound.variable = end;
  return true;
}

void addRange(ArrayDetails& a, DAG range) {
  if (a.ranges == static_cast<int>(maxDimensions)) userror("too many ARRAY parameters");
  ArrayBound* bounds = a.bounds + 2 * a.ranges;
  if (!readEnd(range[1], bounds[0])) KernelException("invalid left hand side of ARRAY range, %1", range[1]);
  if (!readEnd(range[2], bounds[1])) KernelException("Undefined variable, %1, in ARRAY range", range[2]);
  ++a.ranges;
}

// ---- options

// float[4] is no format of the kernel: its arrays are float[8] there.
bool takeFloat32(ArrayDetails& a, DAG type) {
  if (!isTag(type, TABLEREF) || !isWord(type[1], "float") || singleMember(type[2]) != immediate(4)) return false;
  a.isFloat32 = true;
  a.settings.datatype = dataFloat64;
  return true;
}

bool takeDatatype(ArrayDetails& a, DAG type) {
  return takeFloat32(a, type) || ParseHardwareDatatypeOption(type, a.settings);
}

void takeFunctions(ArrayDetails& a, DAG value) {
  DAG functions = isTag(value, LIST) ? value[1] : asSequence(value);
  for (Word i = 1; i < lengthOf(functions); ++i)
    if (!isNameOrIndexed(functions[i])) KernelException("unrecognized ARRAY option, %1", functions[i]);
  a.settings.functions = simpl(new3(EXPSEQ, a.settings.functions, functions));
}

// Whether the option is one of those that only arrays for C have.
bool takeOwnOption(ArrayDetails& a, DAG option) {
  if (isWord(option, "ANYTHING")) userror("invalid ARRAY option, ANYTHING");
  if (isWord(option, "COPY")) return a.copy = true;
  if (isWord(option, "NO_COPY")) return a.noCopy = true;
  if (!isTag(option, EQUATION) || !isText(option[1])) return false;
  DAG value = option[2];
  if (isWord(option[1], "COPY") || isWord(option[1], "NO_COPY")) {
    bool& flag = isWord(option[1], "COPY") ? a.copy : a.noCopy;
    if (value != ini("true") && value != ini("false")) KernelException("unrecognized ARRAY option, %1", option);
    flag = value == ini("true");
    return true;
  }
  if (isWord(option[1], "indfn")) {
    takeFunctions(a, value);
    return true;
  }
  return isWord(option[1], "datatype") && takeFloat32(a, value);
}

void takeOption(ArrayDetails& a, DAG option) {
  if (takeOwnOption(a, option) || (isTag(option, TABLEREF) && takeDatatype(a, option))) return;
  const bool isEquation = isTag(option, EQUATION);
  DAG word = isEquation ? option[1] : option;
  const bool isSettings =
      isEquation || isWord(option, "readonly") || isWord(option, "transpose") || isWord(option, "fill");
  if (isWord(word, "transpose")) userror("transpose is not a recognized ARRAY option");
  if (isWord(word, "fill")) userror("fill is not a recognized ARRAY option");
  if (isSettings && ParseRTableOption(option, a.settings)) {
    if (isWord(word, "subtype")) a.subtypeTold = true;
    return;
  }
  if (isEquation) KernelException("unrecognized ARRAY option, %1", option);
  // Whatever else is a name, or name[...], is an indexing function.
  if (isName(option) && ParseHardwareDatatypeOption(option, a.settings)) return;
  if (isName(option) || (isTag(option, TABLEREF) && isName(option[1]))) return takeFunctions(a, option);
  KernelException("unrecognized ARRAY option, %1", option);
}

}  // namespace

void parseArray(Node* node, DAG arguments) {
  ArrayDetails& a = *(node->array = newArrayDetails());
  const DAG untold = DAG();
  a.settings.elementType = untold;
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    if (isTag(arguments[i], RANGE)) addRange(a, arguments[i]);
    else takeOption(a, arguments[i]);
  }
  if (a.settings.datatype <= dataComplexFloat) {
    if (!a.settings.elementType) userror("ARRAY datatype must be specified");
    KernelException("ARRAY datatype=%1 is not a hardware datatype",
                    datatypeValue(a.settings.datatype, a.settings.elementType));
  }
  a.settings.elementType = ini("anything");
  a.settings.dimensions = a.ranges == 0 ? -1 : a.ranges;
  if (memberCount(a.settings.functions) != 0 && a.settings.storage == storageRectangular)
    a.settings.storage = StorageImpliedByIndFun(a.settings.functions, &a.settings.b1, &a.settings.b2);
}

}  // namespace korel
