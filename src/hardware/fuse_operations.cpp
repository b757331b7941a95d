#include "hardware/fuse_operations.h"

namespace korel {

namespace {

// Place among add, subtract and multiply, or -1.
int arithmeticPlace(Op op) { return op == Op::add ? 0 : op == Op::subtract ? 1 : op == Op::multiply ? 2 : -1; }
Op shifted(Op first, int by) { return static_cast<Op>(static_cast<int>(first) + by); }

class Fusing {
 public:
  Fusing(Instruction* code, int count, TemporaryRange temporaries)
      : code_(code), count_(count), temporaries_(temporaries) {}

  void run() {
    for (int k = 0; k < count_; ++k) {
      if (fuseElements(k, Op::load1, Op::load1_load1_multiply_add)) continue;
      if (fuseElements(k, Op::load2, Op::load2_load2_multiply_add)) continue;
      if (!fuseSquares(k) && !fuseTree(k)) fusePair(k);
    }
  }

 private:
  bool has(int k, int length) const { return k + length <= count_; }
  bool isTemporary(int reg) const { return reg >= temporaries_.first && reg < temporaries_.end; }
  // The instruction at `k` leaves a value that only `user` reads, as its operand b or c.
  bool feeds(int k, int reg) const { return code_[k].a == reg && isTemporary(reg); }

  // A two-operand instruction whose operands are what the two before it leave, neither of which reads the other.
  bool joinsTwo(int k) const {
    return feeds(k, code_[k + 2].b) && feeds(k + 1, code_[k + 2].c) && code_[k].a != code_[k + 1].a;
  }
  bool readsNot(int k, int reg) const { return code_[k].b != reg && code_[k].c != reg; }

  bool fuseTree(int k) {
    if (!has(k, 3)) return false;
    const int first = arithmeticPlace(code_[k].op), second = arithmeticPlace(code_[k + 1].op),
              third = arithmeticPlace(code_[k + 2].op);
    if (first < 0 || second < 0 || third < 0 || !joinsTwo(k) || !readsNot(k + 1, code_[k].a)) return false;
    code_[k].op = shifted(Op::add_add_add, 9 * first + 3 * second + third);
    return true;
  }

  bool fusePair(int k) {
    if (!has(k, 2)) return false;
    const int first = arithmeticPlace(code_[k].op), second = arithmeticPlace(code_[k + 1].op);
    if (first < 0 || second < 0) return false;
    const bool left = feeds(k, code_[k + 1].b), right = feeds(k, code_[k + 1].c);
    if (left == right) return false;
    code_[k].op = shifted(Op::add_add_left, 6 * first + 2 * second + (right ? 1 : 0));
    return true;
  }

  bool fuseSquares(int k) {
    if (!has(k, 3) || code_[k].op != Op::square || code_[k + 1].op != Op::square || !joinsTwo(k)) return false;
    if (code_[k + 1].b == code_[k].a) return false;
    if (code_[k + 2].op == Op::add) code_[k].op = Op::square_square_add;
    else if (code_[k + 2].op == Op::subtract) code_[k].op = Op::square_square_subtract;
    else return false;
    return true;
  }

  // total + A[...] * B[...]
  bool fuseElements(int k, Op load, Op fused) {
    if (!has(k, 4) || code_[k].op != load || code_[k + 1].op != load || code_[k + 2].op != Op::multiply ||
        code_[k + 3].op != Op::add || !joinsTwo(k) || !feeds(k + 2, code_[k + 3].c))
      return false;
    const int element = code_[k].a;
    if (!readsNot(k + 1, element) || code_[k + 1].tail.e == element || isTemporaryOf(k, code_[k + 3].b)) return false;
    code_[k].op = fused;
    return true;
  }
  // Whether the run from `k` on leaves its value there before the last instruction.
  bool isTemporaryOf(int k, int reg) const {
    return reg == code_[k].a || reg == code_[k + 1].a || reg == code_[k + 2].a;
  }

  Instruction* code_;
  int count_;
  TemporaryRange temporaries_;
};

}  // namespace

void fuseOperations(Instruction* code, int count, TemporaryRange temporaries) {
  Fusing(code, count, temporaries).run();
}

}  // namespace korel
