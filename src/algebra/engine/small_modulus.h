#pragma once
// Arithmetic modulo an odd prime below 2^31, on residues times 2^32 (Montgomery, "Modular multiplication without trial
// division"): a product costs three multiplications and no division.

#include <algorithm>
#include <cstdint>

namespace korel::engine {

class SmallModulus {
 public:
  using Word32 = std::uint32_t;
  SmallModulus() = default;
  explicit SmallModulus(Word32 prime) : prime_(prime), negativeInverse_(prime) {
    // Newton's iteration doubles the right bits: 3 at first, as p * p is 1 modulo 8.
    for (int k = 0; k < 4; ++k) negativeInverse_ *= 2 - prime * negativeInverse_;
    negativeInverse_ = 0 - negativeInverse_;
    const std::uint64_t r = (std::uint64_t{1} << 32) % prime;
    one_ = static_cast<Word32>(r);
    square_ = static_cast<Word32>(r * r % prime);
    limit_ = std::uint64_t{prime} << 31;
  }

  Word32 prime() const { return prime_; }
  Word32 one() const { return one_; }
  /// t / 2^32 for t below 2^32 * prime.
  Word32 reduce(std::uint64_t t) const {
    const Word32 m = static_cast<Word32>(t) * negativeInverse_;
    const auto r = static_cast<Word32>((t + std::uint64_t{m} * prime_) >> 32);
    return std::min(r, r - prime_);
  }
  Word32 in(Word32 residue) const { return reduce(std::uint64_t{residue} * square_); }
  Word32 out(Word32 x) const { return reduce(x); }

  Word32 add(Word32 a, Word32 b) const { return std::min(a + b, a + b - prime_); }
  Word32 subtract(Word32 a, Word32 b) const { return std::min(a - b, a - b + prime_); }
  Word32 negate(Word32 a) const { return a == 0 ? 0 : prime_ - a; }
  Word32 multiply(Word32 a, Word32 b) const { return reduce(std::uint64_t{a} * b); }
  Word32 inverse(Word32 a) const {
    Word32 result = one_;
    for (Word32 n = prime_ - 2; n != 0; n >>= 1, a = multiply(a, a))
      if ((n & 1) != 0) result = multiply(result, a);
    return result;
  }
  /// A sum of products: `accumulate` keeps it so that `reduce` may follow.
  std::uint64_t accumulate(std::uint64_t sum, Word32 a, Word32 b) const {
    sum += std::uint64_t{a} * b;
    return std::min(sum, sum - limit_);
  }

 private:
  Word32 prime_ = 0, negativeInverse_ = 0, one_ = 0, square_ = 0;
  std::uint64_t limit_ = 0;
};

}  // namespace korel::engine
