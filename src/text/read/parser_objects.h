#pragma once
// What the productions build. Operands that are lists under construction grow in place: the parser
// alone refers to them.

#include "store/dag.h"

namespace korel {

/// `x` if it is a sequence, else the sequence of it.
DAG wrapSequence(DAG x);
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

/// A procedure with these parameters and nothing else yet.
DAG newProcedure(DAG parameters);
/// A module with these parameters and that name (`null` for none).
DAG newModule(DAG parameters, DAG name);
DAG arrowProcedure(DAG parameters, DAG body);

/// A statement behind others: an empty one is dropped.
DAG joinStatements(DAG statements, DAG next);
/// TRY of a body, the pairs in the carrier `catches` and the last part; either may be 0.
DAG newTry(DAG body, DAG catches, DAG last);

}  // namespace korel
