// Procedures, module definitions and modules; `try` statements, which compare as procedures do.

#include "eval/simplify/simplify.h"
#include "eval/simplify/simplify_cases.h"
#include "eval/structure/equality.h"
#include "eval/structure/kinds.h"
#include "eval/structure/operands.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- the view of `op`: the body is no operand

std::int64_t countWithoutBody(DAG definition) { return lengthOf(definition) - 2; }
Word fieldOfOperand(std::int64_t i) { return static_cast<Word>(i < procBody ? i : i + 1); }

// The remember table shows as a TABLE of its own.
DAG procedureOperand(DAG proc, std::int64_t i) {
  if (i == procRemember && rememberOf(proc) != null) return simpl(newTable(null, ini("false"), rememberOf(proc)));
  return proc[fieldOfOperand(i)];
}
DAG moduleDefinitionOperand(DAG definition, std::int64_t i) { return definition[fieldOfOperand(i)]; }

// ---- the fields that `subsop` may replace, and by what

// One member of a list field as it is stored, or 0 when it has no place there.
using Member = DAG (*)(DAG x);

DAG nameMember(DAG x) { return isName(x) ? x : DAG(); }
DAG declarationMember(DAG x) { return isName(x) || (isTag(x, DCOLON) && isName(x[1])) ? x : DAG(); }
// A parameter may be told with its type as an equation.
DAG parameterMember(DAG x) {
  if (isTag(x, EQUATION) && isName(x[1])) return simpl(new3(DCOLON, x[1], x[2]));
  return declarationMember(x);
}
DAG optionMember(DAG x) {
  if (isTag(x, STRING)) return naminstall(textOf(x));
  return isName(x) || (isTag(x, EQUATION) && isName(x[1])) ? x : DAG();
}
DAG descriptionMember(DAG x) {
  if (isName(x)) return strinstall(textOf(x));
  return isTag(x, STRING) ? x : DAG();
}

enum class FieldKind { list, remember, lexicals, name };
struct Field {
  Word word;
  FieldKind kind;
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
    // word           kind                 member             fixed  a wrong member   something else
    {procParams,      FieldKind::list,     parameterMember,   false, needsParameters, needsParameters},
    {procLocals,      FieldKind::list,     declarationMember, false, needsNames,      needsNameOrSequence},
    {procOptions,     FieldKind::list,     optionMember,      false, needsTexts,      needsTexts},
    {procRemember,    FieldKind::remember, nullptr,           false, nullptr,         nullptr},
    {procDescription, FieldKind::list,     descriptionMember, false, needsTexts,      needsTexts},
    {procGlobals,     FieldKind::list,     nameMember,        false, needsNames,      needsNameOrSequence},
    {procLexicals,    FieldKind::lexicals, nullptr,           true,  needsNames,      needsNameOrSequence},
};
constexpr Field moduleFields[] = {
    // word             kind                 member             fixed  a wrong member   something else
    {moddefParams,      FieldKind::list,     parameterMember,   true,  needsParameters, needsParameters},
    {moddefLocals,      FieldKind::list,     declarationMember, true,  needsNames,      needsNameOrSequence},
    {moddefOptions,     FieldKind::list,     optionMember,      false, needsTexts,      needsTexts},
    {moddefExports,     FieldKind::list,     declarationMember, true,  needsNames,      needsNameOrSequence},
    {moddefDescription, FieldKind::list,     descriptionMember, false, needsTexts,      needsTexts},
    {moddefGlobals,     FieldKind::list,     nameMember,        true,  needsNames,      needsNameOrSequence},
    {moddefLexicals,    FieldKind::lexicals, nullptr,           true,  needsNames,      needsNameOrSequence},
    {moddefName,        FieldKind::name,     nullptr,           false, nullptr,         nullptr},
};

void checkLength(const Field& field, DAG original, DAG replacement) {
  if (field.fixedLength && lengthOf(original[field.word]) != lengthOf(replacement))
    KernelException("length of replacement sequence must match original");
}

