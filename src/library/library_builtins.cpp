#include "library/library_builtins.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/remember.h"
#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/system_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/long_string.h"
#include "text/read/source.h"

namespace korel {

namespace {


DAG libraryDirectories() {
  DAG directories = valuenv(ini("libname"), true);
  if (directories == ini("libname")) KernelException("libname is not assigned\n");
  return directories;
}

}  // namespace

DAG builtin::readlib(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0 || !isTag(call.arguments[1], NAME)) wrongParameters(call);
  KernelWarning(4, "persistent store makes readlib obsolete");
  DAG name = call.arguments[1];
  DAG key = new2(EXPSEQ, name);
  DAG self = ini("readlib")[1];
  DAG known = srchpc(self, key, -1);
  if (known != absent) return known;
  bool fromLibrary = n == 1;
  DAG directories = fromLibrary ? libraryDirectories() : copysub(call.arguments, 1, n - 1);
  if (!readFromDirectories(textOf(name), directories)) {
    if (fromLibrary) KernelException("could not find `%1` in the library", name);
    KernelException("could not find `%1`", name);
  }
  DAG value = name[1];
  if (!value) KernelException("ineffective readlib of `%1`", name);
  pcinsert(self, key, value, -1);
  return value;
}

DAG builtin::system_(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  for (Word i = 1; i <= n; ++i)
    if (!isTag(call.arguments[i], STRING))
      KernelException("system takes only arguments of type string");
  char* command = NewLongString();
  for (Word i = 1; i <= n; ++i) command = AppendStringToString(command, textOf(call.arguments[i]));
  return immediate(callsys(textOf(StringToMString(command))));
}

DAG builtin::MPFloat(const BuiltinCall& call) {
  if (argumentCount(call) == 0 || !isTag(call.arguments[1], STRING))
    KernelException("usage MPFloat(string,args)");
  if (argumentCount(call) != 2) wrongParameters(call);
  KernelException("the operation `%1` is not available", call.self);
}

DAG builtin::DEBUG_(const BuiltinCall& call) {
  if (Environment->frame->previousFrame == nullptr) return evalsysf("debugger", "", call.arguments);
  stepLevel = evaluationLevel;
  updategen(call.arguments);
  debugArgs = call.arguments;
  return null;
}

}  // namespace korel
