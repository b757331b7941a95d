#include "eval/simplify/simplify.h"

#include <algorithm>

#include "algebra/series/simplify_series.h"
#include "eval/evaluate/evalf.h"
#include "eval/procedures/procedures.h"
#include "eval/procedures/scoping.h"
#include "eval/simplify/bindings.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/statements/loops.h"
#include "eval/statements/try.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/chain_scan.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/reference_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// The table of simplified objects gets more buckets when its chains hold more pairs than this. Chains
// this long cost a scan of two or three cache lines; more buckets would cost every collection.
constexpr Word uniquePairsPerBucket = 16;

// Where the last search for a missing object ended: what is entered next under the same key goes there.
struct SearchEnd {
  Word key = 0;
  PairAddress end = notFound;
};
SearchEnd searchEnd;

// Member of the table with this key that `matches`, or 0.
template <class Matches>
DAG findMember(Word key, Matches matches) {
  DAG chain = simpltab[bucketIndex(key, lengthOf(simpltab))];
  if (!chain) return DAG();
  const PairAddress pair = findInChain(chain, key, matches);
  if (pairKey(pair).word == 0) searchEnd = {key, pair};
  return pairValue(pair);
}

// Member of the table with the content of `s`, or 0.
DAG findIdentical(Word key, DAG s) {
  return findMember(
      key, [s](DAG member) { return member == s || (headerWord(member) == headerWord(s) && identical(member, s)); });
}

// Puts the pair at the end that the search found, if that is still the end of the key's chain and not the
// pair that stays empty: the parts may have been entered, and a collection may have run, meanwhile.
bool enterAtSearchEnd(Word key, DAG s) {
  DAG chain = simpltab[bucketIndex(key, lengthOf(simpltab))];
  if (!chain || searchEnd.key != key) return false;
  PairAddress first = chain.word + 4, end = searchEnd.end;
  if (end < first || end + 16 > chain.word + 4 * lengthOf(chain)) return false;
  if (pairKey(end).word != 0 || (end != first && pairKey(end - 8).word == 0)) return false;
  pairKey(end) = DAG(key);
  pairValue(end) = s;
  return true;
}

DAG enterUnique(Word key, DAG s) {
  setSimplified(s);
  if (!enterAtSearchEnd(key, s)) hashinsert(key, s, simpltab);
  if (isCrowded(simpltab, ++simpltabCount, uniquePairsPerBucket)) [[unlikely]]
    simpltab = widenedhashtab(simpltab, 4 * (lengthOf(simpltab) - 1));
  return s;
}

}  // namespace

DAG finish(DAG s, Word key, bool changed) {
  if (changed) return makeUnique(s);
  return enterUnique(key, s);
}

DAG simplifiedCopy(DAG s) {
  Word n = lengthOf(s), used = 1;
  DAG copied = newl2(n, tagOf(s));
  for (Word i = 1; i < n; i += 2) {
    DAG term = simpl(s[i]), number = simpl(s[i + 1]);
    if (number == cons0) continue;
    copied[used] = term;
    copied[used + 1] = number;
    used += 2;
  }
  if (used != n) shorten(copied, n, used);
  return copied;
}

