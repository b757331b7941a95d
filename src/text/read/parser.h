#pragma once
// The grammar: one statement of the language from tokens to an object.
//
// The objects are raw: sums and products are flat lists of pairs in the order of the text, nothing is
// unique, and `simpl` makes them canonical. Precedence lies in the levels of operands and operators.
//
// The parser keeps the grammar symbols that wait for their continuation on a stack of 1,024 places and
// uses the native stack for nothing that nests, so that the depth of a text has one bound: "yacc stack
// overflow".

#include "store/dag.h"

namespace korel {

/// The statement last read: an object; STOP for a lone `quit`; CONTROL(1) at the end of the input; 0
/// after an error. A root of the collector.
extern DAG parsestat;

/// Reads one statement and its terminator, no token further, into `parsestat`; failures leave by
/// `yyerror`. The terminator sets `display` among the interface variables.
void yyparse();

}  // namespace korel
