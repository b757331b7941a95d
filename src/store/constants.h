#pragma once
// The shared constants: objects set once at start-up and reachable for the whole run.

#include "store/dag.h"
#include "store/standard_names.h"

namespace korel {

constexpr int smallConstantCount = 140;
extern DAG cons[smallConstantCount];   // cons[i] = i
extern DAG consm[smallConstantCount];  // consm[i] = -(i + 1)

constexpr DAG cons0 = immediate(0);
constexpr DAG cons1 = immediate(1);
constexpr DAG consm1 = immediate(-1);
constexpr DAG cons10 = immediate(10);

extern DAG consbb;            // 100000000
extern DAG cons_maxfloatexp;  // 2147483646
extern DAG cons_minfloatexp;  // -2147483646
extern DAG null;              // the empty EXPSEQ
extern DAG emptyset, emptylist;
extern DAG consf0, consfm0;      // 0. and -0.
extern DAG consf1, consfm1;      // 1.0 and -1.0
extern DAG conscxf0;             // COMPLEX of 0., 0.
extern DAG consh;                // 1/2
extern DAG sqrtm1;               // I
extern DAG conshf0;              // HFLOAT 0.0
extern DAG consfinf, consfminf;  // Float(infinity), Float(-infinity)
extern DAG consminf;             // SUM of infinity, -1
extern DAG conscxinf, conscxfinf;
extern DAG consfNaN, conscxNaN, conscxfNaN;
extern DAG consfmaxrep, consfminrep;
extern DAG order1;           // O(1)
extern DAG InertProc;        // 'procname(args)'
extern DAG DefTestzero;      // default of the environment variable Testzero
extern DAG builtinOptions;   // EXPSEQ (builtin)
extern DAG rememberOptions;  // EXPSEQ (builtin, remember)
constexpr int rememberingBuiltinCount = 8;
// Their procedures, which hold the tables: diff expand evalf series readlib frontend divide normal.
extern DAG builtrem[rememberingBuiltinCount];
extern DAG AliasToKorel, KorelToAlias;

/// Builds the tables, constants and standard names, in order; `libraryPath` becomes `libname`.
void initialize(const char* libraryPath);

}  // namespace korel
