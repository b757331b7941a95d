#include "external/float_library.h"

#include "external/call_external.h"
#include "external/float_vector.h"
#include "external/libraries.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/objects.h"

namespace korel {

namespace {

using Initializer = void (*)(KorelFloatVector vector, int stage);

constexpr const char* floatLibrary = "libkorelfloat.so";

Initializer initializer = nullptr;

// In the form of a function that `call_external` calls: a fault of the library ends in its message.
ALGEB initialize(MKernelVector kv, ALGEB arguments) {
  initializer(&ExternalFloatVector, kv->korelToInteger32(KOREL_ARG(arguments, 1)));
  return nullptr;
}
void runStage(int stage) {
  CallExternal({.external = reinterpret_cast<void*>(initialize)}, new2(EXPSEQ, immediate(stage)));
}

}  // namespace

DAG builtin::MPFloat(const BuiltinCall& call) {
  if (argumentCount(call) == 0 || !isTag(call.arguments[1], STRING)) KernelException("usage MPFloat(string,args)");
  if (argumentCount(call) != 2) wrongParameters(call);
  void* library = LoadExternalLibrary(floatLibrary);
  initializer = reinterpret_cast<Initializer>(LookUpExternalSymbol(library, "InitializeKorelFloat"));
  runStage(0);
  LoadExternalLibrary(textOf(call.arguments[1]));
  runStage(1);
  return ini("true");
}

}  // namespace korel
