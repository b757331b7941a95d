#pragma once
// The float context of an evaluation, and what the remembering built-ins of algebra keep.
//
// While an operation on an expression with floats runs, `floatContext` of the innermost environment block is set:
// what comes out depends on `Digits`, so that nothing is remembered.

#include <cstdint>

#include "eval/evaluate/named_kinds.h"
#include "eval/procedures/remember.h"
#include "eval/walk/has.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/dag.h"
#include "store/standard_names.h"

namespace korel {

/// The value of `work()`, with `floatContext` as given in the meantime. It gets its old value back on every way out.
template <class Work>
auto withFloatContext(bool hasFloats, Work work) {
  struct Kept {
    EnvironmentBlock* block;
    Word before;
  } kept{Environment, Environment->floatContext};
  PushStateKeeper(
      [](const char*) {
        auto* it = reinterpret_cast<Kept*>(errorProcParam);
        it->block->floatContext = it->before;
      },
      &kept);
  Environment->floatContext = hasFloats ? 1 : 0;
  auto result = work();
  PopErrorProc();
  kept.block->floatContext = kept.before;
  return result;
}
/// The same, as the floats in `x` have it.
template <class Work>
auto inFloatContextOf(DAG x, Work work) {
  return withFloatContext(hasfloat(x), work);
}

/// The built-ins of algebra with remember tables.
enum class Remembering { diff, expand, series, frontend, divide, normal };

inline DAG nameOf(Remembering which) {
  constexpr StandardName names[] = {"diff", "expand", "series", "frontend", "divide", "normal"};
  return ini(names[static_cast<int>(which)]);
}
/// What the built-in remembers for `key`, with a stamp of `age` or above; or `absent`.
inline DAG recall(Remembering which, DAG key, std::int64_t age = timeless) { return srchpc(nameOf(which), key, age); }
/// Has it remember `value`, valid for any `Digits`, with a stamp; nothing in a float context, nor when a user's
/// definition has taken the place of the built-in.
inline void memorize(Remembering which, DAG key, DAG value, std::int64_t stamp = timeless) {
  if (Environment->floatContext == 0 && NAMED_PROC(nameOf(which))) pcinsert(nameOf(which), key, value, stamp);
}

}  // namespace korel
