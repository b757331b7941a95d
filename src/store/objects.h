#pragma once
// Making, copying and reshaping objects.
//
// The new objects carry the current generation's label and no flag. Tags are header constants. A
// fresh object is unsimplified: whoever keeps or compares it passes it through `simpl` first.

#include <initializer_list>

#include "store/allocator.h"
#include "store/dag.h"

namespace korel {

/// A new object of `n` words with tag 0; the fields are not cleared and the caller sets the header.
inline DAG news(Word n) {
  DAG s(get_space(n + 1) + 4);
  controlWord(s) = genpat;
  headerWord(s) = n;
  return s;
}

template <class... Fields>
inline DAG newObject(Tag tag, Fields... fields) {
  constexpr Word length = 1 + sizeof...(Fields);
  DAG s(get_space(length + 1) + 4);
  controlWord(s) = genpat;
  headerWord(s) = tag | length;
  [[maybe_unused]] DAG* field = &s[1];
  ((*field++ = fields), ...);
  return s;
}
inline DAG new1(Tag tag) { return newObject(tag); }
inline DAG new2(Tag tag, DAG a) { return newObject(tag, a); }
inline DAG new3(Tag tag, DAG a, DAG b) { return newObject(tag, a, b); }
inline DAG new4(Tag tag, DAG a, DAG b, DAG c) { return newObject(tag, a, b, c); }
inline DAG new5(Tag tag, DAG a, DAG b, DAG c, DAG d) { return newObject(tag, a, b, c, d); }
inline DAG new6(Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e) { return newObject(tag, a, b, c, d, e); }
inline DAG new7(Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e, DAG f) { return newObject(tag, a, b, c, d, e, f); }
inline DAG new8(Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e, DAG f, DAG g) {
  return newObject(tag, a, b, c, d, e, f, g);
}
inline DAG new9(Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e, DAG f, DAG g, DAG h) {
  return newObject(tag, a, b, c, d, e, f, g, h);
}
inline DAG new10(Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e, DAG f, DAG g, DAG h, DAG i) {
  return newObject(tag, a, b, c, d, e, f, g, h, i);
}

/// A new object of `n` words, tag 0, fields zero.
DAG newl1(Word n);
/// A new object of `n` words with `tag`; the fields given first, the rest zero.
DAG newl2(Word n, Tag tag);
DAG newl3(Word n, Tag tag, DAG a);
DAG newl4(Word n, Tag tag, DAG a, DAG b);
DAG newl5(Word n, Tag tag, DAG a, DAG b, DAG c);
DAG newl6(Word n, Tag tag, DAG a, DAG b, DAG c, DAG d);
DAG newl7(Word n, Tag tag, DAG a, DAG b, DAG c, DAG d, DAG e);

/// An EXPSEQ of the given members.
DAG newSequence(std::initializer_list<DAG> members);
/// The call `function(members...)`, not simplified.
DAG newCall(DAG function, std::initializer_list<DAG> arguments);

/// Length in words of a NAME or STRING whose text has `characters` characters.
constexpr Word textLength(std::uint64_t characters) { return static_cast<Word>(4 + (characters >> 2)); }
/// No text is longer.
constexpr std::size_t longestTextLength = 4 * (std::size_t{maxLength} - 8);
/// A NAME outside the name table: a local's instance.
DAG newLocalName(const char* text);
/// A protected, zero-filled FOREIGN object; 0 when memory fails (no error is raised).
DAG newForeign(Word n);
/// An object of length `n` + 1 whose s[1] lies at a multiple of 8; fields zero.
DAG newDoubleAligned(Word n, Tag tag);
/// The HFLOAT of `x`; with `inPlace` the one static object, which the next such call overwrites.
DAG NewHFloat(double x, bool inPlace);
double hfloatValue(DAG hfloat);
extern DAG static_hfloat;

/// Overwrites `dst` with the header and fields of `src`; an immediate `src` is written as a heap integer of
/// its value. `dst` is as long as `src`: words left over would lead every walk over the heap astray.
void copy(DAG dst, DAG src);
/// Shallow copy: fresh control word, same tag and fields. An immediate is returned as it is.
DAG CopyAlg(DAG s);
/// Fresh copy with `n` words left out after position `pos`.
DAG copydel(DAG s, Word pos, Word n);
/// Fresh object of the tag of `s`, holding s[pos+1] to s[pos+n].
DAG copysub(DAG s, Word pos, Word n);
/// Fresh copy with `n` zero words opened after position `pos`.
DAG space_insert(DAG s, Word pos, Word n);
/// Fresh object `k` words longer, the new words zero; the storage of `s` is given back, its label and
/// protection kept. The caller holds the only reference. k = 0 returns `s`.
DAG enlarge(DAG s, Word k);
/// In place: gives back the tail behind `newLength`.
void shorten(DAG s, Word oldLength, Word newLength);
/// In place: removes `n` words after position `pos` and relabels the object as of now.
void shrinkn(DAG s, Word pos, Word n);

/// A deep copy of the structure below `x`, unsimplified, names and strings through their tables. The
/// word 2 when `x` is no valid structure. Shared parts stay shared.
DAG CopyDAG(DAG x);

inline void PushDAGArea() {}
inline DAG PopDAGArea() { return DAG(); }

}  // namespace korel
