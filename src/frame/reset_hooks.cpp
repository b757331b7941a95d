#include "frame/reset_hooks.h"

#include "eval/evaluator_start.h"
#include "eval/procedures.h"
#include "eval/simplify.h"
#include "frame/help_path.h"
#include "structure/has.h"
#include "structure/substitute.h"
#include "structure/type_match.h"
#include "structure/types.h"

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
    {HookMoment::everyStatement, ResetHas},
    {HookMoment::everyStatement, ResetHastype},
    {HookMoment::everyStatement, ResetSubstitution},
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
