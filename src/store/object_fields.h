#pragma once
// Named fields of the objects that have many, and the one constructor of each.
//
// docs/objects.md draws all kinds. Fields of a reference read `proc[procBody]` or, shorter, `bodyOf(proc)`;
// either may be assigned. The accessors of procedures serve module definitions as well: the fields that both
// have stand at the same places.

#include <cstring>

#include "store/constants.h"
#include "store/dag.h"
#include "store/objects.h"

namespace korel {

// ---- procedures and modules
//
//   PROC    s[1]    s[2]    s[3]     s[4]      s[5]  s[6]         s[7]     s[8]
//           params  locals  options  remember  body  description  globals  lexicals
//   MODDEF  params  locals  options  exports   body  description  globals  lexicals  s[9] name
//
// All but two fields are EXPSEQs. `remember` is a HASHTAB or `null`. `body` is a STATSEQ, or the immediate
// number of a built-in, exactly when the options begin with `builtin`. `lexicals` holds pairs (name, what it
// stands for outside); a call fills it in a copy of the procedure.

enum ProcField : Word {
  procParams = 1,
  procLocals,
  procOptions,
  procRemember,
  procBody,
  procDescription,
  procGlobals,
  procLexicals,
};
constexpr Word procLength = 9;

enum ModdefField : Word {
  moddefParams = 1,
  moddefLocals,
  moddefOptions,
  moddefExports,
  moddefBody,
  moddefDescription,
  moddefGlobals,
  moddefLexicals,
  moddefName,
};
constexpr Word moddefLength = 10;

/// A PROC or MODDEF.
inline bool isDefinition(DAG x) { return isTag(x, PROC) || isTag(x, MODDEF); }

inline DAG& paramsOf(DAG definition) { return definition[procParams]; }
inline DAG& localsOf(DAG definition) { return definition[procLocals]; }
inline DAG& optionsOf(DAG definition) { return definition[procOptions]; }
inline DAG& bodyOf(DAG definition) { return definition[procBody]; }
inline DAG& descriptionOf(DAG definition) { return definition[procDescription]; }
inline DAG& globalsOf(DAG definition) { return definition[procGlobals]; }
inline DAG& lexicalsOf(DAG definition) { return definition[procLexicals]; }
inline DAG& rememberOf(DAG proc) { return proc[procRemember]; }
inline DAG& exportsOf(DAG moddef) { return moddef[moddefExports]; }
/// The number of a built-in procedure's row (builtins/builtins.h) stands in place of a body.
inline bool isBuiltinProcedure(DAG proc) { return isImmediate(bodyOf(proc)); }

struct ProcedureFields {
  DAG params = null, locals = null, options = null, remember = null, body = null, description = null, globals = null,
      lexicals = null;
};
inline DAG newProcedure(const ProcedureFields& f) {
  return new9(PROC, f.params, f.locals, f.options, f.remember, f.body, f.description, f.globals, f.lexicals);
}
struct ModuleDefinitionFields {
  DAG params = null, locals = null, options = null, exports = null, body = null, description = null, globals = null,
      lexicals = null, name = null;
};
inline DAG newModuleDefinition(const ModuleDefinitionFields& f) {
  return new10(MODDEF, f.params, f.locals, f.options, f.exports, f.body, f.description, f.globals, f.lexicals, f.name);
}

//   MODULE  s[1]              s[2]        s[3]
//           exports           definition  locals
//           EXPSEQ of names   MODDEF      EXPSEQ of names: the instances that belong to this module
enum ModuleField : Word { moduleExports = 1, moduleDefinition, moduleLocals };
inline DAG newModuleObject(DAG exports, DAG definition, DAG locals) {
  return new4(MODULE, exports, definition, locals);
}

// ---- tables
//
//   TABLE  s[1]                 s[2]                              s[3]
//          indexing function    bounds                            entries
//          NAME, LIST or null   `false`: no array; RANGE, EXPSEQ  HASHTAB, once simplified
enum TableField : Word { tableFunction = 1, tableBounds, tableEntries };
inline DAG newTable(DAG function, DAG bounds, DAG entries) { return new4(TABLE, function, bounds, entries); }
/// One with bounds.
inline bool isArrayTable(DAG table) { return table[tableBounds] != ini("false"); }

// ---- loops
//
//   FOR of 7 words  s[1]      s[2]       s[3]   s[4]  s[5]   s[6]
//                   variable  from       by     to    while  body
//   FOR of 5 words  variable  container  while  body
enum LoopField : Word { loopVariable = 1 };
enum CountedLoopField : Word { loopFrom = 2, loopBy, loopTo, loopWhile, loopBody };
enum ContainerLoopField : Word { loopContainer = 2, containerLoopWhile, containerLoopBody };
constexpr Word containerLoopLength = 5, countedLoopLength = 7;
inline bool isCountedLoop(DAG loop) { return lengthOf(loop) == countedLoopLength; }
inline DAG& bodyOfLoop(DAG loop) { return loop[lengthOf(loop) - 1]; }

// ---- try
//
//   TRY  s[1]  s[2]         s[3]        ...  s[length - 1]
//        body  catch texts  catch body       `finally` body, when the length is odd
enum TryField : Word { tryBody = 1, tryFirstCatch };
inline bool hasFinally(DAG statement) { return lengthOf(statement) % 2 == 1; }
/// Behind the last word of the last catch pair.
inline Word catchEnd(DAG statement) { return lengthOf(statement) - (hasFinally(statement) ? 1 : 0); }

// ---- rtables
//
//   RTABLE  s[1]  s[2]          s[3]                s[4]        s[5]   s[6]   s[7], s[8] ...   last two words
//           data  element type  indexing functions  attributes  flags  count  bounds (l1, u1)  of sparse and band
//
// `data`, flags, count, bounds and the tail are raw. The last member of the indexing functions is the next
// member of their ring.
enum RTableField : Word {
  rtableData = 1,
  rtableElementType,
  rtableFunctions,
  rtableAttributes,
  rtableFlags,
  rtableCount,
  rtableFirstBound,
};
/// Parts of the flags word: the first bit and the number of bits.
struct RTableFlag {
  int shift, width;
};
constexpr RTableFlag rtableDimensions{0, 6}, rtableForeign{19, 1}, rtableReadOnly{20, 1}, rtableOrder{21, 1},
    rtableStorage{22, 4}, rtableSubtype{26, 2}, rtableDatatype{28, 4};
inline Word rtableFlag(DAG rtable, RTableFlag part) {
  return (rawField(rtable, rtableFlags) >> part.shift) & ((Word{1} << part.width) - 1);
}
/// Sparse storage whose entries stand in a HASHTAB of objects, not in vectors of indices and values. The element type
/// counts by its text: an rtable from before a restart, which a collection still meets, has a name of that time.
inline bool isKorelSparse(DAG rtable) {
  constexpr Word sparse = 0, objects = 0;
  if (rtableFlag(rtable, rtableStorage) != sparse || rtableFlag(rtable, rtableDatatype) != objects) return false;
  DAG type = rtable[rtableElementType];
  return !(isObject(type) && hasTag(type, NAME) && std::strcmp(textOf(type), "sfloat") == 0);
}
/// Where the data of `rtable`, which are no table of objects, begin; null without data. Foreign ones may lie beyond the
/// reach of a word: theirs leads to a cell with the address, inside a BINARY object from its second word on.
inline unsigned char* rtableBlock(DAG rtable) {
  const std::uintptr_t word = rawField(rtable, rtableData);
  if (rtableFlag(rtable, rtableForeign) != 0 && word != 0) [[unlikely]]
    return *reinterpret_cast<unsigned char**>(word);
  return reinterpret_cast<unsigned char*>(word);
}

}  // namespace korel
