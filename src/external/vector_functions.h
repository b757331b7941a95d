#pragma once
// The functions behind the kernel vector, by groups. Their contracts, as C code sees them, stand in
// include/korelshlib.h; the table is put together in kernel_vector.cpp.

#include <korelshlib.h>

#include "external/addresses.h"
#include "store/dag.h"

namespace korel::vector {

/// The value of a name or of an element of a table.
DAG valueBehind(DAG x);
/// The object that `x` is, or the one that a name stands for.
inline DAG valueOf(ALGEB reference) {
  DAG x = fromC(reference);
  return !isImmediate(x) && (hasTag(x, NAME) || hasTag(x, TABLEREF)) ? valueBehind(x) : x;
}

// ---- scalars (vector_scalars.cpp)

M_BOOL isComplexFloat(ALGEB x);
M_BOOL isFloat(ALGEB x);
M_BOOL isInteger(ALGEB x);
M_BOOL isInteger8(ALGEB x);
M_BOOL isInteger16(ALGEB x);
M_BOOL isInteger32(ALGEB x);
M_BOOL isInteger64(ALGEB x);
M_BOOL isZero(ALGEB x);
M_BOOL isString(ALGEB x);
M_BOOL isUnnamedZero(ALGEB x);
ComplexFloat64 korelToComplexFloat64(ALGEB x);
ComplexFloatDAG korelToComplexFloatDAG(ALGEB x);
FLOAT32 korelToFloat32(ALGEB x);
FLOAT64 korelToFloat64(ALGEB x);
INTEGER8 korelToInteger8(ALGEB x);
INTEGER16 korelToInteger16(ALGEB x);
INTEGER32 korelToInteger32(ALGEB x);
INTEGER64 korelToInteger64(ALGEB x);
M_BOOL korelToBool(ALGEB x);
M_INT korelToM_INT(ALGEB x);
char* korelToString(ALGEB x);
ALGEB selectImaginaryPart(ALGEB x);
ALGEB selectRealPart(ALGEB x);
ALGEB toKorelBoolean(long value);
ALGEB toKorelChar(long value);
ALGEB toKorelComplex(double re, double im);
ALGEB toKorelComplexFloat(ComplexFloat64 value);
ALGEB toKorelInteger(long value);
ALGEB toKorelFloat(double value);
ALGEB toKorelString(const char* text);

// ---- memory, names, evaluation (vector_evaluation.cpp)

void* alloc(std::size_t bytes);
void dispose(void* block);
M_BOOL allowGC(ALGEB x);
void protectFromGC(ALGEB x);
ALGEB assign(ALGEB name, ALGEB value);
ALGEB assignIndexed(ALGEB name, ALGEB value, M_INT count, const M_INT* index);
void error(const char* message, ...);
ALGEB evalKorelProc(ALGEB procedure, int count, ...);
ALGEB evalKorelStatement(const char* statement);
ALGEB extTraperror(ALGEB (*function)(void* data), void* data, M_BOOL* failed);
ALGEB userinfo(int level, ALGEB name, const char* message);
ALGEB simplify(ALGEB x);
M_BOOL isAssignedName(ALGEB x);
M_BOOL isName(ALGEB x);
M_BOOL isNULL(ALGEB x);
M_BOOL isProcedure(ALGEB x);
M_BOOL isUnassignedName(ALGEB x);
ALGEB toKorelName(const char* text, M_BOOL global);
ALGEB toKorelNULL();
ALGEB toKorelNULLPointer();
ALGEB toKorelExpressionSequence(int count, ...);
M_INT numArgs(ALGEB sequence);

// ---- lists, tables, x[i] (vector_containers.cpp)

ALGEB listAlloc(M_INT members);
void listAssign(ALGEB list, M_INT i, ALGEB value);
ALGEB listSelect(ALGEB list, M_INT i);
ALGEB selectIndexed(ALGEB x, M_INT count, const M_INT* index);
M_BOOL isTable(ALGEB x);
ALGEB tableAlloc();
void tableAssign(ALGEB table, ALGEB index, ALGEB value);
void tableDelete(ALGEB table, ALGEB index);
M_BOOL tableHasEntry(ALGEB table, ALGEB index);
ALGEB tableSelect(ALGEB table, ALGEB index);

/// An EXPSEQ of the integers of an index.
DAG indexSequence(M_INT count, const M_INT* index);

// ---- rtables (vector_rtables.cpp, vector_settings.cpp)

/// Whether C has been given a block of objects since the flag was last cleared, and may have written into it.
extern bool objectBlockIsOut;

M_BOOL isRTable(ALGEB x);
void rtableAssign(ALGEB r, const M_INT* index, ALGEB value);
ALGEB rtableCopy(::RTableSettings* s, ALGEB source);
ALGEB rtableCopyImPart(ALGEB r);
ALGEB rtableCopyRealPart(ALGEB r);
ALGEB rtableCreate(::RTableSettings* s, void* data, const M_INT* bounds);
void* rtableDataBlock(ALGEB r);
ALGEB rtableIndFn(ALGEB r, M_INT n);
ALGEB rtableIndFnArg(ALGEB r, M_INT n);
M_BOOL rtableIsReal(ALGEB r);
M_INT rtableLowerBound(ALGEB r, M_INT dimension);
M_INT rtableNumElements(ALGEB r);
M_INT rtableNumDimensions(ALGEB r);
ALGEB rtableSelect(ALGEB r, const M_INT* index);
void rtableSparseCompact(ALGEB r);
INTEGER32* rtableSparseIndexRow(ALGEB r, M_INT dimension);
ALGEB rtableSparseIndexSort(ALGEB r, M_INT dimension);
void rtableSparseSetNumElems(ALGEB r, M_INT count);
M_INT rtableSparseSize(ALGEB r);
M_INT rtableUpperBound(ALGEB r, M_INT dimension);
ALGEB rtableZipReIm(ALGEB real, ALGEB imaginary);

void rtableAppendAttribute(::RTableSettings* s, ALGEB attribute);
void rtableAppendIndFn(::RTableSettings* s, ALGEB function);
void rtableGetDefaults(::RTableSettings* s);
void rtableGetSettings(::RTableSettings* s, ALGEB r);
void rtableSetAttribute(::RTableSettings* s, ALGEB attribute);
void rtableSetIndFn(::RTableSettings* s, ALGEB function);
void rtableSetType(::RTableSettings* s, RTableDatatypeCode code, ALGEB elementType);

}  // namespace korel::vector