DAG listField(const Field& field, DAG original, DAG replacement) {
  if (!isSequence(replacement)) {
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
  if (isName(replacement)) replacement = op1(1, replacement);
  if (!isTag(replacement, TABLE) || !isTag(replacement[tableEntries], HASHTAB) || replacement[tableFunction] != null)
    KernelException("invalid subsop in procedure");
  return copyhashtab(replacement[tableEntries]);
}

// Pairs of a name and what it stands for. A place in the scope outside is only known where it was given.
DAG lexicalField(const Field& field, DAG original, DAG replacement) {
  if (!isSequence(replacement)) KernelException(field.otherwise);
  checkLength(field, original, replacement);
  DAG old = original[field.word];
  for (Word i = 1; i < lengthOf(replacement); ++i) {
    DAG member = replacement[i];
    bool fits = (i & 1) != 0 ? isName(member) : !isAmong(member, frameReferenceTags) || member == old[i];
    if (!fits) KernelException(field.members);
  }
  return simpl(replacement);
}

bool isBuiltin(DAG definition) { return isMember(ini("builtin"), optionsOf(definition)); }

void replaceProcedureField(TakenApart& object, std::int64_t i, DAG replacement) {
  DAG copy = object.parts, original = object.original;
  bool module = hasTag(original, MODDEF);
  const Field& field = module ? moduleFields[i - 1] : procedureFields[i - 1];
  DAG value;
  switch (field.kind) {
    case FieldKind::list: value = listField(field, original, replacement); break;
    case FieldKind::remember: value = rememberField(replacement); break;
    case FieldKind::lexicals: value = lexicalField(field, original, replacement); break;
    case FieldKind::name:
      if (replacement != null && !isName(replacement)) KernelException("name or null expected");
      value = replacement;
      break;
  }
  copy[field.word] = value;
  // Only a built-in has a number for a body, and none may lose or gain it.
  if (isBuiltin(copy) != isBuiltin(original)) KernelException("invalid subsop in procedure");
  // Each procedure remembers for itself.
  if (!module && field.kind != FieldKind::remember && rememberOf(copy) == rememberOf(original) &&
      isTag(rememberOf(copy), HASHTAB))
    rememberOf(copy) = copyhashtab(rememberOf(original));
}

DAG definitionOf(const TakenApart& object) { return makeUnique(object.parts); }

DAG refuseModule(DAG) { KernelException("subsop cannot be applied to instantiated modules"); }

// ---- attributes: the options

DAG optionsAsAttribute(DAG definition) { return singleMember(optionsOf(definition)); }
DAG withOptions(DAG definition, DAG attribute) {
  DAG result = CopyAlg(definition);
  optionsOf(result) = simpl(asSequence(attribute));
  return simpl(result);
}
DAG moduleAttribute(DAG module) { return optionsAsAttribute(module[moduleDefinition]); }
DAG refuseAttribute(DAG, DAG) { KernelException("module attributes can only be queried"); }

}  // namespace

constexpr Kind procedureKind = {
    .isSingle = true,
    .count = countWithoutBody,
    .operand = procedureOperand,
    .replace = replaceProcedureField,
    .putTogether = definitionOf,
    .equal = deeplyEqual,
    .sameStructure = deeplyEqual,
    .sameEntries = deeplyEqual,
    .attribute = optionsAsAttribute,
    .withAttribute = withOptions,
};

constexpr Kind moduleDefinitionKind = {
    .isSingle = true,
    .count = countWithoutBody,
    .operand = moduleDefinitionOperand,
    .replace = replaceProcedureField,
    .putTogether = definitionOf,
    .attribute = optionsAsAttribute,
    .withAttribute = withOptions,
};

constexpr Kind moduleKind = {
    .isSingle = true,
    .operand = anyField,
    .takeApart = refuseModule,
    .attribute = moduleAttribute,
    .withAttribute = refuseAttribute,
};

constexpr Kind tryKind = {
    .operand = anyField,
    .takeApart = refuseSubsop,
    .equal = deeplyEqual,
    .sameStructure = deeplyEqual,
    .sameEntries = deeplyEqual,
};

}  // namespace korel