namespace {

// Simplifies the fields from `from` on; true when one changed.
bool simplifyOperands(DAG s, Word from) {
  bool changed = false;
  for (Word i = from, n = lengthOf(s); i < n; ++i) {
    DAG before = s[i];
    if (isSettled(before)) continue;
    DAG after = simpl(before);
    if (after != before) {
      s[i] = after;
      changed = true;
    }
  }
  return changed;
}

// A sequence: members simplified, nested sequences spliced in their place.
DAG simplSequence(DAG s, Word key) {
  Word n = lengthOf(s);
  if (n == 2 && s[1] && isSequence(s[1])) return simpl(s[1]);
  bool changed = false;
  std::int64_t total = 1;
  bool nested = false;
  for (Word i = 1; i < n; ++i) {
    DAG member = s[i];
    if (!member) {
      nested = true;
      continue;
    }
    if (!isSettled(member)) {
      DAG after = simpl(member);
      if (after != member) {
        s[i] = member = after;
        changed = true;
      }
    }
    if (isSequence(member)) {
      nested = true;
      total += lengthOf(member) - 1;
    } else {
      ++total;
    }
  }
  if (!nested) return finish(s, key, changed || bindingsEnabled);
  if (total > maxLength) KernelException("object too large");
  if (total == 1) return null;
  DAG flat = newl2(static_cast<Word>(total), EXPSEQ);
  Word at = 1;
  for (Word i = 1; i < n; ++i) {
    DAG member = s[i];
    if (!member) continue;
    if (isSequence(member)) {
      for (Word k = 1, m = lengthOf(member); k < m; ++k) flat[at++] = member[k];
    } else {
      flat[at++] = member;
    }
  }
  return makeUnique(flat);
}

// COMPLEX: with two parts, a float beside an exact part makes both floats.
DAG simplComplex(DAG s) {
  simplifyOperands(s, 1);
  if (lengthOf(s) == 3) {
    if (isFloatNumber(s[1]) != isFloatNumber(s[2])) {
      Word exact = isFloatNumber(s[1]) ? 2 : 1;
      s[exact] = simpl(evalf(s[exact]));
    }
  }
  return makeUnique(s);
}

DAG simplRelation(DAG s, StandardName operatorName) {
  simplifyOperands(s, 1);
  if (DAG bound = operatorBinding(ini(operatorName))) return callBinding(bound, s[1], s[2]);
  return makeUnique(s);
}

// `a <= b` also answers to a binding of `>=` with the operands swapped.
DAG simplLessEqual(DAG s) {
  simplifyOperands(s, 1);
  if (DAG bound = operatorBinding(ini("<="))) return callBinding(bound, s[1], s[2]);
  if (DAG bound = operatorBinding(ini(">="))) return callBinding(bound, s[2], s[1]);
  return makeUnique(s);
}

// ---- statements

// A typed target is reduced when it is assigned.
constexpr TagSet assignableTags = frameReferenceTags | TagSet{NAME, MEMBER, TABLEREF, CATENATE, FUNCTION, DCOLON};

DAG simplAssign(DAG s) {
  DAG left = s[1];
  if (isSequence(left)) {
    for (Word i = 1; i < lengthOf(left); ++i)
      if (!isAmong(left[i], assignableTags)) KernelException("invalid left hand side of multiple assignment");
  } else if (!isAmong(left, assignableTags)) {
    KernelException("invalid left hand side of assignment");
  }
  s[1] = simpl(left);
  DAG right = s[2];
  // A procedure or module that is being made is told its name.
  bool isRaw = isObject(right) && !isSimplified(right);
  s[2] = isRaw && hasTag(right, PROC)     ? simplProcedure(right, s[1])
         : isRaw && hasTag(right, MODDEF) ? simplModuleDefinition(right, s[1])
                                          : simpl(right);
  return markSimplified(s);
}

// Only the first condition is looked at: what follows it is simplified again when it goes.
DAG simplIf(DAG s) {
  simplifyOperands(s, 1);
  for (;;) {
    DAG condition = s[1];
    if (condition == ini("true")) return s[2];
    if (condition != ini("false") && condition != ini("FAIL")) return markSimplified(s);
    Word n = lengthOf(s);
    if (n == 3) return null;
    if (n == 4) return s[3];
    s = copydel(s, 0, 2);
  }
}

// A counted loop without a variable whose bounds are known may fold to nothing or to its body.
DAG simplFor(DAG s) {
  simplifyOperands(s, 1);
  if (lengthOf(s) == 7 && s[1] == null) {
    DAG from = s[2], by = s[3], to = s[4], condition = s[5];
    if (condition == ini("false") || condition == ini("FAIL")) return null;
    if (isRationalNumber(from) && isRationalNumber(by) && isRationalNumber(to)) {
      int order = compcon(from, to);
      if (consneg(by) ? order < 0 : !isZero(by) && order > 0) return null;
      if (!isZero(by) && order == 0 && condition == ini("true") && !hasbrnext(s[6])) return s[6];
    }
  }
  return markSimplified(s);
}

// No catch string takes every message that a later one names.
void checkCatchOrder(DAG s) {
  Word n = lengthOf(s);
  Word clauses = (n - 2) / 2;
  for (Word i = 0; i < clauses; ++i) {
    DAG earlier = s[2 + 2 * i];
    for (Word j = i + 1; j < clauses; ++j) {
      if (earlier == null) KernelException("catch-all hides later catch clauses");
      DAG later = s[2 + 2 * j];
      if (later == null) continue;
      DAG items = asSequence(later);
      for (Word k = 1; k < lengthOf(items); ++k)
        if (CatchPrefix(earlier, items[k])) KernelException("duplicate catch of \"%1\" in try statement", items[k]);
    }
  }
}

// Each statement of a trapped sequence by itself, so that those before a failing one still run.
DAG simplifyTrappedBody(DAG body) {
  if (isTag(body, STATSEQ) && !isSimplified(body))
    for (Word i = 1; i < lengthOf(body); ++i) body[i] = simplifyUnderTrap(body[i]);
  return simplifyUnderTrap(body);
}

DAG simplTry(DAG s) {
  s[1] = simplifyTrappedBody(s[1]);
  simplifyOperands(s, 1);
  checkCatchOrder(s);
  return markSimplified(s);
}

// Statements in order: empty ones dropped, nested sequences spliced; one statement stands alone.
DAG simplStatements(DAG s) {
  Word n = lengthOf(s);
  Word count = 0;
  bool reshape = false;
  for (Word i = 1; i < n; ++i) {
    DAG statement = s[i] ? simpl(s[i]) : null;
    s[i] = statement;
    if (statement == null) {
      reshape = true;
    } else if (isTag(statement, STATSEQ)) {
      reshape = true;
      count += lengthOf(statement) - 1;
    } else {
      ++count;
    }
  }
  if (count == 0) return null;
  if (count == 1 && !reshape) return s[1];
  if (!reshape) return markSimplified(s);
  DAG flat = newl2(count + 1, STATSEQ);
  Word at = 1;
  for (Word i = 1; i < n; ++i) {
    DAG statement = s[i];
    if (statement == null) continue;
    if (isTag(statement, STATSEQ)) {
      for (Word k = 1; k < lengthOf(statement); ++k) flat[at++] = statement[k];
    } else {
      flat[at++] = statement;
    }
  }
  if (count == 1) return flat[1];
  return markSimplified(flat);
}

// A ZPPOLY's coefficients are raw numbers in the small form, references otherwise.
DAG simplModularPolynomial(DAG s) {
  bool severalVariables = isSequence(s[1]);
  bool small = !severalVariables && isImmediate(s[2]) && immediateValue(s[2]) <= largestRawModulus;
  if (small) {
    s[1] = simpl(s[1]);
    s[2] = simpl(s[2]);
  } else {
    simplifyOperands(s, 1);
  }
  return makeUnique(s);
}

}  // namespace

