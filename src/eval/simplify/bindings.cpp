#include "eval/simplify/bindings.h"

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "frame/errors.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"

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
void restoreUseChain(const char*) { useSimplStack = reinterpret_cast<UseGuard*>(errorProcParam)->chain; }

// ---- the entries of a binding list

DAG textName(DAG member) { return naminstall(textOf(declaredName(member))); }

// The left side of a binding stands for itself, whatever it is bound to outside.
DAG bindingEquation(DAG name, DAG value) { return SimplifyMaybeBind(new3(EQUATION, name, value), false); }

DAG memberEquation(DAG module, DAG member) {
  return bindingEquation(textName(member), simpl(new3(MEMBER, module, declaredName(member))));
}

// A name that is bound outside means what it is bound to, a member the variable of its module.
DAG meaningOf(DAG entry) {
  DAG bound = isTag(entry, NAME) ? lookupBinding(entry) : DAG();
  if (!bound) return entry;
  DAG variable = isTag(bound, MEMBER) && isTag(bound[1], MODULE) ? exportInstance(bound[1], bound[2]) : DAG();
  return variable ? variable : bound;
}

// The binding list of a `use` or of `bind`, its entries as they are meant.
struct BindingList {
  DAG entries;          // EXPSEQ
  bool modules = true;  // names of modules stand for all of their exports

  explicit BindingList(DAG list) {
    Word n = isTag(list, EXPSEQ) ? lengthOf(list) : 2;
    auto entry = [&](Word i) { return isTag(list, EXPSEQ) ? list[i] : list; };
    if (n > 1 && entry(n - 1) == naminstall("no_modules")) {
      modules = false;
      --n;
    }
    entries = newl2(n, EXPSEQ);
    for (Word i = 1; i < n; ++i) entries[i] = meaningOf(entry(i));
  }
  // The module that `entry` stands for, or 0.
  DAG moduleOf(DAG entry) const {
    DAG module = isTag(entry, NAME) && modules ? entry[1] : entry;
    return module && isTag(module, MODULE) ? module : DAG();
  }
};

void checkEntry(const BindingList& list, DAG entry) {
  if (DAG module = list.moduleOf(entry)) {
    if (lengthOf(module[1]) > 1) return;
    if (isTag(entry, NAME)) KernelException("module `%1` has no exports", entry);
    KernelException("module has no exports");
  }
  if (isTag(entry, MEMBER) || (isTag(entry, EQUATION) && isTag(entry[1], NAME))) return;
  const bool isVariable = isAmong(entry, frameReferenceTags) && procSimplStack != nullptr;
  if (isTag(entry, NAME) ? !ModuleNameAttr(entry[2]) : isVariable)
    KernelException("`%1` is not a module or member",
                    isVariable ? nameOfReference(entry, procSimplStack->procedure) : entry);
  if (!isTag(entry, NAME)) KernelException("name expected on left hand side of binding");
}

void appendEquations(const BindingList& list, DAG entry, DAG out, Word& at) {
  if (DAG module = list.moduleOf(entry)) {
    DAG exports = module[1];
    for (Word i = 1; i < lengthOf(exports); ++i) out[at++] = memberEquation(module, exports[i]);
  } else if (isTag(entry, NAME)) {
    out[at++] = memberEquation(ModuleNameAttr(entry[2]), entry);
  } else if (isTag(entry, MEMBER)) {
    out[at++] = bindingEquation(textName(entry[2]), simpl(entry));
  } else {
    out[at++] = bindingEquation(entry[1], simpl(entry[2]));
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

DAG operatorBinding(DAG operatorName) { return hasUserBindings() ? lookupBinding(operatorName) : DAG(); }

DAG callBinding(DAG function, DAG a) { return simpl(new3(FUNCTION, function, simpl(new2(EXPSEQ, a)))); }
DAG callBinding(DAG function, DAG a, DAG b) { return simpl(new3(FUNCTION, function, simpl(new3(EXPSEQ, a, b)))); }

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

DAG expandBindings(DAG source) {
  const BindingList list(source);
  std::int64_t total = 0;
  for (Word i = 1; i < lengthOf(list.entries); ++i) {
    checkEntry(list, list.entries[i]);
    DAG module = list.moduleOf(list.entries[i]);
    total += module ? lengthOf(module[1]) - 1 : 1;
  }
  if (total == 0) KernelException("no bindings were specified or implied");
  DAG out = newl2(static_cast<Word>(total + 1), EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < lengthOf(list.entries); ++i) appendEquations(list, list.entries[i], out, at);
  return out;
}

DAG boundNames(DAG source) {
  const BindingList list(source);
  DAG names = newl2(1, EXPSEQ);
  auto add = [&](DAG name) {
    names = enlarge(names, 1);
    names[lengthOf(names) - 1] = name;
  };
  for (Word i = 1; i < lengthOf(list.entries); ++i) {
    DAG entry = list.entries[i];
    if (DAG module = list.moduleOf(entry)) {
      for (Word k = 1; k < lengthOf(module[1]); ++k) add(textName(module[1][k]));
    } else if (isTag(entry, EQUATION)) {
      add(entry[1]);
    } else if (isTag(entry, MEMBER) || isTag(entry, NAME)) {
      add(textName(isTag(entry, MEMBER) ? entry[2] : entry));
    }
  }
  return names;
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
