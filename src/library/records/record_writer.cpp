#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "frame/environment.h"
#include "frame/errors.h"
#include "library/records/object_numbers.h"
#include "library/records/record_codes.h"
#include "library/records/record_writing.h"
#include "library/records/records.h"
#include "library/repository/repository.h"
#include "numbers/float/hardware_float.h"
#include "numbers/integer/integer.h"
#include "store/collect/collector.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/vocabulary.h"

namespace korel {

/// The numbers of the objects written so far.
struct WrittenNumbers {
  ObjectNumbers puttab;
  std::int32_t last = 0;
  std::vector<DAG> locals;  // that are names to whoever reads them

  void forget() {
    puttab.clear();
    locals.clear();
    last = 0;
  }
};

namespace {

// Those of files outlast the call that asks for it, but no collection, which may give an object's place to another.
// What is being written stays where it is. A message on the link, as a warning in the midst of a save, has numbers of
// its own.
WrittenNumbers fileNumbers, linkNumbers;
int writingCalls = 0;

void forgetIdleNumbers() {
  if (writingCalls == 0) forgetWrittenNumbers();
}

}  // namespace

void failWriting(Writing& w, const char* text) {
  w.failed(w.context, text);
  ::_longjmp(w.stop, 1);
}

void flush(Writing& w) {
  const auto n = static_cast<std::size_t>(w.at - w.bytes);
  w.at = w.bytes;
  if (n > 0 && !w.putBytes(w.context, w.bytes, n)) failWriting(w, "could not write to file");
}

void breakLine(Writing& w) {
  *w.at = '\n';
  if (++w.at == w.end) flush(w);
  w.column = 0;
}

namespace {
void putCode(Writing& w, int code) { put(w, dotMOutputTable[static_cast<std::size_t>(code)] + 32); }

}  // namespace

void putInt(Writing& w, std::int64_t value) {
  std::uint64_t v = static_cast<std::uint64_t>(value);
  if (value < 0) {
    put(w, '~');
    v = 0 - v;
  }
  if (v <= largestShortInt) return put(w, 33 + static_cast<int>(v));
  for (; v >= 16; v >>= 4) put(w, firstHexDigit + static_cast<int>(v & 15));
  put(w, firstLastHexDigit + static_cast<int>(v));
}

namespace {

void putText(Writing& w, const char* text) {
  putInt(w, static_cast<std::int64_t>(std::strlen(text)));
  for (; *text != 0; ++text) {
    int c = static_cast<unsigned char>(*text);
    if (c == ' ') {
      put(w, '~');
    } else if (c >= 33 && c < 123) {
      put(w, c);
    } else {
      put(w, '|');
      putInt(w, c);
    }
  }
}

// The decimal digits of an integer from the lowest up, two to a character where they fit.
class DigitPairs {
 public:
  explicit DigitPairs(Writing& w) : w_(w) {}
  void add(int digit) {
    if (pending_ < 0) {
      pending_ = digit;
    } else if (pending_ + 10 * digit < digitPairLimit) {
      put(w_, firstDigitPair + pending_ + 10 * digit);
      pending_ = -1;
    } else {
      put(w_, firstSingleDigit + pending_);
      pending_ = digit;
    }
  }
  void end() {
    if (pending_ >= 0) put(w_, firstSingleDigit + pending_);
  }

