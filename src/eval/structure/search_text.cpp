#include "eval/structure/search_text.h"

#include <cctype>
#include <cstring>

#include "eval/structure/operands.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

std::int64_t textSize(DAG x) { return static_cast<std::int64_t>(std::strlen(textOf(x))); }

unsigned char asItIs(char c) { return static_cast<unsigned char>(c); }
unsigned char folded(char c) { return static_cast<unsigned char>(std::tolower(static_cast<unsigned char>(c))); }

constexpr int shiftCount = 128;

template <unsigned char (*character)(char)>
std::int64_t searchBy(const char* pattern, std::int64_t m, const char* text, std::int64_t n) {
  if (m < 1) return 0;
  // Characters that share an entry take the smallest shift, so that no place is passed over.
  std::int64_t shift[shiftCount];
  for (std::int64_t& s : shift) s = m;
  for (std::int64_t i = 0; i + 1 < m; ++i) shift[character(pattern[i]) % shiftCount] = m - 1 - i;
  for (std::int64_t at = 0; at <= n - m;) {
    std::int64_t k = m - 1;
    while (k >= 0 && character(pattern[k]) == character(text[at + k])) --k;
    if (k < 0) return at;
    at += shift[character(text[at + m - 1]) % shiftCount];
  }
  return -1;
}

// Both ends of a range, counted from 1; negative ones from the end.
struct Span {
  std::int64_t from, to;
};
Span spanOf(DAG range, std::int64_t n) {
  Span span{LongLongValue(range[1]), LongLongValue(range[2])};
  if (span.from < 0) span.from += n + 1;
  if (span.to < 0) span.to += n + 1;
  return span;
}
bool fits(DAG range) { return FitIntoWord(range[1]) && FitIntoWord(range[2]); }

using Search = std::int64_t (*)(const char* pattern, std::int64_t m, const char* text, std::int64_t n);

DAG MSearchText(const BuiltinCall& call, Search search) {
  Word count = argumentCount(call);
  DAG args = call.arguments;
  if (count < 2 || count > 3 || !isText(args[1]) || !isText(args[2]))
    KernelException("invalid arguments for searchtext");
  std::int64_t m = textSize(args[1]), n = textSize(args[2]);
  Span span{1, n};
  if (count == 3) {
    if (!isIntegerRange(args[3])) KernelException("invalid range argument for searchtext");
    if (fits(args[3])) span = spanOf(args[3], n);
    if (!fits(args[3]) || span.from < 1 || span.to > n || span.from > span.to)
      KernelException("incorrect searching range in searchtext");
  }
  if (m == 0) return cons1;
  std::int64_t at = search(textOf(args[1]), m, textOf(args[2]) + span.from - 1, span.to - span.from + 1);
  return at < 0 ? cons0 : NewInteger(span.from + at);
}

}  // namespace

std::int64_t SearchText(const char* pattern, std::int64_t m, const char* text, std::int64_t n) {
  return searchBy<asItIs>(pattern, m, text, n);
}
std::int64_t searchtext(const char* pattern, std::int64_t m, const char* text, std::int64_t n) {
  return searchBy<folded>(pattern, m, text, n);
}

DAG builtin::SearchText(const BuiltinCall& call) { return MSearchText(call, korel::SearchText); }
DAG builtin::searchtext(const BuiltinCall& call) { return MSearchText(call, korel::searchtext); }

DAG builtin::substring(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isText(call.arguments[1])) wrongParameters(call);
  DAG text = call.arguments[1], index = call.arguments[2];
  std::int64_t n = textSize(text);
  Span span;
  if (isInteger(index)) {
    span.from = span.to = operandPosition(index);
    if (span.from < 0) span.from = span.to = span.from + n + 1;
  } else if (isIntegerRange(index)) {
    if (!fits(index)) improperSelector();
    span = spanOf(index, n);
  } else {
    wrongParameters(call);
  }
  if (span.from < 1 || span.to > n || span.from > span.to + 1) improperSelector();
  auto length = static_cast<std::size_t>(span.to - span.from + 1);
  // The characters wait in an object of the heap, which an error may leave behind.
  DAG buffer = newl2(textLength(length), BINARY);
  char* part = textOf(buffer);
  std::memcpy(part, textOf(text) + span.from - 1, length);
  part[length] = 0;
  return isName(text) ? naminstall(part) : strinstall(part);
}

DAG builtin::lexorder(const BuiltinCall& call) {
  if (argumentCount(call) != 2 || !isText(call.arguments[1]) || !isText(call.arguments[2])) wrongParameters(call);
  return truth(std::strcmp(textOf(call.arguments[1]), textOf(call.arguments[2])) <= 0);
}

}  // namespace korel
