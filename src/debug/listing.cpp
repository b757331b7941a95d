#include "debug/listing.h"

#include <cstdio>
#include <cstring>

#include "debug/debugger.h"
#include "debug/statement_trace.h"
#include "debug/statement_walk.h"
#include "frame/errors.h"
#include "store/long_string.h"
#include "store/names.h"
#include "text/print/convert_text.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// ---- growing text

void disposeOnError(const char*) {
  auto* text = reinterpret_cast<char**>(errorProcParam);
  DisposeString(*text);
  *text = nullptr;
}

// Text that stands where a number of seven characters stands in front of a statement.
constexpr const char* noPrefix = "       ";

// Writes a procedure, or a part of it: a visitor of the walk.
struct Listing {
  DAG procedure;
  std::int32_t first, last;
  std::int32_t standing;  // number of the statement to be marked, or 0
  DAG profile;            // the trace vector that is shown, or 0
  char* text;
  std::int32_t count = 0;
  bool leftOut = false;  // what was left out last has been told

  void add(const char* t) { text = AppendStringToString(text, t); }
  void print(DAG x) { PrintKorelWithin(procedure, x, LongStringSink, raisePrintError, &text); }
  void indent(std::int32_t depth) {
    for (; depth > 0; --depth) add("  ");
  }

  bool meets(std::int32_t from, std::int32_t to) const { return from <= last && to >= first; }
  bool shows(const StatementPlace& place) const { return place.number >= first && place.number <= last; }

  void leaveOut(std::int32_t depth) {
    if (leftOut) return;
    leftOut = true;
    add(noPrefix);
    indent(depth);
    add("...\n");
  }
  void addRow(std::int32_t row);
  void addPrefix(const StatementPlace& place);
  void addLoopHead(DAG loop);

  bool enter(const StatementPlace& place);
  bool part(const StatementPlace& place, const StatementPart& part);
  void leave(const StatementPlace& place);
};

// ---- prefixes

void Listing::addRow(std::int32_t row) {
  const std::int32_t* counts = traceRow(profile, row);
  char buffer[96];
  std::snprintf(buffer, sizeof buffer, "|%5ld %7.3f %6ld|", static_cast<long>(counts[0]), counts[1] / 1000.0,
                static_cast<long>(counts[2]));
  add(buffer);
}

void Listing::addPrefix(const StatementPlace& place) {
  char buffer[32];
  if (profile) {
    std::snprintf(buffer, sizeof buffer, "%4ld ", static_cast<long>(place.number));
    add(buffer);
    addRow(place.number);
    add(" ");
  } else {
    DAG wrapped = place.wrapped();
    const char mark = !isBreakPoint(wrapped) ? ' ' : conditionOf(wrapped) == null ? '*' : '?';
    const char here = place.number == standing && first != last ? '!' : ' ';
    std::snprintf(buffer, sizeof buffer, "%4ld%c%c ", static_cast<long>(place.number), mark, here);
    add(buffer);
  }
  indent(place.depth);
}

// ---- statements

// The loop prints with an empty body, and without its end.
void Listing::addLoopHead(DAG loop) {
  DAG head = CopyAlg(loop);
  head[lengthOf(head) - 1] = null;
  char* whole = text;
  text = NewLongString();
  PushParamErrorProc(disposeOnError, &text);
  print(head);
  PopErrorProc();
  const std::size_t length = LongStringLength(text), tail = std::strlen(" end do");
  if (length > tail) text[length - tail] = '\0';
  char* printed = text;
  text = whole;
  add(printed);
  DisposeString(printed);
}

bool Listing::enter(const StatementPlace& place) {
  DAG statement = place.statement();
  StatementPart ignored;
  const bool isForm = partOf(statement, 0, ignored);
  if (shows(place)) {
    leftOut = false;
    addPrefix(place);
    if (!isForm) print(statement);
    return isForm;
  }
  std::int32_t inside = 0;
  if (isForm)
    for (Word i = 0; partOf(statement, i, ignored); ++i) inside += statementsIn(statement, ignored.body);
  if (inside > 0 && meets(place.number + 1, place.number + inside)) {
    leaveOut(place.depth);
    return true;
  }
  leaveOut(place.depth);
  count += inside;
  return false;
}

bool Listing::part(const StatementPlace& place, const StatementPart& part) {
  DAG statement = place.statement();
  if (shows(place)) {
    leftOut = false;
    if (!part.isFirst) {
      add(noPrefix);
      indent(place.depth);
    }
    add(part.keyword);
    if (isTag(statement, FOR)) addLoopHead(statement);
    else if (part.operand) print(part.operand);
    add(part.opening);
    add("\n");
  }
  const std::int32_t inside = statementsIn(statement, part.body);
  if (inside == 0) return false;
  if (meets(count + 1, count + inside)) return true;
  leaveOut(place.depth + 1);
  count += inside;
  return false;
}

