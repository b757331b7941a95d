#include "hardware/hardware_value.h"

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/float/float.h"
#include "rtable/rtable_kind.h"
#include "store/check/verify.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

bool isMarkedArray(double v) {
  DAG object = referredObject(v);
  return VerifyPointer(object) && IsHFArrayRTable(object);
}

bool isMarkedProcedure(double v) {
  DAG object = referredObject(v);
  return VerifyPointer(object) && isTag(object, PROC) && lengthOf(object) == procLength;
}

DAG hfarraydes(double v) {
  if (!isArrayValue(v)) KernelException("evalhf: a variable not assigned an array is indexed");
  return referredObject(v);
}

DAG procedureOf(double v) {
  if (!isProcedureValue(v)) KernelException("cannot evaluate procedure in evalhf");
  return referredObject(v);
}

void refuseReference() { KernelException("non-numeric expression in evalhf"); }

DAG expressionOf(double v) { return isReferenceValue(v) ? referredObject(v) : floatOfDouble(v); }

}  // namespace korel
