#include "external/libraries.h"

#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

#include "eval/simplify/simplify.h"
#include "external/call_external.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

DAG ExternalLibraryTable;

namespace {

void* handleOf(DAG entry) { return reinterpret_cast<void*>(LongLongValue(entry[2])); }

// Of an open library, or null.
void* openHandle(const char* path) {
  if (!ExternalLibraryTable) return nullptr;
  for (Word i = 1; i < lengthOf(ExternalLibraryTable); ++i)
    if (std::strcmp(textOf(ExternalLibraryTable[i][1]), path) == 0) return handleOf(ExternalLibraryTable[i]);
  return nullptr;
}

void enterLibrary(const char* path, void* handle) {
  DAG number = simpl(NewInteger(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(handle))));
  DAG entry = new3(EXPSEQ, strinstall(path), number);
  DAG before = ExternalLibraryTable ? ExternalLibraryTable : null;
  DAG table = newl2(lengthOf(before) + 1, EXPSEQ);
  for (Word i = 1; i < lengthOf(before); ++i) table[i] = before[i];
  table[lengthOf(before)] = entry;
  updategens(entry);
  updategen(entry);
  updategen(table);
  ExternalLibraryTable = table;
}

}  // namespace

bool isLibraryOpen(const char* path) { return openHandle(path) != nullptr; }

void* LoadExternalLibrary(const char* path) {
  if (secureMode) userror("system calls are disabled");
  if (void* handle = openHandle(path)) return handle;
  void* handle = dlopen(path, RTLD_LAZY);
  if (handle == nullptr) {
    DAG message = strinstall(dlerror());
    // The system searches its own directories for a plain name; a file of the present one is meant as well.
    char here[4096];
    const bool isPlain = std::strchr(path, '/') == nullptr && std::strlen(path) + 3 < sizeof here;
    if (isPlain && access(path, R_OK) == 0) {
      here[0] = '.';
      here[1] = '/';
      std::strcpy(here + 2, path);
      handle = dlopen(here, RTLD_LAZY);
      if (handle == nullptr) message = strinstall(dlerror());
    }
    if (handle == nullptr) KernelException("external linking: %1", message);
  }
  enterLibrary(path, handle);
  return handle;
}

void* findExternalSymbol(void* handle, const char* name) {
  dlerror();
  return dlsym(handle, name);
}

void* LookUpExternalSymbol(void* handle, const char* name) {
  void* address = findExternalSymbol(handle, name);
  if (address != nullptr) return address;
  const char* message = dlerror();
  KernelException("external lookup: %1", strinstall(message != nullptr ? message : name));
}

void CloseExternalLibraries() {
  if (!ExternalLibraryTable) return;
  forgetWrappers();
  for (Word i = 1; i < lengthOf(ExternalLibraryTable); ++i)
    if (void* handle = handleOf(ExternalLibraryTable[i])) dlclose(handle);
  ExternalLibraryTable = DAG();
}

void initializeExternalLibraries() { registerRoot(&ExternalLibraryTable); }

}  // namespace korel
