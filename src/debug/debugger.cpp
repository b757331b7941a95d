#include "debug/debugger.h"

#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "library/library_calls.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

DAG builtin::DEBUG_(const BuiltinCall& call) {
  if (Environment->frame->previousFrame == nullptr) return evalsysf("debugger", call.arguments);
  stepLevel = evaluationLevel;
  updategen(call.arguments);
  debugArgs = call.arguments;
  return null;
}

}  // namespace korel
