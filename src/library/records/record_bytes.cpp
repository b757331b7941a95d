// What records are made of: bytes, numbers, texts.

#include <cstdlib>

#include "library/records/record_codes.h"
#include "library/records/record_reading.h"

namespace korel {

namespace {

constexpr int linkEnd = 1;

[[noreturn]] void endReading(Reading& r) { ::_longjmp(r.stop, 1); }

}  // namespace

void failReading(Reading& r, const char* text) {
  r.failed(r.context, r.numbers->offset, text);
  endReading(r);
}

int nextPrintable(Reading& r) {
  for (;;) {
    int c = r.source->next();
    if (c < 0) {
      r.ended(r.context, r.numbers->offset);
      endReading(r);
    }
    ++r.numbers->offset;
    if (c >= 33 && c < 127) return c;
    if (c == linkEnd && onLink(r)) {
      r.numbers->sawLinkEnd = true;
      failReading(r, "syntax error while reading file");
    }
  }
}

std::int64_t nextLongInt(Reading& r, int hexDigits) {
  int c = next(r);
  bool negative = c == '~';
  if (negative) c = next(r);
  std::uint64_t value = 0;
  if (c >= 33 && c <= 33 + largestShortInt) {
    value = static_cast<std::uint64_t>(c - 33);
  } else {
    for (int shift = 0;; shift += 4, c = next(r)) {
      bool last = c >= firstLastHexDigit && c < firstLastHexDigit + 16;
      bool digit = c >= firstHexDigit && c < firstHexDigit + 16;
      if (!last && !digit) failReading(r, "invalid character in short integer encoding");
      if (shift >= 4 * hexDigits) failReading(r, "short integer too large for this system");
      value |= static_cast<std::uint64_t>(c - (last ? firstLastHexDigit : firstHexDigit)) << shift;
      if (last) break;
    }
  }
  return static_cast<std::int64_t>(negative ? 0 - value : value);
}

Word nextCount(Reading& r, Word most) {
  std::int64_t n = nextInt(r);
  if (n < 0 || n > most) failReading(r, "invalid dag length");
  return static_cast<Word>(n);
}

Word nextLength(Reading& r, Word least) {
  Word n = nextCount(r, maxLength);
  if (n < least) failReading(r, "invalid dag length");
  return n;
}

namespace {
void growText(Reading& r, std::size_t space) {
  auto* text = static_cast<char*>(std::realloc(r.text, space));
  if (text == nullptr) failReading(r, "ran out of memory");
  r.text = text;
  r.textSpace = space;
}
}  // namespace

const char* nextText(Reading& r) {
  Word n = nextCount(r, maxLength);
  for (Word i = 0;; ++i) {
    if (i + 1 >= r.textSpace) growText(r, r.textSpace == 0 ? 256 : 2 * r.textSpace);
    if (i == n) {
      r.text[i] = 0;
      return r.text;
    }
    int c = next(r);
    if (c == '~') {
      c = ' ';
    } else if (c == '|') {
      std::int64_t byte = nextInt(r);
      if (byte < 1 || byte > 255) failReading(r, "syntax error while reading file");
      c = static_cast<int>(byte);
    } else if (c >= 123) {
      failReading(r, "syntax error while reading file");
    }
    r.text[i] = static_cast<char>(c);
  }
}

}  // namespace korel
