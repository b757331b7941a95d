#include "text/print/message.h"

#include <cctype>
#include <cstdlib>

#include "numbers/integer/integer.h"
#include "store/vocabulary.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// A message taken apart: its text, and where its parameters stand.
struct Message {
  DAG text;
  DAG sequence;  // 0 when there are no parameters
  Word firstPlace = 0;

  Word parameterCount() const { return sequence ? lengthOf(sequence) - firstPlace : 0; }
  /// Parameter `n`, from 1.
  DAG parameter(Word n) const { return sequence[firstPlace + n - 1]; }
};

Message takeApart(DAG exception) {
  if (!isSequence(exception)) return {exception, DAG(), 0};
  Word n = lengthOf(exception);
  if (n == 1) return {DAG(), DAG(), 0};
  // An exception has its text behind the procedure, which is a name, a call of one, or 0. A text
  // with a text for its first parameter begins with a STRING, which no procedure is.
  bool textFirst = n < 3 || isTag(exception[1], STRING) || !isText(exception[2]);
  Word place = textFirst ? 1 : 2;
  return {exception[place], exception, place + 1};
}

// ---- sending

void sendObject(DAG x, Sink sink, void* closure) {
  PrintKorelList(x, sink, ignorePrintError, 0, closure, printBare, ", ");
}

const char* ordinalEnding(DAG x) {
  if (!isInteger(x)) return "th";
  // The last two decimal digits, whatever the sign.
  int last = isImmediate(x) ? std::abs(immediateValue(x) % 100) : static_cast<int>(rawField(x, 1) % 100);
  if (last >= 11 && last <= 13) return "th";
  switch (last % 10) {
    case 1: return "st";
    case 2: return "nd";
    case 3: return "rd";
    default: return "th";
  }
}

void sendAll(const Message& message, Sink sink, void* closure) {
  for (Word i = 1; i <= message.parameterCount(); ++i) {
    if (i > 1) sendText(", ", sink, closure);
    sendObject(message.parameter(i), sink, closure);
  }
}

}  // namespace

void expandMessage(DAG exception, Sink sink, void* closure) {
  Message message = takeApart(exception);
  if (!isText(message.text)) {
    if (message.text) sendObject(message.text, sink, closure);
    return;
  }
  for (const char* at = textOf(message.text); *at != '\0'; ++at) {
    if (*at != '%') {
      sink(closure, static_cast<unsigned char>(*at));
      continue;
    }
    if (at[1] == '%') {
      sink(closure, '%');
      ++at;
      continue;
    }
    bool ordinal = at[1] == '-';
    char digit = at[ordinal ? 2 : 1];
    if (std::isdigit(static_cast<unsigned char>(digit)) == 0) {
      sink(closure, '%');
      continue;
    }
    Word n = static_cast<Word>(digit - '0');
    if (n == 0) {
      sendAll(message, sink, closure);
    } else if (n <= message.parameterCount()) {
      sendObject(message.parameter(n), sink, closure);
      if (ordinal) sendText(ordinalEnding(message.parameter(n)), sink, closure);
    } else {
      sink(closure, '%');
      continue;
    }
    at += ordinal ? 2 : 1;
  }
}

}  // namespace korel
