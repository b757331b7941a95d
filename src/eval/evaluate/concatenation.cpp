#include "eval/evaluate/concatenation.h"

#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG joinText(DAG left, const char* tail) {
  char* text = AppendStringToString(AppendStringToString(NewLongString(), textOf(left)), tail);
  return hasTag(left, STRING) ? StringToMString(text) : StringToName(text);
}

// Appends the text of a string, name or integer; null when fewer than `room` characters are left for it.
char* appendPart(char* end, std::ptrdiff_t room, DAG part) {
  constexpr std::ptrdiff_t longestImmediate = 12;
  if (isImmediate(part)) return room > longestImmediate ? writeDecimal(part, end) : nullptr;
  if (isInteger(part)) return SoftIntLength(part) + 1 < room ? writeDecimal(part, end) : nullptr;
  auto size = static_cast<std::ptrdiff_t>(std::strlen(textOf(part)));
  if (size >= room) return nullptr;
  std::memcpy(end, textOf(part), static_cast<std::size_t>(size));
  return end + size;
}

// The text of `count` strings, names or integers in a row.
DAG joinParts(const DAG* parts, Word count, Tag tag) {
  // Most texts fit into a buffer on the stack.
  char brief[256];
  char* end = brief;
  for (Word i = 0; i < count && end != nullptr; ++i) end = appendPart(end, brief + sizeof brief - end, parts[i]);
  if (end != nullptr) {
    *end = '\0';
    return strnaminstall(brief, tag);
  }
  char* text = NewLongString();
  for (Word i = 0; i < count; ++i)
    text = AppendStringToString(text, textOf(isInteger(parts[i]) ? KorelIntToStr(parts[i]) : parts[i]));
  return tag == STRING ? StringToMString(text) : StringToName(text);
}

DAG joinOne(DAG left, DAG x) {
  const DAG parts[2] = {left, x};
  return joinParts(parts, 2, hasTag(left, STRING) ? STRING : NAME);
}

DAG joinRange(DAG left, DAG from, DAG to) {
  if (isInteger(from) && isInteger(to)) {
    DAG span = add(to, negate(from));
    if (consneg(span)) return null;
    if (!isImmediate(span) || immediateValue(span) >= static_cast<std::int32_t>(maxLength) - 1)
      KernelException("object too large");
    Word count = static_cast<Word>(immediateValue(span)) + 1;
    DAG sequence = newl2(count + 1, EXPSEQ);
    DAG k = from;
    for (Word i = 1; i <= count; ++i, k = increment(k)) {
      passWork(objectSteps);
      sequence[i] = joinOne(left, k);
    }
    return simpl(sequence);
  }
  if (isCharacter(from) && isCharacter(to)) {
    int lo = static_cast<unsigned char>(textOf(from)[0]), hi = static_cast<unsigned char>(textOf(to)[0]);
    if (hi < lo) return null;
    DAG sequence = newl2(static_cast<Word>(hi - lo + 2), EXPSEQ);
    for (int c = lo; c <= hi; ++c) {
      char tail[2] = {static_cast<char>(c), 0};
      sequence[c - lo + 1] = joinText(left, tail);
    }
    return simpl(sequence);
  }
  auto isConstant = [](DAG x) { return isNumeric(x) || hasTag(x, COMPLEX) || hasTag(x, STRING); };
  if (isConstant(from) && isConstant(to)) KernelException("range values must be integers or characters");
  return DAG();
}

bool canJoin(DAG x) { return isText(x) || isInteger(x); }

}  // namespace

DAG concatenate(DAG left, DAG right) {
  if (isTag(left, EXPSEQ)) {
    DAG sequence = CopyAlg(left);
    for (Word i = 1; i < lengthOf(left); ++i) sequence[i] = concatenate(left[i], right);
    return simpl(sequence);
  }
  if (isText(left) && canJoin(right)) return joinOne(left, right);
  DAG unjoined = simpl(new3(CATENATE, left, right));
  if (!isText(left)) return unjoined;
  if (isTag(right, RANGE)) {
    if (right[1] == right[2]) return concatenate(left, right[1]);
    DAG joined = joinRange(left, right[1], right[2]);
    return joined ? joined : unjoined;
  }
  if (isTag(right, EXPSEQ)) {
    for (Word i = 1; i < lengthOf(right); ++i)
      if (!canJoin(right[i])) return unjoined;
    DAG sequence = CopyAlg(right);
    for (Word i = 1; i < lengthOf(right); ++i) sequence[i] = joinOne(left, right[i]);
    return simpl(sequence);
  }
  if (isTag(right, TABLEREF) && (isTag(right[1], NAME) || isTag(right[1], TABLEREF))) {
    DAG moved = CopyAlg(right);
    moved[1] = concatenate(left, right[1]);
    return simpl(moved);
  }
  return unjoined;
}

DAG korelCat(DAG parts) {
  const Word count = lengthOf(parts) - 1;
  return joinParts(&parts[1], count, count > 0 && hasTag(parts[1], STRING) ? STRING : NAME);
}

}  // namespace korel
