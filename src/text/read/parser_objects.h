#pragma once
// What the productions build. Operands that are lists under construction grow in place: the parser
// alone refers to them.

#include <cstdint>

#include "store/dag.h"

namespace korel {

/// The call of `function` on the two (one) arguments.
DAG binaryCall(DAG function, DAG a, DAG b);
DAG unaryCall(DAG function, DAG a);

/// a, b: a sequence on the left is extended.
DAG joinSequence(DAG a, DAG b);
/// a + b and a - b: `sign` is 1 or -1. A sum on the left is extended.
DAG makeSum(DAG a, DAG b, DAG sign);
DAG makeProduct(DAG a, DAG b);
DAG makeQuotient(DAG a, DAG b);
/// a . b: a call of `.` on the left gets one more argument.
DAG makeDot(DAG a, DAG b);
/// A PROD pair for a rational exponent, else a POWER.
DAG makePower(DAG a, DAG b);
/// a and b under a T_RELOP; `tagWord` as the lexer gives it.
DAG makeRelation(Word tagWord, DAG a, DAG b);

/// What the locals of a head stand in until it is simplified: a list, which tells a raw definition from a
/// simplified one.
DAG rawLocals();
DAG arrowProcedure(DAG parameters, DAG body);

/// A statement behind others: an empty one is dropped.
DAG joinStatements(DAG statements, DAG next);
/// TRY of a body, the pairs in the carrier `catches` and the `finally` body; either may be 0.
DAG makeTry(DAG body, DAG catches, DAG finallyBody);
/// FOR of the clauses read so far: what is missing gets its default.
DAG makeLoop(DAG clauses, DAG variable, DAG body);
DAG makeContainerLoop(DAG variable, DAG container, DAG condition, DAG body);
/// The integer a * 10^`digitsOfB` + b: the digits on both sides of a decimal point. `b` has at most
/// `digitsOfB` digits; both are not negative.
DAG numcat(DAG a, DAG b, std::int32_t digitsOfB);

}  // namespace korel
