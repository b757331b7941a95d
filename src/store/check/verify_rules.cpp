#include "store/check/verify_rules.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "store/allocator.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/standard_names.h"
#include "store/tag_facts.h"

namespace korel {

namespace {

constexpr std::int32_t largestSeriesPower = 4000000;
constexpr std::int32_t lowestParam = -2;  // 0, -1 and -2 are `nargs`, `args` and `procname`

// ---- words for messages

const void* pointer(DAG x) { return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(x.word)); }

// Tag of a reference that may be anything; NOTAG when it is no readable object.
Tag kindOf(DAG x) {
  if (isImmediate(x) || isReadableObject(x)) return tagOf(x);
  return NOTAG;
}
bool is(DAG x, Tag tag) { return kindOf(x) == tag; }

const char* tagName(Tag tag) {
  const char* name = DagIDToName(static_cast<Word>(tagNumber(tag)));
  return name == nullptr ? "object" : name;
}
const char* nameOfTag(DAG x) { return tagName(kindOf(x)); }

// Length of an object whose header is not to be trusted.
Word boundedLength(DAG s) {
  Word length = lengthOf(s);
  if (s == static_hfloat) return length < 3 ? length : 3;
  Word room = (historage - s.word) / 4;
  return length < room ? length : room;
}

// The function's name in messages about calls.
struct FunctionText {
  char text[200];
  explicit FunctionText(DAG call) {
    DAG f = call[1];
    if (is(f, NAME) && boundedLength(f) > 3)
      std::snprintf(text, sizeof text, "%.*s", static_cast<int>(4 * (boundedLength(f) - 3)), textOf(f));
    else std::snprintf(text, sizeof text, "%s", nameOfTag(f));
  }
};

[[gnu::format(printf, 2, 3)]] bool fail(Finding& finding, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(finding.text, sizeof finding.text, format, arguments);
  va_end(arguments);
  return false;
}

// ---- what a message is made of

// The values that a message shows, in order. Index, word and kind (its tag's name) are the component's.
enum Shown {
  showObject,
  showWord,
  showObjectTag,
  showObjectIndexTag,
  showObjectWord,
  showObjectWordTag,
  showObjectWordFunction,
  showObjectFunction,
  showObjectKind,
  showObjectKindTag,
  showObjectKindFunction,
  showObjectIndexKind,
  showObjectKindIndexTag,
};

struct Message {
  const char* format;
  Shown shown;
};

bool failWith(Finding& finding, const Message& message, DAG s, Word i) {
  const void* object = pointer(s);
  const char* tag = tagName(tagOf(s));
  const char* kind = nameOfTag(s[i]);
  const void* word = pointer(s[i]);
  long index = static_cast<long>(i);
  char* text = finding.text;
  constexpr auto size = sizeof finding.text;
  const char* format = message.format;
  switch (message.shown) {
    case showObject: std::snprintf(text, size, format, object); break;
    case showWord: std::snprintf(text, size, format, word); break;
    case showObjectTag: std::snprintf(text, size, format, object, tag); break;
    case showObjectIndexTag: std::snprintf(text, size, format, object, index, tag); break;
    case showObjectWord: std::snprintf(text, size, format, object, word); break;
    case showObjectWordTag: std::snprintf(text, size, format, object, word, tag); break;
    case showObjectWordFunction: std::snprintf(text, size, format, object, word, FunctionText(s).text); break;
    case showObjectFunction: std::snprintf(text, size, format, object, FunctionText(s).text); break;
    case showObjectKind: std::snprintf(text, size, format, object, kind); break;
    case showObjectKindTag: std::snprintf(text, size, format, object, kind, tag); break;
    case showObjectKindFunction: std::snprintf(text, size, format, object, kind, FunctionText(s).text); break;
    case showObjectIndexKind: std::snprintf(text, size, format, object, index, kind); break;
    case showObjectKindIndexTag: std::snprintf(text, size, format, object, kind, index, tag); break;
  }
  return false;
}

// ---- lengths

// Words behind the fixed fields that the flags of an rtable announce.
Word rtableLength(DAG s) {
  Word flags = rawField(s, 5);
  Word dimensions = flags & 0x3f;
  Word storage = (flags >> 22) & 0xf;
  bool hasTail = storage == 0 || storage == 3;  // sparse, band
  return 2 * dimensions + (hasTail ? 9 : 7);
}

bool isTextLength(DAG s, Word length) {
  return textLength(strnlen(textOf(s), 4 * std::uint64_t{length - 3})) == length;
}

bool hasGoodLength(DAG s) {
  const TagFacts& rule = factsOf(tagOf(s));
  Word length = lengthOf(s);
  if (length < rule.least || length > rule.most) return false;
  if (rule.parity != LengthParity::any && (length & 1) != (rule.parity == LengthParity::odd ? 1 : 0)) return false;
  switch (tagOf(s)) {
    case NAME: case STRING: return isTextLength(s, length);
    case HASHTAB: return ((length - 1) & (length - 2)) == 0;  // a power of 2 of buckets
    case RTABLE: return length == rtableLength(s);
    default: return true;
  }
}

// ---- raw fields

bool isGoodInteger(DAG s) {
  Word length = lengthOf(s);
  for (Word i = 1; i < length; ++i)
    if (rawField(s, i) > 9999) return false;
  if (!isSimplified(s)) return true;
  // Canonical: no leading zero, and too large for an immediate.
  if (rawField(s, length - 1) == 0) return false;
  if (length > 4) return true;
  std::int64_t magnitude = 0;
  for (Word i = length; i-- > 1;) magnitude = 10000 * magnitude + rawField(s, i);
  return magnitude > maxImmediate;
}

bool checkSeries(DAG s, Finding& finding) {
  for (Word i = 3; i < lengthOf(s); i += 2) {
    auto power = static_cast<std::int32_t>(rawField(s, i));
    if (power > largestSeriesPower || power < -largestSeriesPower)
      return fail(finding, "s=%p, s[%ld]=%ld, unbelievably large SERIES power", pointer(s), static_cast<long>(i),
                  static_cast<long>(power));
  }
  return true;
}

bool checkPosition(DAG s, Finding& finding) {
  auto number = static_cast<std::int32_t>(rawField(s, 1));
  long shown = number;
  switch (tagOf(s)) {
    case LOCAL: return number >= 1 || fail(finding, "s=%p, s[1]=%ld, invalid LOCAL number", pointer(s), shown);
    case PARAM:
      return number >= lowestParam || fail(finding, "s=%p, s[1]=%ld, invalid PARAM number", pointer(s), shown);
    default: return number != 0 || fail(finding, "s=%p, s[1]=%ld, invalid LEXICAL number", pointer(s), shown);
  }
}

constexpr Message invalidComponent = {"s=%p, invalid component %ld of %s", showObjectIndexTag};
constexpr Message invalidChain = {"s=%p, invalid HASH chain", showObject};

bool checkRawFields(DAG s, Finding& finding) {
  switch (tagOf(s)) {
    case INTNEG: case INTPOS:
      return isGoodInteger(s) || fail(finding, "s=%p, invalid %s", pointer(s), tagName(tagOf(s)));
    case HFLOAT:
      // A double lies at a multiple of 8.
      if ((s.word + 4) % 8 == 0) return true;
      describeBadAddress(s, finding);
      return false;
    case STRING: return rawField(s, 1) == 0 || failWith(finding, invalidComponent, s, 1);
    case SERIES: return checkSeries(s, finding);
    case LOCAL: case PARAM: case LEXICAL: return checkPosition(s, finding);
    case HASH:
      // The last pair is always empty: scans end there.
      return rawField(s, lengthOf(s) - 2) == 0 || failWith(finding, invalidChain, s, 1);
    default: return true;
  }
}

// ---- kinds of components

bool isNumber(DAG x) { return kindOf(x) != NOTAG && isNumeric(x); }
bool isWholeNumber(DAG x) { return kindOf(x) != NOTAG && isInteger(x); }
bool isSequence(DAG x) { return is(x, EXPSEQ); }
bool isName(DAG x) { return is(x, NAME); }
bool isText(DAG x) { return is(x, STRING); }
bool isTable(DAG x) { return is(x, HASHTAB); }
bool isChain(DAG x) { return is(x, HASH); }
bool isNoSequence(DAG x) { return !isSequence(x); }
bool isDefinition(DAG x) { return is(x, MODDEF); }
bool isRememberTable(DAG x) { return x == null || isTable(x); }
// A definition inside a procedure is named by a variable of it.
bool isDefinitionName(DAG x) {
  return x == null || isName(x) || (kindOf(x) != NOTAG && frameReferenceTags.contains(kindOf(x)));
}
bool isSaveArgument(DAG x) { return isSequence(x) || isName(x) || isText(x); }
bool isIndeterminate(DAG x) { return isName(x) || is(x, TABLEREF) || isSequence(x); }

bool isFloatExponent(DAG x) { return isWholeNumber(x) || x == ini("infinity") || x == ini("undefined"); }

bool isNegativeInfinity(DAG x) {
  return is(x, SUM) && boundedLength(x) == 3 && x[1] == ini("infinity") && x[2] == consm1;
}
// What is only known to be bounded, as a part of (-1)^infinity.
bool isBounded(DAG x) {
  return is(x, NAME) && std::strncmp(textOf(x), "bdd_undefined", 4 * (boundedLength(x) - 3)) == 0;
}
bool isComplexPart(DAG x) {
  return isNumber(x) || x == ini("infinity") || x == ini("undefined") || isNegativeInfinity(x) || isBounded(x);
}

bool isDeclaration(DAG x) { return isName(x) || is(x, DCOLON); }
bool isOption(DAG x) { return isName(x) || (is(x, EQUATION) && boundedLength(x) == 3 && isName(x[1]) && isName(x[2])); }
// Pairs of a name and a reference.
bool isLexicalSequence(DAG x) { return isSequence(x) && (lengthOf(x) & 1) == 1; }
// Before simplification a list may stand around the locals.
DAG localSequence(DAG x) { return is(x, LIST) && boundedLength(x) >= 2 ? x[1] : x; }
bool isLocalSequence(DAG x) { return isSequence(localSequence(x)); }
bool isMapping(DAG x) { return isName(x) || is(x, MEMBER) || is(x, EQUATION); }

bool isTarget(DAG x) {
  switch (kindOf(x)) {
    case NAME: case MEMBER: case TABLEREF: case DCOLON: case CATENATE: case FUNCTION: case LOCAL: case PARAM:
    case LEXICAL:
      return true;
    default: return false;
  }
}
bool isAssignable(DAG x) {
  if (!isSequence(x)) return isTarget(x);
  for (Word i = 1; i < boundedLength(x); ++i)
    if (!isTarget(x[i])) return false;
  return true;
}

constexpr Word everyField = 0;
enum Strictness { always, simplified };

// What may stand in a field.
struct KindRule {
  Tag tag;
  Word field;
  Strictness when;
  bool (*accepts)(DAG component);
  Message message;
};

constexpr KindRule kindRules[] = {
    // tag   field       when        accepts            message
    {RATIONAL, everyField, always, isWholeNumber, {"s=%p, ID(s[%ld])=%s, invalid RATIONAL", showObjectIndexKind}},
    {FLOAT, 1, always, isWholeNumber, {"s=%p, ID(s[%ld])=%s, invalid FLOAT", showObjectIndexKind}},
    {FLOAT, 2, always, isFloatExponent, {"s=%p, ID(s[%ld])=%s, invalid FLOAT", showObjectIndexKind}},
    {COMPLEX, everyField, always, isComplexPart, {"s=%p, ID(s[%ld])=%s, invalid COMPLEX", showObjectIndexKind}},
    {MEMBER, 2, always, isName, {"s=%p, unexpected %s member of MEMBER", showObjectKind}},
    {TABLEREF, 2, simplified, isSequence, {"s=%p, unexpected %s index of TABLEREF", showObjectKind}},
    {ZPPOLY, 1, always, isIndeterminate, {"s=%p, unexpected %s component %ld of %s", showObjectKindIndexTag}},
    {ZPPOLY, 2, always, isWholeNumber, {"s=%p, unexpected %s component %ld of %s", showObjectKindIndexTag}},
    {FUNCTION, 2, always, isSequence, {"s=%p, unexpected %s argument to FUNCTION %s", showObjectKindFunction}},
    {EXPSEQ, everyField, simplified, isNoSequence, {"s=%p, unexpected EXPSEQ body of EXPSEQ", showObject}},
    {LIST, 1, simplified, isSequence, {"s=%p, unexpected %s body of %s", showObjectKindTag}},
    {SET, 1, simplified, isSequence, {"s=%p, unexpected %s body of %s", showObjectKindTag}},
    {TABLE, 3, simplified, isTable, {"s=%p, unexpected %s table of TABLE", showObjectKind}},
    {RTABLE, 3, always, isSequence, {"s=%p, unexpected %s indFn field of RTABLE", showObjectKind}},
    {HASHTAB, everyField, always, isChain, invalidChain},

    {PROC, 1, always, isSequence, {"s=%p, s[1]=%p invalid PROC parameter sequence", showObjectWord}},
    {PROC, 2, always, isLocalSequence, {"s=%p, s[2]=%p invalid PROC local sequence", showObjectWord}},
    {PROC, 3, always, isSequence, {"s=%p, s[3]=%p invalid PROC option sequence", showObjectWord}},
    {PROC, 4, always, isRememberTable, {"s=%p, s[4]=%p invalid PROC remember table", showObjectWord}},
    {PROC, 6, always, isSequence, {"s=%p, s[6]=%p invalid PROC description sequence", showObjectWord}},
    {PROC, 7, always, isSequence, {"s=%p, s[7]=%p invalid PROC global sequence", showObjectWord}},
    {PROC, 8, always, isLexicalSequence, {"s=%p, s[8]=%p invalid PROC lexical sequence", showObjectWord}},

    {MODDEF, 1, always, isSequence, {"s=%p, s[1]=%p invalid MODDEF parameter sequence", showObjectWord}},
    {MODDEF, 2, always, isLocalSequence, {"s=%p, s[2]=%p invalid MODDEF local sequence", showObjectWord}},
    {MODDEF, 3, always, isSequence, {"s=%p, s[3]=%p invalid MODDEF option sequence", showObjectWord}},
    {MODDEF, 4, always, isSequence, {"s=%p, s[4]=%p invalid MODDEF export sequence", showObjectWord}},
    {MODDEF, 6, always, isSequence, {"s=%p, s[6]=%p invalid MODDEF description sequence", showObjectWord}},
    {MODDEF, 7, always, isSequence, {"s=%p, s[7]=%p invalid MODDEF global sequence", showObjectWord}},
    {MODDEF, 8, always, isLexicalSequence, {"s=%p, s[8]=%p invalid MODDEF lexical sequence", showObjectWord}},
    {MODDEF, 9, always, isDefinitionName, {"s=%p, s[9]=%p invalid MODDEF name", showObjectWord}},

    {MODULE, 1, always, isSequence, {"s=%p, unexpected %s exports of MODULE", showObjectKind}},
    {MODULE, 2, always, isDefinition, {"s=%p, unexpected %s moddef of MODULE", showObjectKind}},
    {MODULE, 3, always, isSequence, {"s=%p, invalid MODULE locals", showObject}},

    {ASSIGN, 1, always, isAssignable, {"s=%p, unexpected %s lhs of ASSIGN", showObjectKind}},
    {SAVE, 1, simplified, isSaveArgument, {"s=%p, unexpected %s argument of SAVE", showObjectKind}},
    {USE, 1, always, isSequence, {"s=%p, unexpected %s mapping list of USE", showObjectKind}},
};

// What may be a member of a sequence that stands in a field. Messages show the object, the member's
// position and its word.
struct MemberRule {
  Tag tag;
  Word field;
  bool (*accepts)(DAG member);
  const char* format;
};

constexpr MemberRule memberRules[] = {
    // tag  field  accepts     format
    {PROC, 1, isDeclaration, "s=%p, s[1][%d]=%p invalid PROC parameter"},
    {PROC, 2, isDeclaration, "s=%p, t[%d]=%p invalid PROC local"},
    {PROC, 3, isOption, "s=%p, s[3][%d]=%p invalid PROC option"},
    {PROC, 6, isText, "s=%p, s[6][%d]=%p invalid PROC description"},
    {PROC, 7, isName, "s=%p, s[7][%d]=%p invalid PROC global"},
    {MODDEF, 1, isDeclaration, "s=%p, s[1][%d]=%p invalid MODDEF parameter"},
    {MODDEF, 2, isDeclaration, "s=%p, t[%d]=%p invalid MODDEF local"},
    {MODDEF, 3, isOption, "s=%p, s[3][%d]=%p invalid MODDEF option"},
    {MODDEF, 4, isDeclaration, "s=%p, s[4][%d]=%p invalid MODDEF export"},
    {MODDEF, 6, isText, "s=%p, s[6][%d]=%p invalid MODDEF description"},
    {MODDEF, 7, isName, "s=%p, s[7][%d]=%p invalid MODDEF global"},
    {MODULE, 1, isName, "s=%p, s[7][%d]=%p invalid MODULE export"},
    {MODULE, 3, isName, "s=%p, s[7][%d]=%p invalid MODULE local"},
    {USE, 1, isMapping, "s=%p, s[1][%d]=%p invalid USE mapping"},
};

constexpr Message nonNumeric = {"s=%p, unexpected %s component %ld of %s", showObjectKindIndexTag};

// The handlers of a `try`: pairs from field 2, and one more sequence where the length is odd.
bool isCatchField(DAG s, Word i) { return i >= 2 && (i & 1) == 0 && i + 1 < lengthOf(s); }

bool checkCatch(DAG s, Word i, Finding& finding) {
  DAG strings = s[i];
  if (isText(strings)) return true;
  if (!isSequence(strings))
    return fail(finding, "s=%p, s[%d]=%p, unexpected %s catch string", pointer(s), static_cast<int>(i),
                pointer(strings), nameOfTag(strings));
  for (Word j = 1; j < boundedLength(strings); ++j)
    if (!isText(strings[j]))
      return fail(finding, "s=%p, s[%d][%d]=%p, unexpected %s catch string", pointer(s), static_cast<int>(i),
                  static_cast<int>(j), pointer(strings[j]), nameOfTag(strings[j]));
  return true;
}

bool checkMembers(DAG s, Word i, const MemberRule& rule, Finding& finding) {
  DAG sequence = rule.field == 2 ? localSequence(s[i]) : s[i];
  for (Word j = 1; j < boundedLength(sequence); ++j) {
    if (rule.accepts(sequence[j])) continue;
    std::snprintf(finding.text, sizeof finding.text, rule.format, pointer(s), static_cast<int>(j),
                  pointer(sequence[j]));
    return false;
  }
  return true;
}

// ---- the whole

// Parts of a complex number that may stand beside each other although their tags differ.
bool isExactPart(DAG x) {
  Tag kind = kindOf(x);
  return kind != FLOAT && kind != HFLOAT;
}

bool checkComplexPair(DAG s, Finding& finding) {
  if (lengthOf(s) == 2 || kindOf(s[1]) == kindOf(s[2])) return true;
  if (isExactPart(s[1]) && isExactPart(s[2])) return true;
  return fail(finding, "s=%p, COMPLEX type mismatch: ID(s[1])=%s, ID(s[2])=%s", pointer(s), nameOfTag(s[1]),
              nameOfTag(s[2]));
}

// The members of a canonical set ascend by their signed words.
bool checkSetOrder(DAG s, Finding& finding) {
  DAG body = s[1];
  if (!isSimplified(s) || !isSequence(body)) return true;
  for (Word i = 2; i < boundedLength(body); ++i)
    if (static_cast<std::int32_t>(body[i - 1].word) >= static_cast<std::int32_t>(body[i].word))
      return failWith(finding, {"s=%p, invalid %s operand", showObjectTag}, s, 1);
  return true;
}

bool checkCoefficients(DAG s, Finding& finding) {
  Word length = lengthOf(s);
  if (hasRawCoefficients(s)) {
    auto modulus = static_cast<Word>(immediateValue(s[2]));
    for (Word i = 3; i < length; ++i)
      if (rawField(s, i) >= modulus) return failWith(finding, invalidComponent, s, i);
    if (length > 3 && rawField(s, length - 1) == 0) return failWith(finding, invalidComponent, s, length - 1);
    return true;
  }
  // With several indeterminates a coefficient is a polynomial itself.
  if (isSequence(s[1])) return true;
  for (Word i = 3; i < length; ++i)
    if (!isWholeNumber(s[i]) || kindOf(s[i]) == INTNEG) return failWith(finding, nonNumeric, s, i);
  return true;
}

// ---- what a bad component means

struct ComponentRule {
  Tag tag;
  Word field;
  Message message;
};

constexpr ComponentRule componentRules[] = {
    // tag  field  message
    {FLOAT, 3, {"s=%p, s[ATTR]=%p, invalid FLOAT attribute", showObjectWord}},
    {STRING, 2, {"s=%p, s[ATTR]=%p, invalid STRING attribute", showObjectWord}},
    {NAME, 1, {"s=%p, s[VAL]=%p, invalid NAME value", showObjectWord}},
    {NAME, 2, {"s=%p, s[ATTR]=%p, invalid NAME attribute", showObjectWord}},
    {MEMBER, 1, {"s=%p, invalid MEMBER module", showObject}},
    {MEMBER, 2, {"s=%p, invalid MEMBER member", showObject}},
    {TABLEREF, 1, {"s=%p, invalid TABLEREF name", showObject}},
    {TABLEREF, 2, {"s=%p, invalid TABLEREF index", showObject}},
    {TABLEREF, 3, {"s=%p, s[ATTR]=%p, invalid TABLEREF attribute", showObjectWord}},
    {SERIES, everyField, {"s=%p, invalid component %ld of SERIES", showObjectIndexTag}},
    {FUNCTION, 1, {"s=%p, invalid FUNCTION name", showObject}},
    {FUNCTION, 2, {"s=%p, invalid argument to FUNCTION %s", showObjectFunction}},
    {FUNCTION, 3, {"s=%p, s[ATTR]=%p, invalid attribute of FUNCTION %s", showObjectWordFunction}},
    {UNEVAL, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {NOT, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {READ, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {ERROR, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {RETURN, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {EXPSEQ, everyField, {"s=%p, invalid component %ld of EXPSEQ", showObjectIndexTag}},
    {LIST, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {LIST, 2, {"s=%p, s[ATTR]=%p, invalid %s attribute", showObjectWordTag}},
    {SET, 1, {"s=%p, invalid %s operand", showObjectTag}},
    {SET, 2, {"s=%p, s[ATTR]=%p, invalid %s attribute", showObjectWordTag}},
    {PROC, everyField, {"s=%p, invalid component %ld of PROC", showObjectIndexTag}},
    {MODDEF, everyField, {"s=%p, invalid component %ld of MODDEF", showObjectIndexTag}},
    {MODULE, 1, {"s=%p, invalid MODULE exports", showObject}},
    {MODULE, 2, {"s=%p, invalid MODULE moddef", showObject}},
    {MODULE, 3, {"s=%p, invalid MODULE locals", showObject}},
    {TABLE, 1, {"s=%p, invalid TABLE index function", showObject}},
    {TABLE, 2, {"s=%p, invalid TABLE bounds", showObject}},
    {TABLE, 3, {"s=%p, invalid TABLE hash table", showObject}},
    {HASHTAB, everyField, invalidChain},
    {ASSIGN, 1, {"s=%p, invalid ASSIGN lhs", showObject}},
    {ASSIGN, 2, {"s=%p, invalid ASSIGN rhs", showObject}},
    {SAVE, 1, {"s=%p, invalid SAVE argument", showObject}},
    {TRY, everyField, {"s=%p, invalid TRY field", showObject}},
    {USE, 1, {"s=%p, invalid USE mapping list", showObject}},
    {USE, 2, {"s=%p, invalid USE statement sequence", showObject}},
};

const Message& hashMessage(DAG chain, Word i) {
  static constexpr Message rawValue = {"s=%p, invalid HASH value", showObject};
  static constexpr Message key = {"s[i]=%p, invalid HASH key", showWord};
  static constexpr Message value = {"s[i]=%p, invalid HASH value", showWord};
  if (controlWord(chain) & tableBit) return rawValue;
  return (i & 1) == 1 ? key : value;
}

bool mayBeAbsent(DAG s, Word i) {
  switch (tagOf(s)) {
    case NAME: return i == 1;               // unassigned
    case HASHTAB: case DEBUG: return true;  // an empty bucket; an absent part of a record
    case RTABLE: return i == 1;             // no data
    case EXPSEQ: return !isSimplified(s);   // a record, or a sequence under construction
    default: return false;
  }
}

// The reference field behind `i`, by the table of all traversals.
Word nextReferenceField(DAG s, Word i) {
  ReferenceFields fields = referenceFields(s);
  if (fields.extra != 0 && i < fields.extra) return fields.extra;
  Word next = i < fields.first ? fields.first : i + fields.step;
  return next < fields.end ? next : 0;
}

Word nextField(DAG s, Word i) {
  switch (tagOf(s)) {
    case RTABLE:
      if (i == 0 && kindOf(s[rtableElementType]) != NOTAG && isKorelSparse(s)) return 1;
      return nextReferenceField(s, i);
    case HASH: {
      // A key of 0 ends the pairs in use.
      const Word next = nextReferenceField(s, i);
      const Word keyField = next - ((next & 1) == 0 ? 1 : 0);
      return next != 0 && rawField(s, keyField) != 0 ? next : 0;
    }
    case ZPPOLY:
      // The kinds of the first two say what the rest is; `checkComponent` has looked at them by now.
      if (i < 2) return i + 1;
      return nextReferenceField(s, i);
    default: return nextReferenceField(s, i);
  }
}

}  // namespace

bool isReadableObject(DAG x) {
  if (!isObject(x)) return false;
  if (x == static_hfloat) return true;
  return (x.word & 3) == 0 && x.word >= lostorage + 4 && x.word < historage;
}

void describeBadAddress(DAG x, Finding& finding) {
  fail(finding, "s=%p, address out of range or misaligned", pointer(x));
}

bool checkShape(DAG s, Finding& finding) {
  // No label of ten bits is out of range; what tells a word of free storage is its low bit.
  if (controlWord(s) & 1) return fail(finding, "s=%p, invalid gc tag %d", pointer(s), static_cast<int>(controlWord(s)));
  long number = static_cast<long>(headerWord(s) >> 26);
  if (number < 1 || number > tagCount) return fail(finding, "s=%p, CASE_ID=%ld, invalid ID", pointer(s), number);
  const char* name = tagName(tagOf(s));
  long length = static_cast<long>(lengthOf(s));
  if (length < 1 || boundedLength(s) != lengthOf(s))
    return fail(finding, "s=%p, ID=%s, LENGTH=%ld, invalid length", pointer(s), name, length);
  if (!hasGoodLength(s)) {
    switch (tagOf(s)) {
      case INTNEG: case INTPOS: return fail(finding, "s=%p, invalid %s", pointer(s), name);
      case NAME: return fail(finding, "s=%p, len=%ld, invalid NAME length", pointer(s), length);
      default: return fail(finding, "s=%p, LENGTH=%ld, invalid %s length", pointer(s), length, name);
    }
  }
  return checkRawFields(s, finding);
}

Word nextComponent(DAG s, Word i) {
  do i = nextField(s, i);
  while (i != 0 && s[i] == DAG() && mayBeAbsent(s, i));
  return i;
}

bool checkComponent(DAG s, Word i, Finding& finding) {
  Tag tag = tagOf(s);
  for (const KindRule& rule : kindRules) {
    if (rule.tag != tag || (rule.field != i && rule.field != everyField)) continue;
    if (rule.when == simplified && !isSimplified(s)) continue;
    if (!rule.accepts(s[i])) return failWith(finding, rule.message, s, i);
  }
  for (const MemberRule& rule : memberRules)
    if (rule.tag == tag && rule.field == i && !checkMembers(s, i, rule, finding)) return false;
  if ((tag == SUM || tag == PROD) && (i & 1) == 0 && !isNumber(s[i])) return failWith(finding, nonNumeric, s, i);
  if (tag == TRY && isCatchField(s, i)) return checkCatch(s, i, finding);
  return true;
}

bool checkWhole(DAG s, Finding& finding) {
  switch (tagOf(s)) {
    case COMPLEX: return checkComplexPair(s, finding);
    case SET: return checkSetOrder(s, finding);
    case ZPPOLY: return checkCoefficients(s, finding);
    default: return true;
  }
}

void describeBadComponent(DAG s, Word i, Finding& finding) {
  if (tagOf(s) == HASH) {
    failWith(finding, hashMessage(s, i), s, i);
    return;
  }
  for (const ComponentRule& rule : componentRules) {
    if (rule.tag != tagOf(s) || (rule.field != i && rule.field != everyField)) continue;
    failWith(finding, rule.message, s, i);
    return;
  }
  failWith(finding, invalidComponent, s, i);
}

}  // namespace korel
