/* What C code sees of the kernel: types, and the table of functions that it is handed.
 *
 * Generated wrappers include this file, and so do functions that are written by hand and bound with the option KOREL:
 *
 *     #include <korelshlib.h>
 *
 *     ALGEB twice( MKernelVector kv, ALGEB args )
 *     {
 *         if( kv->numArgs(args) != 1 ) kv->error("one number expected");
 *         return( kv->toKorelInteger(2 * kv->korelToInteger32(KOREL_ARG(args,1))) );
 *     }
 *
 * An ALGEB is the native address of an object, or a small integer in disguise. It is compared by ==, handed back to the
 * kernel, and never looked into. The argument sequence of a function is an array of ALGEB whose members count from 1.
 *
 * Until the function returns no collection runs, so that objects need no care. What is kept over several calls, in a
 * static variable for example, is made known to `protectFromGC` first.
 *
 * A failure (`error`, or that of any function of the table) does not return: it leaves the C code by a jump. Memory that
 * must not be lost on the way comes from `alloc`, which the collector takes back. Usable from C and C++.
 */
#ifndef KORELSHLIB_H
#define KORELSHLIB_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

typedef struct M_OBJECT* ALGEB;
typedef long M_INT; /* indices, bounds, counts */
typedef int M_BOOL; /* TRUE, FALSE; M_FAIL for the third truth value */
#define M_FAIL (-1)

typedef signed char INTEGER8;
typedef short INTEGER16;
typedef int INTEGER32;
typedef long INTEGER64;
typedef float FLOAT32;
typedef double FLOAT64;
typedef struct {
  FLOAT64 re, im;
} ComplexFloat64;
typedef ComplexFloat64 COMPLEXF64;
typedef struct {
  ALGEB re, im;
} ComplexFloatDAG;
typedef char CHAR;

/* Member n of an argument sequence, from 1. */
#define KOREL_ARG(args, n) (((ALGEB*)(args))[n])

/* ---- rtables */

/* Each list in the order of the codes that the kernel keeps. */
typedef enum {
  DATATYPE_ANY,
  DATATYPE_COMPLEX_SFLOAT,
  DATATYPE_INTEGER8,
  DATATYPE_INTEGER16,
  DATATYPE_INTEGER32,
  DATATYPE_INTEGER64,
  DATATYPE_FLOAT64,
  DATATYPE_COMPLEXF64
} RTableDatatypeCode;

typedef enum {
  STORAGE_SPARSE,
  STORAGE_EMPTY,
  STORAGE_DIAGONAL,
  STORAGE_BAND,
  STORAGE_RECTANGULAR,
  STORAGE_UPPER,
  STORAGE_STRICT_UPPER,
  STORAGE_UPPER_HESSENBERG,
  STORAGE_LOWER,
  STORAGE_STRICT_LOWER,
  STORAGE_LOWER_HESSENBERG,
  STORAGE_SCALAR
} RTableStorageCode;

typedef enum { ORDER_FORTRAN, ORDER_C } RTableOrderCode;
typedef enum { SUBTYPE_ARRAY, SUBTYPE_MATRIX, SUBTYPE_COLUMN_VECTOR, SUBTYPE_ROW_VECTOR } RTableSubtypeCode;

/* What is told of an rtable. `rtableGetDefaults` fills one in. Bounds are pairs: lower and upper bound of dimension 1,
 * of dimension 2, and so on. */
typedef struct {
  RTableDatatypeCode data_type;
  ALGEB element_type; /* of DATATYPE_ANY: the type of the elements */
  RTableSubtypeCode subtype;
  RTableStorageCode storage;
  M_INT p1, p2; /* of a band, or capacity and qualifier of sparse storage; -1: none */
  RTableOrderCode order;
  M_BOOL read_only;
  M_BOOL foreign;        /* the data belong to C: the kernel neither moves nor frees them */
  M_INT num_dimensions;  /* -1: not told */
  ALGEB index_functions; /* expression sequence */
  ALGEB attributes;      /* expression sequence */
  M_BOOL transpose;
  ALGEB fill;
} RTableSettings;

/* ---- the table of functions
 *
 * The order is fixed: compiled wrappers call by position. Functions that answer an ALGEB give a simplified object unless
 * they say otherwise. A name is followed to its value by all tests and conversions but those that ask about the name. */

