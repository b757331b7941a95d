#include "debug/statement_walk.h"

#include "eval/evaluate/known_values.h"
#include "store/generations.h"

namespace korel {

bool partOf(DAG s, Word i, StatementPart& part) {
  if (isImmediate(s)) return false;
  const Word n = lengthOf(s);
  const bool isFirst = i == 0;
  switch (tagOf(s)) {
    case IF:
      if (2 * i + 2 < n) part = {isFirst ? "if " : "elif ", s[2 * i + 1], " then", 2 * i + 2, isFirst};
      else if (2 * i + 2 == n) part = {"else", DAG(), "", n - 1, isFirst};
      else return false;
      return true;
    case FOR:
      if (!isFirst) return false;
      part = {"", s, "", n - 1, isFirst};
      return true;
    case TRY:
      if (isFirst) part = {"try", DAG(), "", tryBody, isFirst};
      else if (2 * i + 1 < n) part = {"catch ", s[2 * i], ":", 2 * i + 1, isFirst};
      else if (2 * i + 1 == n) part = {"finally", DAG(), "", n - 1, isFirst};
      else return false;
      return true;
    default: return false;
  }
}

const char* closingWords(DAG s) {
  if (isTag(s, IF)) return "end if";
  if (isTag(s, FOR)) return "end do";
  return isTag(s, TRY) ? "end try" : nullptr;
}

namespace {

struct Counter {
  std::int32_t count = 0;
  bool enter(const StatementPlace&) { return true; }
  bool part(const StatementPlace&, const StatementPart&) { return true; }
  void leave(const StatementPlace&) {}
};

// Finds the place with a number, or that of a statement.
struct Finder {
  std::int32_t number;
  DAG statement;
  const DAG* field;  // the place that is preferred, or null
  StatementPlace* found;
  bool isFound = false, done = false;
  std::int32_t count = 0;

  bool matches(const StatementPlace& place) const {
    if (!statement) return place.number == number;
    return place.wrapped() == statement || place.statement() == statement;
  }
  bool enter(const StatementPlace& place) {
    if (!done && matches(place)) {
      const bool isPreferred = field == nullptr || &place.holder[place.field] == field;
      if (!isFound || isPreferred) *found = place;
      isFound = true;
      done = isPreferred;
    }
    return !done;
  }
  bool part(const StatementPlace&, const StatementPart&) { return !done; }
  void leave(const StatementPlace&) {}
};

}  // namespace

std::int32_t statementsIn(DAG holder, Word field) {
  Counter counter;
  walkBody(counter, holder, field, 0);
  return counter.count;
}

bool placeOfNumber(DAG procedure, std::int32_t number, StatementPlace& place) {
  Finder finder{number, DAG(), nullptr, &place};
  walkBody(finder, procedure, procBody, 0);
  return finder.isFound;
}

bool placeOfStatement(DAG procedure, DAG statement, const DAG* field, StatementPlace& place) {
  Finder finder{0, statement, field, &place};
  walkBody(finder, procedure, procBody, 0);
  return finder.isFound;
}

void replaceStatement(const StatementPlace& place, DAG x) {
  DAG holder = place.holder;
  holder[place.field] = x;
  updategen(x);
  setSimplified(holder);  // a short collection looks at it again
  stepEvaluationClock();
}

}  // namespace korel
