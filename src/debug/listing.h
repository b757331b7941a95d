#pragma once
// Procedures and their statements as text, with numbers, break points and profile: what a person reads in the debugger.
//
//   f := proc(x, n::integer)
//   local i;
//      1   i := x;
//      2*  if x < n then
//      3     f(x+1,n)
//          else
//      4!    i
//          end if
//   end proc
//
// `*` marks a break point, `?` one with a condition, `!` the statement where the debugger stands. A traced procedure
// shows calls, seconds and words in front of each statement.

#include <cstdint>

#include "debug/statement_walk.h"
#include "store/dag.h"

namespace korel {

/// The statements `first` to `last` of `procedure`, as a STRING with the head that `name` gives it, `...` standing for
/// what is left out.
DAG listingOf(DAG name, DAG procedure, std::int32_t first, std::int32_t last);
/// Statement `number` alone, its inner statements left out.
DAG statementListing(DAG name, DAG procedure, std::int32_t number);

/// What messages tell of the statement of a running procedure or module: the name ` #(f,3): text`, or ` #unknown`.
DAG StatementAsString(DAG name, DAG procedure, DAG statement, const DAG* field = nullptr);
/// The text of the statement at `place`, on one line and with its inner statements left out, as a STRING.
DAG statementLine(DAG procedure, const StatementPlace& place);
/// The whole text of a statement of `procedure`, on one line and with its variables by name, as a NAME.
DAG statementName(DAG procedure, DAG statement);

}  // namespace korel
