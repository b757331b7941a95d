#pragma once
// Modules: running a definition, the members of a module, and the list of all modules that exist.

#include "store/dag.h"

namespace korel {

/// The MODULE that a run of `definition` makes. It is assigned to `name`, which is protected then, unless that is
/// the name `unknown`. Errors: "return value not allowed in a module definition" and those of a procedure's end.
DAG EvaluateModuleDefinition(DAG definition, DAG name);
/// Runs the member that the module's option `kind`, `load` or `unload`, names.
void RunLoadFunction(DAG module, const char* kind);
/// Runs the `unload` members of all modules, and forgets them.
/// Enters a module among those that are unloaded when they die, or at the end.
void AddModuleToAllModules(DAG module);
void UnloadModules();

/// The export instance of `name`, or 0.
DAG exportInstance(DAG module, DAG name);
/// The same. Errors: "module does not export `%1`" and its named form.
DAG MemberInstance(DAG module, DAG name);
/// The value of `modulename = value` among attributes, or 0.
DAG ModuleNameAttr(DAG attributes);

/// Registers the module list with the collector; part of the start.
void initializeModules();

}  // namespace korel
