#pragma once
// Pattern bindings: what `typematch` collects while a type is tested.
//
// A type `p::u` met during a match binds the name p to the object that matched u. Pairs (name, object)
// fill `typematchA` in the order in which they were met; what an alternative bound that failed is
// dropped. Whatever runs procedures in the midst of a test puts the bindings aside for that time:
// procedures test types, and make matches, of their own.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Two words a pair; reaching the end is the error, so that one pair fewer can be made.
constexpr int typematchLength = 48;
extern DAG typematchA[typematchLength];
/// The next free word; -1 while no bindings are collected.
extern int typematchI;

/// Appends a pair. Error: "too many patterns for typematch".
void bindPattern(DAG name, DAG matched);

struct SuspendedBindings {
  int count;  // what `typematchI` was
};
/// Between the two, no bindings are collected, and those made so far are kept, also over a collection
/// and over matches in between. An error on the way drops them.
SuspendedBindings suspendBindings();
void resumeBindings(SuspendedBindings suspended);

namespace builtin {
/// The built-in `typematch`: (e, t) assigns the pattern names, (e, t, s) a LIST of equations to s.
/// Gives `true`, or `false` with nothing assigned.
DAG typematch(const BuiltinCall& call);
}  // namespace builtin

/// Ends a match that an exhausted stack, a time limit or an interrupt has ended, which run no error
/// procedures: what is tested next binds nothing.
void ResetTypematch();

/// Tells the collector of the bindings; part of the start.
void initializeTypeMatch();

}  // namespace korel