bool simplifyFields(DAG s, Word from) { return simplifyOperands(s, from); }

namespace {

// A call that raises the error just raised once more. Its parameters are quoted: they are told as they are. An
// attribute marks an error of the kernel, which leaves only its message in `lasterror`.
DAG errorCall() {
  DAG value = ini("lasterror")[1], exception = ini("lastexception")[1];
  const bool ofKernel = value == exception[2] && lengthOf(exception) > 3;
  DAG arguments = ofKernel ? copydel(exception, 0, 1) : isSequence(value) ? CopyAlg(value) : new2(EXPSEQ, value);
  for (Word i = 2; i < lengthOf(arguments); ++i)
    if (!isImmediate(arguments[i])) arguments[i] = new2(UNEVAL, arguments[i]);
  return ofKernel ? new4(FUNCTION, ini("ERROR"), arguments, ini("builtin")) : new3(FUNCTION, ini("ERROR"), arguments);
}

}  // namespace

DAG simplifyUnderTrap(DAG x) {
  if (isSettled(x)) return x;
  DAG error = ini("lasterror")[1], exception = ini("lastexception")[1];
  bool bindings = bindingsEnabled;
  ProcedureRecord* procedures = procSimplStack;
  BindingRecord* uses = useSimplStack;
  bool failed = false;
  DAG result = KernelTrapError(simpl, x, failed);
  if (!failed) {
    ini("lasterror")[1] = error;
    ini("lastexception")[1] = exception;
    return result;
  }
  if (SpecialError != noSpecialError) jumpOut(jumpError);
  DAG failure = errorCall();
  ini("lasterror")[1] = error;
  ini("lastexception")[1] = exception;
  bindingsEnabled = bindings;
  procSimplStack = procedures;
  useSimplStack = uses;
  return SimplifyMaybeBind(failure, false);
}

