#include "frame/trace_messages.h"

#include "debug/listing.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/traceback.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel {

namespace {

/// Collects the arguments of the stream call: text pieces and objects.
struct Pieces {
  DAG sequence;

  Pieces() : sequence(new1(EXPSEQ)) {}
  Pieces& object(DAG x) {
    Word length = lengthOf(sequence);
    sequence = enlarge(sequence, 1);
    sequence[length] = x;
    return *this;
  }
  Pieces& text(const char* t) { return object(strinstall(t)); }
  /// The members of a sequence with commas between them; anything else as it stands.
  Pieces& members(DAG x) {
    if (!isObject(x) || tagOf(x) != EXPSEQ) return x ? object(x) : *this;
    for (Word i = 1; i < lengthOf(x); ++i) {
      if (i > 1) text(", ");
      object(x[i]);
    }
    return *this;
  }
};

bool isTopLevel(DAG name) { return !name || name == null; }

/// "<-- exit F (now in G) = V}" and its kin.
void appendExit(Pieces& pieces, const char* opening, DAG debug) {
  DAG caller = debug[4];
  pieces.text(opening).object(debug[2]);
  if (isTopLevel(caller)) {
    pieces.text(" (now at top level");
  } else {
    pieces.text(" (now in ").object(caller);
  }
  pieces.text(") = ").members(debug[3]).text("}");
}

void appendRemembered(Pieces& pieces, DAG debug) {
  DAG caller = debug[5];
  if (isTopLevel(caller)) {
    pieces.text("value remembered (at top level): ");
  } else {
    pieces.text("value remembered (in ").object(caller).text("): ");
  }
  pieces.object(debug[2]).text("(").members(debug[3]).text(") -> ").members(debug[4]);
}

/// An exception: who raised it, the message, its parameters.
void appendError(Pieces& pieces, DAG debug) {
  DAG exception = debug[2];
  if (!isObject(exception) || tagOf(exception) != EXPSEQ || lengthOf(exception) < 3) {
    pieces.text("Error, ").members(exception);
    return;
  }
  if (isObject(exception[1])) {
    pieces.text("Error, (in ").object(exception[1]).text(") ");
  } else {
    pieces.text("Error, ");
  }
  pieces.members(copydel(exception, 0, 1));
}

/// The exception goes as it is, for the reader to fill its marks; a mere text gets the form of one.
void appendException(Pieces& pieces, DAG debug) {
  if (hasTag(debug[2], EXPSEQ)) {
    pieces.sequence = debug[2];
  } else {
    pieces.object(cons0).object(debug[2]);
  }
}

/// A procedure, its arguments and, where one was running, its statement.
void appendTraceLevel(Pieces& pieces, DAG debug) {
  pieces.object(debug[2]).text(" called with arguments: ").members(debug[3]);
  if (lengthOf(debug) > 5 && debug[5] && debug[5] != null)
    pieces.text("\n").object(StatementAsString(debug[2], debug[4], debug[5], reportedPlace));
}

/// How a code becomes a stream call.
struct MessageRow {
  DebugCode code;
  Stream stream;
  int closesRead;  // what an input file being read is told, or -1
  void (*append)(Pieces& pieces, DAG debug);
};

constexpr Stream diagnostics = Stream::DIAG;
constexpr MessageRow messageRows[] = {
    // code             stream             read  pieces
    {debugRemembered, diagnostics, -1, appendRemembered},
    {debugEnter, diagnostics, -1,
     [](Pieces& p, DAG d) { p.text("{--> enter ").object(d[2]).text(", args = ").members(d[3]); }},
    {debugExit, diagnostics, -1, [](Pieces& p, DAG d) { appendExit(p, "<-- exit ", d); }},
    {debugError, Stream::ERROR, 2, appendError},
    {debugInterrupt, Stream::INTR, 0, [](Pieces&, DAG) {}},
    {debugStatement, diagnostics, -1,
     [](Pieces& p, DAG d) { p.text(" executing statement: ").object(d[2]); }},
    {debugLocals, diagnostics, -1,
     [](Pieces& p, DAG d) { p.text(" locals defined as: ").members(d[2]); }},
    {debugTraceLevel, diagnostics, -1,
     appendTraceLevel},
    {debugSystemError, Stream::ERROR, 2,
     [](Pieces& p, DAG d) { p.text("System error, ").members(d[2]); }},
    {debugBanner, Stream::LOGO, -1, [](Pieces& p, DAG d) { p.members(d[2]); }},
    {debugErrorExit, diagnostics, -1, [](Pieces& p, DAG d) { appendExit(p, "<-- ERROR in ", d); }},
    {debugBuiltin, diagnostics, -1,
     [](Pieces& p, DAG d) { p.text("execute ").object(d[2]).text(", args = ").members(d[3]); }},
    {debugException, Stream::EXCEPT, 2, appendException},
};

}  // namespace

DAG newDebug(DebugCode code, DAG a, DAG b, DAG c, DAG d) {
  const DAG parts[] = {a, b, c, d};
  Word used = d ? 4 : c ? 3 : b ? 2 : 1;
  DAG debug = newl3(used + 2, DEBUG, immediate(code));
  for (Word i = 0; i < used; ++i) debug[i + 2] = parts[i];
  return debug;
}

void sendDebug(DebugCode code, DAG a, DAG b, DAG c, DAG d) { switch2(newDebug(code, a, b, c, d)); }

DAG callerName(const Frame& frame) {
  return frame.previousFrame != nullptr && frame.previousFrame->procName ? frame.previousFrame->procName : null;
}

DAG DebugToNerin(DAG debug) {
  for (const MessageRow& row : messageRows) {
    if (immediate(row.code) != debug[1]) continue;
    if (row.closesRead >= 0) CloseReadOnError(row.closesRead);
    Pieces pieces;
    row.append(pieces, debug);
    return newStreamCall(row.stream, pieces.sequence);
  }
  notimpl("DebugToNerin");
}

}  // namespace korel
