#include "session/link/arguments.h"

#include <cstdlib>
#include <cstring>

#include "frame/errors.h"

namespace korel {

namespace {

// The kernel's switches, by their first letter.
constexpr const char* plainSwitches = "FIaqstz";
constexpr const char* valueSwitches = "ADLNPTUbcegilw";

bool isAmongLetters(const char* letters, char c) { return c != 0 && std::strchr(letters, c) != nullptr; }

}  // namespace

Args::Args(int argc, const char* const* argv) {
  for (int i = 0; i < argc; ++i) *this += argv[i];
}
Args::Args(const Args& other) { *this = other; }
Args& Args::operator=(const Args& other) {
  if (this == &other) return *this;
  clear();
  for (int i = 0; i < other.count_; ++i) *this += other.strings_[i];
  return *this;
}
Args::~Args() { clear(); }

void Args::clear() {
  for (int i = 0; i < count_; ++i) std::free(strings_[i]);
  std::free(strings_);
  strings_ = nullptr;
  count_ = capacity_ = 0;
}

Args& Args::operator+=(const char* text) {
  if (count_ + 1 >= capacity_) {
    capacity_ = capacity_ == 0 ? 16 : 2 * capacity_;
    auto* grown = static_cast<char**>(std::realloc(strings_, static_cast<std::size_t>(capacity_) * sizeof(char*)));
    if (grown == nullptr) notimpl("Args");
    strings_ = grown;
  }
  if (text != nullptr && (strings_[count_++] = strdup(text)) == nullptr) notimpl("Args");
  strings_[count_] = nullptr;
  return *this;
}

void Args::split(Args* program, Args* kernel) const {
  auto give = [](Args* list, const char* text) {
    if (list != nullptr) *list += text;
  };
  argIterator next(*this);
  const char* name = next();
  give(program, name);
  give(kernel, name);
  if (name == nullptr) return;
  while (const char* text = next()) {
    if (!next.isSwitch(text)) {
      give(program, text);
    } else if (isAmongLetters(plainSwitches, text[1])) {
      give(kernel, text);
    } else if (isAmongLetters(valueSwitches, text[1])) {
      give(kernel, text);
      const char* value = text[2] == 0 ? next() : nullptr;
      if (value != nullptr) give(kernel, value);
    } else {
      give(program, text);
    }
  }
  give(program, nullptr);
  give(kernel, nullptr);
}

const char* argIterator::operator()() { return next_ < args_.count() ? args_[next_++] : nullptr; }

bool argIterator::operator()(switchPair& pair) {
  while (const char* text = (*this)()) {
    if (!isSwitch(text)) continue;
    pair.letters = text + 1;
    bool hasValue = next_ < args_.count() && !isSwitch(args_[next_]);
    pair.value = hasValue ? (*this)() : nullptr;
    return true;
  }
  return false;
}

}  // namespace korel
