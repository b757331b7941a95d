#include "eval/statements/assign.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/operand.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/remember.h"
#include "library/repository/lookup.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/unique_sequence.h"
#include "eval/tables/tables.h"
#include "eval/types/types.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

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
  if (isEnvironmentName(t)) {
    assignenv(t, v);
    return;
  }
  if (t[2] != null && isProtected(t[2]))
    KernelException("attempting to assign to `%1` which is protected", t);
  if (t == ini("lasterror")) KernelException("cannot set lasterror");
  if (t == ini("lastexception")) KernelException("cannot set lastexception");
  if (t == ini("libname")) {
    v = libnameValue(v);
    loopname(5, DAG());
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
  DAG index = simpl(eval(target[2]));
  bool single = !isTag(index, EXPSEQ) || lengthOf(index) == 2;
  DAG first = isTag(index, EXPSEQ) && lengthOf(index) > 1 ? index[1] : index;
  if (!single || !isInteger(first)) {
    // l[i, j] is (l[i])[j].
    DAG nested = base;
    for (Word k = 1; k < lengthOf(index); ++k)
      nested = simpl(new3(TABLEREF, nested, simpl(new2(EXPSEQ, index[k]))));
    if (nested == target || lengthOf(index) < 2)
      KernelException("invalid subscript on left hand side of assignment");
    assign(nested, v);
    return;
  }
  DAG body = list[1];
  Word n = lengthOf(body) - 1;
  if (n >= longListLength) KernelException("assigning to a long list, please use arrays");
  std::int64_t k = FitIntoWord(first) ? LongLongValue(first) : 0;
  if (k < 0) k += n + 1;
  if (k < 1 || k > n) KernelException("out of bound assignment to a list");
  DAG members = CopyAlg(body);
  members[k] = v;
  DAG changed = CopyAlg(list);
  changed[1] = simpl(members);
  assign(base, simpl(changed));
}

void assignModuleMember(DAG target, DAG module, DAG v) {
  DAG name = simpl(eval(target[2]));
  if (isTag(name, EXPSEQ) && lengthOf(name) == 2) name = name[1];
  if (!isTag(name, NAME)) KernelException("index must evaluate to a name when indexing a module");
  DAG member = MemberInstance(module, name);
  assign(member, v == target ? declaredName(member) : v);
}

void assignTableEntry(DAG t, DAG v) {
  DAG base = t[1], index = t[2];
  DAG container = base;
  DAG lastName = base;
  if (isTag(base, NAME)) {
    if (base[2] != null && isProtected(base[2]))
      KernelException("attempting to assign to array/table `%1` which is protected", base);
    DAG stored = valuenv(base, false);
    if (stored != base && (isTag(stored, TABLEREF) || isTag(stored, FUNCTION) || isTag(stored, NAME)))
      container = eval(base, &lastName);
    else
      container = stored;
  } else if (isTag(base, TABLEREF) || isTag(base, FUNCTION)) {
    container = eval(base, &lastName);
  }
  if (!lastName) lastName = base;
  bool removal = v == t;
  if (isImmediate(container)) {
    if (removal) KernelException("invalid left hand side of table reference");
    korelindex(index, base, container, v);
    return;
  }
  switch (tagOf(container)) {
    case TABLE:
      if (removal) removeEntry(index, container);
      else TableIndex(index, lastName, container, v);
      return;
    case NAME:
      if (removal) assign(container, maketable(DAG(), null));
      else korelindex(index, base, container, v);
      return;
    case MODULE: return assignModuleMember(t, container, v);
    case LIST: return assignListMember(t, base, container, v);
    case ZPPOLY: KernelException("cannot assign to a zppoly index");
    default:
      if (removal) KernelException("invalid left hand side of table reference");
      korelindex(index, base, container, v);
  }
}

// What no TABLEREF can be a part of.
bool holdsNoReference(DAG v) {
  if (isImmediate(v)) return true;
  switch (tagOf(v)) {
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case STRING: case NAME: return true;
    default: return false;
  }
}

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
  DAG proc = newl2(9, PROC);
  for (Word i = 1; i < 9; ++i) proc[i] = null;
  proc[3] = simpl(new2(EXPSEQ, ini("remember")));
  proc[5] = InertProc;
  setSimplified(proc);
  return proc;
}

void assignRemembered(DAG t, DAG v) {
  DAG head = t[1], arguments = t[2];
  if (head == ini(".")) invalidCallTarget(head);
  DAG lastName;
  DAG procedure = eval(head, &lastName);
  DAG key = arguments;
  if (isTag(procedure, TABLEREF) && isTag(procedure[1], NAME)) {
    DAG index = lengthOf(procedure[2]) == 2 ? procedure[2][1] : procedure[2];
    DAG single = lengthOf(arguments) == 2 ? arguments[1] : arguments;
    key = simpl(new3(DCOLON, index, single));
    procedure = eval(procedure[1], &lastName);
  }
  if (isTag(procedure, NAME)) {
    DAG name = procedure;
    procedure = inertProcedure();
    assign(name, procedure);
  }
  if (isTag(procedure, PROC) && hasOption(procedure, ini("builtin"))) invalidCallTarget(head);
  updategen(procedure);
  pcinsert(procedure, key, v, -1);
}

}  // namespace

bool isProtected(DAG attributes) {
  return attributes == ini("protected") ||
         (isTag(attributes, EXPSEQ) && hasMember(attributes, ini("protected")));
}

bool assignPlainEntry(DAG target, DAG v) {
  if (!isTag(target, TABLEREF) || !holdsNoReference(v)) return false;
  DAG index = target[2];
  if (!isTag(index, EXPSEQ) || lengthOf(index) < 2) return false;
  DAG name = plainBase(target[1]);
  if (!name) return false;
  const bool single = lengthOf(index) == 2;
  DAG key = single ? simpl(evalOperand(index[1])) : evaluatedSequence(index);
  DAG table = name[1];
  if (name[2] == null && isTag(table, TABLE) && !(single && isTag(key, EXPSEQ))) {
    if (table[1] == null) directEntry(key, table, v);
    else TableIndex(single ? singleSequence(key) : key, name, table, v);
  } else {
    assign(simpl(new3(TABLEREF, name, single ? singleSequence(key) : key)), v);
  }
  return true;
}

bool isOrdinaryName(DAG target) {
  return isTag(target, NAME) && !isEnvironmentName(target) && target != ini("lasterror") &&
         target != ini("lastexception") && target != ini("libname");
}

DAG assign(DAG t, DAG v) {
  if (!isImmediate(t)) switch (tagOf(t)) {
      case MEMBER: return assign(evalname(t), v);
      case DCOLON: {
        DAG declared = simpl(eval(t[2]));
        if (!type(v, declared)) {
          SpecialError = assertionFailed;
          KernelException("assertion failed in assignment, expected %1, got %2", declared, v);
        }
        return assign(t[1], v);
      }
      case NAME:
        assignName(t, v);
        return v;
      case TABLEREF:
        assignTableEntry(t, v);
        return v;
      case FUNCTION:
        assignRemembered(t, v);
        return v;
      default: break;
    }
  KernelException("invalid left hand side in assignment");
}

}  // namespace korel
