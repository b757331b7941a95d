// Modules: running a definition, its members, and the list of all modules that exist.

#include <cstdlib>
#include <cstring>

#include "eval/statements/assign.h"
#include "eval/evaluate/environment_variables.h"
#include "session/evaluator_start.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedure_frame.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "frame/trace_messages.h"
#include "frame/traceback.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {


struct ModuleRecord {
  DAG module;
  ModuleRecord* next;
};
ModuleRecord* AllModules = nullptr;


// Modules that a collection found dead, kept for their last call.
ModuleRecord* dyingModules = nullptr;

void collectDeadModules(bool (*isAlive)(DAG), Visitor keep) {
  ModuleRecord** link = &AllModules;
  while (*link != nullptr) {
    ModuleRecord* record = *link;
    if (isAlive(record->module)) {
      link = &record->next;
      continue;
    }
    *link = record->next;
    record->next = dyingModules;
    dyingModules = record;
    keep(record->module);
  }
}

void unloadList(ModuleRecord*& list) {
  while (list != nullptr) {
    ModuleRecord* record = list;
    list = record->next;
    DAG module = record->module;
    std::free(record);
    RunLoadFunction(module, "unload");
  }
}

void unloadDying() { unloadList(dyingModules); }

// What a definition keeps over the jumps that can arrive in it.
struct ModuleRun {
  EnvironmentBlock block;
  Frame frame;
  EnvironmentBlock* previous;
  DAG definition, name, module;
  bool traced;
};

void protectName(DAG name) {
  DAG attributes = name[2];
  DAG isNowProtected;
  if (attributes == null) {
    isNowProtected = ini("protected");
  } else if (isProtected(attributes)) {
    return;
  } else {
    isNowProtected = simpl(new3(EXPSEQ, attributes, ini("protected")));
  }
  updategen(isNowProtected);
  name[2] = isNowProtected;
}

void leaveModule(ModuleRun& run) {
  DAG block = run.frame.envVars;
  RestoreEnvironment(run.previous);
  if (block != Environment->frame->envVars) release(block, lengthOf(block));
}

void runDefinition(ModuleRun& run) {
  std::jmp_buf buffer;
  run.previous = enterEnvironment(run.block, buffer);
  run.block.frame = &run.frame;
  int code = ::_setjmp(buffer);
  if (code == 0) {
    if (run.traced) sendDebug(debugEnter, run.name, run.frame.args);
    evaluationLevel += 19;
    if (run.name != ini("unknown") && isTag(run.name, NAME)) {
      assign(run.name, run.module);
      protectName(run.name);
    }
    evalstat(run.definition[5], modeInner);
    return;
  }
  Environment = &run.block;
  switch (code) {
    case jumpReturn:
      if (isTag(funret, FUNCTION) && funret[1] == ini("goto")) {
        if (!evalgoto(run.definition[5], funret[2][1]))
          KernelException("goto to an undefined or unreachable label");
      } else if (funret != null) {
        KernelException("return value not allowed in a module definition");
      }
      return;
    case jumpBreak:
      RestoreEnvironment(run.previous);
      KernelException("break or next outside do loop");
    case jumpError: {
      recordTraceLevel(run.frame);
      DAG caller = callerName(run.frame);
      leaveModule(run);
      if (run.traced) sendDebug(debugErrorExit, run.name, ini("lasterror")[1], caller);
      jumpOut(jumpError);
    }
    default:
      RestoreEnvironment(run.previous);
      jumpOut(static_cast<JumpCode>(code));
  }
}

DAG findByText(DAG instances, const char* text) {
  for (Word i = lengthOf(instances) - 1; i >= 1; --i)
    if (std::strcmp(textOf(declaredName(instances[i])), text) == 0) return declaredName(instances[i]);
  return DAG();
}

}  // namespace

