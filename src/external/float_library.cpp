#include "external/float_library.h"

#include "frame/errors.h"
#include "store/dag.h"

namespace korel {

DAG builtin::MPFloat(const BuiltinCall& call) {
  if (argumentCount(call) == 0 || !isTag(call.arguments[1], STRING)) KernelException("usage MPFloat(string,args)");
  if (argumentCount(call) != 2) wrongParameters(call);
  KernelException("the operation `%1` is not available", call.self);
}

}  // namespace korel
