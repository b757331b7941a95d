#include "hardware/evalhf.h"

#include "eval/evaluate/known_values.h"
#include "frame/errors.h"
#include "hardware/compiled_cache.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_cache.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "store/copy_on_change.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What an evaluation puts aside of one around it, which has called code of the user.
struct OuterEvaluation {
  HardwareFrame* stack;
  std::jmp_buf* jumpBuffer;
  LoadedArrays arrays;
};

void resumeOuter(const OuterEvaluation& outer) {
  HFStack = outer.stack;
  HFjumpbuffer = outer.jumpBuffer;
  closeLoadedArrays(outer.arrays);
}
void resumeAfterError(const char*) { resumeOuter(*reinterpret_cast<OuterEvaluation*>(errorProcParam)); }

double evaluateAlone(double (*evaluate)(DAG), DAG x) {
  if (HFStack == nullptr) sweepPrograms();
  OuterEvaluation outer{HFStack, HFjumpbuffer, openLoadedArrays()};
  PushStateKeeper(resumeAfterError, &outer);
  clearNumberCache();
  HFStack = nullptr;
  HFjumpbuffer = nullptr;
  const double value = evaluate(x);
  PopErrorProc();
  resumeOuter(outer);
  stepEvaluationClock();  // elements of arrays may have changed
  return value;
}

}  // namespace

double fevalhf(DAG x) { return evaluateAlone(hfeval, x); }

DAG evalhf(DAG x) { return expressionOf(fevalhf(x)); }

DAG builtin::evalhf(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (!isTag(x, COMPLEX)) return korel::evalhf(x);
  return withFields(x, 1, 1, [](DAG part) { return korel::evalhf(part); });
}

DAG builtin::hfarray(const BuiltinCall& call) { return referredObject(evaluateAlone(korel::hfarray, call.arguments)); }

}  // namespace korel
