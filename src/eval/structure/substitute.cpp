#include "eval/structure/substitute.h"

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "eval/walk/has.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "store/constants.h"
#include "store/copy_on_change.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_set.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"
#include "store/word_map.h"

namespace korel {

namespace {


// ---- one substitution

struct SubstitutionMemory {
  WordMap lefts;        // left side to the number of its equation
  WordMap known;        // simplified composite object to its result
  ObjectSet unchanged;  // those that are their own results

  void clear() {
    lefts.clear();
    known.clear();
    unchanged.clear();
  }
  void release() {
    lefts.release();
    known.release();
    unchanged.release();
  }
};

}  // namespace

// Plain data: an error may pass over it.
struct Substitution {
  DAG equations;
  bool finish;                 // results of simplified objects are simplified
  bool onlyNames = true;       // all left sides are NAME or TABLEREF
  bool hasParameters = false;  // some left side is a PARAM, which counts by its number
  bool hasIntegers = false;
  bool indexed = false;  // `lefts` is in use
  int entered = 0;
  SubstitutionMemory* memory = nullptr;
};

namespace {

// From this many equations on they are found by a map, and from this many objects on results are kept.
constexpr Word indexFrom = 8;
constexpr int keepFrom = 64;

DAG rightSide(Substitution& s, DAG x) {
  if (s.onlyNames && (isImmediate(x) || (!hasTag(x, NAME) && !hasTag(x, TABLEREF)))) return DAG();
  if (s.indexed && !(s.hasParameters && isTag(x, PARAM))) {
    const std::int32_t* at = s.memory->lefts.find(x.word);
    return at != nullptr ? s.equations[*at][2] : DAG();
  }
  for (Word i = 1, n = lengthOf(s.equations); i < n; ++i) {
    DAG left = s.equations[i][1];
    if (left == x) return s.equations[i][2];
    if (s.hasParameters && isTag(left, PARAM) && isTag(x, PARAM) && rawField(left, 1) == rawField(x, 1))
      return s.equations[i][2];
  }
  return DAG();
}

DAG walk(Substitution& s, DAG x);

DAG walkFields(Substitution& s, DAG x, ReferenceFields fields) {
  return withFields(x, fields, [&](DAG field) {
    DAG value = walk(s, field);
    // A sequence has its place: what comes for the empty one becomes its member.
    return value != field && isTag(field, EXPSEQ) && !isTag(value, EXPSEQ) ? new2(EXPSEQ, value) : value;
  });
}
DAG walkFields(Substitution& s, DAG x) { return walkFields(s, x, {1, lengthOf(x)}); }

// Pairs of a SUM or PROD. A coefficient or exponent that became symbolic leaves its place.
DAG walkPairs(Substitution& s, DAG x) {
  DAG result = walkFields(s, x);
  if (result == x) return x;
  for (Word i = 2, n = lengthOf(result); i < n; i += 2) {
    if (isNumeric(result[i])) continue;
    DAG element = result[i - 1];
    result[i - 1] = hasTag(x, PROD) ? new3(POWER, element, result[i]) : new5(PROD, element, cons1, result[i], cons1);
    result[i] = cons1;
  }
  return result;
}

// Parts that are no longer real numbers make the sum that the number stood for.
DAG walkComplex(Substitution& s, DAG x) {
  DAG result = walkFields(s, x);
  if (result == x) return x;
  DAG imaginary = result[lengthOf(x) - 1];
  DAG product = new5(PROD, imaginary, cons1, sqrtm1, cons1);
  return lengthOf(x) == 2 ? product : new5(SUM, result[1], cons1, product, cons1);
}

// ---- tables

struct TableWalk {
  Substitution& s;
  DAG fresh;
  bool changed;
};

DAG walkEntries(Substitution& s, DAG entries) {
  if ((controlWord(entries) & tableBit) != 0) return entries;
  TableWalk t{s, newhashtab(lengthOf(entries) - 1), false};
  hashforeach(
      copyhashtab(entries),  // what simplifies may call procedures
      [](void* arg, PairAddress pair) {
        auto& w = *static_cast<TableWalk*>(arg);
        DAG key = walk(w.s, pairKey(pair)), value = walk(w.s, pairValue(pair));
        w.changed = w.changed || key != pairKey(pair) || value != pairValue(pair);
        hashunique(simpl(key).word, simpl(value), w.fresh);
        return true;
      },
      &t);
  return t.changed ? t.fresh : entries;
}

// ---- procedures and modules

[[noreturn]] void invalidInProcedure() { KernelException("invalid substitution in proc"); }

DAG walkDeclarations(Substitution& s, DAG declarations) {
  if (isTag(declarations, LIST)) return walkFields(s, declarations);
  if (!isTag(declarations, EXPSEQ)) return declarations;
  DAG result = walkFields(s, declarations);
  for (Word i = 1, n = lengthOf(declarations); i < n; ++i)
    if (result[i] != declarations[i] && !isSameDeclaration(declarations[i], result[i])) invalidInProcedure();
  return result;
}

// Pairs of a name of the enclosing scope and what stands for it: a place there, or a value.
DAG walkLexicals(Substitution& s, DAG lexicals) {
  DAG result = walkFields(s, lexicals);
  for (Word i = 1, n = lengthOf(lexicals); i < n; ++i)
    if (result[i] != lexicals[i] && ((i & 1) != 0 || isTag(result[i], EXPSEQ)) &&
        !isSameDeclaration(lexicals[i], result[i]))
      invalidInProcedure();
  return result;
}

DAG walkName(Substitution& s, DAG name) {
  DAG result = walk(s, name);
  if (result != name && !isSameDeclaration(name, result)) invalidInProcedure();
  return result;
}

bool isBuiltin(DAG options) { return isTag(options, EXPSEQ) && isMember(ini("builtin"), options); }

// The fields of a procedure in its final form are finished one by one: its names have been given their
// places once and for all, whatever a replacement brings in is global.
DAG walkProcedure(Substitution& s, DAG x) {
  bool module = hasTag(x, MODDEF), final = isSimplified(x);
  if (!hasLeftSide(x, s.equations)) return x;
  DAG result = CopyAlg(x);
  bool changed = false;
  // What is declared is looked at before what it is used for.
  constexpr Word order[] = {1, 2, 3, 4, 6, 7, 8, 9, 5};
  for (Word i : order) {
    if (i >= lengthOf(x)) continue;
    DAG value;
    if (i == 5) value = walk(s, x[i]);
    else if (i == 4 && !module) value = isTag(x[i], HASHTAB) ? walkEntries(s, x[i]) : x[i];
    else if (i == 8) value = walkLexicals(s, x[i]);
    else if (i == 9) value = walkName(s, x[i]);
    else value = walkDeclarations(s, x[i]);
    if (value == x[i]) continue;
    changed = true;
    result[i] = final && !isTag(value, HASHTAB) ? SimplifyMaybeBind(value, false) : value;
  }
  if (!changed) return x;
  if (isBuiltin(result[3]) != isBuiltin(x[3])) invalidInProcedure();
  // Each procedure remembers for itself.
  if (!module && isTag(x[4], HASHTAB) && result[4] == x[4]) result[4] = copyhashtab(x[4]);
  return final ? makeUnique(result) : result;
}

// ---- by tag

// The names of what is caught are texts, in a `try` as anywhere.
DAG walkTry(Substitution& s, DAG x) {
  DAG result = walkFields(s, x);
  for (Word i = 2, n = lengthOf(x); i + 1 < n; i += 2) {
    if (result[i] == x[i]) continue;
    if (isTag(result[i], STRING)) continue;
    if (!isTag(result[i], EXPSEQ)) invalidInProcedure();
    for (Word k = 1; k < lengthOf(result[i]); ++k)
      if (!isTag(result[i][k], STRING)) invalidInProcedure();
  }
  return result;
}

DAG changedObject(Substitution& s, DAG x) {
  switch (tagOf(x)) {
    case SUM: case PROD: return walkPairs(s, x);
    case COMPLEX: return walkComplex(s, x);
    case MEMBER: {
      DAG result = walkFields(s, x);
      return result != x && !isTag(result[2], NAME) ? x : result;
    }
    case TABLE: {
      if (!isTag(x[3], HASHTAB)) return x;
      DAG entries = walkEntries(s, x[3]);
      return entries == x[3] ? x : new4(TABLE, x[1], x[2], entries);
    }
    case HASHTAB: return walkEntries(s, x);
    case PROC: case MODDEF: return walkProcedure(s, x);
    case TRY: return walkTry(s, x);
    default: break;
  }
  if (auto substitute = kindOf(x).substitute) return substitute(s, x);
  return walkFields(s, x);
}

constexpr TagSet leafTags =
    realTags | textTags | frameReferenceTags | TagSet{HASH, BINARY, GARBAGE, FOREIGN, CONTROL, DEBUG};

DAG walk(Substitution& s, DAG x) {
  if (DAG right = rightSide(s, x)) return right;
  if (isImmediate(x) || isAmong(x, leafTags)) return x;
  // Raw objects are trees, and must stay so: the simplifier overwrites them.
  bool finish = s.finish && isSimplified(x);
  bool keeps = finish && ++s.entered > keepFrom && !isShortSequence(x);
  if (keeps) {
    if (s.memory->unchanged.contains(x)) return x;
    if (const std::int32_t* result = s.memory->known.find(x.word)) return DAG(static_cast<Word>(*result));
  }
  checkStack();
  DAG result = changedObject(s, x);
  if (result != x && finish && !isTag(result, HASHTAB)) result = simpl(result);
  if (keeps) {
    if (result == x) s.memory->unchanged.insert(x);
    else s.memory->known.insert(x.word, static_cast<std::int32_t>(result.word));
  }
  return result;
}

DAG substitute(DAG equations, DAG x, bool finish) {
  Substitution s{equations, finish};
  Word n = lengthOf(equations);
  for (Word i = 1; i < n; ++i) {
    DAG left = equations[i][1];
    if (!isTag(left, NAME) && !isTag(left, TABLEREF)) s.onlyNames = false;
    if (isTag(left, PARAM)) s.hasParameters = true;
    // The numbers of a modular polynomial are found by no search.
    if (isInteger(left)) s.hasIntegers = true;
  }
  // A search is several times as fast as a walk that compares and remembers results.
  if (finish && !s.hasParameters && !s.hasIntegers && isSimplified(x) && !hasLeftSide(x, equations)) return x;
  return withWalkMemory<SubstitutionMemory>([&](SubstitutionMemory& memory) {
    s.memory = &memory;
    s.indexed = n > indexFrom;
    for (Word i = 1; i < n && s.indexed; ++i)
      s.indexed = memory.lefts.insert(equations[i][1].word, static_cast<std::int32_t>(i)) != WordMap::outOfMemory;
    return walk(s, x);
  });
}

}  // namespace

bool isSameDeclaration(DAG before, DAG after) {
  if (!isObject(before) || !isObject(after) || tagOf(before) != tagOf(after)) return false;
  switch (tagOf(before)) {
    case NAME: case STRING: return true;
    case DCOLON: return isTag(after[1], NAME);
    case EQUATION: return isTag(after[1], NAME);
    case EXPSEQ:
      if (lengthOf(before) != lengthOf(after)) return false;
      for (Word i = 1; i < lengthOf(before); ++i)
        if (!isSameDeclaration(before[i], after[i])) return false;
      return true;
    default: return false;
  }
}

DAG substituteFields(Substitution& s, DAG x, const ReferenceFields& fields) { return walkFields(s, x, fields); }

DAG substitutePart(Substitution& s, DAG part) { return walk(s, part); }

DAG substituteInCopy(DAG equations, DAG x) { return x ? substitute(equations, x, false) : x; }
DAG subs1(DAG equations, DAG x) { return x ? substitute(equations, x, true) : x; }

DAG subs(DAG equations, DAG x) {
  if (!isTag(equations, EXPSEQ)) equations = new2(EXPSEQ, equations);
  for (Word i = 1, n = lengthOf(equations); i < n; ++i)
    if (!isTag(equations[i], EQUATION)) KernelException("equations expected in subs");
  return lengthOf(equations) == 1 ? x : simpl(subs1(equations, x));
}

DAG builtin::subs(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG args = call.arguments;
  DAG equations = newl2(n, EXPSEQ);
  for (Word i = 1; i < n; ++i) equations[i] = isTag(args[i], LIST) || isTag(args[i], SET) ? args[i][1] : args[i];
  return korel::subs(simpl(equations), args[n]);
}

}  // namespace korel
