#pragma once
// The statements of a procedure by number.
//
// One walk numbers them, depth first and in source order: each member of a sequence at any depth gets the next
// number, an `if`, loop or `try` before what stands inside it. A body of one statement counts as a sequence of one.
// Two wrappers may stand in the place of a statement S; neither counts:
//
//   break point      STATSEQ(DEBUG(condition), S), or DEBUG() without a condition
//   traced statement TRACE(vector, k, S)
//
// The walk is a template: what it is for (to find, to wrap, to print) is a visitor of three functions.

#include <cstdint>

#include "frame/environment.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

/// Whether a sequence of statements is a break point; the test that each short sequence passes when it runs.
inline bool isBreakPointPair(DAG sequence) { return isTag(sequence[1], FUNCTION) && sequence[1][1] == ini("DEBUG"); }
inline bool isBreakPoint(DAG x) { return isTag(x, STATSEQ) && lengthOf(x) == 3 && isBreakPointPair(x); }
/// The arguments of its `DEBUG`: an EXPSEQ, empty without a condition.
inline DAG conditionOf(DAG breakPoint) { return breakPoint[1][2]; }

/// A call TRACE(v, k, S), as `InstrumentProcedure` makes it.
inline bool isTraced(DAG x) {
  return isTag(x, FUNCTION) && x[1] == ini("TRACE") && isTag(x[2], EXPSEQ) && lengthOf(x[2]) == 4;
}

/// The statement that stands in a place, without wrappers.
inline DAG statementIn(DAG place) {
  for (;;) {
    if (isBreakPoint(place)) place = place[2];
    else if (isTraced(place)) place = place[2][3];
    else return place;
  }
}

struct StatementPlace {
  DAG holder;  // the statement, or its wrapper, is holder[field]
  Word field = 0;
  std::int32_t number = 0;
  std::int32_t depth = 0;  // statements around it

  DAG wrapped() const { return holder[field]; }
  DAG statement() const { return statementIn(holder[field]); }
  /// Whether nothing follows it in its sequence.
  bool isLast() const { return !isTag(holder, STATSEQ) || isBreakPoint(holder) || field + 1 == lengthOf(holder); }
};

/// A part of an `if`, loop or `try`: `keyword operand opening` and the statements in the field `body`.
struct StatementPart {
  const char* keyword;
  DAG operand;  // or 0
  const char* opening;
  Word body;
  bool isFirst;
};
/// Part `i` from 0 of `statement`; false when there are no more. The operand of a loop is the loop itself.
bool partOf(DAG statement, Word i, StatementPart& part);
/// "end if" and its kin; null for a statement without parts.
const char* closingWords(DAG statement);

/// A visitor has a member `count`, the number given last, and
///   bool enter(place)        before the parts of a statement; false passes them by, and has moved `count` over them
///   bool part(place, part)   before the statements of a part; the same
///   void leave(place)
template <class Visitor>
void walkBody(Visitor& v, DAG holder, Word field, std::int32_t depth);

template <class Visitor>
void walkStatement(Visitor& v, DAG holder, Word field, std::int32_t depth) {
  checkStack();
  StatementPlace place{holder, field, ++v.count, depth};
  DAG statement = place.statement();
  if (v.enter(place)) {
    StatementPart part;
    for (Word i = 0; partOf(statement, i, part); ++i)
      if (v.part(place, part)) walkBody(v, statement, part.body, depth + 1);
  }
  v.leave(place);
}

template <class Visitor>
void walkBody(Visitor& v, DAG holder, Word field, std::int32_t depth) {
  DAG body = holder[field];
  if (!body || body == null) return;
  if (isTag(body, STATSEQ) && !isBreakPoint(body)) {
    for (Word i = 1, n = lengthOf(body); i < n; ++i) walkStatement(v, body, i, depth);
  } else {
    walkStatement(v, holder, field, depth);
  }
}

/// How many statements stand in holder[field].
std::int32_t statementsIn(DAG holder, Word field);
inline std::int32_t countStatements(DAG procedure) { return statementsIn(procedure, procBody); }

/// The place of statement `number`; false when there is none.
bool placeOfNumber(DAG procedure, std::int32_t number, StatementPlace& place);
/// The place where `statement`, or it as a wrapper, stands; false when nowhere. Equal statements are one object: of
/// several places that at the address `field`, or the first.
bool placeOfStatement(DAG procedure, DAG statement, const DAG* field, StatementPlace& place);
/// Puts a wrapper, or a bare statement, in a place.
void replaceStatement(const StatementPlace& place, DAG x);

}  // namespace korel
