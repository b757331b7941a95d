#pragma once
// Repositories: the directories of `libname` as stores of named objects, loaded name by name.
//
// Besides members that are called after names, a repository holds members called ":-%u.m" for objects that have no
// global name: a local that escaped into a stored procedure, a module's member. Each is reached by a reference, a
// NAME outside the name table whose value is the object and whose attribute is the directory; as long as the
// object is deferred, its own attribute is the reference. So a shared local stays one object when what shares it is
// saved, and read again.
//
// The numbers come from a file beside the members (side_file.h).

#include <cstddef>
#include <cstdint>

#include "store/dag.h"

namespace korel {

/// One directory that has been opened. The directory is known by the word of its text, never by its spelling.
struct RepositoryDesc {
  DAG dir;      // STRING, rarely NAME
  DAG pending;  // HASHTAB: references still to be written; a value that isn't its key is done
  std::int32_t pendingCount;
  DAG idents;  // HASHTAB, raw keys: hash of a reference's text to the reference
  DAG names;   // HASHTAB, raw keys: hash of the text of an object's name to its reference
  RepositoryDesc* next;
};

/// Finds or makes the record of `dir`. Error: "unable to open repository "%1"".
RepositoryDesc* OpenRepository(DAG dir);
void CloseAllRepositories();
DAG RepositoryName(const RepositoryDesc* r);
/// Calls `mark` on the words of every record that refer to objects.
void MarkRepositoryTables(void (*mark)(DAG x));
/// Whether the directory of some open repository has the text `text`.
bool isOpenRepository(const char* text, std::size_t length);

/// The reference to `object`, made (with a fresh number) when there is none.
/// Error: "cannot create unique object reference identifier".
DAG GetObjectReference(RepositoryDesc* r, DAG object);
/// What the reader has read: the reference by its text, and an object for it. Gives the reference that is in use.
DAG PutObjectReference(RepositoryDesc* r, DAG reference, DAG object);
/// The reference with that text, or 0.
DAG UniqueIdentToObjectRef(RepositoryDesc* r, const char* text);
/// The reference to `object`, or 0.
DAG ObjectNameToObjectRef(RepositoryDesc* r, DAG object);
/// Queues the object behind `reference` to be written by the save in progress, once.
void AddObjectToPendingWrites(RepositoryDesc* r, DAG reference);

/// `save` into the library directory `dir`: `count` objects of the EXPSEQ `list`. False when `dir` is no member of
/// `libname`. Errors: "only named objects can be saved",
/// "`%1` cannot be saved into a library: its name is no file name",
/// "libname cannot be saved into a library", those of writing.
bool SaveInRepository(DAG list, Word count, DAG dir);

}  // namespace korel