typedef struct MKernelVectorTable {
  /* 0 */
  void* (*alloc)(size_t bytes); /* memory of the kernel's heap, for this call; keep it by protectFromGC */
  ALGEB (*assign)(ALGEB name, ALGEB value);
  ALGEB (*assignIndexed)(ALGEB name, ALGEB value, M_INT count, const M_INT* index);
  void (*dispose)(void* block);            /* what `alloc` gave, or an object that nobody else refers to */
  void (*error)(const char* message, ...); /* one ALGEB for each mark %1, %2, ...; does not return */
  ALGEB (*evalKorelProc)(ALGEB procedure, int count, ...);
  ALGEB (*evalKorelStatement)(const char* statement);
  M_BOOL (*isAssignedName)(ALGEB x);
  M_BOOL (*isComplexFloat)(ALGEB x);
  M_BOOL (*isFloat)(ALGEB x);
  /* 10 */
  M_BOOL (*isInteger)(ALGEB x);
  M_BOOL (*isInteger8)(ALGEB x);
  M_BOOL (*isInteger16)(ALGEB x);
  M_BOOL (*isInteger32)(ALGEB x);
  M_BOOL (*isInteger64)(ALGEB x);
  M_BOOL (*isName)(ALGEB x);
  M_BOOL (*isNULL)(ALGEB x); /* the empty sequence */
  M_BOOL (*isZero)(ALGEB x);
  M_BOOL (*isProcedure)(ALGEB x);
  M_BOOL (*isRTable)(ALGEB x);
  /* 20 */
  M_BOOL (*isString)(ALGEB x);
  M_BOOL (*isTable)(ALGEB x);
  M_BOOL (*isUnassignedName)(ALGEB x);
  M_BOOL (*isUnnamedZero)(ALGEB x);  /* the integer 0 itself: a null pointer */
  ALGEB (*listAlloc)(M_INT members); /* a list under construction */
  void (*listAssign)(ALGEB list, M_INT i, ALGEB value);
  ALGEB (*listSelect)(ALGEB list, M_INT i);
  M_BOOL (*allowGC)(ALGEB x); /* TRUE when there was a protection */
  void (*protectFromGC)(ALGEB x);
  ComplexFloat64 (*korelToComplexFloat64)(ALGEB x);
  /* 30 */
  ComplexFloatDAG (*korelToComplexFloatDAG)(ALGEB x);
  FLOAT32 (*korelToFloat32)(ALGEB x);
  FLOAT64 (*korelToFloat64)(ALGEB x);
  INTEGER8 (*korelToInteger8)(ALGEB x);
  INTEGER16 (*korelToInteger16)(ALGEB x);
  INTEGER32 (*korelToInteger32)(ALGEB x);
  INTEGER64 (*korelToInteger64)(ALGEB x);
  M_BOOL (*korelToBool)(ALGEB x);
  M_INT (*korelToM_INT)(ALGEB x);
  char* (*korelToString)(ALGEB x); /* the text itself, which others share: copy it before a change */
  /* 40 */
  M_INT (*numArgs)(ALGEB sequence);
  void (*rtableAppendAttribute)(RTableSettings* s, ALGEB attribute);
  void (*rtableAppendIndFn)(RTableSettings* s, ALGEB function);
  void (*rtableAssign)(ALGEB r, const M_INT* index, ALGEB value);
  ALGEB (*rtableCopy)(RTableSettings* s, ALGEB source); /* the source may be a list */
  ALGEB (*rtableCopyImPart)(ALGEB r);
  ALGEB (*rtableCopyRealPart)(ALGEB r);
  ALGEB (*rtableCreate)(RTableSettings* s, void* data, const M_INT* bounds);
  void* (*rtableData)(ALGEB r);
  void (*rtableGetDefaults)(RTableSettings* s);
  /* 50 */
  void (*rtableGetSettings)(RTableSettings* s, ALGEB r);
  ALGEB (*rtableIndFn)(ALGEB r, M_INT n);
  ALGEB (*rtableIndFnArg)(ALGEB r, M_INT n);
  M_BOOL (*rtableIsReal)(ALGEB r);
  M_INT (*rtableLowerBound)(ALGEB r, M_INT dimension);
  M_INT (*rtableNumElements)(ALGEB r);
  M_INT (*rtableNumDimensions)(ALGEB r);
  ALGEB (*rtableSelect)(ALGEB r, const M_INT* index);
  void (*rtableSetAttribute)(RTableSettings* s, ALGEB attribute);
  void (*rtableSetIndFn)(RTableSettings* s, ALGEB function);
  /* 60 */
  void (*rtableSetType)(RTableSettings* s, RTableDatatypeCode code, ALGEB element_type);
  void (*rtableSparseCompact)(ALGEB r);
  INTEGER32* (*rtableSparseIndexRow)(ALGEB r, M_INT dimension);
  ALGEB (*rtableSparseIndexSort)(ALGEB r, M_INT dimension);
  void (*rtableSparseSetNumElems)(ALGEB r, M_INT count);
  M_INT (*rtableSparseSize)(ALGEB r);
  M_INT (*rtableUpperBound)(ALGEB r, M_INT dimension);
  ALGEB (*rtableZipReIm)(ALGEB real, ALGEB imaginary);
  ALGEB (*selectImaginaryPart)(ALGEB x);
  ALGEB (*selectIndexed)(ALGEB x, M_INT count, const M_INT* index);
  /* 70 */
  ALGEB (*selectRealPart)(ALGEB x);
  ALGEB (*simplify)(ALGEB x);
  ALGEB (*tableAlloc)(void);
  void (*tableAssign)(ALGEB table, ALGEB index, ALGEB value);
  void (*tableDelete)(ALGEB table, ALGEB index);
  M_BOOL (*tableHasEntry)(ALGEB table, ALGEB index);
  ALGEB (*tableSelect)(ALGEB table, ALGEB index); /* NULL when there is no entry */
  ALGEB (*toKorelBoolean)(long value);
  ALGEB (*toKorelChar)(long value);
  ALGEB (*toKorelComplex)(double re, double im);
  /* 80 */
  ALGEB (*toKorelComplexFloat)(ComplexFloat64 value);
  ALGEB (*toKorelExpressionSequence)(int count, ...);
  ALGEB (*toKorelInteger)(long value);
  ALGEB (*toKorelFloat)(double value);
  ALGEB (*toKorelName)(const char* text, M_BOOL global);
  ALGEB (*toKorelNULL)(void);
  ALGEB (*toKorelNULLPointer)(void);
  ALGEB (*toKorelString)(const char* text);
  ALGEB (*traperror)(ALGEB (*function)(void* data), void* data, M_BOOL* failed);
  ALGEB (*userinfo)(int level, ALGEB name, const char* message);
} const* MKernelVector;

/* Static storage of a wrapper: `objects` tells whether it holds ALGEBs, which live as long as they stand there. A
 * wrapper NAME lists its own in NAME_statics, ended by a null; a nested call gets them back as they were. */
typedef struct {
  void* place;
  size_t bytes;
  M_BOOL objects;
} MWrapperStatic;

#ifdef __cplusplus
}
#endif

#endif
