#include "eval/types/type_names.h"

#include <cmath>
#include <cstring>
#include <iterator>

#include "algebra/polynomial_types.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/structure/operands.h"
#include "eval/types/constant_expressions.h"
#include "eval/types/type_match.h"
#include "library/repository/lookup.h"
#include "library/retrieve.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/integer/integer_functions.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

bool isPower(DAG x) { return isObject(x) && (hasTag(x, POWER) || (hasTag(x, PROD) && lengthOf(x) == 3)); }
bool hasZeroImaginaryPart(DAG complex) { return isZero(imaginaryPartOf(complex)); }
bool hasZeroRealPart(DAG complex) { return lengthOf(complex) == 2 || isZero(complex[1]); }

namespace {

// ---- numbers. A "number" is real: a tag up to HFLOAT.

bool isSpecial(DAG x) { return isInfinite(x) || isUndefined(x); }
bool isFiniteReal(DAG x) { return isNumeric(x) && !isSpecial(x); }
bool isNegativeNumber(DAG x) { return isTag(x, HFLOAT) ? std::signbit(hfloatValue(x)) : consneg(x); }
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

/// A modular polynomial in two indeterminates.
bool isBivariate(DAG x) { return isTag(x, ZPPOLY) && isSequence(x[1]); }

// ---- the table

// A test; and the tags that decide the type alone, none for a type that needs more than the tag.
struct TypeRule {
  TypeTest matches;
  TagSet tags;

