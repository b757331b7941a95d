#include "eval/procedures/modules.h"

#include <cstdlib>
#include <cstring>

#include "debug/call_profile.h"
#include "debug/debugger.h"
#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedure_frame.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/statements/depth.h"
#include "eval/statements/loops.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/trace_messages.h"
#include "frame/traceback.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

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
  if (isProtected(name[2])) return;
  DAG attributes = simpl(newSequence({name[2], ini("protected")}));
  name[2] = singleMember(attributes);
  updategen(name[2]);
}

void leaveModule(ModuleRun& run) {
  DAG block = run.frame.envVars;
  RestoreEnvironment(run.previous);
  if (block != Environment->frame->envVars) release(block, lengthOf(block));
}

void runDefinition(ModuleRun& run) {
  DAG body = bodyOf(run.definition);
  std::jmp_buf buffer;
  run.previous = enterEnvironment(run.block, buffer);
  run.block.frame = &run.frame;
  int code = ::_setjmp(buffer);
  if (code == 0) {
    if (run.traced) sendDebug(debugEnter, run.name, run.frame.args);
    evaluationLevel += procedureLevels;
    if (run.name != ini("unknown")) {
      assign(run.name, run.module);
      if (isTag(run.name, NAME)) protectName(run.name);
    }
    evalstat(body, modeInner);
    return;
  }
  Environment = &run.block;
  switch (code) {
    case jumpReturn:
      if (isCallOf(funret, ini("goto"))) {
        if (!evalgoto(body, funret[2][1])) KernelException("goto to an undefined or unreachable label");
      } else if (funret != null) {
        KernelException("return value not allowed in a module definition");
      }
      return;
    case jumpBreak: RestoreEnvironment(run.previous); KernelException("break or next outside do loop");
    case jumpError: {
      recordTraceLevel(run.frame);
      DAG caller = callerName(run.frame);
      leaveModule(run);
      prtprof(false, run.name, evaluationLevel);
      if (SpecialError != noSpecialError) EnterDebugger();
      if (run.traced) sendDebug(debugErrorExit, run.name, ini("lasterror")[1], caller);
      jumpOut(jumpError);
    }
    default: RestoreEnvironment(run.previous); jumpOut(static_cast<JumpCode>(code));
  }
}

DAG findByText(DAG instances, const char* text) {
  for (Word i = lengthOf(instances) - 1; i >= 1; --i)
    if (std::strcmp(textOf(declaredName(instances[i])), text) == 0) return declaredName(instances[i]);
  return DAG();
}

}  // namespace

DAG ModuleNameAttr(DAG attributes) {
  auto isModuleName = [](DAG x) { return isTag(x, EQUATION) && isName(x[1]) && hasText(x[1], "modulename"); };
  if (!attributes) return DAG();
  if (isModuleName(attributes)) return attributes[2];
  if (isTag(attributes, EXPSEQ))
    for (Word i = 1; i < lengthOf(attributes); ++i)
      if (isModuleName(attributes[i])) return attributes[i][2];
  return DAG();
}

DAG exportInstance(DAG module, DAG name) {
  DAG declared = exportsOf(module[moduleDefinition]);
  const char* text = textOf(name);
  for (Word i = 1; i < lengthOf(declared); ++i) {
    DAG candidate = declaredName(declared[i]);
    if (candidate == name || std::strcmp(textOf(candidate), text) == 0) return module[moduleExports][i];
  }
  return DAG();
}

DAG MemberInstance(DAG module, DAG name) {
  if (DAG instance = exportInstance(module, name)) return instance;
  DAG moduleName = module[moduleDefinition][moddefName];
  if (moduleName == null) KernelException("module does not export `%1`", name);
  KernelException("module `%1` does not export `%2`", moduleName, name);
}

namespace {

// The module object, and its frame's locals: the instances of the declared locals, then those of the exports.
void makeInstances(ModuleRun& run) {
  DAG definition = run.definition, locals = localsOf(definition), exports = exportsOf(definition);
  const Word n = memberCount(locals), e = memberCount(exports);
  DAG declarations = space_insert(locals, n, e);
  for (Word i = 1; i <= e; ++i) declarations[n + i] = exports[i];
  bool isNamed = run.name != ini("unknown");
  DAG attribute = isNamed ? simpl(new3(EQUATION, naminstall("modulename"), run.name)) : null;
  DAG instances = freshLocals(declarations, attribute);
  if (instances == null) instances = newl2(1, EXPSEQ);
  // Through the simplifier at once: the instances live on in the module.
  DAG localPart = simpl(copysub(instances, 0, n));
  DAG exportPart = simpl(copysub(instances, n, e));
  DAG shell = CopyAlg(definition);
  bodyOf(shell) = null;
  setSimplified(shell);
  run.module = simpl(newModuleObject(exportPart, shell, localPart));
  run.frame.locals = instances;
  run.frame.args = simpl(newSequence({run.module}));
}

}  // namespace

DAG EvaluateModuleDefinition(DAG definition, DAG name) {
  checkStack();
  ModuleRun run;
  run.definition = definition;
  run.name = name;
  Frame& caller = *Environment->frame;
  prtprof(true, name, evaluationLevel);
  Frame& frame = run.frame;
  frame.previousFrame = &caller;
  frame.printLevel = framePrintLevel(definition);
  frame.procName = name;
  frame.proc = definition;
  frame.currentStatement = bodyOf(definition);
  frame.ditto1 = frame.ditto2 = frame.ditto3 = null;
  frame.inCondition = ini("false");
  frame.envVars = caller.envVars;
  makeInstances(run);
  run.traced = showsCalls(frame);
  runDefinition(run);
  release(frame.locals, lengthOf(frame.locals));
  leaveModule(run);
  if (run.traced) sendDebug(debugExit, name, null, callerName(frame));
  prtprof(false, name, evaluationLevel);
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
  DAG options = optionsOf(module[moduleDefinition]);
  for (Word i = 1; i < lengthOf(options); ++i) {
    DAG option = options[i];
    if (!isTag(option, EQUATION) || !isName(option[1]) || !isName(option[2]) || !hasText(option[1], kind)) continue;
    DAG function = findByText(module[moduleExports], textOf(option[2]));
    if (!function) function = findByText(module[moduleLocals], textOf(option[2]));
    if (function) simpl(eval(simpl(newCall(function, {}))));
  }
}

void UnloadModules() { unloadList(AllModules); }

void initializeModules() { registerLastWish(collectDeadModules, unloadDying); }

}  // namespace korel
