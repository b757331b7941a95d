#include "debug/watches.h"

#include "debug/debugger.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

DAG watchTable, errorTable;

namespace {

// ---- tables

// What is no entry of a table, and how it is refused.
struct TableRules {
  DAG* table;
  void (*check)(DAG entry);
  const char* notThere;
  const char* noList;
};

void store(const TableRules& t, DAG entries) {
  *t.table = entries == null ? DAG() : entries;
  updategens(entries);
}

void add(const TableRules& t, DAG entry) {
  t.check(entry);
  if (!*t.table) store(t, simpl(newSequence({entry})));
  else if (!isMember(entry, *t.table)) store(t, simpl(newSequence({*t.table, entry})));
}

void remove(const TableRules& t, DAG entry) {
  t.check(entry);
  const Word at = *t.table ? memberPosition(entry, *t.table) : 0;
  if (at == 0) KernelException(t.notThere);
  store(t, simpl(copydel(*t.table, at - 1, 1)));
}

void replace(const TableRules& t, DAG list) {
  if (!isTag(list, LIST)) KernelException(t.noList);
  DAG entries = asSequence(list[1]);
  for (Word i = 1, n = lengthOf(entries); i < n; ++i) t.check(entries[i]);
  store(t, simpl(entries));
}

bool isGlobal(DAG x) {
  if (!isTag(x, NAME)) return false;
  const PairAddress pair = srchname(textOf(x));
  return pair != notFound && pairValue(pair) == x;
}

bool isPairOfNames(DAG x) {
  return isTag(x, LIST) && isSequence(x[1]) && memberCount(x[1]) == 2 && isTag(x[1][1], NAME) && isTag(x[1][2], NAME);
}

void checkWatch(DAG entry) {
  if (!isGlobal(entry) && !isPairOfNames(entry)) KernelException("global name or [proc name, local name] expected");
}

bool isTrappedError(DAG x) { return isTag(x, TABLEREF) && x[1] == ini("traperror"); }

void checkErrorStop(DAG entry) {
  if (isTag(entry, STRING) || entry == ini("traperror") || entry == ini("all")) return;
  if (!isTrappedError(entry)) KernelException("error message string expected");
  DAG text = singleMember(entry[2]);
  if (!isTag(text, STRING)) KernelException("error table entries must be a \"string\" or traperror[\"string\"]");
}

const TableRules watches{&watchTable, checkWatch, "name is not in watch table", "list expected for watch table"};
const TableRules errorStops{&errorTable, checkErrorStop, "message is not in error table",
                            "list expected for error table"};

// Inside a list of any form an entry that is no text has one message.
void checkListedErrorStop(DAG entry) {
  if (!isTag(entry, STRING) && !isTrappedError(entry) && entry != ini("traperror") && entry != ini("all"))
    KernelException("error table entries must be a \"string\" or traperror[\"string\"]");
  checkErrorStop(entry);
}

}  // namespace

void addWatch(DAG entry) { add(watches, entry); }
void deleteWatch(DAG entry) { remove(watches, entry); }
void setWatchTable(DAG list) { replace(watches, list); }
void addErrorStop(DAG entry) { add(errorStops, entry); }
void deleteErrorStop(DAG entry) { remove(errorStops, entry); }
void setErrorTable(DAG list) {
  TableRules rules = errorStops;
  rules.check = checkListedErrorStop;
  replace(rules, list);
}
DAG tableAsList(DAG table) { return simpl(new2(LIST, table ? table : null)); }

// ---- assignments

bool isInWatchTable(DAG name) {
  DAG procedure = Environment->frame->procName;
  for (Word i = 1, n = lengthOf(watchTable); i < n; ++i) {
    DAG entry = watchTable[i];
    if (entry == name) return true;
    if (isTag(entry, LIST) && entry[1][1] == procedure && hasText(entry[1][2], textOf(name))) return true;
  }
  return false;
}

void watchAssignmentInForce(DAG target, DAG value) {
  if (evaluationLevel < firstInnerDepth || interruptsWait()) return;
  DAG name = target;
  while (isTag(name, TABLEREF)) name = name[1];
  if (!isTag(name, NAME) || !isInWatchTable(name)) return;
  DAG report = newSequence({naminstall("DEBUGWATCH"), target, value});
  armStop(everyDepth, simpl(newSequence({simpl(new2(LIST, simpl(report)))})));
}

// ---- errors

bool trappedMember(DAG text) {
  for (Word i = 1; errorTable && i < lengthOf(errorTable); ++i)
    if (isTrappedError(errorTable[i]) && singleMember(errorTable[i][2]) == text) return true;
  return false;
}

bool stopsAtError(DAG message, bool trapped) {
  if (!errorTable) return false;
  DAG texts = asSequence(message);
  const DAG first = texts[1];
  if (trapped) return isMember(ini("traperror"), errorTable) || trappedMember(first);
  return isMember(first, errorTable) || isMember(ini("all"), errorTable);
}

void initializeWatches() {
  registerRoot(&watchTable);
  registerRoot(&errorTable);
}

}  // namespace korel
