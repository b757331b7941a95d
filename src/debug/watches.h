#pragma once
// Names under watch, and errors at which the debugger is to stop.
//
// `watchTable` holds global names and lists [procedure name, local name]. The short cuts of assignment are closed to
// the names in it, so that their values pass `watchAssignment`.

#include "store/dag.h"

namespace korel {

extern DAG watchTable;  // EXPSEQ, or 0
extern DAG errorTable;  // EXPSEQ of `all`, `traperror`, texts and traperror["text"], or 0

/// Arms a stop at the next statement when `target`, a name or an entry of what a name holds, is watched.
void watchAssignmentInForce(DAG target, DAG value);
inline void watchAssignment(DAG target, DAG value) {
  if (watchTable) [[unlikely]]
    watchAssignmentInForce(target, value);
}

/// Whether the table holds `name`, as a global name or as a local of the running procedure.
bool isInWatchTable(DAG name);
inline bool isUnwatched(DAG name) { return !watchTable || !isInWatchTable(name); }

/// Whether the error table holds traperror["text"].
bool trappedMember(DAG text);
/// Whether the table asks for a stop at the error `message`, one text or an EXPSEQ of them; `trapped` when something
/// will catch it.
bool stopsAtError(DAG message, bool trapped);

/// A table changed by debugopts. Errors: those of its options, as "name is not in watch table".
void addWatch(DAG entry);
void deleteWatch(DAG entry);
void setWatchTable(DAG list);
void addErrorStop(DAG entry);
void deleteErrorStop(DAG entry);
void setErrorTable(DAG list);
/// The entries as a LIST.
DAG tableAsList(DAG table);

/// Part of the start.
void initializeWatches();

}  // namespace korel
