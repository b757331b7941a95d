#pragma once
// Procedures and module definitions: from the parser's raw objects to their final form.
//
// The declarations are checked, the names of the body become positions (eval/procedures/scoping.h), and the
// body is simplified with the definition as the innermost scope.

#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

/// The final form of the raw PROC or MODDEF, which is filled in place. Warnings tell it by `assignedName`, the
/// target of the assignment whose value it is, or 0. An operator whose body is a number, or a call of a constant
/// head on exactly its parameters, is that number or head.
DAG simplProcedure(DAG proc, DAG assignedName = DAG());
DAG simplModuleDefinition(DAG moddef, DAG assignedName = DAG());

/// The name that PARAM, LOCAL or LEXICAL `reference` stands for in the procedure or module `scope`. Errors: "invalid
/// parameter on stack" and its likes.
DAG nameOfReference(DAG reference, DAG scope);
/// True when option `name` is among the options of a PROC or MODDEF.
inline bool hasOption(DAG definition, DAG name) { return isMember(name, optionsOf(definition)); }

}  // namespace korel
