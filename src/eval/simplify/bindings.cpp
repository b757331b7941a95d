#include "eval/simplify/bindings.h"

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/errors.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

BindingRecord* useSimplStack = nullptr;
bool bindingsEnabled = false;
DAG globalBindings;

namespace {


// The record at the bottom of the chain, for the global sequence.
BindingRecord globalRecord{DAG(), nullptr};

DAG findIn(DAG equations, DAG name) {
  for (Word i = 1, n = lengthOf(equations); i < n; ++i)
    if (equations[i][1] == name) return equations[i][2];
  return DAG();
}

DAG findInChain(DAG name) {
  for (BindingRecord* record = useSimplStack; record != nullptr; record = record->link)
    if (DAG bound = findIn(record->equations, name)) return bound;
  return DAG();
}

// Puts back the chain and the flag that an error would leave changed.
void restoreBindingFlag(const char*) { bindingsEnabled = errorProcParam != 0; }

struct UseGuard {
  BindingRecord* chain;
};
void restoreUseChain(const char*) {
  useSimplStack = reinterpret_cast<UseGuard*>(errorProcParam)->chain;
}

DAG memberEquation(DAG module, DAG member) {
  DAG name = naminstall(textOf(member));
  return simpl(new3(EQUATION, name, simpl(new3(MEMBER, module, member))));
}

DAG plainName(DAG declaration) { return isTag(declaration, DCOLON) ? declaration[1] : declaration; }

// How many equations one entry of a binding list stands for.
Word bindingCount(DAG entry, bool modules) {
  DAG module = isTag(entry, NAME) && modules ? entry[1] : entry;
  if (!module || !isTag(module, MODULE)) return 1;
  Word count = lengthOf(module[1]) - 1;
  if (count != 0) return count;
  if (isTag(entry, NAME)) KernelException("module `%1` has no exports", entry);
  KernelException("module has no exports");
}

void expandEntry(DAG entry, bool modules, DAG out, Word& at) {
  DAG module = isTag(entry, NAME) && modules ? entry[1] : entry;
  if (module && isTag(module, MODULE)) {
    DAG exports = module[1];
    for (Word i = 1; i < lengthOf(exports); ++i)
      out[at++] = memberEquation(module, plainName(exports[i]));
  } else if (isTag(entry, NAME)) {
    DAG owner = ModuleNameAttr(entry[2]);
    if (!owner) KernelException("`%1` is not a module or member", entry);
    out[at++] = memberEquation(owner, entry);
  } else if (isTag(entry, MEMBER)) {
    DAG name = naminstall(textOf(plainName(entry[2])));
    out[at++] = simpl(new3(EQUATION, name, simpl(entry)));
  } else if (isTag(entry, EQUATION)) {
    if (!isTag(entry[1], NAME)) KernelException("name expected on left hand side of binding");
    DAG equation = CopyAlg(entry);
    equation[2] = simpl(equation[2]);
    // Entered without its left side being bound in turn.
    bool before = bindingsEnabled;
    bindingsEnabled = false;
    out[at++] = simpl(equation);
    bindingsEnabled = before;
  } else {
    KernelException("name expected on left hand side of binding");
  }
}

}  // namespace

DAG lookupBinding(DAG name) {
  if (!bindingsEnabled || useSimplStack == nullptr) return DAG();
  DAG bound = findInChain(name);
  if (!bound || bound == name) return DAG();
  // A binding to a bound name goes on; the count of steps ends a circle.
  for (int steps = 0; steps < 1000 && isTag(bound, NAME); ++steps) {
    DAG next = findInChain(bound);
    if (!next || next == bound) break;
    bound = next;
  }
  return bound;
}

bool hasUserBindings() {
  if (!bindingsEnabled || useSimplStack == nullptr) return false;
  return useSimplStack != &globalRecord || lengthOf(globalBindings) > 2;
}

DAG allBindings() {
  DAG all = newl2(1, EXPSEQ);
  for (BindingRecord* r = useSimplStack; r != nullptr; r = r->link) {
    DAG joined = newl2(lengthOf(all) + lengthOf(r->equations) - 1, EXPSEQ);
    Word at = 1;
    for (Word i = 1; i < lengthOf(all); ++i) joined[at++] = all[i];
    for (Word i = 1; i < lengthOf(r->equations); ++i) joined[at++] = r->equations[i];
    all = joined;
  }
  return all;
}

DAG operatorBinding(DAG operatorName) {
  return hasUserBindings() ? lookupBinding(operatorName) : DAG();
}

DAG callBinding(DAG function, DAG a) {
  return simpl(new3(FUNCTION, function, simpl(new2(EXPSEQ, a))));
}
DAG callBinding(DAG function, DAG a, DAG b) {
  return simpl(new3(FUNCTION, function, simpl(new3(EXPSEQ, a, b))));
}

