#pragma once
// Does an expression hold another one, and the walk over the parts of an object that answers it.
//
// The walk knows storage, not the view of `op`: the terms of a SUM are looked at and its coefficients
// only where a number is sought, the keys and values of tables, the body of a procedure. It visits a
// shared part once, so that its time grows with the number of distinct objects, and it ends on tables
// that hold themselves. It never raises an error and evaluates nothing.

#include "eval/builtins.h"
#include "store/dag.h"

namespace korel {

/// Limits of the walk, in force until `ResetHas`: not inside PROC and MODDEF, not inside UNEVAL, not
/// among the indices of a TABLEREF. Tables are closed while one of the first two is set.
extern bool hasExceptPROC, hasExceptUNEVAL, NoHasOfArrayRef;
/// Lifts all limits, as after an error.
void ResetHas();

/// `y` occurs in `x`, by word. A single pair, as 2*b, also occurs as a pair of a longer sum or product,
/// and a number as a coefficient or exponent.
bool has(DAG x, DAG y);
/// `y`, or a member of `y` when that is an EXPSEQ, LIST or SET, occurs in `x`.
bool hasany(DAG x, DAG y);
/// `has`, but not inside of procedures, module definitions, tables and quotes.
bool hasExceptInPROCorUNEVAL(DAG x, DAG y);
/// `x` holds an object with this tag; coefficients and exponents count.
bool hasid(DAG x, Tag tag);
/// `x` holds a parameter, local or lexical reference.
bool hasparloc(DAG x);
/// `x` holds a call of `head`.
bool hasCallTo(DAG x, DAG head);

/// has(x, y): y, or a member of a list or set y.
DAG hasBuiltin(const BuiltinCall& call);

/// Calls `visit` on each part that the walk goes on with, in order. Words of 0 are left out.
template <class Visit>
inline void forEachPart(DAG x, Visit visit) {
  auto visitFields = [&](Word from, Word end, Word step) {
    for (Word i = from; i < end; i += step)
      if (x[i]) visit(x[i]);
  };
  Word n = lengthOf(x);
  switch (tagOf(x)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME:
    case LOCAL: case PARAM: case LEXICAL:
    case RTABLE: case BINARY: case GARBAGE: case FOREIGN:
      return;
    case SUM: case PROD: return visitFields(1, n, 2);
    case SERIES:
      visit(x[1]);
      return visitFields(2, n, 2);
    case TABLEREF: return visitFields(1, NoHasOfArrayRef ? 2 : 3, 1);
    case ZPPOLY: return visit(x[1]);
    case PROC: case MODDEF:
      if (!hasExceptPROC) visitFields(3, n, 1);
      return;
    case UNEVAL:
      if (!hasExceptUNEVAL) visit(x[1]);
      return;
    case TABLE:
      if (!hasExceptPROC && !hasExceptUNEVAL) visit(x[3]);
      return;
    case HASH:
      for (Word i = 1; i + 1 < n && x[i]; i += 2) {
        if ((controlWord(x) & tableBit) == 0) visit(x[i]);
        if (x[i + 1]) visit(x[i + 1]);
      }
      return;
    default: return visitFields(1, n, 1);
  }
}

}  // namespace korel
