// The fields of procedures and module definitions that `subsop` may replace, and by what.

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "eval/structure/operands.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"

namespace korel {

namespace {


// One member of a list field as it is stored, or 0 when it has no place there.
using Member = DAG (*)(DAG x);

DAG nameMember(DAG x) { return isTag(x, NAME) ? x : DAG(); }
DAG declarationMember(DAG x) {
  return isTag(x, NAME) || (isTag(x, DCOLON) && isTag(x[1], NAME)) ? x : DAG();
}
// A parameter may be told with its type as an equation.
DAG parameterMember(DAG x) {
  if (isTag(x, EQUATION) && isTag(x[1], NAME)) return simpl(new3(DCOLON, x[1], x[2]));
  return declarationMember(x);
}
DAG optionMember(DAG x) {
  if (isTag(x, STRING)) return naminstall(textOf(x));
  return isTag(x, NAME) || (isTag(x, EQUATION) && isTag(x[1], NAME)) ? x : DAG();
}
DAG descriptionMember(DAG x) {
  if (isTag(x, NAME)) return strinstall(textOf(x));
  return isTag(x, STRING) ? x : DAG();
}

enum class Kind { list, remember, lexicals, name };
struct Field {
  Word word;
  Kind kind;
  Member member;
  bool fixedLength;       // of a MODDEF, whose places are numbers in its body
  const char* members;    // a sequence with another member
  const char* otherwise;  // neither a sequence nor a member
};

constexpr const char* needsNames = "expression sequence of names expected";
constexpr const char* needsNameOrSequence = "name or expression sequence expected";
constexpr const char* needsParameters = "expression sequence of names or equations expected";
constexpr const char* needsTexts = "expression sequence of names or strings expected";

constexpr Field procedureFields[] = {
    // word  kind            member             fixed   a wrong member   something else
    {1, Kind::list,     parameterMember,   false, needsParameters, needsParameters},
    {2, Kind::list,     declarationMember, false, needsNames,      needsNameOrSequence},
    {3, Kind::list,     optionMember,      false, needsTexts,      needsTexts},
    {4, Kind::remember, nullptr,           false, nullptr,         nullptr},
    {6, Kind::list,     descriptionMember, false, needsTexts,      needsTexts},
    {7, Kind::list,     nameMember,        false, needsNames,      needsNameOrSequence},
    {8, Kind::lexicals, nullptr,           true,  needsNames,      needsNameOrSequence},
};
constexpr Field moduleFields[] = {
    // word  kind            member             fixed   a wrong member   something else
    {1, Kind::list,     parameterMember,   true,  needsParameters, needsParameters},
    {2, Kind::list,     declarationMember, true,  needsNames,      needsNameOrSequence},
    {3, Kind::list,     optionMember,      false, needsTexts,      needsTexts},
    {4, Kind::list,     declarationMember, true,  needsNames,      needsNameOrSequence},
    {6, Kind::list,     descriptionMember, false, needsTexts,      needsTexts},
    {7, Kind::list,     nameMember,        true,  needsNames,      needsNameOrSequence},
    {8, Kind::lexicals, nullptr,           true,  needsNames,      needsNameOrSequence},
    {9, Kind::name,     nullptr,           false, nullptr,         nullptr},
};

void checkLength(const Field& field, DAG original, DAG replacement) {
  if (field.fixedLength && lengthOf(original[field.word]) != lengthOf(replacement))
    KernelException("length of replacement sequence must match original");
}

DAG listField(const Field& field, DAG original, DAG replacement) {
  if (!isTag(replacement, EXPSEQ)) {
    DAG single = field.member(replacement);
    if (!single) KernelException(field.otherwise);
    replacement = new2(EXPSEQ, single);
  } else {
    DAG members = CopyAlg(replacement);
    for (Word i = 1; i < lengthOf(members); ++i) {
      members[i] = field.member(members[i]);
      if (!members[i]) KernelException(field.members);
    }
    replacement = members;
  }
  checkLength(field, original, replacement);
  return simpl(replacement);
}

// A table of results, which the procedure then has for itself.
DAG rememberField(DAG replacement) {
  if (replacement == null) return null;
  if (isTag(replacement, NAME)) replacement = op1(1, replacement);
  if (!isTag(replacement, TABLE) || !isTag(replacement[3], HASHTAB) || replacement[1] != null)
    KernelException("invalid subsop in procedure");
  return copyhashtab(replacement[3]);
}

// Pairs of a name and what it stands for. A place in the scope outside is only known where it was given.
DAG lexicalField(const Field& field, DAG original, DAG replacement) {
  if (!isTag(replacement, EXPSEQ)) KernelException(field.otherwise);
  checkLength(field, original, replacement);
  DAG old = original[field.word];
  for (Word i = 1; i < lengthOf(replacement); ++i) {
    DAG member = replacement[i];
    bool place = isTag(member, LOCAL) || isTag(member, PARAM) || isTag(member, LEXICAL);
    if ((i & 1) != 0 ? !isTag(member, NAME) : place && member != old[i]) KernelException(field.members);
  }
  return simpl(replacement);
}

bool isBuiltin(DAG options) { return member(options, ini("builtin")) != 0; }

}  // namespace

void replaceProcedureField(DAG copy, DAG original, std::int64_t i, DAG replacement) {
  bool module = hasTag(original, MODDEF);
  const Field& field = module ? moduleFields[i - 1] : procedureFields[i - 1];
  DAG value;
  switch (field.kind) {
    case Kind::list: value = listField(field, original, replacement); break;
    case Kind::remember: value = rememberField(replacement); break;
    case Kind::lexicals: value = lexicalField(field, original, replacement); break;
    case Kind::name:
      if (replacement != null && !isTag(replacement, NAME)) KernelException("name or null expected");
      value = replacement;
      break;
  }
  copy[field.word] = value;
  // Only a built-in has a number for a body, and none may lose or gain it.
  if (isBuiltin(copy[3]) != isBuiltin(original[3])) KernelException("invalid subsop in procedure");
  // Each procedure remembers for itself.
  if (!module && field.kind != Kind::remember && copy[4] == original[4] && isTag(copy[4], HASHTAB))
    copy[4] = copyhashtab(original[4]);
}

}  // namespace korel
