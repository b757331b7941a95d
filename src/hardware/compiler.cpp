#include "hardware/compiler.h"

#include <algorithm>
#include <bit>
#include <cstdlib>

#include "hardware/fuse_operations.h"
#include "hardware/hardware_calls.h"
#include "hardware/interpreter.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

Compiler::Compiler(DAG procedure, std::uint32_t numeric) : procedure_(procedure), knownNumeric_(numeric) {}

// ---- before any code

// Counts the parameters that the body reads. What only the plain walk can run is refused: `%`, whose values the code
// doesn't keep, and what is nested too deep.
void Compiler::survey(DAG x, int depth) {
  if (isImmediate(x) || refused_) return;
  if (depth > deepest) return refuse();
  switch (tagOf(x)) {
    case PARAM:
      if (rawField(x, 1) <= static_cast<Word>(mostArguments))
        parameters_ = std::max(parameters_, static_cast<int>(rawField(x, 1)));
      else if (static_cast<std::int32_t>(rawField(x, 1)) > 0) refuse();
      return;
    case NAME:
      if (x == ini("%") || x == ini("%%") || x == ini("%%%")) refuse();
      return;
    case INTNEG: case INTPOS: case RATIONAL: case FLOAT: case HFLOAT: case COMPLEX: case STRING: case LOCAL:
    case LEXICAL: case PROC: case TABLE: case RTABLE: case MODULE: case MODDEF:
      return;
    case SERIES: case ZPPOLY: return;
    case FUNCTION:
      if (isName(x[1]) && hasText(x[1], "TRACE")) return refuse();
      if (isName(x[1]) && hasText(x[1], "RETURN")) ++returnCalls_;
      [[fallthrough]];
    default:
      for (Word i = 1; i < lengthOf(x); ++i)
        if (x[i]) survey(x[i], depth + 1);
  }
}

// Marks variables that are assigned what may be a reference. True when one is new.
bool Compiler::noteReferences(DAG x) {
  if (isImmediate(x) || !isAmong(x, statementTags)) return false;
  bool changed = false;
  if (hasTag(x, ASSIGN)) {
    DAG target = isTag(x[1], DCOLON) ? x[1][1] : x[1];
    const int reg = variable(target);
    if (reg < 0 || !mayBeReference(x[2]) || holdsReference_[static_cast<std::size_t>(reg)]) return false;
    holdsReference_[static_cast<std::size_t>(reg)] = true;
    return true;
  }
  if (!isAmong(x, TagSet{STATSEQ, IF, FOR})) return false;
  for (Word i = 1; i < lengthOf(x); ++i)
    if (x[i] && noteReferences(x[i])) changed = true;
  return changed;
}

void Compiler::findReferences() {
  holdsReference_.assign(static_cast<std::size_t>(parameters_ + locals_), false);
  while (noteReferences(bodyOf(procedure_))) {
  }
}

bool Compiler::compile() {
  survey(bodyOf(procedure_), 0);
  if (refused_) return false;
  locals_ = static_cast<int>(memberCount(localsOf(procedure_)));
  used_ = most_ = parameters_ + locals_;
  findReferences();
  const int result = temporary();
  sequence(bodyOf(procedure_), result);
  emit(Op::leave, result);
  return !refused_ && returnCalls_ == returnsCompiled_ &&
         most_ + static_cast<int>(constants_.size()) < constantBase / 2;
}

// ---- registers

int Compiler::variable(DAG x) const {
  if (isTag(x, LOCAL)) return local(x);
  if (isTag(x, PARAM)) {
    const auto n = static_cast<std::int32_t>(rawField(x, 1));
    return n > 0 && n <= parameters_ ? n - 1 : -1;
  }
  return -1;
}

int Compiler::constant(double v) {
  const auto same = [v](double known) {
    return std::bit_cast<std::uint64_t>(known) == std::bit_cast<std::uint64_t>(v);
  };
  auto at = std::find_if(constants_.begin(), constants_.end(), same);
  const auto k = static_cast<int>(at - constants_.begin());
  if (at == constants_.end()) constants_.push_back(v);
  if (k > constantBase / 4) refuse();
  return constantBase + k;
}

int Compiler::temporary() {
  if (used_ > constantBase / 4) refuse();
  most_ = std::max(most_, used_ + 1);
  return used_++;
}

int Compiler::moved(int from, int into) {
  if (into < 0 || into == from) return from;
  emit(Op::move, into, from);
  return into;
}

// ---- code

Instruction& Compiler::emit(Op op, int a, int b, int c) {
  code_.emplace_back(op, a, b, c);
  if (code_.size() > 100000) refuse();
  return code_.back();
}

void Compiler::emitJump(Op op, Label label, int a, int b, int c) {
  jumps_.push_back({static_cast<int>(code_.size()), label});
  emit(op, a, b, c);
}

Label Compiler::newLabel() {
  labels_.push_back(-1);
  return static_cast<Label>(labels_.size()) - 1;
}
void Compiler::place(Label label) { labels_[static_cast<std::size_t>(label)] = static_cast<int>(code_.size()); }

// ---- the program

Program* Compiler::program() const {
  auto* p = new Program{};
  p->code = static_cast<Instruction*>(std::malloc(sizeof(Instruction) * code_.size()));
  p->constants = new double[constants_.size() + 1];
  p->sites = new CallSite[sites_.size() + 1];
  std::copy(constants_.begin(), constants_.end(), p->constants);
  std::copy(sites_.begin(), sites_.end(), p->sites);
  p->parameters = parameters_;
  p->locals = locals_;
  p->constantCount = static_cast<int>(constants_.size());
  p->registers = most_;
  p->views = static_cast<int>(views_.size());
  p->numericParameters = numericUses_;
  const int firstConstant = most_;
  auto final = [=](std::uint16_t reg) {
    return static_cast<std::uint16_t>(reg >= constantBase ? reg - constantBase + firstConstant : reg);
  };
  for (std::size_t i = 0; i < code_.size(); ++i) {
    Instruction instruction = code_[i];
    instruction.a = final(instruction.a);
    instruction.b = final(instruction.b);
    instruction.c = final(instruction.c);
    if (instruction.op == Op::load2 || instruction.op == Op::store2) instruction.tail.e = final(instruction.tail.e);
    p->code[i] = instruction;
  }
  for (const Jump& jump : jumps_)
    p->code[jump.at].tail.target = labels_[static_cast<std::size_t>(jump.label)] - jump.at;
  fuseOperations(p->code, static_cast<int>(code_.size()), {parameters_ + locals_, most_});
  return p;
}

Program* compileProcedure(DAG procedure) {
  Compiler first(procedure, 0);
  if (!first.compile()) return nullptr;
  // What the first pass has found to be numbers needs no checks in the second.
  Compiler second(procedure, first.numericParameters());
  return second.compile() ? second.program() : nullptr;
}

void deleteProgram(Program* program) {
  std::free(program->code);
  delete[] program->constants;
  delete[] program->sites;
  delete program;
}

}  // namespace korel
