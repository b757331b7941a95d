#pragma once
// The printing of one object, shared by the files of the printer: the state, the walk, and the rows
// of the table by which `printObject` finds the printing of a tag.
//
// `min` is the lowest binding strength that needs no parentheses where the object stands, `own` the
// object's own. A row is called with `own` at least `min`, or with `min` 0 inside parentheses.

#include "store/dag.h"
#include "store/vocabulary.h"
#include "text/print/emit.h"

namespace korel {

// ---- state, set by `PrintKorel`

extern int printStyle;         // 0 quotes what needs it, 1 not the outermost, 9999 nothing
extern int printDepth;         // objects around the present one, itself included
extern bool printAttributes;   // attributes show as `setattribute` calls
extern bool printTildes;       // names with the tildes at their end
extern bool printAddresses;    // every object behind its address
extern bool printRtableRefs;   // RTABLE(n) as _rtable[n]
extern DAG mProcPrint;         // the PROC or MODDEF being printed, which names its variables, or 0
extern int printProcDepth;     // nesting of PROC and MODDEF
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
/// The text of the imaginary unit.
void printImaginaryUnit();
/// `term` with the sign that it needs behind other terms: a plus unless its text begins with a
/// minus.
void printFurtherTerm(DAG term);
/// `x` as a factor behind `*`.
void printFactor(DAG x);
/// True for a call of `.` that prints as an infix product.
bool isDotProduct(DAG x);
/// True for a call of `factorial` that prints as a postfix operator.
bool isFactorial(DAG x);
/// What stands between the elements of a call that prints as a column or a row in angle brackets, or 0.
char constructorSeparator(DAG call);
/// The value `modulename` = m of an attribute, or 0.
DAG moduleOfAttribute(DAG attribute);

// ---- rows

using PrintRow = void (*)(DAG x, int min, int own);

void printInteger(DAG x, int min, int own);
void printRational(DAG x, int min, int own);
void printFloat(DAG x, int min, int own);
void printHFloat(DAG x, int min, int own);
void printComplex(DAG x, int min, int own);
void printString(DAG x, int min, int own);
void printName(DAG x, int min, int own);

void printMember(DAG x, int min, int own);
void printTableref(DAG x, int min, int own);
void printDcolon(DAG x, int min, int own);
void printCatenate(DAG x, int min, int own);
void printPower(DAG x, int min, int own);
void printRelation(DAG x, int min, int own);
void printBoolean(DAG x, int min, int own);
void printNot(DAG x, int min, int own);
void printUneval(DAG x, int min, int own);
void printSequence(DAG x, int min, int own);
void printListOrSet(DAG x, int min, int own);
void printFunction(DAG x, int min, int own);

void printSum(DAG x, int min, int own);
void printProduct(DAG x, int min, int own);
void printSeries(DAG x, int min, int own);
void printModularPolynomial(DAG x, int min, int own);

void printLocal(DAG x, int min, int own);
void printParameter(DAG x, int min, int own);
void printLexical(DAG x, int min, int own);
void printProcedure(DAG x, int min, int own);
void printModuleDefinition(DAG x, int min, int own);
void printModule(DAG x, int min, int own);

void printTable(DAG x, int min, int own);
void printHashTable(DAG x, int min, int own);
void printRtable(DAG x, int min, int own);

void printAssignment(DAG x, int min, int own);
void printLoop(DAG x, int min, int own);
void printConditional(DAG x, int min, int own);
void printKeywordStatement(DAG x, int min, int own);
void printStatements(DAG x, int min, int own);
void printTry(DAG x, int min, int own);
void printUse(DAG x, int min, int own);
void printDebug(DAG x, int min, int own);

}  // namespace korel
