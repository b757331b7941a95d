#include "builtins/raw_objects.h"

#include "builtins/builtins.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr int lastAssembledTag = tagNumber(HASHTAB);
constexpr std::int64_t largestWord = 0xffffffff;
constexpr std::int64_t lowestWord = -0x80000000ll;

bool isWord(DAG x) {
  if (!isInteger(x)) return false;
  if (isImmediate(x)) return true;
  if (!FitIntoLongLong(x)) return false;
  std::int64_t value = LongLongValue(x);
  return value >= lowestWord && value <= largestWord;
}

// The word with these bits; numbers from 2^31 on are the unsigned form of negative ones.
Word wordOf(DAG integer) { return static_cast<Word>(LongLongValue(integer)); }
DAG integerOf(Word word) { return simpl(Newint(static_cast<std::int32_t>(word))); }

DAG theArgument(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return call.arguments[1];
}

DAG objectAtArgument(const BuiltinCall& call) {
  DAG address = theArgument(call);
  if (!isInteger(address)) wrongParameters(call);
  if (isWord(address)) {
    DAG x(wordOf(address));
    if (VerifyLevels(x, 1)) return x;
  }
  KernelException("object at address is invalid");
}

Tag requestedTag(DAG given) {
  int number = 0;
  if (isObject(given) && hasTag(given, NAME)) number = DagNameToID(textOf(given));
  else if (isImmediate(given)) number = immediateValue(given);
  else KernelException("dagtag expected, but got %1", given);
  if (number < 1 || number > lastAssembledTag) KernelException("invalid ID field in assemble");
  if (tagFromNumber(number) == RTABLE) KernelException("rtables cannot be built using assemble");
  return tagFromNumber(number);
}

bool isIntegerTag(Tag tag) { return tag == INTNEG || tag == INTPOS; }

// The canonical form of a heap integer, whose digits are in range but may begin with zeros.
DAG canonicalInteger(DAG s) {
  Word length = lengthOf(s), used = length;
  while (used > 2 && rawField(s, used - 1) == 0) --used;
  if (used < length) shorten(s, length, used);
  return MakeImmediate(s);
}

[[noreturn]] void rejectAssembled(DAG s) {
  Word length = lengthOf(s);
  for (Word i = 1; i < length; ++i) rawField(s, i) = 0;
  release(s, length);
  KernelException("assembled object is invalid");
}

}  // namespace

DAG builtin::assemble(const BuiltinCall& call) {
  if (argumentCount(call) == 0) wrongParameters(call);
  DAG words = call.arguments;
  Tag tag = requestedTag(words[1]);
  Word length = argumentCount(call);  // the tag's place is the header's
  for (Word i = 1; i < length; ++i)
    if (!isWord(words[i + 1])) KernelException("integer expected, but got %1", words[i + 1]);

  DAG s = tag == HFLOAT && length == 3 ? newDoubleAligned(2, HFLOAT) : newl2(length, tag);
  for (Word i = 1; i < length; ++i) rawField(s, i) = wordOf(words[i + 1]);
  if (!VerifyLevels(s, 1)) rejectAssembled(s);
  if (isIntegerTag(tag)) s = canonicalInteger(s);
  updategens(s);
  return integerOf(s.word);
}

DAG builtin::disassemble(const BuiltinCall& call) {
  DAG x = objectAtArgument(call);
  DAG number = immediate(tagNumber(tagOf(x)));
  if (isImmediate(x)) return simpl(new3(EXPSEQ, number, integerOf(x.word)));
  Word length = lengthOf(x);
  DAG words = newl2(length + 1, EXPSEQ);
  words[1] = number;
  for (Word i = 1; i < length; ++i) words[i + 1] = integerOf(rawField(x, i));
  return simpl(words);
}

DAG builtin::addressof(const BuiltinCall& call) { return integerOf(theArgument(call).word); }

DAG builtin::pointto(const BuiltinCall& call) {
  DAG x = objectAtArgument(call);
  updategen(x);
  return x;
}

}  // namespace korel
