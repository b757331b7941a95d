#pragma once
// Shared libraries: opened once, kept until the end of the run.

#include "store/dag.h"

namespace korel {

/// The libraries that are open: an EXPSEQ of pairs, each an EXPSEQ of the path (a STRING) and the handle as an integer.
extern DAG ExternalLibraryTable;

/// The handle of the library at `path`; one that is open is not opened again. Errors: "external linking: %1" with what
/// the system says; in secure mode "system calls are disabled".
void* LoadExternalLibrary(const char* path);
/// Whether a library is open under that path.
bool isLibraryOpen(const char* path);
/// Address of the symbol. Error: "external lookup: %1".
void* LookUpExternalSymbol(void* handle, const char* name);
/// The same; null when there is none.
void* findExternalSymbol(void* handle, const char* name);
/// Closes all of them. No external function is called from then on.
void CloseExternalLibraries();

/// Tells the collector of the table; part of the start.
void initializeExternalLibraries();

}  // namespace korel
