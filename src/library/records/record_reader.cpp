#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/known_values.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/records/record_codes.h"
#include "library/records/record_reading.h"
#include "library/records/records.h"
#include "library/repository/repository.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/check/verify_rules.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The reading that is innermost; those around it wait for what simplification loads.
Reading* innermost = nullptr;

// ---- numbers of objects

}  // namespace

Word takeNumber(Reading& r) {
  RecordNumbers& n = *r.numbers;
  if (n.count + 1 >= n.capacity) {
    Word capacity = n.capacity == 0 ? 1024 : 2 * n.capacity;
    auto* objects = static_cast<DAG*>(std::realloc(n.objects, std::size_t{capacity} * sizeof(DAG)));
    if (objects == nullptr) failReading(r, "ran out of memory");
    n.objects = objects;
    n.capacity = capacity;
  }
  n.objects[++n.count] = DAG();
  return n.count;
}

namespace {

DAG backReference(Reading& r) {
  std::int64_t number = nextInt(r);
  // An object that isn't complete is part of itself here, which only names and rtables can be.
  if (number < 1 || number > r.numbers->count || !r.numbers->objects[number]) failReading(r, "invalid back reference");
  return r.numbers->objects[number];
}

// ---- integers

// The next record when it is that of a short integer, wholly at hand, as most are; else 0, and nothing is taken
// (bench/link_bench.cpp).
inline DAG shortIntegerAtHand(Reading& r) {
  constexpr int mostShort = 9, mostCharacters = 2 + mostShort;
  constexpr int positive = dotMOutputTable[tagNumber(INTPOS)] + 32, negative = dotMOutputTable[tagNumber(INTNEG)] + 32;
  RecordNumbers& numbers = *r.numbers;
  ByteSource& source = *r.source;
  if (source.end - source.at < mostCharacters || numbers.count + 1 >= numbers.capacity) return DAG();
  const unsigned char* at = source.at;
  const int code = *at++;
  int left = *at++ - 33;
  if ((code != positive && code != negative) || left < 1 || left > mostShort) return DAG();
  std::uint32_t digits = 0, power = 1;
  do {
    const int single = *at++ - firstSingleDigit, pair = single - (firstDigitPair - firstSingleDigit);
    const bool isPair = pair >= 0;
    if (single < 0 || pair >= digitPairLimit) return DAG();
    digits += power * static_cast<std::uint32_t>(isPair ? pair : single);
    power *= isPair ? 100 : 10;
    left -= isPair ? 2 : 1;
  } while (left > 0);
  if (left != 0) return DAG();
  numbers.offset += at - source.at;
  source.at = at;
  const auto value = static_cast<std::int32_t>(digits);
  DAG x = code == positive ? immediate(value) : value == 0 ? consm0 : immediate(-value);
  return enter(r, ++numbers.count, x);
}

// ---- names and strings

// The names that earlier versions spelled otherwise.
const char* presentSpelling(const char* text) {
  struct Row {
    const char *before, *now;
  };
  constexpr Row rows[] = {{"\"", "%"}, {"\"\"", "%%"}, {"\"\"\"", "%%%"}};
  for (Row row : rows)
    if (std::strcmp(text, row.before) == 0) return row.now;
  return text;
}

// What the record of a name tells of it, a value and an attribute, becomes true. What is a front end's knows names
// by their text alone.
void assignRead(Reading& r, DAG name, bool isTop) {
  DAG value = nextSettled(r);
  DAG attribute = isTop ? nextSettled(r) : DAG();
  if (onLink(r) || isEnvironmentName(name)) return;
  if (value == name) {
    name[1] = DAG();  // as it is when it has none
  } else if (value) {
    value = settled(r, value);
    updategen(value);
    name[1] = value;
    controlWord(name) &= ~deferredBit;
    stepEvaluationClock();
  }
  if (!isTop) return;
  if (!attribute) failReading(r, "syntax error while reading file");
  attribute = settled(r, attribute);
  updategen(attribute);
  name[2] = attribute;
  if (attribute != null) controlWord(name) &= ~deferredBit;
}

DAG jumpStatement(Reading& r, Tag tag, bool isTop) {
  Word number = takeNumber(r);
  DAG statement = enter(r, number, simpl(new1(tag)));
  nextRecord(r);
  if (isTop) nextRecord(r);
  return statement;
}

DAG nextName(Reading& r, bool isTop) {
  const char* text = nextText(r);
  if (r.numbers->oldVersion) {
    if (std::strcmp(text, "break") == 0) return jumpStatement(r, BREAK, isTop);
    if (std::strcmp(text, "next") == 0) return jumpStatement(r, NEXT, isTop);
    text = presentSpelling(text);
  }
  DAG name;
  PairAddress pair = srchname(text);
  if (pair != notFound) name = pairValue(pair);
  else if (r.repository != nullptr) name = UniqueIdentToObjectRef(r.repository, text);
  if (!name) name = naminstall(text);
  enter(r, takeNumber(r), name);
  assignRead(r, name, isTop);
  return name;
}

DAG newDeferredName(const char* text) {
  DAG name = newLocalName(text);
  controlWord(name) |= deferredBit;
  return name;
}

DAG nextReference(Reading& r) {
  DAG object = newDeferredName(nextText(r));
  object[2] = null;
  DAG reference = newDeferredName(nextText(r));
  DAG result;
  if (r.repository != nullptr) {
    result = PutObjectReference(r.repository, reference, object)[1];
    if (!isTag(result, NAME)) failReading(r, "syntax error while reading file");
  } else {
    result = naminstall(textOf(object));
  }
  return enter(r, takeNumber(r), result);
}

DAG nextString(Reading& r) {
  const char* text = nextText(r);
  PairAddress pair = srchstring(text);
  DAG string = pair != notFound ? pairValue(pair) : strinstall(text);
  Word number = takeNumber(r);
  DAG attribute = nextSettled(r);
  if (!attribute) failReading(r, "syntax error while reading file");
  if (attribute != null) {
    DAG copy = CopyAlg(string);
    copy[2] = settled(r, attribute);
    string = simpl(copy);
  }
  return enter(r, number, string);
}

// ---- composite objects

bool isWellFormed(DAG s) {
  Finding finding;
  if (!checkShape(s, finding)) return false;
  for (Word i = nextComponent(s, 0); i != 0; i = nextComponent(s, i))
    if (!isImmediate(s[i]) && (!isObject(s[i]) || !checkComponent(s, i, finding))) return false;
    else if (isImmediate(s[i]) && !checkComponent(s, i, finding)) return false;
  return hasTag(s, SET) || checkWhole(s, finding);
}

// Kinds of which any parts make a well-formed object.
constexpr TagSet freeTags = {EXPSEQ,   LIST, SET, UNEVAL, NOT,    EQUATION, INEQUAT, LESSEQ,
                             LESSTHAN, AND,  OR,  RANGE,  DCOLON, CATENATE, POWER};
// On the link so does an assignment: what stands on its left is looked at when it is carried out.
constexpr TagSet freeOnLink = freeTags | TagSet{ASSIGN};

// What objects hold that are no values: nothing but the object that they belong to leads to them.
bool isInward(DAG x) {
  constexpr TagSet inwardTags = {HASHTAB, CONTROL, DEBUG};
  return x && !isImmediate(x) && inwardTags.contains(tagOf(x));
}
bool hasOnlyValues(DAG s) {
  for (Word i = 1, n = lengthOf(s); i < n; ++i)
    if (!s[i] || isInward(s[i])) return false;
  return true;
}
bool hasNumericMultiples(DAG s) {
  Word n = lengthOf(s);
  if (n % 2 == 0) return false;
  for (Word i = 2; i < n; i += 2)
    if (!isNumeric(s[i])) return false;
  return true;
}

void requireWellFormed(Reading& r, DAG s) {
  Tag tag = tagOf(s);
  bool good = (onLink(r) ? freeOnLink : freeTags).contains(tag) ? hasOnlyValues(s)
              : pairTags.contains(tag)                          ? hasOnlyValues(s) && hasNumericMultiples(s)
              : tag == FUNCTION                                 ? hasOnlyValues(s) && isSequence(s[2])
                                                                : isWellFormed(s);
  if (!good) failReading(r, "syntax error while reading file");
}

// A fraction is in lowest terms, whoever wrote it.
DAG lowestTerms(Reading& r, DAG s) {
  if (isZero(s[2])) failReading(r, "syntax error while reading file");
  const bool isLowest = isImmediate(s[1]) && isImmediate(s[2]) && immediateValue(s[2]) > 1 &&
                        std::gcd(immediateValue(s[1]), immediateValue(s[2])) == 1;
  return simpl(isLowest ? s : mul(s[1], power(s[2], -1)));
}

// The unique object of what has been read whole, its parts being settled. Procedures and statements were in their
// final form when they were written: their names are positions already.
DAG finished(Reading& r, DAG s) {
  requireWellFormed(r, s);
  if (hasTag(s, RATIONAL)) return lowestTerms(r, s);
  if (hasTag(s, TABLE) && !isTag(s[tableEntries], HASHTAB)) failReading(r, "syntax error while reading file");
  if (onLink(r)) return hasTag(s, EXPSEQ) && lengthOf(s) == 1 ? null : s;
  switch (tagOf(s)) {
    case TABLEREF:
      if (!isSequence(s[2])) failReading(r, "syntax error while reading file");
      break;
    case PROC: case MODDEF:
      if (isTag(localsOf(s), LIST)) localsOf(s) = asSequence(localsOf(s)[1]);
      return markSimplified(s);
    case CONTROL: case DEBUG: case HASHTAB: return s;
    case IF: case FOR: case ASSIGN: case READ: case SAVE: case STATSEQ: case STOP: case ERROR: case TRY: case RETURN:
    case USE:
      return markSimplified(s);
    default: break;
  }
  return simpl(s);
}

}  // namespace