DAG makeUnique(DAG s) {
  Word key = hashalg(s);
  if (DAG member = findIdentical(key, s)) return member;
  return enterUnique(key, s);
}

// ---- objects that are looked for before they are made

namespace {

// The key that `hashalg` would give to an object of this tag and these fields.
template <class... Fields>
Word keyOf(Tag tag, Fields... fields) {
  Word h = static_cast<Word>(tagNumber(tag));
  ((h = fields + hashFactor * h), ...);
  return h == 0 ? 1 : h;
}

// A member that is found may have been on its way out.
DAG keptAlive(DAG member) {
  updategen(member);
  return member;
}

}  // namespace

DAG singleSequence(DAG member) {
  if (bindingsEnabled || !isSimplified(member) || isSequence(member)) return simpl(new2(EXPSEQ, member));
  const Word key = keyOf(EXPSEQ, member.word);
  auto matches = [=](DAG found) { return headerWord(found) == (EXPSEQ | 2) && found[1] == member; };
  if (DAG found = findMember(key, matches)) return keptAlive(found);
  return enterUnique(key, new2(EXPSEQ, member));
}

DAG uniqueInteger(std::int64_t value) {
  if (fitsImmediate(value)) return immediate(static_cast<std::int32_t>(value));
  const Tag tag = value < 0 ? INTNEG : INTPOS;
  const auto bits = static_cast<std::uint64_t>(value);
  const std::uint64_t magnitude = value < 0 ? 0 - bits : bits;
  // Three digits at least, as no immediate has, and no array of them: nothing waits for its neighbour.
  constexpr std::uint64_t pair = std::uint64_t{BASE} * BASE;
  const auto low = static_cast<Word>(magnitude % pair), high = static_cast<Word>(magnitude / pair % pair);
  const Word d0 = low % BASE, d1 = low / BASE, d2 = high % BASE, d3 = high / BASE;
  const auto d4 = static_cast<Word>(magnitude / (pair * pair));
  const Word count = d4 != 0 ? 5 : d3 != 0 ? 4 : 3;
  constexpr Word f = hashFactor;
  Word key = f * f * f * static_cast<Word>(tagNumber(tag)) + (f * f * d0 + (f * d1 + d2));
  if (count > 3) key = f * key + d3;
  if (count > 4) key = f * key + d4;
  if (key == 0) key = 1;
  auto matches = [=](DAG found) {
    if (headerWord(found) != (tag | (count + 1))) return false;
    const Word* theirs = digitsOf(found);
    if (((d0 ^ theirs[0]) | (d1 ^ theirs[1]) | (d2 ^ theirs[2])) != 0) return false;
    return (count < 4 || d3 == theirs[3]) && (count < 5 || d4 == theirs[4]);
  };
  if (DAG found = findMember(key, matches)) return keptAlive(found);
  return enterUnique(key, NewLongInteger(value));
}

