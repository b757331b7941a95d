#pragma once
// What a kind of object does in its own way: one row of functions for each tag.
//
// The generic operations (`op`, `subsop`, `map`, `select`, `subs`, `length`, equality, attributes, `sort`,
// x[i], x[i] := v) know one common rule each. A row holds what its kind does otherwise, or why it refuses; an
// entry that is left out means the common rule, as it stands beside the entry. Rows stand with their subject:
//
//   sum_kinds.cpp        sums, products
//   sequence_kinds.cpp   lists, sets, sequences, calls, indexed names
//   leaf_kinds.cpp       numbers, texts, names, what refers to a frame
//   procedure_kinds.cpp  procedures, modules, `try`
//   eval/tables, algebra, rtable: those of their rooms
//
// A new kind of object writes its row in its own room; kinds.cpp lists the rows by tag. What every evaluation
// passes asks no row: `eval`, `simpl`, hashing, marking and the parts of walks (eval/walk/part_walk.h) are
// switches.

#include <cstdint>

#include "eval/structure/map.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"
#include "eval/tables/tables.h"
#include "store/dag.h"
#include "store/tag_facts.h"

namespace korel {

struct Kind {
  // ---- where things stand

  Word body = 0;            // field with the EXPSEQ of the operands; 0: they are the fields from 1 on
  Word headField = 0;       // field that is the head, for `op` and `subsop`; 0: no operand at 0
  Word attributeField = 0;  // last field, present in objects with an attribute only; 0: none
  bool isSingle = false;    // one operand, itself, for `map`, `select` and `remove`

  // ---- the view of `op`

  /// op(0, x). Common: the head field, or the name in tags.def, or "improper op or subscript selector".
  DAG (*head)(DAG x) = nullptr;
  /// Common: the members of the body, or the fields.
  std::int64_t (*count)(DAG x) = nullptr;
  /// op(i, x), i at least 1. Common: that member or field.
  DAG (*operand)(DAG x, std::int64_t i) = nullptr;

  // ---- subsop: taken apart, changed, put together

  /// A raw copy in which every operand has a place. Common: a copy, and one of the body.
  DAG (*takeApart)(DAG x) = nullptr;
  /// Puts operand `i`, at least 1. Common: as member or field; in raw fields, the number of an integer.
  void (*replace)(TakenApart& object, std::int64_t i, DAG replacement) = nullptr;
  /// Common: `simpl`.
  DAG (*putTogether)(const TakenApart& object) = nullptr;

  // ---- walks

  /// Common: the walk over the body or the reference fields.
  DAG (*map)(const OperandWalk& walk, DAG x) = nullptr;
  /// Common: the fields.
  DAG (*substitute)(Substitution& substitution, DAG x) = nullptr;
  /// What `length` adds for the object. Common: its words and those of its parts.
  std::int64_t (*size)(DAG x) = nullptr;

  // ---- equality, of two objects of the kind that are not the same word

  /// Common: the same structure, and the same entries.
  bool (*equal)(DAG a, DAG b) = nullptr;
  /// Common: never.
  bool (*sameStructure)(DAG a, DAG b) = nullptr;
  /// Common: of algebraic objects that `a = b` is true, of others never.
  bool (*sameEntries)(DAG a, DAG b) = nullptr;

  // ---- entries

  /// The value of x[index], or 0 when nothing is selected. Common: nothing.
  DAG (*index)(DAG x, DAG index) = nullptr;
  /// x[index] := value, where `name` holds x. Common: `storeRefusal`, or a new table for the name.
  void (*store)(DAG index, DAG name, DAG x, DAG value) = nullptr;
  const char* storeRefusal = nullptr;
  /// indices(x), entries(x), as an EXPSEQ. Common: refused.
  DAG (*listing)(DAG x, Listing what) = nullptr;
  /// sort(x), sort(x, order); `order` may be 0. Common: as a polynomial.
  DAG (*sort)(DAG x, DAG order) = nullptr;

  // ---- attributes

  /// Common: the attribute field, or `null`.
  DAG (*attribute)(DAG x) = nullptr;
  /// `x` with that attribute. Common: in the attribute field; none is an internal error.
  DAG (*withAttribute)(DAG x, DAG attribute) = nullptr;
};

/// The rows by tag number.
struct KindRow {
  Tag tag;
  const Kind* kind;
};
extern const KindRow kindRows[tagCount + 1];
inline const Kind& kindOf(DAG x) { return *kindRows[tagNumber(tagOf(x))].kind; }

// The rows, each defined in the file of its subject.
extern const Kind integerKind, rationalKind, floatKind, hardwareFloatKind, complexKind, stringKind, nameKind,
    memberKind, frameReferenceKind, sumKind, productKind, sequenceKind, listKind, setKind, callKind, indexedNameKind,
    procedureKind, moduleDefinitionKind, moduleKind, tryKind, tableKind, entriesKind, seriesKind, modularPolynomialKind,
    rtableKind;

/// Operand `i` of an object some of whose fields are raw: a raw one is shown as the integer that it holds, an
/// empty one as `null`.
DAG anyField(DAG x, std::int64_t i);
/// The internal error for objects that `subsop` knows nothing of.
[[noreturn]] DAG refuseSubsop(DAG x);

}  // namespace korel
