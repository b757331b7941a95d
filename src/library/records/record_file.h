#pragma once
// Files of records, whose names end in `.m`: a header of five bytes, then one or more records.
//
// What a file holds are names in their top form, with value and attribute: to read it is to assign them. A file may
// be a member of an archive (library/archive/member_io.h).

#include "store/dag.h"

namespace korel {

struct RepositoryDesc;

/// Reads the file `name`; `null`. Without such a file the name `FAIL` when `quiet`, else the error "could not open
/// `%s` for reading". Errors: "`%s` is an incorrect or outdated .m file (%c%c%c%c)", "at offset %1 in `%2`, %3". A
/// header alone is a file that ends too early. What a file assigns before the error stays assigned.
DAG ReadDotMFile(const char* name, bool quiet, RepositoryDesc* repository);
/// Writes `list`, a NAME or an EXPSEQ of objects, into the file `name`. Errors: those of `AllocWrite` and
/// `DeallocWrite`, and the text of what could not be written. The file stays as it was then. Gives the EXPSEQ of the
/// locals of which the file holds no more than the name.
DAG WriteDotMFile(const char* name, DAG list, RepositoryDesc* repository);

/// True for a name that ends in ".m".
bool isRecordFileName(const char* name);

}  // namespace korel