  template <class Test>
  constexpr TypeRule(Test test, TagSet decisive = {}) : matches(test), tags(decisive) {}
};
template <TagSet tags>
constexpr TypeRule byTag{[](DAG e) { return isAmong(e, tags); }, tags};

struct TypeRow {
  StandardName name;
  TypeRule rule;
};
constexpr TypeRow typeRows[] = {
    // name                e matches if
    {"anything",           [](DAG) { return true; }},
    // integers
    {"integer",            {[](DAG e) { return isInteger(e); }, integerTags}},
    {"posint",             [](DAG e) { return isInteger(e) && signOf(e) == 1; }},
    {"negint",             [](DAG e) { return isInteger(e) && signOf(e) == -1; }},
    {"nonnegint",          [](DAG e) { return isInteger(e) && signOf(e) >= 0; }},
    {"nonposint",          [](DAG e) { return isInteger(e) && signOf(e) <= 0; }},
    {"even",               [](DAG e) { return isInteger(e) && !isodd(e); }},
    {"odd",                [](DAG e) { return isInteger(e) && isodd(e); }},
    // rationals and floats
    {"fraction",             byTag<TagSet{RATIONAL}>},
    {"rational",           {[](DAG e) { return isRationalNumber(e); }, rationalTags}},
    {"extended_rational",  [](DAG e) { return isRationalNumber(e) || e == ini("infinity") ||
                                              e == consminf || e == ini("undefined"); }},
    {"float",                byTag<floatTags>},
    {"sfloat",               byTag<TagSet{FLOAT}>},
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
    {"literal",              byTag<numberTags | TagSet{STRING}>},
    {"string",               byTag<TagSet{STRING}>},
    {"symbol",               byTag<TagSet{NAME}>},
    {"name",                 byTag<TagSet{NAME, TABLEREF}>},
    {"indexed",              byTag<TagSet{TABLEREF}>},
    {"function",             byTag<TagSet{FUNCTION}>},
    {"atomic",             [](DAG e) {
       if (isTag(e, NAME)) return !NAMED_TABLE(e);
       return isAmong(e, tagsBetween(INTNEG, TABLEREF) | TagSet{PROC, MODDEF, MODULE});
     }},
    {"algebraic",            byTag<algebraicTags>},
    // truth and relations
    {"boolean",            [](DAG e) {
       return isAmong(e, relationTags | booleanTags) || e == ini("true") || e == ini("false") || e == ini("FAIL");
     }},
    {"relation",             byTag<relationTags>},
    {"equation",             byTag<TagSet{EQUATION}>},
    {"=",                    byTag<TagSet{EQUATION}>},
    {"<>",                   byTag<TagSet{INEQUAT}>},
    {"<",                    byTag<TagSet{LESSTHAN}>},
    {"<=",                   byTag<TagSet{LESSEQ}>},
    {"and",                  byTag<TagSet{AND}>},
    {"or",                   byTag<TagSet{OR}>},
    {"not",                  byTag<TagSet{NOT}>},
    // operations
    {"+",                  addition},
    {"*",                  multiplication},
    {"**",                 isPower},
    {"^",                  isPower},
    {"radical",            [](DAG e) { return isTag(e, PROD) && lengthOf(e) == 3 && isTag(e[2], RATIONAL); }},
    {"||",                   byTag<TagSet{CATENATE}>},
    {"::",                   byTag<TagSet{DCOLON}>},
    {"..",                   byTag<TagSet{RANGE}>},
    {"range",                byTag<TagSet{RANGE}>},
    {".",                  [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("."); }},
    {"!",                  [](DAG e) { return isTag(e, FUNCTION) && e[1] == ini("factorial"); }},
    {"uneval",               byTag<TagSet{UNEVAL}>},
    // collections
    {"list",                 byTag<TagSet{LIST}>},
    {"set",                  byTag<TagSet{SET}>},
    {"series",               byTag<TagSet{SERIES}>},
    {"sequential",           byTag<collectionTags>},
    {"table",              [](DAG e) { return NAMED_TABLE(entryOf(e)); }},
    {"tabular",            [](DAG e) { return NAMED_TABLE(e) || isTag(e, RTABLE); }},
    {"indexable",          [](DAG e) {
       return isAmong(e, collectionTags | TagSet{STRING, RTABLE}) || NAMED_TABLE(e);
     }},
    {"array",              [](DAG e) { return NAMED_ARRAY(entryOf(e)); }},
    {"Array",              isArrayRTable},
    {"rtable",               byTag<TagSet{RTABLE}>},
    {"hfarray",            IsHFArrayRTable},
    // polynomials
    {"polynom",            [](DAG e) { return typol(PolynomialForm::polynomial, e, DAG(), anyCoefficient); }},
    {"ratpoly",            [](DAG e) { return typol(PolynomialForm::rationalFunction, e, DAG(), anyCoefficient); }},
    {"zppoly",               byTag<TagSet{ZPPOLY}>},
    {"modp1",              [](DAG e) { return isTag(e, ZPPOLY) && !isSequence(e[1]); }},
    {"modp2",              isBivariate},
    {"evalgf1",            isBivariate},
    // programs
    {"procedure",          [](DAG e) { return NAMED_PROC(entryOf(e)); }},
    {"module",             [](DAG e) { return NAMED_MODULE(entryOf(e)); }},
    {"moduledefinition",     byTag<TagSet{MODDEF}>},
    {"protected",          [](DAG e) {
       if (!isTag(e, NAME)) return false;
       if ((controlWord(e) & deferredBit) != 0) RetrieveName(e);
       return isProtected(e[2]);
     }},
};
constexpr int typeRowCount = static_cast<int>(std::size(typeRows));
static_assert(typeRowCount == 86);

bool isFiledesc(DAG e) { return isText(e) || (isInteger(e) && signOf(e) >= 0); }

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
      if (inistrings[typeRows[i].name.index][0] == c + firstCharacter) by.rows[at++] = static_cast<unsigned char>(i);
  }
  by.first[characterCount] = static_cast<unsigned char>(at);
  return by;
}();
static_assert(rowsByCharacter.first[characterCount] == typeRowCount);

const TypeRow* rowOf(DAG name) {
  int c = textOf(name)[0] - firstCharacter;
  if (c < 0 || c >= characterCount) return nullptr;
  for (int i = rowsByCharacter.first[c]; i < rowsByCharacter.first[c + 1]; ++i) {
    const TypeRow& row = typeRows[rowsByCharacter.rows[i]];
    if (name == ini(row.name)) return &row;
  }
  return nullptr;
}

}  // namespace

TypeTest builtinType(DAG name) {
  if (const TypeRow* row = rowOf(name)) return row->rule.matches;
  return textOf(name)[0] == 'f' && hasText(name, "filedesc") ? isFiledesc : nullptr;
}

TagSet tagsOfType(DAG name) {
  const TypeRow* row = rowOf(name);
  return row != nullptr ? row->rule.tags : TagSet();
}

bool IsNotSet(DAG x) {
  // A name, a call or an operation may yet become a set.
  constexpr TagSet neverSets =
      numberTags | TagSet{STRING, DCOLON, SERIES, ZPPOLY, LIST, PROC, RANGE, TABLE, RTABLE, MODDEF, MODULE};
  return isAmong(x, neverSets);
}

}  // namespace korel