DAG uniqueFloat(std::int64_t mantissa, std::int32_t exponent) {
  DAG m = uniqueInteger(mantissa), e = immediate(exponent);
  const Word key = keyOf(FLOAT, m.word, e.word);
  auto matches = [=](DAG found) { return headerWord(found) == (FLOAT | 3) && found[1] == m && found[2] == e; };
  if (DAG found = findMember(key, matches)) return keptAlive(found);
  return enterUnique(key, new3(FLOAT, m, e));
}

Word prefetchBucket(DAG s) {
  const Word key = hashalg(s);
  __builtin_prefetch(&simpltab[bucketIndex(key, lengthOf(simpltab))]);
  return key;
}
void prefetchChain(Word key) {
  DAG chain = simpltab[bucketIndex(key, lengthOf(simpltab))];
  if (!chain) return;
  constexpr int words = 16;  // of a line
  for (int line = 0; line < 2; ++line) __builtin_prefetch(&chain[words * line]);
}

DAG simplifyObject(DAG s) {
  Tag tag = tagOf(s);
  if (bindingsEnabled && tag == NAME) {
    if (DAG bound = lookupBinding(s)) return bound;
  }
  if (isSimplified(s)) return s;
  // Names and plain strings are unique by their own tables.
  if (tag == NAME) return markSimplified(s);
  if (tag == STRING && !s[1] && s[2] == null) return strinstall(textOf(s));
  checkStack();
  Word key = 0;
  const bool isFreshFloat = tag == FLOAT && !isSettled(s[1]);  // nobody refers to such a mantissa
  if (!bindingsEnabled && !isFreshFloat) {
    // Most objects that arrive have been seen before: this search ends them.
    key = hashalg(s);
    if (DAG member = findIdentical(key, s)) return member;
  }
  bool mustHash = bindingsEnabled;
  switch (tag) {
    case INTNEG: case INTPOS: {
      DAG folded = MakeImmediate(s);
      if (isImmediate(folded)) return folded;
      return finish(s, key, mustHash);
    }
    case RATIONAL: case TABLEREF: case DCOLON: case CATENATE: case UNEVAL: case LIST: case RANGE:
      return finish(s, key, simplifyOperands(s, 1) || mustHash);
    case FLOAT:
      s[1] = simpl(s[1]);
      if ((s[1] == cons0 || s[1] == consm0) && isInteger(s[2])) s[2] = cons0;
      simplifyOperands(s, 2);
      return makeUnique(s);
    case HFLOAT: case STRING: case LOCAL: case PARAM: case LEXICAL: case RTABLE: case BREAK: case NEXT:
      return finish(s, key, mustHash);
    case COMPLEX: return simplComplex(s);
    case MEMBER: s[1] = simpl(s[1]); return makeUnique(s);
    case EQUATION: return simplRelation(s, "=");
    case INEQUAT: return simplRelation(s, "<>");
    case LESSEQ: return simplLessEqual(s);
    case LESSTHAN: return simplLessThan(s);
    case AND: case OR: case NOT: return simplbool(s);
    case EXPSEQ: return simplSequence(s, key);
    case SUM: return simplSum(s);
    case PROD: return simplProduct(s);
    case POWER: return simplPower(s);
    case SERIES: return simplseries(s);
    case ZPPOLY: return simplModularPolynomial(s);
    case FUNCTION: return simplFunction(s, key);
    case PROC: return simplProcedure(s);
    case SET: return simplset(s);
    case TABLE:
      s[1] = simpl(s[1]);
      s[2] = simpl(s[2]);
      return makeUnique(s);
    case MODDEF: return simplModuleDefinition(s);
    case MODULE: s[2] = simpl(s[2]); return makeUnique(s);
    case ASSIGN: return simplAssign(s);
    case FOR: return simplFor(s);
    case IF: return simplIf(s);
    case TRY: return simplTry(s);
    case STATSEQ: return simplStatements(s);
    case USE: return simplUse(s);
    case READ: case SAVE: case STOP: case ERROR: case RETURN: simplifyOperands(s, 1); return markSimplified(s);
    default: notimpl("bad id");
  }
}

}  // namespace korel
