#include "session/reset_hooks.h"

#include "algebra/modular/modular_polynomials.h"
#include "debug/debugger.h"
#include "debug/statement_trace.h"
#include "eval/procedures/modules.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/substitute.h"
#include "eval/types/type_match.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "eval/walk/walk_memory.h"
#include "external/call_external.h"
#include "external/libraries.h"
#include "files/file_access.h"
#include "files/file_table.h"
#include "hardware/hardware_frame.h"
#include "library/archive/archive_files.h"
#include "library/archive/member_io.h"
#include "library/native/native.h"
#include "library/repository/directory_contents.h"
#include "library/repository/lookup.h"
#include "library/repository/repository.h"
#include "library/search_path.h"
#include "rtable/rtable_object.h"
#include "session/evaluator_start.h"

namespace korel {

namespace {

struct HookRow {
  HookMoment moment;
  void (*function)();
};
constexpr HookRow hookRows[] = {
    // moment                    function
    {HookMoment::initialised, initializeEvaluator},
    {HookMoment::initialised, initializeNative},
    {HookMoment::initialised, initializeLibrary},
    {HookMoment::initialised, initializeRTables},
    {HookMoment::initialised, InitializeIOLibrary},
    {HookMoment::initialised, forgetHeldLines},
    {HookMoment::everyStatement, ResetDebugger},
    {HookMoment::initialised, ResetModRand},
    {HookMoment::initialised, initializeExternalLibraries},
    {HookMoment::initialised, initializeExternalCalls},
    {HookMoment::initialised, initializeHardware},
    {HookMoment::everyStatement, ResetEvalhfInterrupt},
    {HookMoment::everyStatement, ResetDotMIO},
    {HookMoment::everyStatement, doubtDirectoryContents},
    {HookMoment::everyStatement, ResetSimplifier},
    {HookMoment::everyStatement, ResetWalkMemories},
    {HookMoment::everyStatement, ResetTypematch},
    {HookMoment::everyStatement, resetExternalCalls},
    {HookMoment::throwAway, CloseExternalLibraries},
    {HookMoment::throwAway, CloseAllRepositories},
    {HookMoment::throwAway, CleanUpIOLibrary},
    {HookMoment::throwAway, CleanUpDebugger},
    {HookMoment::throwAway, CleanUpSimplifier},
    {HookMoment::throwAway, FlushDotMFileCache},
    {HookMoment::throwAway, forgetDirectoryContents},
    {HookMoment::startFiles, ResetSimplifier},
    {HookMoment::startFiles, InitializeHelp},
    {HookMoment::restart, UnloadModules},
    {HookMoment::stop, UnloadModules},
    {HookMoment::exitProcess, CleanUpIOLibrary},
    {HookMoment::stop, SaveTraceInformation},
    {HookMoment::exitProcess, FlushDotMFileCache},
    {HookMoment::exitProcess, CloseExternalLibraries},
};

}  // namespace

void runHooks(HookMoment moment) {
  for (const HookRow& row : hookRows)
    if (row.moment == moment) row.function();
}

}  // namespace korel
