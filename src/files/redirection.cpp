#include "files/redirection.h"

#include <cstring>

#include "files/file_table.h"
#include "files/paths.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "library/repository/directory_contents.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

char redirectedPath[longestPath + 1] = "";

}  // namespace

bool isRedirectedTo(const char* path) {
  if (redirectedPath[0] == 0) return false;
  char whole[longestPath + 1];
  return absolutePath(path, whole) && std::strcmp(whole, redirectedPath) == 0;
}

void forgetRedirection() { redirectedPath[0] = 0; }

void writeappend(DAG name, bool append) {
  if (!isText(name))
    KernelException("name or string expected for `%1` filename", naminstall(append ? "appendto" : "writeto"));
  if (hasText(name, "terminal")) {
    sendStream(Stream::REDIRECT, {});
    forgetRedirection();
    return;
  }
  char path[longestPath + 1], other[longestPath + 1];
  FullyQualifyFile(textOf(name), path);
  for (const FileRecord& file : fileTable) {
    const bool isFile = file.kind == FileKind::stream || file.kind == FileKind::raw;
    if (isFile && absolutePath(textOf(file.name), other) && std::strcmp(path, other) == 0) userror("file is in use");
  }
  DAG reply = sendStream(Stream::REDIRECT, {strinstall(path), truth(append)});
  if (reply == ini("false")) {
    forgetRedirection();
    KernelException("cannot open file \"%1\" to %2 to", strinstall(path), strinstall(append ? "append" : "write"));
  }
  std::strcpy(redirectedPath, path);
  doubtDirectoryContents();
}

DAG builtin::writeto(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  writeappend(call.arguments[1], false);
  return null;
}

DAG builtin::appendto(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  writeappend(call.arguments[1], true);
  return null;
}

}  // namespace korel