void keepField(Reading& r, DAG field) {
  if (r.fieldCount == r.fieldSpace) {
    std::size_t space = r.fieldSpace == 0 ? 1024 : 2 * r.fieldSpace;
    auto* fields = static_cast<DAG*>(std::realloc(r.fields, space * sizeof(DAG)));
    if (fields == nullptr) failReading(r, "ran out of memory");
    r.fields = fields;
    r.fieldSpace = space;
  }
  r.fields[r.fieldCount++] = field;
}

namespace {

// An object of `n` words with the fields that follow. It is made when all have arrived.
DAG nextFields(Reading& r, Tag tag, Word n) {
  if (n == 2) return new2(tag, nextRecord(r));
  if (n == 3) {
    DAG a = nextRecord(r), b = nextRecord(r);
    return new3(tag, a, b);
  }
  const std::size_t first = r.fieldCount;
  for (Word i = 1; i < n; ++i) {
    DAG x = shortIntegerAtHand(r);
    keepField(r, x ? x : nextRecord(r));
  }
  DAG s = news(n);
  setHeader(s, tag, n);
  if (n > 1) std::memcpy(&s[1], r.fields + first, (n - 1) * sizeof(DAG));
  r.fieldCount = first;
  return s;
}

// The same, none of the fields waiting.
DAG nextSettledFields(Reading& r, Tag tag, Word n) {
  DAG s = nextFields(r, tag, n);
  settleFields(r, s);
  return s;
}

// Kinds that may wait: they are simplified in place or replaced, and nothing before needs to know which.
bool mayWait(Reading& r, DAG s) {
  constexpr TagSet waitingTags = {EXPSEQ, LIST, SET, FUNCTION, SUM, PROD, EQUATION, RANGE, UNEVAL};
  const Tag tag = tagOf(s);
  if (onLink(r) || lengthOf(s) == 1 || !waitingTags.contains(tag) || !hasOnlyValues(s)) return false;
  return tag == FUNCTION ? isSequence(s[2]) : !pairTags.contains(tag) || hasNumericMultiples(s);
}

// The end of a record whose object has all its fields.
DAG complete(Reading& r, Word number, DAG s) {
  if (mayWait(r, s)) return letWait(r, number, s);
  settleFields(r, s);
  return enter(r, number, finished(r, s));
}

DAG nextCollection(Reading& r, Tag tag, bool hasAttribute) {
  Word number = takeNumber(r);
  DAG body = nextFields(r, EXPSEQ, nextLength(r, 1));
  if (mayWait(r, body)) {
    body = letWait(r, 0, body);
  } else {
    settleFields(r, body);
    requireWellFormed(r, body);
    if (lengthOf(body) == 1) body = null;
    else if (!onLink(r)) body = simpl(body);
  }
  return complete(r, number, hasAttribute ? new3(tag, body, nextRecord(r)) : new2(tag, body));
}

DAG nextSeries(Reading& r) {
  Word number = takeNumber(r);
  Word n = nextLength(r, 2);
  if (n % 2 != 0) failReading(r, "invalid dag length");
  DAG read = nextSettledFields(r, EXPSEQ, n);
  // Exponents come as integers and are kept as plain words.
  DAG series = newl2(n, SERIES);
  series[1] = read[1];
  for (Word i = 2; i < n; i += 2) {
    DAG exponent = read[i + 1];
    if (!isImmediate(exponent)) failReading(r, "syntax error while reading file");
    series[i] = read[i];
    rawField(series, i + 1) = static_cast<Word>(immediateValue(exponent));
  }
  return enter(r, number, finished(r, series));
}

DAG nextModularPolynomial(Reading& r) {
  Word number = takeNumber(r);
  Word n = nextLength(r, 3);
  DAG head = nextSettledFields(r, EXPSEQ, 3);
  if (!head[1] || !head[2]) failReading(r, "syntax error while reading file");
  DAG s = newl4(n < trustedLength ? n : trustedLength, ZPPOLY, head[1], head[2]);
  const bool raw = hasRawCoefficients(s);
  for (Word i = 3; i < n; ++i) {
    if (i >= lengthOf(s)) {
      Word more = n - lengthOf(s);
      s = enlarge(s, more < lengthOf(s) ? more : lengthOf(s));
    }
    if (raw) rawField(s, i) = static_cast<Word>(nextInt(r));
    else s[i] = nextSettled(r);
  }
  return enter(r, number, finished(r, s));
}

DAG nextHashTable(Reading& r) {
  Word number = takeNumber(r);
  Word n = nextLength(r, 2);
  constexpr Word mostBuckets = Word{1} << 22;
  if (((n - 1) & (n - 2)) != 0 || n - 1 > mostBuckets) failReading(r, "invalid dag length");
  Word pairs = nextCount(r, maxLength);
  const std::size_t first = r.fieldCount;
  for (Word i = 0; i < pairs; ++i) {
    DAG key = nextRecord(r), value = nextRecord(r);
    if (!key || !value || isInward(key) || isInward(value)) failReading(r, "syntax error while reading file");
    keepField(r, key);
    keepField(r, value);
  }
  settleWaiting(r);
  DAG table = newhashtab(n - 1);
  for (const DAG *pair = r.fields + first, *end = r.fields + r.fieldCount; pair != end; pair += 2) {
    DAG key = simpl(settledObject(pair[0]));
    hashinsert(key.word, simpl(settledObject(pair[1])), table);
  }
  r.fieldCount = first;
  return enter(r, number, table);
}

// A built-in is known by its name: its number is the present version's.
DAG nextBuiltin(Reading& r, DAG proc) {
  DAG name = nextSettled(r);
  if (!isName(name)) failReading(r, "name for built-in expected");
  DAG body = bodyOf(proc);
  auto isNumberOf = [&](int k) { return std::strcmp(textOf(ininame[k]), textOf(name)) == 0; };
  if (isImmediate(body) && immediateValue(body) >= firstBuiltin && immediateValue(body) < maxinin &&
      isNumberOf(immediateValue(body)))
    return proc;
  for (int k = firstBuiltin; k < maxinin; ++k)
    if (isNumberOf(k)) {
      bodyOf(proc) = immediate(k);
      return proc;
    }
  constexpr const char* unknown = "unknown built-in function `%s` ignored";
  DAG text = newl2(textLength(static_cast<Word>(std::strlen(unknown) + std::strlen(textOf(name)))), BINARY);
  std::sprintf(textOf(text), unknown, textOf(name));
  r.warn(r.context, r.numbers->offset, textOf(text));
  return DAG();
}

DAG nextProcedure(Reading& r, Word fields) {
  Word number = takeNumber(r);
  DAG proc = newl2(procLength, PROC);
  for (Word i = 1; i < procLength; ++i) proc[i] = i <= fields ? nextSettled(r) : null;
  requireWellFormed(r, proc);
  if (isMember(ini("builtin"), optionsOf(proc))) {
    proc = nextBuiltin(r, proc);
    if (!proc) return DAG();
  } else if (isBuiltinProcedure(proc)) {
    // The number of a built-in without the option that says so: an ordinary body.
    bodyOf(proc) = simpl(new2(STATSEQ, bodyOf(proc)));
  }
  return enter(r, number, finished(r, proc));
}

DAG nextPosition(Reading& r, Tag tag, bool isSigned) {
  Word number = takeNumber(r);
  std::int64_t v = nextInt(r);
  if (isSigned) v = v % 2 == 0 ? v / 2 : -(v / 2);
  else v -= 2;
  DAG s = newl2(2, tag);
  rawField(s, 1) = static_cast<Word>(static_cast<std::int32_t>(v));
  return enter(r, number, finished(r, s));
}

DAG nextFloat(Reading& r, Word n) {
  Word number = takeNumber(r);
  DAG s = nextSettledFields(r, FLOAT, n);
  requireWellFormed(r, s);
  return enter(r, number, simpl(s));
}

// Records of fields alone: `n` words, or a length that the record tells.
DAG nextObject(Reading& r, Tag tag, Word n) {
  Word number = takeNumber(r);
  if (n == 0) n = nextLength(r, 1);
  return complete(r, number, nextFields(r, tag, n));
}

constexpr TagSet countedTags = {COMPLEX, PROD, SUM, EXPSEQ, FOR, IF, STATSEQ, TRY, USE};
constexpr TagSet impliedTags =
    binaryTags | TagSet{RATIONAL, MEMBER, ASSIGN, TABLE, MODULE, MODDEF, UNEVAL,   NOT,     READ,
                        SAVE,     ERROR,  RETURN, STOP,  BREAK,  NEXT,   TABLEREF, FUNCTION};

[[noreturn]] void unexpectedCode(Reading& r, int code, int c) {
  char text[80];
  std::snprintf(text, sizeof text, "unexpected DAG type: %ld,%d,(%c)", static_cast<long>(code), c, c);
  failReading(r, text);
}

DAG recordOfTag(Reading& r, Tag tag, int c) {
  switch (tag) {
    case INTNEG: case INTPOS: return nextInteger(r, tag);
    case FLOAT: return nextFloat(r, 3);
    case LIST: case SET: return nextCollection(r, tag, false);
    case STRING: return nextString(r);
    case NAME: return nextName(r, false);
    case LOCAL: case PARAM: return nextPosition(r, tag, false);
    case LEXICAL: return nextPosition(r, tag, true);
    case PROC: return nextProcedure(r, procLength - 1);
    case SERIES: return nextSeries(r);
    case ZPPOLY: return nextModularPolynomial(r);
    case RTABLE: {
      Word number = takeNumber(r);
      DAG rtable = nextRtable(r, number);
      return enter(r, number, onLink(r) ? rtable : simpl(rtable));
    }
    default:
      if (countedTags.contains(tag)) return nextObject(r, tag, 0);
      if (impliedTags.contains(tag)) return nextObject(r, tag, factsOf(tag).least);
      unexpectedCode(r, tagNumber(tag), c);
  }
}

DAG recordOfCode(Reading& r, int code, int c) {
  switch (code) {
    case recordTable: return nextHashTable(r);
    case recordBack: return backReference(r);
    case recordZero: return DAG();
    case recordReference: return nextReference(r);
    case recordControl: return nextObject(r, CONTROL, 2);
    case recordDebug: return nextObject(r, DEBUG, 0);
    case recordTopName: return nextName(r, true);
    case recordOldProc: return nextProcedure(r, procLength - 2);
    case recordOldLexical: return nextPosition(r, LEXICAL, false);
    case recordOldLocal: return nextPosition(r, LOCAL, true);
    case recordOldParam: return nextPosition(r, PARAM, true);
    case recordOldFloatArray: {
      Word number = takeNumber(r);
      DAG rtable = nextOldFloatArray(r);
      return enter(r, number, onLink(r) ? rtable : simpl(rtable));
    }
    default: break;
  }
  Tag tag = tagFromNumber(code - recordAttribute);
  switch (code > recordAttribute ? tag : NOTAG) {
    case FLOAT: return nextFloat(r, 4);
    case TABLEREF: case FUNCTION: return nextObject(r, tag, 4);
    case LIST: case SET: return nextCollection(r, tag, true);
    default: unexpectedCode(r, code, c);
  }
}

}  // namespace

