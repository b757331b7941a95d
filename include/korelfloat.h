/* What a library of float arithmetic sees of the kernel.
 *
 * The built-in MPFloat(name, arguments) loads libkorelfloat.so, which defines
 *
 *     void InitializeKorelFloat( KorelFloatVector fv, int stage );
 *
 * and calls it with stage 0; then it loads the library `name`, and calls the function once more with stage 1. The table
 * stays where it is until the end of the run.
 *
 * Numbers are ALGEBs: decimal floats of the kernel. Those that the functions make belong to nobody: while the library
 * goes on making floats, the kernel takes back what no other object refers to and what isn't held. What is kept over a
 * call of the table is held by `hold`, and let go by `drop`. Results carry `Digits` digits and are rounded as `Rounding`
 * says. A failure does not return.
 */
#ifndef KORELFLOAT_H
#define KORELFLOAT_H

#include <stddef.h>
#include <stdio.h>

#include "korelshlib.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum { ROUND_NEAREST, ROUND_TO_ZERO, ROUND_UPWARD, ROUND_DOWNWARD } KorelRounding;

typedef struct KorelFloatVectorTable {
  /* memory outside of the kernel's heap */
  void* (*allocate)(long bytes);
  void* (*reallocate)(void* block, long bytes);
  void (*deallocate)(void* block);
  ALGEB (*hold)(ALGEB x); /* may be nested */
  void (*drop)(ALGEB x);
  /* 5: making and reading */
  ALGEB (*fromDouble)(double value);
  double (*toDouble)(ALGEB x);
  ALGEB (*fromInteger)(long value);
  ALGEB (*fromText)(const char* text);
  size_t (*toText)(ALGEB x, char* buffer, size_t size); /* the length of the whole; the buffer ends with a zero */
  ALGEB (*build)(ALGEB mantissa, long exponent);        /* mantissa * 10^exponent */
  ALGEB (*mantissa)(ALGEB x);
  ALGEB (*exponent)(ALGEB x);
  M_BOOL (*isFloat)(ALGEB x);
  /* 14: operations */
  ALGEB (*add)(ALGEB a, ALGEB b);
  ALGEB (*subtract)(ALGEB a, ALGEB b);
  ALGEB (*multiply)(ALGEB a, ALGEB b);
  ALGEB (*divide)(ALGEB a, ALGEB b);
  ALGEB (*negate)(ALGEB x);
  ALGEB (*absolute)(ALGEB x);
  ALGEB (*power)(ALGEB a, ALGEB b);
  ALGEB (*sqrt)(ALGEB x);
  ALGEB (*exp)(ALGEB x);
  ALGEB (*ln)(ALGEB x);
  ALGEB (*log10)(ALGEB x);
  ALGEB (*ceil)(ALGEB x);
  ALGEB (*floor)(ALGEB x);
  ALGEB (*trunc)(ALGEB x);
  ALGEB (*sin)(ALGEB x);
  ALGEB (*cos)(ALGEB x);
  ALGEB (*arctan)(ALGEB x);
  /* 31: comparison */
  int (*compare)(ALGEB a, ALGEB b); /* -1, 0, 1; 2 when there is no order */
  M_BOOL (*equal)(ALGEB a, ALGEB b);
  M_BOOL (*less)(ALGEB a, ALGEB b);
  M_BOOL (*isZero)(ALGEB x);
  M_BOOL (*isNegative)(ALGEB x);
  M_BOOL (*isInfinite)(ALGEB x);
  M_BOOL (*isUndefined)(ALGEB x);
  /* 38: digits and rounding */
  long (*getDigits)(void);
  void (*setDigits)(long digits);
  KorelRounding (*getRounding)(void);
  void (*setRounding)(KorelRounding mode);
  /* 42: formatted input and output, by the formats of the language's sprintf and sscanf; a file is scanned by the line */
  long (*printFile)(FILE* file, const char* format, int count, ...);
  long (*printText)(char* buffer, size_t size, const char* format, int count, ...);
  ALGEB (*scanFile)(FILE* file, const char* format);
  ALGEB (*scanText)(const char* text, const char* format);
  /* 46: the kernel around */
  void (*error)(const char* message, ...);
  void (*warning)(int level, const char* message);
  M_BOOL (*interrupted)(void); /* FALSE, or the end of the computation when the user has asked for it */
} const* KorelFloatVector;

#ifdef __cplusplus
}
#endif

#endif