DAG ModuleNameAttr(DAG attributes) {
  auto isModuleName = [](DAG x) {
    return isTag(x, EQUATION) && isTag(x[1], NAME) && std::strcmp(textOf(x[1]), "modulename") == 0;
  };
  if (!attributes) return DAG();
  if (isModuleName(attributes)) return attributes[2];
  if (isTag(attributes, EXPSEQ))
    for (Word i = 1; i < lengthOf(attributes); ++i)
      if (isModuleName(attributes[i])) return attributes[i][2];
  return DAG();
}

DAG exportInstance(DAG module, DAG name) {
  DAG declared = module[2][4];
  const char* text = textOf(name);
  for (Word i = 1; i < lengthOf(declared); ++i) {
    DAG candidate = declaredName(declared[i]);
    if (candidate == name || std::strcmp(textOf(candidate), text) == 0) return module[1][i];
  }
  return DAG();
}

DAG MemberInstance(DAG module, DAG name) {
  if (DAG instance = exportInstance(module, name)) return instance;
  DAG moduleName = module[2][9];
  if (moduleName == null) KernelException("module does not export `%1`", name);
  KernelException("module `%1` does not export `%2`", moduleName, name);
}

DAG EvaluateModuleDefinition(DAG definition, DAG name) {
  checkStack();
  ModuleRun run;
  run.definition = definition;
  run.name = name;
  Frame& caller = *Environment->frame;
  Frame& frame = run.frame;
  frame.previousFrame = &caller;
  frame.printLevel = framePrintLevel(definition);
  frame.procName = name;
  frame.proc = definition;
  frame.currentStatement = definition[5];
  frame.ditto1 = frame.ditto2 = frame.ditto3 = null;
  frame.inCondition = ini("false");
  frame.envVars = caller.envVars;
  DAG attribute = name == ini("unknown")
                      ? null
                      : simpl(new3(EQUATION, naminstall("modulename"), name));
  DAG locals = definition[2], exports = definition[4];
  Word n = lengthOf(locals) - 1, e = lengthOf(exports) - 1;
  DAG all = newl2(n + e + 1, EXPSEQ);
  for (Word i = 1; i <= n; ++i) all[i] = locals[i];
  for (Word i = 1; i <= e; ++i) all[n + i] = exports[i];
  DAG instances = freshLocals(all, attribute);
  if (instances == null) instances = newl2(1, EXPSEQ);
  // Through the simplifier at once: the instances live on in the module.
  DAG localPart = simpl(n > 0 ? copysub(instances, 0, n) : null);
  DAG exportPart = simpl(e > 0 ? copysub(instances, n, e) : null);
  DAG shell = CopyAlg(definition);
  shell[5] = null;
  setSimplified(shell);
  run.module = simpl(new4(MODULE, exportPart, shell, localPart));
  frame.locals = instances;
  frame.args = simpl(new2(EXPSEQ, run.module));
  run.traced = evaluationLevel + 14 < shownDepth(frame);
  runDefinition(run);
  release(frame.locals, lengthOf(frame.locals));
  leaveModule(run);
  if (run.traced) sendDebug(debugExit, name, null, callerName(frame));
  updategen(run.module);
  AddModuleToAllModules(run.module);
  return run.module;
}

void AddModuleToAllModules(DAG module) {
  auto* record = static_cast<ModuleRecord*>(std::malloc(sizeof(ModuleRecord)));
  if (record == nullptr) notimpl("AddModuleToAllModules");
  *record = {module, AllModules};
  AllModules = record;
}

void RunLoadFunction(DAG module, const char* kind) {
  DAG options = module[2][3];
  for (Word i = 1; i < lengthOf(options); ++i) {
    DAG option = options[i];
    if (!isTag(option, EQUATION) || !isTag(option[1], NAME) || !isTag(option[2], NAME) ||
        std::strcmp(textOf(option[1]), kind) != 0)
      continue;
    DAG function = findByText(module[1], textOf(option[2]));
    if (!function) function = findByText(module[3], textOf(option[2]));
    if (function) simpl(eval(simpl(newCall(function, {}))));
  }
}

void UnloadModules() { unloadList(AllModules); }

void initializeModules() { registerLastWish(collectDeadModules, unloadDying); }

}  // namespace korel
