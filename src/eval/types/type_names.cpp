#include "eval/types/type_names.h"

#include <cmath>
#include <cstring>
#include <iterator>

#include "numbers/arithmetic.h"
#include "eval/statements/assign.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedures.h"
#include "library/repository/lookup.h"
#include "eval/simplify/simplify.h"
#include "numbers/complex/complex.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "eval/types/constant_expressions.h"
#include "eval/structure/operands.h"
#include "algebra/polynomial_types.h"
#include "eval/types/type_match.h"

namespace korel {

bool isPower(DAG x) {
  return isObject(x) && (hasTag(x, POWER) || (hasTag(x, PROD) && lengthOf(x) == 3));
}
bool hasZeroImaginaryPart(DAG complex) { return isZero(imaginaryPartOf(complex)); }
bool hasZeroRealPart(DAG complex) { return lengthOf(complex) == 2 || isZero(complex[1]); }

namespace {

bool isTagBetween(DAG x, Tag first, Tag last) {
  return isObject(x) && tagOf(x) >= first && tagOf(x) <= last;
}

// ---- numbers. A "number" is real: a tag up to HFLOAT.

bool isSpecial(DAG x) { return isInfinite(x) || isUndefined(x); }
bool isFiniteReal(DAG x) { return isNumeric(x) && !isSpecial(x); }
bool isNegativeNumber(DAG x) {
  return isTag(x, HFLOAT) ? std::signbit(hfloatValue(x)) : consneg(x);
}
/// -1, 0 or 1 by the sign of a number; 2 for a float undefined and for what is no number.
int signOf(DAG x) {
  if (isImmediate(x)) return immediateValue(x) < 0 ? -1 : immediateValue(x) > 0;
  if (!isNumeric(x) || isUndefined(x)) return 2;
  if (isZero(x)) return 0;
  return isNegativeNumber(x) ? -1 : 1;
}
bool hasNegativeZero(DAG x) {
  return isTag(x, HFLOAT) ? std::signbit(hfloatValue(x)) : isTag(x, FLOAT) && x[1] == consm0;
}
bool isRealInfinity(DAG x) { return isInfinite(x) && !isComplex(x); }

// ---- what a name or an indexed name stands for

// A table entry is looked up by evaluation, which may run procedures: they don't see the bindings of a
// match in progress.
DAG entryOf(DAG x) {
  if (!isTag(x, TABLEREF)) return x;
  SuspendedBindings suspended = suspendBindings();
  DAG lastName;
  DAG value = simpl(eval(x, &lastName));
  resumeBindings(suspended);
  return value;
}

// ---- the table

struct TypeRow {
  StandardName name;
  TypeTest matches;
};
constexpr TypeRow typeRows[] = {
    // name                e matches if
    {"anything",           [](DAG) { return true; }},
    // integers
    {"integer",            [](DAG e) { return isInteger(e); }},
    {"posint",             [](DAG e) { return isInteger(e) && signOf(e) == 1; }},
    {"negint",             [](DAG e) { return isInteger(e) && signOf(e) == -1; }},
    {"nonnegint",          [](DAG e) { return isInteger(e) && signOf(e) >= 0; }},
    {"nonposint",          [](DAG e) { return isInteger(e) && signOf(e) <= 0; }},
    {"even",               [](DAG e) { return isInteger(e) && !isodd(e); }},
    {"odd",                [](DAG e) { return isInteger(e) && isodd(e); }},
    // rationals and floats
    {"fraction",           [](DAG e) { return isTag(e, RATIONAL); }},
    {"rational",           [](DAG e) { return isRationalNumber(e); }},
    {"extended_rational",  [](DAG e) { return isRationalNumber(e) || e == ini("infinity") ||
                                              e == consminf || e == ini("undefined"); }},
    {"float",              [](DAG e) { return isTag(e, FLOAT) || isTag(e, HFLOAT); }},
    {"sfloat",             [](DAG e) { return isTag(e, FLOAT); }},
    {"numeric",            isFiniteReal},
    {"extended_numeric",   [](DAG e) { return isNumeric(e) || (isSpecial(e) && !isComplex(e)); }},
    // signs and zeros
    {"positive",           [](DAG e) { return signOf(e) == 1; }},
    {"negative",           [](DAG e) { return signOf(e) == -1; }},
    {"nonnegative",        [](DAG e) { return signOf(e) == 0 || signOf(e) == 1; }},
    {"nonpositive",        [](DAG e) { return signOf(e) <= 0; }},
    {"poszero",            [](DAG e) { return signOf(e) == 0 && !hasNegativeZero(e); }},
    {"negzero",            [](DAG e) { return signOf(e) == 0 && hasNegativeZero(e); }},
    // infinities and undefined values
    {"real_infinity",      isRealInfinity},
    {"pos_infinity",       [](DAG e) { return isRealInfinity(e) && !isNegativeNumber(e); }},
    {"neg_infinity",       [](DAG e) { return isRealInfinity(e) && isNegativeNumber(e); }},
    {"infinity",           [](DAG e) { return isInfinite(e); }},
    {"cx_infinity",        [](DAG e) { return isComplex(e) && isInfinite(e); }},
    {"cx_zero",            [](DAG e) { return isComplex(e) && isZero(e); }},
    {"undefined",          [](DAG e) { return isUndefined(e); }},
    {"finite",             [](DAG e) { return (isNumeric(e) || isComplex(e)) && !isSpecial(e); }},
    // complex numbers
    {"imaginary",          [](DAG e) { return isComplex(e) && lengthOf(e) == 2; }},
    {"embedded_real",      [](DAG e) { return isNumeric(e) || (isComplex(e) && hasZeroImaginaryPart(e)); }},
    {"embedded_imaginary", [](DAG e) { return isComplex(e) && hasZeroRealPart(e); }},
    {"embedded_axis",      [](DAG e) { return isNumeric(e) || (isComplex(e) &&
                                              (hasZeroImaginaryPart(e) || hasZeroRealPart(e))); }},
    {"nonreal",            [](DAG e) { return isComplex(e) && !hasZeroImaginaryPart(e); }},
    {"constant",           isDefinedConstant},
    // leaves
    {"literal",            [](DAG e) { return isImmediate(e) || isTagBetween(e, INTNEG, STRING); }},
    {"string",             [](DAG e) { return isTag(e, STRING); }},
    {"symbol",             [](DAG e) { return isTag(e, NAME); }},
    {"name",               [](DAG e) { return isTag(e, NAME) || isTag(e, TABLEREF); }},
    {"indexed",            [](DAG e) { return isTag(e, TABLEREF); }},
    {"function",           [](DAG e) { return isTag(e, FUNCTION); }},
    {"atomic",             [](DAG e) {
       if (isTag(e, NAME)) return !NAMED_TABLE(e);
       return isImmediate(e) || isTagBetween(e, INTNEG, TABLEREF) || isTag(e, PROC) ||
              isTag(e, MODDEF) || isTag(e, MODULE);
     }},
    {"algebraic",          [](DAG e) {
       return isImmediate(e) || (isTagBetween(e, INTNEG, UNEVAL) && !isTag(e, STRING));
     }},
    // truth and relations
    {"boolean",            [](DAG e) {
       return isTagBetween(e, EQUATION, OR) || e == ini("true") || e == ini("false") || e == ini("FAIL");
     }},
    {"relation",           [](DAG e) { return isTagBetween(e, EQUATION, LESSTHAN); }},
    {"equation",           [](DAG e) { return isTag(e, EQUATION); }},
    {"=",                  [](DAG e) { return isTag(e, EQUATION); }},
    {"<>",                 [](DAG e) { return isTag(e, INEQUAT); }},
    {"<",                  [](DAG e) { return isTag(e, LESSTHAN); }},
    {"<=",                 [](DAG e) { return isTag(e, LESSEQ); }},
    {"and",                [](DAG e) { return isTag(e, AND); }},
    {"or",                 [](DAG e) { return isTag(e, OR); }},
    {"not",                [](DAG e) { return isTag(e, NOT); }},
    // operations
    {"+",                  addition},
    {"*",                  multiplication},
    {"**",                 isPower},
    {"^",                  isPower},
    {"radical",            [](DAG e) { return isTag(e, PROD) && lengthOf(e) == 3 && isTag(e[2], RATIONAL); }},
    {"||",                 [](DAG e) { return isTag(e, CATENATE); }},
    {"::",                 [](DAG e) { return isTag(e, DCOLON); }},
    {"..",                 [](DAG e) { return isTag(e, RANGE); }},
    {"range",              [](DAG e) { return isTag(e, RANGE); }},
    {".",                  [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("."); }},
    {"!",                  [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("factorial"); }},
    {"uneval",             [](DAG e) { return isTag(e, UNEVAL); }},
    // collections
    {"list",               [](DAG e) { return isTag(e, LIST); }},
    {"set",                [](DAG e) { return isTag(e, SET); }},
    {"series",             [](DAG e) { return isTag(e, SERIES); }},
    {"sequential",         [](DAG e) { return isTag(e, LIST) || isTag(e, SET) || isTag(e, EXPSEQ); }},
    {"table",              [](DAG e) { return NAMED_TABLE(entryOf(e)); }},
    {"tabular",            [](DAG e) { return NAMED_TABLE(e) || isTag(e, RTABLE); }},
    {"indexable",          [](DAG e) {
       return isTag(e, LIST) || isTag(e, SET) || isTag(e, EXPSEQ) || isTag(e, STRING) ||
              isTag(e, RTABLE) || NAMED_TABLE(e);
     }},
    {"array",              [](DAG e) { return NAMED_ARRAY(entryOf(e)); }},
    {"Array",              [](DAG e) { return isTag(e, RTABLE) && ((rawField(e, 5) >> 26) & 3) == 0; }},
    {"rtable",             [](DAG e) { return isTag(e, RTABLE); }},
    {"hfarray",            IsHFArrayRTable},
    // polynomials
    {"polynom",            [](DAG e) { return typol(false, e, DAG(), noCoefficientLimit); }},
    {"ratpoly",            [](DAG e) { return typol(true, e, DAG(), noCoefficientLimit); }},
    {"zppoly",             [](DAG e) { return isTag(e, ZPPOLY); }},
    {"modp1",              [](DAG e) { return isTag(e, ZPPOLY) && !isTag(e[1], EXPSEQ); }},
    {"modp2",              [](DAG e) { return isTag(e, ZPPOLY) && isTag(e[1], EXPSEQ); }},
    {"evalgf1",            [](DAG e) { return isTag(e, ZPPOLY) && isTag(e[1], EXPSEQ); }},
    // programs
    {"procedure",          [](DAG e) { return NAMED_PROC(entryOf(e)); }},
    {"module",             [](DAG e) { return NAMED_MODULE(entryOf(e)); }},
    {"moduledefinition",   [](DAG e) { return isTag(e, MODDEF); }},
    {"protected",          [](DAG e) {
       if (!isTag(e, NAME)) return false;
       if ((controlWord(e) & deferredBit) != 0) RetrieveName(e);
       return isProtected(e[2]);
     }},
};
constexpr int typeRowCount = static_cast<int>(std::size(typeRows));
static_assert(typeRowCount == 86);

bool isFiledesc(DAG e) {
  return isTag(e, NAME) || isTag(e, STRING) || (isInteger(e) && signOf(e) >= 0);
}

// The rows by the first character of their name, `!` to `|`: those of character c stand in
// rows[first[c]] to rows[first[c + 1] - 1].
constexpr int firstCharacter = '!';
constexpr int characterCount = '|' - '!' + 1;
struct RowsByCharacter {
  unsigned char first[characterCount + 1] = {};
  unsigned char rows[typeRowCount] = {};
};
constexpr RowsByCharacter rowsByCharacter = [] {
  RowsByCharacter by;
  int at = 0;
  for (int c = 0; c < characterCount; ++c) {
    by.first[c] = static_cast<unsigned char>(at);
    for (int i = 0; i < typeRowCount; ++i)
      if (inistrings[typeRows[i].name.index][0] == c + firstCharacter)
        by.rows[at++] = static_cast<unsigned char>(i);
  }
  by.first[characterCount] = static_cast<unsigned char>(at);
  return by;
}();
static_assert(rowsByCharacter.first[characterCount] == typeRowCount);

// ---- types that a tag decides

struct TagRow {
  StandardName name;
  Tag tag;
};
constexpr TagRow tagRows[] = {
    // name        tag
    {"..",         RANGE},    {"range",    RANGE},    {"||",       CATENATE}, {"uneval",   UNEVAL},
    {"zppoly",     ZPPOLY},   {"series",   SERIES},   {"set",      SET},      {"rtable",   RTABLE},
    {"or",         OR},       {"and",      AND},      {"not",      NOT},      {"list",     LIST},
    {"indexed",    TABLEREF}, {"float",    FLOAT},    {"fraction", RATIONAL}, {"function", FUNCTION},
    {"equation",   EQUATION}, {"=",        EQUATION}, {"<",        LESSTHAN}, {"<=",       LESSEQ},
    {"<>",         INEQUAT},  {"::",       DCOLON},
};

// The same rules as in `typeRows`, for those types that ask for nothing but the tag.
struct TagSetRow {
  StandardName name;
  TagSet tags;
};
constexpr TagSetRow tagSetRows[] = {
    // name                tags
    {"integer",            integerTags},
    {"fraction",           TagSet{RATIONAL}},
    {"rational",           rationalTags},
    {"float",              floatTags},
    {"sfloat",             TagSet{FLOAT}},
    {"literal",            numberTags | TagSet{STRING}},
    {"string",             TagSet{STRING}},
    {"symbol",             TagSet{NAME}},
    {"name",               {NAME, TABLEREF}},
    {"indexed",            TagSet{TABLEREF}},
    {"function",           TagSet{FUNCTION}},
    {"algebraic",          algebraicTags},
    {"relation",           relationTags},
    {"equation",           TagSet{EQUATION}},
    {"=",                  TagSet{EQUATION}},
    {"<>",                 TagSet{INEQUAT}},
    {"<",                  TagSet{LESSTHAN}},
    {"<=",                 TagSet{LESSEQ}},
    {"and",                TagSet{AND}},
    {"or",                 TagSet{OR}},
    {"not",                TagSet{NOT}},
    {"||",                 TagSet{CATENATE}},
    {"::",                 TagSet{DCOLON}},
    {"..",                 TagSet{RANGE}},
    {"range",              TagSet{RANGE}},
    {"uneval",             TagSet{UNEVAL}},
    {"list",               TagSet{LIST}},
    {"set",                TagSet{SET}},
    {"series",             TagSet{SERIES}},
    {"sequential",         collectionTags},
    {"rtable",             TagSet{RTABLE}},
    {"zppoly",             TagSet{ZPPOLY}},
    {"moduledefinition",   TagSet{MODDEF}},
};

}  // namespace

TypeTest builtinType(DAG name) {
  const char* text = textOf(name);
  int c = text[0] - firstCharacter;
  if (c < 0 || c >= characterCount) return nullptr;
  for (int i = rowsByCharacter.first[c]; i < rowsByCharacter.first[c + 1]; ++i) {
    const TypeRow& row = typeRows[rowsByCharacter.rows[i]];
    if (name == ini(row.name)) return row.matches;
  }
  return text[0] == 'f' && std::strcmp(text, "filedesc") == 0 ? isFiledesc : nullptr;
}

Tag typesel(DAG name) {
  for (const TagRow& row : tagRows)
    if (name == ini(row.name)) return row.tag;
  return NOTAG;
}

TagSet tagsOfType(DAG name) {
  for (const TagSetRow& row : tagSetRows)
    if (name == ini(row.name)) return row.tags;
  return {};
}

bool IsNotSet(DAG x) {
  if (isImmediate(x)) return true;
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING:
    case DCOLON: case SERIES: case ZPPOLY: case LIST: case PROC: case RANGE: case TABLE: case RTABLE:
    case MODDEF: case MODULE:
      return true;
    default: return false;  // a name, a call or an operation may yet become a set
  }
}

bool IsHFArrayRTable(DAG x) {
  constexpr Word hardwareFloat = 6, rectangular = 4;
  if (!isTag(x, RTABLE)) return false;
  Word flags = rawField(x, 5);
  // The last member of the indexing functions closes their ring.
  return flags >> 28 == hardwareFloat && ((flags >> 22) & 15) == rectangular && lengthOf(x[3]) == 2;
}

}  // namespace korel
