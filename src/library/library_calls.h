#pragma once
// Calls of library procedures by name.
//
// Much of the mathematics is written in the language, in procedures such as `evalf/power`. The kernel joins a
// base and a suffix, loads the procedure of that name when need be, and evaluates the call. The list
// library_calls.def holds every procedure, and every family of procedures with one base, that is so called;
// what it doesn't hold does not compile.

#include <iterator>
#include <string_view>

#include "store/dag.h"

namespace korel {

struct LibraryCall {
  const char* base;
  const char* suffix;  // null for a family: the suffix comes with the call
  int operands;        // or `anyOperands`
};
constexpr int anyOperands = -1;

inline constexpr LibraryCall libraryCalls[] = {
#define any anyOperands
#define KOREL_LIBRARY_PROCEDURE(base, suffix, operands) {base, suffix, operands},
#define KOREL_LIBRARY_FAMILY(base, operands) {base, nullptr, operands},
#include "library/library_calls.def"
#undef KOREL_LIBRARY_FAMILY
#undef KOREL_LIBRARY_PROCEDURE
#undef any
};

/// A procedure of the list, by its whole name; found while compiling.
struct LibraryProcedure {
  int row = -1;
  consteval LibraryProcedure(const char* name) {
    const std::string_view whole = name;
    for (int k = 0; k < static_cast<int>(std::size(libraryCalls)); ++k) {
      const LibraryCall& call = libraryCalls[k];
      if (call.suffix == nullptr) continue;
      const std::string_view base = call.base;
      if (whole.starts_with(base) && whole.substr(base.size()) == call.suffix) row = k;
    }
    if (row < 0) notListed();
  }
  static void notListed() {}  // not constexpr: reaching it stops the compilation
};
/// A family of the list, by its base.
struct LibraryFamily {
  int row = -1;
  consteval LibraryFamily(const char* base) {
    for (int k = 0; k < static_cast<int>(std::size(libraryCalls)); ++k)
      if (libraryCalls[k].suffix == nullptr && std::string_view(base) == libraryCalls[k].base) row = k;
    if (row < 0) LibraryProcedure::notListed();
  }
};

/// Value of the call procedure(arguments); `arguments` is an EXPSEQ, or one argument.
/// Error: "%1%2: missing system function".
DAG evalsysf(LibraryProcedure procedure, DAG arguments);
DAG evalsysf(LibraryFamily family, const char* suffix, DAG arguments);
/// The same, with `null` when there is no such procedure. `head` is the head of a call: a NAME, or a TABLEREF,
/// whose index stays in the called name.
DAG evalextf(LibraryProcedure procedure, DAG arguments);
DAG evalextf(LibraryFamily family, const char* suffix, DAG arguments);
DAG evalextf(LibraryFamily family, DAG head, DAG arguments);
/// `evalsysf` for the function name `function`, a NAME or TABLEREF; the index of a TABLEREF `form` stays in
/// the called name. Error: "name expected for external function".
DAG EvalSystemFunction(LibraryFamily prefix, DAG function, DAG form, DAG arguments);
/// The name when it has a value, loaded from the library if need be; else `null`.
DAG retrieve(LibraryProcedure procedure);
DAG retrieve(LibraryFamily family, const char* suffix);

}  // namespace korel
