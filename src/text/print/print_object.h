#pragma once
// The printing of one object, shared by the files of the printer: the state, the walk, and the rows
// of the table by which `printObject` finds the printing of a tag (print_rows.def).
//
// `min` is the lowest binding strength that needs no parentheses where the object stands, `own` the
// object's own. A row is called with `own` at least `min`, or with `min` 0 inside parentheses.

#include "store/dag.h"
#include "store/vocabulary.h"
#include "text/print/emit.h"
#include "text/print/printer.h"

namespace korel {

// ---- state, set by `PrintKorel`

/// Objects around which so many others stand are quoted where they need it.
enum PrintStyle : int { quoteAll = 0, quoteInside = 1, quoteNothing = 9999 };
extern PrintStyle printStyle;
extern int printDepth;        // objects around the present one, itself included
extern bool printAttributes;  // program text: attributes show as `setattribute` calls, names read back
extern bool printTildes;      // names with the tildes at their end
extern bool printAddresses;   // every object behind its address
extern bool printRtableRefs;  // RTABLE(n) as _rtable[n]
extern DAG mProcPrint;        // the PROC or MODDEF being printed, which names its variables, or 0
extern int printProcDepth;    // nesting of PROC and MODDEF
/// The tables and modules whose members are being printed, innermost first: each may hold itself.
struct PrintedHolder {
  DAG holder;
  const PrintedHolder* link;
};
extern const PrintedHolder* printedHolders;
bool isUnderWay(DAG holder);
extern DAG printAssignTarget;  // what a procedure is assigned to: its remember table follows it

// ---- the walk

void printObject(DAG x, int min);
/// The operands of an EXPSEQ with `separator` between them, a blank in it being a place to break;
/// any other object alone.
void printList(DAG sequence, const char* separator);
/// A separator, as in `printList`.
void printSeparator(const char* separator);
/// A blank, `keyword`, and a blank.
void printBetweenBlanks(const char* keyword);
/// `x` in parentheses.
void printParenthesised(DAG x);

// ---- signs

/// A number below zero as it prints; minus infinity is none, as it prints as a call.
bool IsNegative(DAG x);
/// True when the text of `x`, standing in a sum or before a factor, begins with a minus.
bool printsLeadingMinus(DAG x);

// ---- steps shared by rows

/// The text of a NAME or STRING, quoted where the style asks for it.
void printText(DAG nameOrString);
/// A number without its sign: the magnitude that follows a minus.
void printMagnitude(DAG number);
/// `x` as a factor behind `*`.
void printFactor(DAG x);
/// True for a call of `.` that prints as an infix product.
bool isDotProduct(DAG x);
/// True for a call of `factorial` that prints as a postfix operator.
bool isFactorial(DAG x);
/// What stands between the elements of a call that prints as a column or a row in angle brackets, or 0.
char constructorSeparator(DAG call);

// ---- rows

using PrintRow = void (*)(DAG x, int min, int own);
#define KOREL_PRINT(tag, strength, row) void row(DAG x, int min, int own);
#include "text/print/print_rows.def"
#undef KOREL_PRINT

struct TagPrinting {
  Tag tag;
  Strength strength;
  PrintRow print;
};
inline constexpr TagPrinting tagPrintings[] = {
#define KOREL_PRINT(tag, strength, row) {tag, strength, row},
#include "text/print/print_rows.def"
#undef KOREL_PRINT
};
consteval bool standInNumberOrder() {
  int number = 0;
  for (const TagPrinting& row : tagPrintings)
    if (tagNumber(row.tag) != ++number) return false;
  return number == tagCount;
}
static_assert(standInNumberOrder());

/// The row of a tag, or null for what is no tag.
inline const TagPrinting* printingOf(Tag tag) {
  int number = tagNumber(tag);
  return number >= 1 && number <= tagCount ? &tagPrintings[number - 1] : nullptr;
}

}  // namespace korel