 private:
  Writing& w_;
  int pending_ = -1;
};

// How the lowest four digits of a number that goes on are written, for all of them: three characters at most, since the
// fourth digit waits for the next one unless it ends a pair.
struct FourDigits {
  char text[3];
  bool isWhole;  // the fourth digit is in it
};
constexpr std::array<FourDigits, 10000> fourDigits = [] {
  std::array<FourDigits, 10000> table{};
  for (int v = 0; v < 10000; ++v) {
    int digits = 0;
    char* at = table[static_cast<std::size_t>(v)].text;
    for (int rest = v; digits < 3;) {
      const bool isPair = rest % 100 < digitPairLimit;
      *at++ = static_cast<char>(isPair ? firstDigitPair + rest % 100 : firstSingleDigit + rest % 10);
      rest /= isPair ? 100 : 10;
      digits += isPair ? 2 : 1;
    }
    table[static_cast<std::size_t>(v)].isWhole = digits == 4;
  }
  return table;
}();

// All at once where the buffer and the line have room for the longest: most integers on the link are immediate
// (bench/link_bench.cpp).
void putImmediate(Writing& w, DAG x) {
  constexpr int mostCharacters = 12;  // code, count and ten digits
  char aside[mostCharacters];
  const bool hasRoom = w.end - w.at > mostCharacters && w.width - w.column > mostCharacters;
  char* const first = hasRoom ? w.at : aside;
  char* at = first;
  const std::int32_t value = immediateValue(x);
  auto rest = static_cast<std::uint32_t>(value < 0 ? -value : value);
  *at++ = static_cast<char>(dotMOutputTable[static_cast<std::size_t>(tagNumber(tagOf(x)))] + 32);
  char* const count = at++;
  int digits = 0;
  while (rest >= 10000) {
    const FourDigits& four = fourDigits[rest % 10000];
    std::memcpy(at, four.text, sizeof four.text);
    at += four.text[2] != 0 ? 3 : 2;
    rest /= four.isWhole ? 10000 : 1000;
    digits += four.isWhole ? 4 : 3;
  }
  do {
    // The two lowest digits, d + 10 e, make a pair as they are.
    const std::uint32_t two = rest % 100;
    const bool isPair = rest >= 10 && two < digitPairLimit;
    *at++ = static_cast<char>(isPair ? firstDigitPair + two : firstSingleDigit + two % 10);
    digits += isPair ? 2 : 1;
    rest = isPair ? rest / 100 : rest / 10;
  } while (rest != 0);
  *count = static_cast<char>(33 + digits);
  if (hasRoom) {
    w.column += at - first;
    w.at = at;
  } else {
    for (const char* c = first; c != at; ++c) put(w, *c);
  }
}

void putInteger(Writing& w, DAG x) {
  if (isImmediate(x)) return putImmediate(w, x);
  putCode(w, tagNumber(tagOf(x)));
  DigitPairs pairs(w);
  Word count = lengthOf(x) - 1;
  while (count > 1 && rawField(x, count) == 0) --count;
  Word top = rawField(x, count);
  int leading = top == 0 ? 1 : decimalLength(top);
  putInt(w, std::int64_t{4} * (count - 1) + leading);
  for (Word i = 1; i < count; ++i) {
    Word digit = rawField(x, i);
    for (int k = 0; k < 4; ++k, digit /= 10) pairs.add(static_cast<int>(digit % 10));
  }
  for (int k = 0; k < leading; ++k, top /= 10) pairs.add(static_cast<int>(top % 10));
  pairs.end();
}

// The number of `x`, whose record follows; or a back reference, and false.
inline bool takesNumber(Writing& w, DAG x) {
  WrittenNumbers& numbers = *w.numbers;
  std::int32_t number = numbers.last + 1;
  switch (numbers.puttab.insert(x, number)) {
    case WordMap::present:
      if (w.depth == 0) break;  // the outermost object is written whatever has been
      putCode(w, recordBack);
      putInt(w, number);
      return false;
    case WordMap::outOfMemory: failWriting(w, "ran out of memory");
    case WordMap::added: break;
  }
  ++numbers.last;
  return true;
}

void putFields(Writing& w, DAG x, Word from, Word end) {
  for (Word i = from; i < end; ++i) {
    if (!isImmediate(x[i])) putRecord(w, x[i]);
    else if (takesNumber(w, x[i])) putImmediate(w, x[i]);
  }
}

// ---- names

void putNamed(Writing& w, int code, DAG name) {
  putCode(w, code);
  putText(w, textOf(name));
}

// A name that no other kernel would find by its text: a reference to its object, which the save writes later.
bool putReference(Writing& w, DAG name) {
  if (w.repository == nullptr) return false;
  PairAddress pair = srchname(textOf(name));
  if (pair != notFound && pairValue(pair) == name) return false;
  if (UniqueIdentToObjectRef(w.repository, textOf(name)) == name) {
    DAG object = name[1];
    putNamed(w, recordTopName, name);
    putRecord(w, object[1]);
    putRecord(w, object[2]);
    return true;
  }
  putNamed(w, recordReference, name);
  DAG reference = GetObjectReference(w.repository, name);
  putText(w, textOf(reference));
  AddObjectToPendingWrites(w.repository, reference);
  return true;
}

// A local of a procedure or module that has a value, which its text alone doesn't tell.
bool isLost(DAG name) {
  if (!name[1] && (controlWord(name) & deferredBit) == 0) return false;
  PairAddress pair = srchname(textOf(name));
  return pair == notFound || pairValue(pair) != name;
}

void putName(Writing& w, DAG name) {
  if (putReference(w, name)) return;
  if (w.depth > 1) {
    if (w.numbers == &fileNumbers && isLost(name)) fileNumbers.locals.push_back(name);
    putNamed(w, tagNumber(NAME), name);
    putCode(w, recordZero);
    return;
  }
  putNamed(w, recordTopName, name);
  putRecord(w, (w.flags & recordBareName) != 0 ? DAG() : name[1]);
  putRecord(w, name[2]);
}

// ---- objects with a form of their own

void putProcedure(Writing& w, DAG proc) {
  putFields(w, proc, 1, procLength);
  if (!isMember(ini("builtin"), optionsOf(proc))) return;
  // A built-in is known by its name: numbers differ between versions.
  DAG body = bodyOf(proc);
  bool known = isImmediate(body) && immediateValue(body) >= firstBuiltin && immediateValue(body) < maxinin;
  putRecord(w, known ? ininame[immediateValue(body)] : ini("FAIL"));
}

void putSeries(Writing& w, DAG series) {
  Word n = lengthOf(series);
  putInt(w, n);
  putRecord(w, series[1]);
  for (Word i = 2; i + 1 < n; i += 2) {
    putRecord(w, series[i]);
    putRecord(w, Newint(static_cast<std::int32_t>(rawField(series, i + 1))));
  }
}

void putModularPolynomial(Writing& w, DAG x) {
  Word n = lengthOf(x);
  putInt(w, n);
  putFields(w, x, 1, 3);
  bool raw = hasRawCoefficients(x);
  for (Word i = 3; i < n; ++i) {
    if (raw) putInt(w, static_cast<std::int32_t>(rawField(x, i)));
    else putRecord(w, x[i]);
  }
}

void putHashTable(Writing& w, DAG table) {
  putInt(w, lengthOf(table));
  putInt(w, hashcount(table));
  for (Word bucket = 1; bucket < lengthOf(table); ++bucket) {
    if (!table[bucket]) continue;
    visitChain(table[bucket], [&](PairAddress pair) {
      putRecord(w, pairKey(pair));
      putRecord(w, pairValue(pair));
      return true;
    });
  }
}

// ---- records

// Length, then every field: the tags whose length isn't implied.
constexpr TagSet countedTags = {COMPLEX, PROD, SUM, EXPSEQ, FOR, IF, STATSEQ, TRY, USE, DEBUG};
// Every field, the length being that of the tag.
constexpr TagSet impliedTags = (binaryTags | TagSet{RATIONAL, MEMBER, ASSIGN, TABLE, MODULE, MODDEF, UNEVAL, NOT, READ,
                                                    SAVE, ERROR, RETURN, STOP, BREAK, NEXT});
// Three fields, or four with an attribute, told by the code.
constexpr TagSet attributedTags = {FLOAT, TABLEREF, FUNCTION};

void putObject(Writing& w, DAG x) {
  Tag tag = tagOf(x);
  int number = tagNumber(tag);
  Word n = lengthOf(x);
  if (countedTags.contains(tag)) {
    putCode(w, tag == DEBUG ? int{recordDebug} : number);
    putInt(w, n);
    return putFields(w, x, 1, n);
  }
  if (impliedTags.contains(tag)) {
    putCode(w, number);
    return putFields(w, x, 1, n);
  }
  if (attributedTags.contains(tag)) {
    putCode(w, n == 4 ? number + recordAttribute : number);
    return putFields(w, x, 1, n);
  }
  switch (tag) {
    case LIST: case SET: {
      DAG body = asSequence(x[1]);
      putCode(w, n == 3 ? number + recordAttribute : number);
      putInt(w, lengthOf(body));
      putFields(w, body, 1, lengthOf(body));
      return putFields(w, x, 2, n);
    }
    case STRING: putNamed(w, number, x); return putRecord(w, x[2]);
    case NAME: return putName(w, x);
    case LOCAL: case PARAM:
      putCode(w, number); return putInt(w, std::int64_t{static_cast<std::int32_t>(rawField(x, 1))} + 2);
    case LEXICAL: {
      std::int64_t v = static_cast<std::int32_t>(rawField(x, 1));
      putCode(w, number);
      return putInt(w, v >= 0 ? 2 * v : 1 - 2 * v);
    }
    case PROC: putCode(w, number); return putProcedure(w, x);
    case SERIES: putCode(w, number); return putSeries(w, x);
    case ZPPOLY: putCode(w, number); return putModularPolynomial(w, x);
    case HASHTAB: putCode(w, recordTable); return putHashTable(w, x);
    case RTABLE: {
      putCode(w, number);
      return putRtable(w, x);
    }
    case CONTROL: putCode(w, recordControl); return putFields(w, x, 1, n);
    case HFLOAT:
      // A double has no record. The other end of the link is sent its value, which is all that it shows of it.
      if (w.numbers == &linkNumbers) return putObject(w, HFloatToFloat(x));
      [[fallthrough]];
    default: {
      char text[64];
      std::snprintf(text, sizeof text, "unexpected DAG type: %ld", static_cast<long>(number));
      failWriting(w, text);
    }
  }
}

}  // namespace

void putRecord(Writing& w, DAG x) {
  if (!x) return putCode(w, recordZero);
  if (!takesNumber(w, x)) return;
  ++w.depth;
  if (isInteger(x)) {
    putInteger(w, x);
  } else {
    if (stackExhausted()) failWriting(w, "too many levels of recursion");
    putObject(w, x);
  }
  --w.depth;
}

namespace {

bool putToStandardOutput(void*, int c) { return std::fputc(c, stdout) != EOF; }

// A function that takes one byte at a time, as the taker of pieces.
struct SingleBytes {
  PutByte putch;
  WriteFailure failed;
  void* context;
};
bool putSingly(void* single, const char* bytes, std::size_t n) {
  auto* s = static_cast<SingleBytes*>(single);
  for (std::size_t i = 0; i < n; ++i)
    if (!s->putch(s->context, static_cast<unsigned char>(bytes[i]))) return false;
  return true;
}
void failSingly(void* single, const char* text) {
  auto* s = static_cast<SingleBytes*>(single);
  s->failed(s->context, text);
}
void reportOnStandardError(void*, const char* text) { std::fprintf(stderr, "Output Error: %s\n", text); }

void leaveWriting(const char*) { --writingCalls; }

void begin(Writing& w, PutBytes putBytes, WriteFailure failed, int width, void* context) {
  w.putBytes = putBytes;
  w.failed = failed;
  w.width = width > 0 ? width : INT64_MAX;
  w.context = context;
  w.column = w.depth = w.flags = 0;
  w.repository = nullptr;
  w.at = w.bytes;
  w.end = w.bytes + sizeof w.bytes;
}
SingleBytes singly(PutByte putch, WriteFailure failed, void* context) {
  return {putch != nullptr ? putch : putToStandardOutput, failed != nullptr ? failed : reportOnStandardError, context};
}

}  // namespace

void forgetWrittenNumbers() { fileNumbers.forget(); }

DAG localsWrittenAsNames() {
  const std::vector<DAG>& locals = fileNumbers.locals;
  DAG all = newl2(static_cast<Word>(locals.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < locals.size(); ++i) all[static_cast<Word>(i + 1)] = locals[i];
  return all;
}

bool PrintDotM(DAG x, PutByte putch, WriteFailure failed, int width, int flags, RepositoryDesc* repository,
               void* context) {
  SingleBytes single = singly(putch, failed, context);
  return PrintRecord(x, putSingly, failSingly, width, flags, repository, &single);
}

bool PrintRecord(DAG x, PutBytes putBytes, WriteFailure failed, int width, int flags, RepositoryDesc* repository,
                 void* context) {
  Writing w;
  begin(w, putBytes, failed, width, context);
  w.flags = flags;
  w.repository = repository;
  w.numbers = (flags & recordOnLink) != 0 ? &linkNumbers : &fileNumbers;
  const bool keeps = (flags & recordKeepNumbers) != 0;
  if (!keeps) w.numbers->forget();
  if ((flags & recordContinueNumbers) == 0) w.numbers->last = 0;
  registerCollectionHook(forgetIdleNumbers, nullptr);
  ++writingCalls;
  PushStateKeeper(leaveWriting, nullptr);  // a reference may load its object first
  const bool written = _setjmp(w.stop) == 0;
  if (written) {
    putRecord(w, x);
    flush(w);
  }
  PopErrorProc();
  --writingCalls;
  if (!keeps) w.numbers->forget();
  return written;
}

bool PrintINT(std::int64_t value, PutByte putch, WriteFailure failed, int width, void* context) {
  SingleBytes single = singly(putch, failed, context);
  Writing w;
  begin(w, putSingly, failSingly, width, &single);
  if (_setjmp(w.stop) != 0) return false;
  putInt(w, value);
  flush(w);
  return true;
}

}  // namespace korel
