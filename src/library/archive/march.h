#pragma once
// The archive tool: members of an archive added, replaced, copied out, deleted, listed; archives made and rebuilt.
//
// `March` is called from the language with a command and a directory. A rebuild writes new files beside the old
// ones and renames them into place (archive_files.h); every file open for change is locked whole.

#include <cstdint>

#include "library/archive/archive_files.h"
#include "store/dag.h"

namespace korel {

/// Runs a command: `arguments` is an EXPSEQ (command, directory, ...); equations `prefix` = text and `suffix` = text
/// name other files than "korel.ind" and "korel.lib". Gives `null`, or what the command tells.
DAG March(DAG arguments);

/// The commands `pack` and `reindex`, for the writer of members.
void packArchive(const char* directory);
void rebuildArchiveIndex(const char* directory);

// ---- shared by the files of the tool

/// An archive open for a command, and what a failure has to give back.
struct MarchRun {
  ArchivePlace place;
  DAG arguments;  // behind command and directory, without the equations
  const char* command;
  ArchivePair pair;
  int newIndex, newData;  // of a rebuild, or -1
  int file;               // that a member comes from or goes to, or -1
  void* memory;           // of the command, from the system heap
};
/// Opens both files for reading, or for change under their locks, put in order first.
/// Error: "there is no existing archive in "%1"".
void openArchive(MarchRun& run);
void openArchiveForChange(MarchRun& run, const char* failure);
/// Calls `visit(entry, position)` on each used entry of the index, in its order. Error: "error while reading index".
void forEachEntry(MarchRun& run, void (*visit)(void* context, const char* entry, std::int64_t position), void* context,
                  bool all = false);

DAG marchCreate(MarchRun& run);
DAG marchAdd(MarchRun& run);
DAG marchUpdate(MarchRun& run);
DAG marchExtract(MarchRun& run);
DAG marchDelete(MarchRun& run);
DAG marchList(MarchRun& run);
DAG marchPack(MarchRun& run);
DAG marchReindex(MarchRun& run);
DAG marchCollect(MarchRun& run);

}  // namespace korel