DAG nextRecord(Reading& r) {
  if (DAG x = shortIntegerAtHand(r)) return x;
  int c = next(r);
  int code = dotMInputTable[static_cast<std::size_t>(c)];
  if (code == 0) unexpectedCode(r, code, c);
  if (stackExhausted()) failReading(r, "too many levels of recursion");
  return code < recordTable ? recordOfTag(r, tagFromNumber(code), c) : recordOfCode(r, code, c);
}

DAG settled(Reading& r, DAG x) {
  if (isInward(x)) failReading(r, "syntax error while reading file");
  return onLink(r) ? x : simpl(x);
}

// ---- calls

namespace {

int getFromStandardInput(void*) { return std::fgetc(stdin); }

// Bytes that a function gives, one at a time: none is taken before it is wanted.
struct SingleBytes {
  ByteSource source;
  GetByte getch;
  void* context;
  unsigned char byte = 0;

  SingleBytes(GetByte get, void* of) : getch(get != nullptr ? get : getFromStandardInput), context(of) {
    source.more = more;
    source.context = this;
  }
  static bool more(ByteSource& source) {
    auto* self = static_cast<SingleBytes*>(source.context);
    int c = self->getch(self->context);
    if (c < 0) return false;
    self->byte = static_cast<unsigned char>(c);
    source.at = &self->byte;
    source.end = source.at + 1;
    return true;
  }
};
void reportEnd(void*, long offset) {
  std::fprintf(stderr, "Input Error at %ld: %s\n", offset, "unexpected end of input");
}
void reportFailure(void*, long offset, const char* text) {
  std::fprintf(stderr, "Input Error at %ld: %s\n", offset, text);
}
void reportWarning(void*, long offset, const char* text) { std::fprintf(stderr, "Warning(%ld): %s\n", offset, text); }

void releaseScratch(Reading& r) {
  forgetWaiting(r);
  std::free(r.text);
  std::free(r.block);
  std::free(r.fields);
  innermost = r.outer;
}
// An error of the language passes, or an interrupt: simplification has raised it.
void releaseScratchOnError(const char*) { releaseScratch(*reinterpret_cast<Reading*>(errorProcParam)); }
void releaseNumbersOnError(const char*) { releaseNumbers(*reinterpret_cast<RecordNumbers*>(errorProcParam)); }

// Numbers that `recordKeepNumbers` keeps between the calls of `ParseDotM`.
RecordNumbers keptNumbers;

Reading newReading(ByteSource& source, ReadEnd ended, ReadMessage failed, ReadMessage warn, void* context) {
  Reading r{};
  r.source = &source;
  r.ended = ended != nullptr ? ended : reportEnd;
  r.failed = failed != nullptr ? failed : reportFailure;
  r.warn = warn != nullptr ? warn : reportWarning;
  r.context = context;
  r.outer = innermost;
  return r;
}

}  // namespace