void Listing::leave(const StatementPlace& place) {
  if (!shows(place)) return;
  leftOut = false;
  if (const char* words = closingWords(place.statement())) {
    add(noPrefix);
    indent(place.depth);
    add(words);
  }
  add(place.isLast() ? "\n" : ";\n");
}

// ---- the head

void addDeclarations(Listing& l, const char* keyword, DAG names) {
  if (!isSequence(names) || lengthOf(names) == 1) return;
  l.add(keyword);
  for (Word i = 1, n = lengthOf(names); i < n; ++i) {
    if (i > 1) l.add(", ");
    l.print(names[i]);
  }
  l.add(";\n");
}

void addHead(Listing& l, DAG name) {
  l.print(name);
  l.add(" := proc(");
  DAG parameters = paramsOf(l.procedure);
  for (Word i = 1, n = lengthOf(parameters); i < n; ++i) {
    if (i > 1) l.add(", ");
    l.print(parameters[i]);
  }
  l.add(")\n");
  addDeclarations(l, "local ", localsOf(l.procedure));
  addDeclarations(l, "global ", globalsOf(l.procedure));
  if (!l.profile) return;
  l.add("     |Calls Seconds  Words|\nPROC ");
  l.addRow(0);
  l.add("\n");
}

Listing newListing(DAG name, DAG procedure, std::int32_t first, std::int32_t last) {
  StatementPlace place;
  const bool stands = currentStatement && placeOfStatement(procedure, currentStatement, currentField, place);
  return {procedure, first, last, stands ? place.number : 0, traceVectorShown(name, procedure), NewLongString()};
}

// One blank in the place of several, and no ends of lines.
void squeeze(char* text) {
  char* to = text;
  for (const char* from = text; *from != '\0'; ++from) {
    if (*from == '\n' || (*from == ' ' && to != text && to[-1] == ' ')) continue;
    *to++ = *from;
  }
  if (to != text && to[-1] == ' ') --to;
  *to = '\0';
}

}  // namespace

DAG listingOf(DAG name, DAG procedure, std::int32_t first, std::int32_t last) {
  Listing l = newListing(name, procedure, first, last);
  PushParamErrorProc(disposeOnError, &l.text);
  addHead(l, name);
  walkBody(l, procedure, procBody, 0);
  l.add("end proc\n");
  PopErrorProc();
  return StringToMString(l.text);
}

namespace {

// The one statement at `place`, with or without what stands in front of a statement.
char* textOfStatement(Listing& l, const StatementPlace& place, bool numbered) {
  PushParamErrorProc(disposeOnError, &l.text);
  l.first = l.last = l.count = place.number;
  StatementPlace top = place;
  top.depth = 0;
  DAG statement = place.statement();
  StatementPart part;
  const bool isForm = partOf(statement, 0, part);
  if (numbered) l.addPrefix(top);
  if (!isForm) l.print(statement);
  for (Word i = 0; partOf(statement, i, part); ++i) l.part(top, part);
  l.leave(top);
  PopErrorProc();
  return l.text;
}

}  // namespace

DAG statementListing(DAG name, DAG procedure, std::int32_t number) {
  StatementPlace place;
  if (!placeOfNumber(procedure, number, place)) KernelException("statement number out of range");
  Listing l = newListing(name, procedure, number, number);
  return StringToMString(textOfStatement(l, place, true));
}

DAG statementName(DAG procedure, DAG statement) {
  statement = statementIn(statement);
  Listing l{procedure, 0, 0, 0, DAG(), NewLongString()};
  PushParamErrorProc(disposeOnError, &l.text);
  l.print(statement);
  PopErrorProc();
  return StringToName(l.text);
}

DAG statementLine(DAG procedure, const StatementPlace& place) {
  Listing l{procedure, 0, 0, 0, DAG(), NewLongString()};
  char* text = textOfStatement(l, place, false);
  squeeze(text);
  const std::size_t length = std::strlen(text);
  if (length > 0 && text[length - 1] == ';') text[length - 1] = '\0';
  return StringToMString(text);
}

DAG StatementAsString(DAG name, DAG procedure, DAG statement, const DAG* field) {
  StatementPlace place;
  if (!isDefinition(procedure) || !statement || !placeOfStatement(procedure, statement, field, place))
    return naminstall(" #unknown");
  const DAG function = ConvertToName(name, false);
  Listing l{procedure, 0, 0, 0, DAG(), NewLongString()};
  char* text = textOfStatement(l, place, false);
  squeeze(text);
  char number[32];
  std::snprintf(number, sizeof number, ",%ld): ", static_cast<long>(place.number));
  char* whole = AppendStringToString(NewLongString(), " #(");
  whole = AppendStringToString(whole, isName(function) ? textOf(function) : "unknown");
  whole = AppendStringToString(whole, number);
  whole = AppendStringToString(whole, text);
  DisposeString(text);
  return StringToName(whole);
}

}  // namespace korel
