// Tables and their entries.

#include "frame/errors.h"
#include "store/hash.h"
#include "store/object_fields.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// A value behind `=`: relations and longer sequences only read back in parentheses.
void printEntryValue(DAG value) {
  int strength = ParenLevel(value);
  bool relation = isObject(value) && strength >= bindsOr && strength <= bindsRelation;
  bool longSequence = isSequence(value) && memberCount(value) > 1;
  if (relation || longSequence) {
    printParenthesised(value);
  } else {
    printObject(value, bindsNothing);
  }
}

bool printEntry(void* first, PairAddress pair) {
  auto* isFirst = static_cast<bool*>(first);
  if (!*isFirst) EmitChar(',');
  *isFirst = false;
  EmitChar('(');
  DAG index = pairKey(pair);
  if (isEmptySequence(index)) {
    EmitToken("NULL");
  } else {
    printList(index, ",");
  }
  EmitChar(')');
  EmitChar('=');
  printEntryValue(pairValue(pair));
  return true;
}

// `false`, or nothing: no indexing function, no bounds.
bool isAbsent(DAG field) { return !field || field == ini("false") || isEmptySequence(field); }

}  // namespace

void printHashTable(DAG x, int, int) {
  EmitChar('[');
  bool first = true;
  hashforeach(x, printEntry, &first);
  EmitChar(']');
}

// A table inside itself prints without its entries. There is no program text for one.
void printTable(DAG x, int, int) {
  const bool inItself = isUnderWay(x);
  if (inItself && printAttributes) KernelException("unprintable data structure");
  EmitToken(isArrayTable(x) ? "array" : "table");
  EmitChar('(');
  if (inItself) {
    EmitToken("...");
    EmitChar(')');
    return;
  }
  PrintedHolder table{x, printedHolders};
  printedHolders = &table;
  for (TableField field : {tableFunction, tableBounds}) {
    if (isAbsent(x[field])) continue;
    printList(x[field], ",");
    EmitChar(',');
  }
  printObject(x[tableEntries], bindsNothing);
  EmitChar(')');
  printedHolders = table.link;
}

}  // namespace korel
