#include "eval/structure/kinds.h"

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/reference_fields.h"

namespace korel {

DAG anyField(DAG x, std::int64_t i) {
  ReferenceFields fields = referenceFields(x);
  auto k = static_cast<Word>(i);
  if (k == fields.extra || (k >= fields.first && k < fields.end && (k - fields.first) % fields.step == 0))
    return x[i] ? x[i] : null;
  return simpl(NewInteger(static_cast<std::int32_t>(rawField(x, i))));
}

DAG refuseSubsop(DAG) { notimpl("subsop"); }

namespace {

// Operators with a field for each operand.
constexpr Kind operatorKind;
// Parts of a program.
constexpr Kind statementKind = {.operand = anyField, .takeApart = refuseSubsop};
// The kernel's own records, which no expression holds.
constexpr Kind recordKind = {.isSingle = true, .operand = anyField, .takeApart = refuseSubsop};
constexpr Kind chainKind = {.operand = anyField, .takeApart = refuseSubsop};

}  // namespace

constexpr KindRow kindRows[tagCount + 1] = {
    {NOTAG, &recordKind},
    {INTNEG, &integerKind},
    {INTPOS, &integerKind},
    {RATIONAL, &rationalKind},
    {FLOAT, &floatKind},
    {HFLOAT, &hardwareFloatKind},
    {COMPLEX, &complexKind},
    {STRING, &stringKind},
    {NAME, &nameKind},
    {MEMBER, &memberKind},
    {TABLEREF, &indexedNameKind},
    {DCOLON, &operatorKind},
    {CATENATE, &operatorKind},
    {POWER, &operatorKind},
    {PROD, &productKind},
    {SERIES, &seriesKind},
    {SUM, &sumKind},
    {ZPPOLY, &modularPolynomialKind},
    {FUNCTION, &callKind},
    {UNEVAL, &operatorKind},
    {EQUATION, &operatorKind},
    {INEQUAT, &operatorKind},
    {LESSEQ, &operatorKind},
    {LESSTHAN, &operatorKind},
    {AND, &operatorKind},
    {NOT, &operatorKind},
    {OR, &operatorKind},
    {EXPSEQ, &sequenceKind},
    {LIST, &listKind},
    {LOCAL, &frameReferenceKind},
    {PARAM, &frameReferenceKind},
    {LEXICAL, &frameReferenceKind},
    {PROC, &procedureKind},
    {RANGE, &operatorKind},
    {SET, &setKind},
    {TABLE, &tableKind},
    {RTABLE, &rtableKind},
    {MODDEF, &moduleDefinitionKind},
    {MODULE, &moduleKind},
    {ASSIGN, &statementKind},
    {FOR, &statementKind},
    {IF, &statementKind},
    {READ, &statementKind},
    {SAVE, &statementKind},
    {STATSEQ, &statementKind},
    {STOP, &statementKind},
    {ERROR, &statementKind},
    {TRY, &tryKind},
    {RETURN, &statementKind},
    {BREAK, &statementKind},
    {NEXT, &statementKind},
    {USE, &statementKind},
    {BINARY, &recordKind},
    {HASH, &chainKind},
    {HASHTAB, &entriesKind},
    {GARBAGE, &recordKind},
    {FOREIGN, &recordKind},
    {CONTROL, &recordKind},
    {DEBUG, &recordKind},
};
static_assert([] {
  for (int n = 0; n <= tagCount; ++n)
    if (kindRows[n].tag != tagFromNumber(n)) return false;
  return true;
}());

}  // namespace korel
