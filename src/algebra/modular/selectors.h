#pragma once
// Selector expressions: a call written out as data, such as modp1(Gcd(a, b), p), that is run on dense polynomials.
//
// Three families share one way: the name of the call is looked up in the family's table, its arguments that are calls
// themselves are run first, and a name that the table doesn't hold goes to the procedure `modp1/name` of the library
// with the modulus as last argument.

#include "frame/builtin_call.h"
#include "library/library_calls.h"
#include "store/dag.h"

namespace korel {

struct SelectorFamily;

/// A call that runs: its arguments and the modulus.
struct Selection {
  const SelectorFamily& family;
  DAG name;
  DAG arguments;  // EXPSEQ, with nested calls run
  DAG modulus;

  Word count() const { return lengthOf(arguments) - 1; }
  DAG operator[](Word i) const { return arguments[i]; }
  /// Error: "modp1: invalid arguments to function %1".
  [[noreturn]] void invalid() const;
  void require(bool holds) const {
    if (!holds) invalid();
  }
};

struct Selector {
  const char* name;
  int least, most;  // arguments; most -1: any number
  DAG (*run)(const Selection& call);
};

struct SelectorFamily {
  const char* badName;  // messages
  const char* invalidArguments;
  LibraryFamily library;
  const Selector* selectors;  // in the order of their names
  std::size_t selectorCount;
  bool mapsLists;  // lists stand for their members, and what is no call for itself
};
extern const SelectorFamily modp1Family, modp2Family, evalgf1Family;

/// The value of `expression` modulo m, an integer above 1.
DAG runSelector(const SelectorFamily& family, DAG expression, DAG m);

namespace builtin {
/// modp1(expression, m) and its kin.
DAG modp1(const BuiltinCall& call);
DAG modp2(const BuiltinCall& call);
DAG evalgf1(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
