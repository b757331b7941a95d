#include "session/evaluator_start.h"

#include "debug/debugger.h"
#include "eval/evaluate/known_values.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "eval/statements/statements.h"
#include "eval/types/type_match.h"
#include "frame/environment.h"
#include "store/collect/collector.h"

namespace korel {

namespace {

void walkScopes(Visitor visit) {
  for (ProcedureRecord* r = procSimplStack; r != nullptr; r = r->link) visit(r->procedure);
  for (BindingRecord* r = useSimplStack; r != nullptr; r = r->link) visit(r->equations);
}

}  // namespace

void initializeEvaluator() {
  registerRoot(&globalBindings);
  registerRoot(&funret);
  registerRootWalker(walkScopes);
  initializeStatements();
  initializeDebugger();
  initializeKnownValues();
  initializeModules();
  initializeTypeMatch();
}

}  // namespace korel
