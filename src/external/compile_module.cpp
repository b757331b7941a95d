#include "external/compile_module.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel {

namespace {

constexpr const char* defaultCompiler = "cc";
// What the loader makes shared objects of has to run at any address. The text is plain C of any standard before C23,
// which dropped the form of its function heads.
constexpr const char* defaultOptions = "-c -std=gnu17 -O -w -fPIC";
constexpr const char* defaultIncFlag = "-I";
constexpr const char* defaultObjFlag = "-o ";
constexpr const char* defaultLinkFlags = "-shared -Bsymbolic -Bdynamic -lc";
constexpr const char* defaultHome = "/usr/local/korel";

constexpr std::size_t longestPath = 251;

const char* orDefault(const char* text, const char* otherwise) { return text != nullptr ? text : otherwise; }

// A path as a word of the shell.
char* appendWord(char* text, const char* word) {
  constexpr const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./+-,:@%=";
  if (word[std::strspn(word, plain)] == '\0') return AppendStringToString(text, word);
  text = AppendToString(text, '\'');
  for (; *word != '\0'; ++word)
    text = *word == '\'' ? AppendStringToString(text, "'\\''") : AppendToString(text, *word);
  return AppendToString(text, '\'');
}

// The path without its last `.` and what follows.
std::size_t baseLength(const char* path) {
  const char *dot = std::strrchr(path, '.'), *slash = std::strrchr(path, '/');
  return dot != nullptr && (slash == nullptr || dot > slash) ? static_cast<std::size_t>(dot - path) : std::strlen(path);
}

struct ModulePaths {
  char source[300], object[300], shared[300];
};
void setPaths(ModulePaths& paths, const char* path) {
  const int length = static_cast<int>(baseLength(path));
  std::snprintf(paths.source, sizeof paths.source, "%.*s.c", length, path);
  std::snprintf(paths.object, sizeof paths.object, "%.*s.o", length, path);
  std::snprintf(paths.shared, sizeof paths.shared, "%.*s.so", length, path);
}

char* compilerCommand(const ModulePaths& paths, const CompileOptions& o, bool warns) {
  char* text = NewLongString();
  text = AppendStringToString(text, orDefault(o.compiler, defaultCompiler));
  text = AppendStringToString(text, " ");
  text = AppendStringToString(text, orDefault(o.options, defaultOptions));
  text = AppendStringToString(text, " ");
  text = AppendStringToString(text, orDefault(o.incFlag, defaultIncFlag));
  text = AppendStringToString(text, " ");
  text = appendWord(text, includeDirectory(warns));
  text = AppendStringToString(text, " ");
  text = AppendStringToString(text, orDefault(o.objFlag, defaultObjFlag));
  text = appendWord(text, paths.object);
  text = AppendStringToString(text, " ");
  return appendWord(text, paths.source);
}

bool hasExtension(const char* library) {
  const char *slash = std::strrchr(library, '/'), *name = slash != nullptr ? slash + 1 : library;
  return std::strchr(name, '.') != nullptr;
}

char* loaderCommand(const ModulePaths& paths, const CompileOptions& o) {
  char* text = NewLongString();
  text = AppendStringToString(text, "ld ");
  text = AppendStringToString(text, orDefault(o.linkFlags, defaultLinkFlags));
  text = AppendStringToString(text, " -o ");
  text = appendWord(text, paths.shared);
  text = AppendStringToString(text, " ");
  text = appendWord(text, paths.object);
  for (Word i = 1; o.libs && i < lengthOf(o.libs); ++i) {
    char name[4096];
    const char* library = textOf(o.libs[i]);
    std::snprintf(name, sizeof name, "%s%s", library, hasExtension(library) ? "" : ".so");
    text = AppendStringToString(text, " ");
    text = appendWord(text, name);
  }
  return text;
}

void run(char* command, const char* message) {
  DAG text = StringToMString(command);
  const int status = callsys(textOf(text));
  if (status != 0) KernelException(message, text, immediate(status));
}

}  // namespace

const char* includeDirectory(bool warns) {
  static char directory[4096];
  const char* home = std::getenv("KOREL");
  const char* base = home != nullptr ? home : defaultHome;
  std::size_t length = std::strlen(base);
  if (length > 0 && base[length - 1] == '/') --length;
  constexpr std::size_t longest = sizeof directory - 64;
  if (length > longest) KernelException("file name too long, %1", strinstall(base));
  std::snprintf(directory, sizeof directory, "%.*s/extern/include", static_cast<int>(length), base);
  if (home == nullptr && warns)
    KernelWarning(2, "KOREL environment variable not set, using default include path %1", strinstall(directory));
  return directory;
}

const char* CompileModule(const char* path, const CompileOptions& options) {
  if (std::strlen(path) > longestPath) KernelException("file name too long, %1", strinstall(path));
  static ModulePaths paths;
  setPaths(paths, path);
  run(compilerCommand(paths, options, true), "compiler command %1 returned error code %2");
  run(loaderCommand(paths, options), "loader command %1 returned error code %2");
  return paths.shared;
}

const char* compileCommands(const char* path, const CompileOptions& options) {
  ModulePaths paths;
  setPaths(paths, path);
  static char* text = nullptr;
  DisposeString(text);
  text = compilerCommand(paths, options, false);
  char* loader = loaderCommand(paths, options);
  text = AppendStringToString(text, "\n");
  text = AppendStringToString(text, loader);
  DisposeString(loader);
  return text;
}

}  // namespace korel
