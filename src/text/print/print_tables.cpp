// Tables and their entries.

#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "text/print/print_object.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// A value behind `=`: relations and longer sequences only read back in parentheses.
void printEntryValue(DAG value) {
  int level = ParenLevel(value);
  bool relation = isObject(value) && level >= 1 && level <= 4;
  bool longSequence = isSequence(value) && lengthOf(value) > 2;
  if (relation || longSequence) {
    printParenthesised(value);
  } else {
    printObject(value, 0);
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
  EmitToken(x[2] == ini("false") ? "table" : "array");
  EmitChar('(');
  if (inItself) {
    EmitToken("...");
    EmitChar(')');
    return;
  }
  PrintedHolder table{x, printedHolders};
  printedHolders = &table;
  for (int field : {1, 2}) {
    if (isAbsent(x[field])) continue;
    printList(x[field], ",");
    EmitChar(',');
  }
  printObject(x[3], 0);
  EmitChar(')');
  printedHolders = table.link;
}

}  // namespace korel
