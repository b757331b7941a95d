#pragma once
// The members of a list whose length isn't known beforehand.

#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/objects.h"
#include "text/format/text_buffer.h"

namespace korel {

class Members {
 public:
  void append(DAG x) { words_.append({reinterpret_cast<const char*>(&x.word), sizeof x.word}); }
  /// The LIST of the members, simplified; there are none afterwards. Error: "object too large".
  DAG list() {
    const std::size_t n = words_.size() / sizeof(Word);
    if (n == 0) return emptylist;
    if (n + 1 > maxLength) KernelException("object too large");
    DAG sequence = newl2(static_cast<Word>(n + 1), EXPSEQ);
    std::memcpy(&sequence[1], words_.bytes(), words_.size());
    words_.clear();
    return simpl(new2(LIST, sequence));
  }

 private:
  TextBuffer words_;  // their bytes
};

}  // namespace korel
