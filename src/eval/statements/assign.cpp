#include "eval/statements/assign.h"

#include "debug/watches.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/operand.h"
#include "eval/evaluate/unique_sequence.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/remember.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/simplify.h"
#include "eval/tables/tables.h"
#include "eval/types/types.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "library/retrieve.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_kind.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Lists of this many members and more are not changed in place of a table.
constexpr Word longListLength = 101;

// What the library path may hold: a text, or a sequence of texts.
DAG libnameValue(DAG v) {
  if (isTag(v, NAME)) {
    if (v == ini("libname")) KernelException("cannot unassign libname");
    return strinstall(textOf(v));
  }
  if (isTag(v, STRING)) return v;
  if (!isTag(v, EXPSEQ)) KernelException("invalid libname value, %1", v);
  DAG texts = CopyAlg(v);
  for (Word i = 1; i < lengthOf(v); ++i) {
    if (isTag(v[i], NAME)) texts[i] = strinstall(textOf(v[i]));
    else if (!isTag(v[i], STRING)) KernelException("invalid libname component, %1", v[i]);
  }
  return simpl(texts);
}

void assignName(DAG t, DAG v) {
  if ((controlWord(t) & deferredBit) != 0) RetrieveName(t);
  watchAssignment(t, v);
  if (isEnvironmentName(t)) {
    assignenv(t, v);
    return;
  }
  if (isProtected(t[2])) KernelException("attempting to assign to `%1` which is protected", t);
  if (t == ini("lasterror")) KernelException("cannot set lasterror");
  if (t == ini("lastexception")) KernelException("cannot set lastexception");
  if (t == ini("libname")) {
    v = libnameValue(v);
    deferNames();
  }
  stepEvaluationClock();
  if (v == t) {
    t[1] = DAG();
    return;
  }
  // The value lives as long as the name does.
  updategen(v);
  t[1] = v;
}

// ---- t[i] := v

void assignListMember(DAG target, DAG base, DAG list, DAG v) {
  if (v == target) KernelException("invalid left hand side of table reference");
  if (isTag(v, EXPSEQ)) KernelException("expression sequences cannot be assigned to lists");
  DAG index = singleMember(simpl(eval(target[2])));
  if (!isInteger(index)) {
    // l[i, j] is (l[i])[j].
    if (!isSequence(index) || isEmptySequence(index))
      KernelException("invalid subscript on left hand side of assignment");
    DAG nested = base;
    for (Word k = 1; k < lengthOf(index); ++k) nested = simpl(new3(TABLEREF, nested, simpl(new2(EXPSEQ, index[k]))));
    assign(nested, v);
    return;
  }
  DAG body = list[1];
  const Word n = memberCount(body);
  if (n >= longListLength) KernelException("assigning to a long list, please use arrays");
  std::int64_t k = FitIntoWord(index) ? LongLongValue(index) : 0;
  if (k < 0) k += n + 1;
  if (k < 1 || k > n) KernelException("out of bound assignment to a list");
  DAG members = CopyAlg(body);
  members[k] = v;
  DAG changed = CopyAlg(list);
  changed[1] = simpl(members);
  assign(base, simpl(changed));
}

void assignModuleMember(DAG target, DAG module, DAG v) {
  DAG name = singleMember(simpl(eval(target[2])));
  if (!isTag(name, NAME)) KernelException("index must evaluate to a name when indexing a module");
  DAG member = MemberInstance(module, name);
  assign(member, v == target ? declaredName(member) : v);
}

// What the base of the target t[i] holds, and the last name on the way to it.
struct Container {
  DAG value, lastName;
};
Container containerOf(DAG base) {
  Container container{base, base};
  bool followed = isTag(base, TABLEREF) || isTag(base, FUNCTION);
  if (isName(base)) {
    if (isProtected(base[2])) KernelException("attempting to assign to array/table `%1` which is protected", base);
    DAG stored = valuenv(base, false);
    followed = stored != base && (isNameOrIndexed(stored) || isTag(stored, FUNCTION));
    container.value = stored;
  }
  if (followed) container.value = eval(base, &container.lastName);
  if (!container.lastName) container.lastName = base;
  return container;
}

