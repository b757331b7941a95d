#pragma once
// The arguments of a program, and which of them are the kernel's.
//
// A front end takes its own command line apart: what the kernel is to get goes over the link as it stands.

#include <cstddef>

namespace korel {

/// A vector of strings of its own, ended by a null pointer, as `main` gets one.
class Args {
 public:
  Args() = default;
  Args(int argc, const char* const* argv);
  Args(const Args& other);
  Args& operator=(const Args& other);
  ~Args();

  /// Appends a copy of `text`; a null pointer ends the vector and isn't counted.
  Args& operator+=(const char* text);
  int count() const { return count_; }
  /// `count()` strings and a null pointer.
  char** vector() const { return strings_; }
  const char* operator[](int i) const { return strings_[i]; }

  /// Appends to `out` what is the front end's: the program's name, operands, and switches unknown to the kernel.
  void getPgmArgs(Args& out) const { split(&out, nullptr); }
  /// Appends to `out` what is the kernel's: the program's name, its switches and their values.
  void getKernelArgs(Args& out) const { split(nullptr, &out); }

 private:
  void split(Args* program, Args* kernel) const;
  void clear();

  int count_ = 0;
  int capacity_ = 0;
  char** strings_ = nullptr;
};

/// A switch without its `-`, and the argument behind it that is no switch itself, or null.
struct switchPair {
  const char* letters = nullptr;
  const char* value = nullptr;
};

/// Walks over arguments, one by one or by switches.
class argIterator {
 public:
  explicit argIterator(const Args& args) : args_(args) {}
  virtual ~argIterator() = default;

  /// The next argument, or null.
  const char* operator()();
  /// The next switch and its value; false when none follows.
  bool operator()(switchPair& pair);
  virtual bool isSwitch(const char* text) const { return text[0] == '-'; }

 private:
  const Args& args_;
  int next_ = 0;
};

}  // namespace korel
