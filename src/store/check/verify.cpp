#include "store/check/verify.h"

#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "frame/output.h"
#include "store/allocator.h"
#include "store/check/verify_rules.h"
#include "store/check/verify_walk.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/word_map.h"

namespace korel {

namespace {

void printReport(const char* message) { Printf2("%s\n", message); }

// An object on the way from the start of the walk to where it is now.
struct Step {
  DAG object;
  Word component;      // the one that is being checked
  std::int32_t depth;  // levels to check below the object; negative: all
};

// The walk, with a stack of its own: structures are deeper than the native stack. Each object is
// checked once to each depth, so that shared parts and cycles cost nothing.
class Walk {
 public:
  /// Names stand for themselves, whatever they are assigned.
  explicit Walk(bool namesAreLeaves) : namesAreLeaves_(namesAreLeaves) {}

  /// True when `x` and all to that depth below it are well-formed. Otherwise the failure can be told.
  bool check(DAG x, std::int32_t depth) {
    used_ = 0;
    if (!enter(x, depth)) return false;
    while (used_ != 0) {
      Step& step = steps_[used_ - 1];
      if (step.component != 0 && !checkComponent(step.object, step.component, finding_)) {
        --used_;  // the message tells about the object itself
        return false;
      }
      step.component = nextComponent(step.object, step.component);
      if (step.component == 0) {
        if (!checkWhole(step.object, finding_)) {
          --used_;
          return false;
        }
        --used_;
        continue;
      }
      std::int32_t below = step.depth < 0 ? step.depth : step.depth - 1;
      if (!enter(step.object[step.component], below)) return false;
    }
    return true;
  }

  /// Tells the failure of the object at fault, then what it means for those on the way to it. A report
  /// may jump: what the walk holds is given back all the same.
  void report() {
    visited_.release();
    PushParamErrorProc([](const char*) { std::free(reinterpret_cast<void*>(errorProcParam)); },
                       static_cast<void*>(steps_));
    verifyReport(finding_.text);
    while (used_ != 0) {
      const Step& step = steps_[--used_];
      describeBadComponent(step.object, step.component, finding_);
      verifyReport(finding_.text);
    }
    PopErrorProc();
  }

  void release() {
    visited_.release();
    std::free(steps_);
    steps_ = nullptr;
    capacity_ = used_ = 0;
  }

  std::uint32_t objects() const { return visited_.size(); }

 private:
  // Checks `x` by itself and opens it, unless there is nothing left to check about it.
  bool enter(DAG x, std::int32_t depth) {
    if (isImmediate(x)) return true;
    if (!VerifyPointer(x) || (depth != 0 && !isReadableObject(x))) {
      describeBadAddress(x, finding_);
      return false;
    }
    if (depth == 0 || !isNews(x, depth)) return true;
    if (!checkShape(x, finding_)) return false;
    if (namesAreLeaves_ && hasTag(x, NAME)) return true;
    push({x, 0, depth});
    return true;
  }

  // Notes that `x` is checked to `depth`; false when it has been before.
  bool isNews(DAG x, std::int32_t depth) {
    std::int32_t* known = nullptr;
    switch (visited_.insert(x.word, depth, &known)) {
      case WordMap::added: return true;
      case WordMap::present:
        if (*known < 0 || (depth >= 0 && *known >= depth)) return false;
        *known = depth;
        return true;
      case WordMap::outOfMemory: break;
    }
    outOfMemory();
  }

  void push(Step step) {
    if (used_ == capacity_) {
      std::uint32_t capacity = capacity_ == 0 ? 256 : 2 * capacity_;
      auto* steps = static_cast<Step*>(std::realloc(steps_, capacity * sizeof(Step)));
      if (steps == nullptr) outOfMemory();
      steps_ = steps;
      capacity_ = capacity;
    }
    steps_[used_++] = step;
  }

  [[noreturn]] void outOfMemory() {
    release();
    notimpl("ran out of memory");
  }

  bool namesAreLeaves_;
  WordMap visited_;
  Step* steps_ = nullptr;
  std::uint32_t capacity_ = 0;
  std::uint32_t used_ = 0;
  Finding finding_;
};

bool verifyAllEnabled = false;

// One walk for all roots: most of them lead to the same objects.
Walk* walkOfAll = nullptr;

void verifyRoot(DAG x) {
  if (x == DAG() || walkOfAll->check(x, -1)) return;
  walkOfAll->report();
  walkOfAll->release();
  notimpl("Verify");
}

}  // namespace

void (*verifyReport)(const char* message) = printReport;

const char* DagIDToName(Word id) {
  Word number = id >= 0x4000000 ? id >> 26 : id;
  return number > 0 && number <= tagCount ? tagFacts[number].name : nullptr;
}

int DagNameToID(const char* name) {
  for (int number = 1; number <= tagCount; ++number)
    if (std::strcmp(tagFacts[number].name, name) == 0) return number;
  _userror2("unknown data structure label %s", name);
}

bool VerifyPointer(DAG x) {
  if (!isObject(x)) return false;
  return x == static_hfloat || ((x.word & 3) == 0 && x.word >= lostorage && x.word <= historage);
}

bool VerifyLevels(DAG s, int depth) {
  Walk walk(false);
  bool valid = walk.check(s, depth);
  if (!valid) walk.report();
  walk.release();
  return valid;
}

StructureSize measureStructure(DAG x) {
  Walk walk(true);
  StructureSize size;
  size.valid = walk.check(x, -1);
  size.objects = walk.objects();
  walk.release();
  return size;
}

void VerifyOrDie(DAG x) {
  if (x != DAG() && !Verify(x)) notimpl("Verify");
}

void EnableVerifyAll() { verifyAllEnabled = true; }

void VerifyAll() {
  if (!verifyAllEnabled) return;
  Walk walk(false);
  walkOfAll = &walk;
  for (DAG table : {nametab, simpltab, strtab, aliastab}) verifyRoot(table);
  forEachRoot(verifyRoot);
  walk.release();
}

}  // namespace korel
