#include "builtins/iolib.h"

#include "frame/errors.h"
#include "library/archive/march.h"
#include "session/driver.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG archiveTool(DAG arguments) {
  if (secureMode) KernelException("march is disabled");
  return March(arguments);
}

struct Operation {
  int number;
  DAG (*run)(DAG arguments);
};
constexpr Operation operations[] = {
    // number  arguments behind it
    {31, archiveTool},
};

}  // namespace

DAG builtin::iolib(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0 || !isImmediate(call.arguments[1])) wrongParameters(call);
  for (const Operation& row : operations)
    if (row.number == immediateValue(call.arguments[1])) return row.run(copysub(call.arguments, 1, n - 1));
  KernelException("the operation `%1` is not available", call.self);
}

}  // namespace korel
