// The records of integers of any length, digit by digit.

#include "eval/simplify/simplify.h"
#include "library/records/record_codes.h"
#include "library/records/record_reading.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"

namespace korel {

namespace {

class DigitReader {
 public:
  DigitReader(Reading& r, std::int64_t count) : r_(r), left_(count) {}
  int next() {
    --left_;
    if (pending_ >= 0) {
      int digit = pending_;
      pending_ = -1;
      return digit;
    }
    int c = korel::next(r_);
    if (c < firstDigitPair) return c - firstSingleDigit;
    if (c >= firstDigitPair + digitPairLimit) failReading(r_, "syntax error while reading file");
    if (left_ == 0) failReading(r_, "too many digits in digit encoding");
    pending_ = (c - firstDigitPair) / 10;
    return (c - firstDigitPair) % 10;
  }
  bool isAtEnd() const { return left_ == 0; }

 private:
  Reading& r_;
  std::int64_t left_;
  int pending_ = -1;
};

constexpr std::int64_t mostDigits = std::int64_t{4} * (maxLength - 1);

DAG shortInteger(Tag tag, DigitReader& digits) {
  std::int64_t value = 0;
  for (std::int64_t power = 1; !digits.isAtEnd(); power *= 10) value += power * digits.next();
  if (tag == INTPOS) return NewInteger(value);
  return value == 0 ? consm0 : NewInteger(-value);
}

DAG longInteger(Tag tag, std::int64_t count, DigitReader& digits) {
  auto words = static_cast<Word>((count + 3) / 4);
  DAG s = newl2(1 + (words < trustedLength ? words : trustedLength), tag);
  for (Word i = 1; i <= words; ++i) {
    if (i >= lengthOf(s)) {
      Word more = words + 1 - lengthOf(s);
      s = enlarge(s, more < lengthOf(s) ? more : lengthOf(s));
    }
    Word digit = 0, power = 1;
    for (int k = 0; k < 4 && !digits.isAtEnd(); ++k, power *= 10) digit += power * static_cast<Word>(digits.next());
    rawField(s, i) = digit;
  }
  // Leading zeros are no digits of the number.
  Word n = lengthOf(s), used = n;
  while (used > 2 && rawField(s, used - 1) == 0) --used;
  if (used != n) shorten(s, n, used);
  return MakeImmediate(s);
}

}  // namespace

DAG nextInteger(Reading& r, Tag tag) {
  Word number = takeNumber(r);
  std::int64_t count = nextInt(r);
  if (count < 1 || count > mostDigits) failReading(r, "invalid dag length");
  DigitReader digits(r, count);
  DAG x = count <= 12 ? shortInteger(tag, digits) : longInteger(tag, count, digits);
  return enter(r, number, simpl(x));
}

}  // namespace korel
