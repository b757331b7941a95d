#pragma once
// Making rtables: from settings, bounds and an initializer, and the built-ins `rtable` and `Array`.

#include <cstdint>

#include "frame/builtin_call.h"
#include "rtable/rtable_settings.h"
#include "store/dag.h"

namespace korel {

enum class DataMode {
  initialised,
  none,     // no block
  cleared,  // a block of zero bytes, neither fill nor initializer
};

/// A new rtable. `bounds` has room for 2 * maxDimensions words, which the initializer fills when the settings tell no
/// dimensions; `initializer` may be 0. Errors: those of the checks, as "Matrices must have exactly two dimensions", of
/// the initializer, as "cannot handle %1 as an initializer", and "unable to store %1 when datatype=%2".
DAG RTableCreate(RTableSettings& settings, DAG initializer, std::int32_t* bounds, DataMode mode);

/// Stores the value of an initializer. Error: "unable to store %1 when datatype=%2", or what the store itself raises
/// for a value of the type.
void storeInitial(DAG r, const std::int32_t* index, DAG value);
/// Fills `r`, whose block is new, from `initializer`, which may be 0.
void initializeRTableData(DAG r, const RTableSettings& settings, DAG initializer);

namespace builtin {
/// rtable(functions..., ranges..., initializer, options...), and the same for arrays.
DAG rtable(const BuiltinCall& call);
DAG Array(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