void releaseNumbers(RecordNumbers& numbers) {
  std::free(numbers.objects);
  numbers = RecordNumbers();
}

DAG ParseRecord(ByteSource& source, ReadEnd ended, ReadMessage failed, ReadMessage warn, int flags,
                RepositoryDesc* repository, void* context, RecordNumbers& numbers) {
  Reading r = newReading(source, ended, failed, warn, context);
  r.flags = flags;
  r.repository = repository;
  r.numbers = &numbers;
  if ((flags & recordContinueNumbers) == 0) numbers.count = 0;
  innermost = &r;
  PushStateKeeper(releaseScratchOnError, &r);
  DAG volatile result{};
  if (_setjmp(r.stop) == 0) {
    DAG x = nextRecord(r);
    settleWaiting(r);
    const_cast<DAG&>(result) = settledObject(x);
  }
  PopErrorProc();
  releaseScratch(r);
  return const_cast<DAG&>(result);
}

DAG ParseDotM(GetByte getch, ReadEnd ended, ReadMessage failed, ReadMessage warn, int flags, RepositoryDesc* repository,
              void* context) {
  if ((flags & recordContinueNumbers) == 0) releaseNumbers(keptNumbers);
  RecordNumbers numbers = keptNumbers;
  keptNumbers = RecordNumbers();
  SingleBytes bytes(getch, context);
  PushStateKeeper(releaseNumbersOnError, &numbers);
  DAG x = ParseRecord(bytes.source, ended, failed, warn, flags, repository, context, numbers);
  PopErrorProc();
  if ((flags & recordKeepNumbers) != 0) keptNumbers = numbers;
  else releaseNumbers(numbers);
  return x;
}

std::int64_t ParseINT(GetByte getch, ReadEnd ended, ReadMessage failed, void* context) {
  SingleBytes bytes(getch, context);
  Reading r = newReading(bytes.source, ended, failed, nullptr, context);
  RecordNumbers numbers;
  r.numbers = &numbers;
  if (_setjmp(r.stop) != 0) return -1;
  return nextInt(r);
}

}  // namespace korel
