#pragma once
// What an rtable holds: whether it is all zeros, and its data as they are stored.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The stored elements as an Array of one dimension without indexing functions, in the order of the storage; of Nag
/// sparse storage the entries in use.
DAG RTableRawVectorCopy(DAG r);

namespace builtin {
/// rtable_is_zero(r): true or false. Error: "rtable expected".
DAG rtable_is_zero(const BuiltinCall& call);
/// rtableInfo(r, Raw), rtableInfo(r, RawVector): the data as an Array. Errors: "too few arguments", "rtable expected as
/// first argument", "name or string expected as second argument", "unrecognized option %1".
DAG rtableInfo(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
