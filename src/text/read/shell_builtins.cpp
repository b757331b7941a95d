#include "text/read/shell_builtins.h"

#include "frame/errors.h"
#include "store/long_string.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel {

DAG builtin::system_(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  for (Word i = 1; i <= n; ++i)
    if (!isTag(call.arguments[i], STRING)) KernelException("system takes only arguments of type string");
  char* command = NewLongString();
  for (Word i = 1; i <= n; ++i) command = AppendStringToString(command, textOf(call.arguments[i]));
  return immediate(callsys(textOf(StringToMString(command))));
}

}  // namespace korel