DAG SimplifyMaybeBind(DAG x, bool bind) {
  bool before = bindingsEnabled;
  if (bind == before) return simpl(x);
  PushParamErrorProc(restoreBindingFlag, reinterpret_cast<void*>(std::uintptr_t{before}));
  bindingsEnabled = bind;
  DAG result = simpl(x);
  bindingsEnabled = before;
  PopErrorProc();
  return result;
}

namespace {

// The last entry of the global bindings: the name that the interface variable tells is the imaginary unit.
void bindImaginaryUnit(const char* text) {
  const Word last = globalBindings ? lengthOf(globalBindings) - 1 : 1;
  if (globalBindings && std::strcmp(textOf(globalBindings[last][1]), text) == 0) return;
  DAG changed = globalBindings ? CopyAlg(globalBindings) : newl2(2, EXPSEQ);
  changed[last] = simpl(new3(EQUATION, naminstall(text), sqrtm1));
  globalBindings = simpl(changed);
  updategens(globalBindings);
}

}  // namespace

void ResetSimplifier() {
  bindingsEnabled = false;
  assignedProcName = DAG();
  procSimplStack = nullptr;
  bindImaginaryUnit(defaultNerinVariables.imaginaryunit);
  globalRecord.equations = globalBindings;
  useSimplStack = &globalRecord;
}

void CleanUpSimplifier() {
  globalBindings = DAG();
  globalRecord.equations = DAG();
  useSimplStack = nullptr;
  bindingsEnabled = false;
}

DAG expandBindings(DAG list) {
  Word n = isTag(list, EXPSEQ) ? lengthOf(list) : 2;
  DAG entries = isTag(list, EXPSEQ) ? list : new2(EXPSEQ, list);
  bool modules = true;
  if (n > 1 && isTag(entries[n - 1], NAME) && entries[n - 1] == naminstall("no_modules")) {
    modules = false;
    --n;
  }
  std::int64_t total = 0;
  for (Word i = 1; i < n; ++i) total += bindingCount(entries[i], modules);
  if (total == 0) KernelException("no bindings were specified or implied");
  DAG out = newl2(static_cast<Word>(total + 1), EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < n; ++i) expandEntry(entries[i], modules, out, at);
  return out;
}

DAG simplUse(DAG s) {
  DAG fresh = expandBindings(s[1]);
  BindingRecord record{fresh, useSimplStack};
  UseGuard guard{useSimplStack};
  PushParamErrorProc(restoreUseChain, &guard);
  useSimplStack = &record;
  const bool inProcedure = procSimplStack != nullptr;
  DAG body = inProcedure ? simplfnc(s[2], procSimplStack->procedure, allBindings()) : s[2];
  DAG result = SimplifyMaybeBind(body, true);
  useSimplStack = record.link;
  PopErrorProc();
  return result;
}

DAG simplBindingArguments(DAG call) {
  DAG arguments = call[2];
  if (!hasUserBindings() || !isTag(arguments, EXPSEQ)) return arguments;
  if (call[1] == ini("unbind")) return SimplifyMaybeBind(arguments, false);
  DAG result = CopyAlg(arguments);
  for (Word i = 1; i < lengthOf(result); ++i) {
    if (!isTag(result[i], EQUATION) || !isTag(result[i][1], NAME)) {
      result[i] = simpl(result[i]);
      continue;
    }
    DAG equation = CopyAlg(result[i]);
    equation[2] = simpl(equation[2]);
    result[i] = equation;
  }
  return SimplifyMaybeBind(result, false);
}

DAG AppendToWithBindings(DAG list) {
  if (lengthOf(list) > 1) {
    DAG fresh = expandBindings(list);
    Word n = lengthOf(globalBindings), k = lengthOf(fresh);
    // New bindings stand in front: they are found first, and the imaginary unit stays last.
    DAG joined = newl2(n + k - 1, EXPSEQ);
    for (Word i = 1; i < k; ++i) joined[i] = fresh[i];
    for (Word i = 1; i < n; ++i) joined[k - 1 + i] = globalBindings[i];
    globalBindings = simpl(joined);
    updategens(globalBindings);
    globalRecord.equations = globalBindings;
  }
  Word count = lengthOf(globalBindings) - 2;  // the imaginary unit isn't listed
  if (count == 0) return null;
  return simpl(copysub(globalBindings, 0, count));
}

DAG RemoveFromWithBindings(DAG names) {
  DAG kept = newl2(lengthOf(globalBindings), EXPSEQ);
  Word at = 1;
  for (Word i = 1, n = lengthOf(globalBindings); i < n; ++i) {
    bool named = false;
    for (Word k = 1; k < lengthOf(names); ++k)
      if (i + 1 < n && globalBindings[i][1] == names[k]) named = true;
    if (!named) kept[at++] = globalBindings[i];
  }
  if (at != lengthOf(kept)) shorten(kept, lengthOf(kept), at);
  globalBindings = simpl(kept);
  updategens(globalBindings);
  globalRecord.equations = globalBindings;
  return AppendToWithBindings(null);
}

}  // namespace korel
