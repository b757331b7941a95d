#pragma once
// The C compiler and the loader.

#include "store/dag.h"

namespace korel {

/// How both are called; a null text stands for the default.
struct CompileOptions {
  const char* compiler = nullptr;  // "cc"
  const char* options = nullptr;
  const char* incFlag = nullptr;  // before the directory of korelshlib.h
  const char* objFlag = nullptr;  // before the name of the object file
  const char* linkFlags = nullptr;
  DAG libs;  // EXPSEQ of STRING: more libraries to link; or 0
};

/// Compiles the C file at `path` and makes a shared object of it beside it; its path, until the next call. Errors:
/// "file name too long, %1", "compiler command %1 returned error code %2", "loader command %1 returned error code %2";
/// in secure mode "system calls are disabled".
const char* CompileModule(const char* path, const CompileOptions& options);

/// The commands that `CompileModule` would run, one a line, until the next call.
const char* compileCommands(const char* path, const CompileOptions& options);
/// The directory of korelshlib.h, by the environment variable KOREL. Without it there is a warning: "KOREL environment
/// variable not set, using default include path %1".
const char* includeDirectory(bool warns);

}  // namespace korel
