// Copying and reshaping objects.

#include <cstring>

#include "numbers/integer/integer.h"
#include "store/generations.h"
#include "store/objects.h"

namespace korel {

namespace {

void copyFields(DAG dst, Word dstAt, DAG src, Word srcAt, Word n) {
  // Most objects are short: a loop ends before a call has found out how to copy them.
  constexpr Word shortLength = 12;
  if (n <= shortLength) {
    for (Word i = 0; i < n; ++i) dst[dstAt + i] = src[srcAt + i];
    return;
  }
  std::memmove(static_cast<void*>(&dst[dstAt]), &src[srcAt], std::size_t{4} * n);
}

DAG freshOf(DAG s, Word n) {
  DAG t = news(n);
  setHeader(t, tagOf(s), n);
  return t;
}

constexpr Word flagMask = (Word{1} << generationShift) - 1;

}  // namespace

void copy(DAG dst, DAG src) {
  if (isImmediate(src)) {
    Word control = controlWord(dst);
    CopyIntoSoftInt(dst, src);
    controlWord(dst) = control;
    return;
  }
  for (std::int64_t i = std::int64_t{lengthOf(src)} - 1; i >= 0; --i) dst[i] = src[i];
}

DAG CopyAlg(DAG s) {
  if (isImmediate(s)) return s;
  Word n = lengthOf(s);
  // The double of an HFLOAT keeps its alignment.
  DAG t = hasTag(s, HFLOAT) ? newDoubleAligned(n - 1, HFLOAT) : freshOf(s, n);
  copyFields(t, 1, s, 1, n - 1);
  return t;
}

DAG copydel(DAG s, Word pos, Word n) {
  Word length = lengthOf(s);
  DAG t = freshOf(s, length - n);
  copyFields(t, 1, s, 1, pos);
  copyFields(t, pos + 1, s, pos + n + 1, length - pos - n - 1);
  return t;
}

DAG copysub(DAG s, Word pos, Word n) {
  DAG t = freshOf(s, n + 1);
  copyFields(t, 1, s, pos + 1, n);
  return t;
}

DAG space_insert(DAG s, Word pos, Word n) {
  Word length = lengthOf(s);
  DAG t = freshOf(s, length + n);
  copyFields(t, 1, s, 1, pos);
  std::memset(static_cast<void*>(&t[pos + 1]), 0, std::size_t{4} * n);
  copyFields(t, pos + n + 1, s, pos + 1, length - pos - 1);
  return t;
}

DAG enlarge(DAG s, Word k) {
  if (k == 0) return s;
  Word length = lengthOf(s);
  DAG t = freshOf(s, length + k);
  controlWord(t) = (controlWord(s) & ~flagMask) | (controlWord(s) & protectedBit);
  copyFields(t, 1, s, 1, length - 1);
  std::memset(static_cast<void*>(&t[length]), 0, std::size_t{4} * k);
  release(s, length);
  return t;
}

void shorten(DAG s, Word oldLength, Word newLength) {
  release_space(s.word + 4 * newLength, std::int64_t{oldLength} - newLength);
  headerWord(s) = (headerWord(s) & tagMask) | newLength;
}

void shrinkn(DAG s, Word pos, Word n) {
  if (n == 0) return;
  Word length = lengthOf(s);
  copyFields(s, pos + 1, s, pos + n + 1, length - pos - n - 1);
  shorten(s, length, length - n);
  controlWord(s) = genpat | (controlWord(s) & flagMask);
}

}  // namespace korel
