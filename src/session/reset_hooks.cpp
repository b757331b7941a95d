#include "session/reset_hooks.h"

#include "session/evaluator_start.h"
#include "eval/procedures/modules.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "eval/walk/has.h"
#include "eval/walk/walk_memory.h"
#include "library/search_path.h"
#include "library/search_path.h"
#include "eval/types/type_match.h"
#include "eval/types/types.h"

namespace korel {

namespace {

struct HookRow {
  HookMoment moment;
  void (*function)();
};
constexpr HookRow hookRows[] = {
    // moment                    function
    {HookMoment::initialised, initializeEvaluator},
    {HookMoment::everyStatement, ResetSimplifier},
    {HookMoment::everyStatement, ResetWalkMemories},
    {HookMoment::everyStatement, ResetTypematch},
    {HookMoment::throwAway, CleanUpSimplifier},
    {HookMoment::startFiles, ResetSimplifier},
    {HookMoment::startFiles, InitializeHelp},
    {HookMoment::stop, UnloadModules},
};

}  // namespace

void runHooks(HookMoment moment) {
  for (const HookRow& row : hookRows)
    if (row.moment == moment) row.function();
}

}  // namespace korel