void assignTableEntry(DAG t, DAG v) {
  DAG base = t[1], index = t[2];
  const auto [container, lastName] = containerOf(base);
  const bool removal = v == t;
  switch (tagOf(container)) {
    case TABLE:
      if (removal) removeEntry(index, container);
      else assignEntry(index, lastName, container, v);
      return;
    case MODULE: return assignModuleMember(t, container, v);
    case LIST: return assignListMember(t, base, container, v);
    case ZPPOLY: KernelException("cannot assign to a zppoly index");
    case RTABLE:
      if (removal) refuseUnassignment(container);
      return korelindex(index, base, container, v);
    default:
      if (!removal) korelindex(index, base, container, v);
      else if (isName(container)) assign(container, maketable(DAG(), null));
      else KernelException("invalid left hand side of table reference");
  }
}

// What no TABLEREF can be a part of.
constexpr TagSet plainTags = realTags | textTags;

// The name instance that the base of a target stands for: a name, or a local of the running frame; or 0.
DAG plainBase(DAG base) {
  if (isTag(base, LOCAL)) base = frameInstance(base);
  if (!isTag(base, NAME) || isEnvironmentName(base) || (controlWord(base) & deferredBit) != 0) return DAG();
  return base;
}

// ---- f(a) := v

[[noreturn]] void invalidCallTarget(DAG head) {
  if (head == ini("."))
    KernelException(
        "invalid left hand side in assignment (note that the concatenation operator is now || instead "
        "of .)");
  KernelException("invalid left hand side in assignment");
}

DAG inertProcedure() {
  DAG proc = newProcedure({.options = simpl(newSequence({ini("remember")})), .body = InertProc});
  setSimplified(proc);
  return proc;
}

void assignRemembered(DAG t, DAG v) {
  DAG head = t[1], arguments = t[2];
  if (head == ini(".")) invalidCallTarget(head);
  DAG lastName;
  DAG procedure = eval(head, &lastName);
  DAG key = arguments;
  if (isTag(procedure, TABLEREF) && isName(procedure[1])) {
    key = indexedKey(procedure[2], arguments);
    procedure = eval(procedure[1], &lastName);
  }
  if (isName(procedure)) {
    DAG name = procedure;
    procedure = inertProcedure();
    assign(name, procedure);
  }
  if (isTag(procedure, PROC) && hasOption(procedure, ini("builtin"))) invalidCallTarget(head);
  updategen(procedure);
  pcinsert(procedure, key, v);
}

}  // namespace

bool isProtected(DAG attributes) { return attributes != null && isMember(ini("protected"), attributes); }

bool assignPlainEntry(DAG target, DAG v) {
  if (!isTag(target, TABLEREF) || !(isImmediate(v) || isAmong(v, plainTags))) return false;
  DAG index = target[2];
  if (!isTag(index, EXPSEQ) || lengthOf(index) < 2) return false;
  DAG name = plainBase(target[1]);
  if (!name || !isUnwatched(name)) return false;
  const bool single = lengthOf(index) == 2;
  DAG key = single ? simpl(evalOperand(index[1])) : evaluatedSequence(index);
  DAG table = name[1];
  if (name[2] == null && isTag(table, TABLE) && !(single && isTag(key, EXPSEQ))) {
    if (table[tableFunction] == null) storeDirectly(key, table, v);
    else assignEntry(single ? singleSequence(key) : key, name, table, v);
  } else if (name[2] == null && single && isTag(table, RTABLE) && storeAtInteger(table, key, v)) {
    return true;
  } else {
    assign(simpl(new3(TABLEREF, name, single ? singleSequence(key) : key)), v);
  }
  return true;
}

bool isOrdinaryName(DAG target) {
  return isTag(target, NAME) && !isEnvironmentName(target) && target != ini("lasterror") &&
         target != ini("lastexception") && target != ini("libname");
}

bool assignPlainName(DAG name, DAG v) {
  if (!(isImmediate(v) || isAmong(v, realTags | TagSet{STRING}))) return false;
  if (!isOpenName(name) || !isOrdinaryName(name) || !isUnwatched(name)) return false;
  name[1] = v;
  return true;
}

DAG assign(DAG t, DAG v) {
  switch (tagOf(t)) {
    case MEMBER: return assign(evalname(t), v);
    case DCOLON: {
      DAG declared = simpl(eval(t[2]));
      if (!type(v, declared)) {
        SpecialError = assertionFailed;
        KernelException("assertion failed in assignment, expected %1, got %2", declared, v);
      }
      return assign(t[1], v);
    }
    case NAME: assignName(t, v); return v;
    case TABLEREF:
      watchAssignment(t, v);
      assignTableEntry(t, v);
      return v;
    case FUNCTION: assignRemembered(t, v); return v;
    default: KernelException("invalid left hand side in assignment");
  }
}

}  // namespace korel
