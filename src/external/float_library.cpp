#include "external/float_library.h"

#include "external/faults.h"
#include "external/float_vector.h"
#include "external/libraries.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel {

namespace {

using Initializer = void (*)(KorelFloatVector vector, int stage);

constexpr const char* floatLibrary = "libkorelfloat.so";

}  // namespace

DAG builtin::MPFloat(const BuiltinCall& call) {
  if (argumentCount(call) == 0 || !isTag(call.arguments[1], STRING)) KernelException("usage MPFloat(string,args)");
  if (argumentCount(call) != 2) wrongParameters(call);
  void* library = LoadExternalLibrary(floatLibrary);
  auto initialize = reinterpret_cast<Initializer>(LookUpExternalSymbol(library, "InitializeKorelFloat"));
  initialize(&ExternalFloatVector, 0);
  LoadExternalLibrary(textOf(call.arguments[1]));
  initialize(&ExternalFloatVector, 1);
  return ini("true");
}

}  // namespace korel
