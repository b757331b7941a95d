// The command `gc` of the archive tool: objects without a name of their own that no member leads to any more.
//
// Members called ":-<number>.m" are such objects. Every other member is a root; a member leads to an object when its
// bytes hold the object's name as the record format writes it, a length character, ":-" and the digits. The scan
// needs no reader: what looks like a name by chance only keeps an object alive.

#include "library/archive/march.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/archive/archive_index.h"
#include "library/repository/side_file.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "store/word_map.h"

namespace korel {

namespace {

struct Member {
  IndexEntry entry;
  std::int64_t position;
  std::uint32_t number;  // of an object; 0 for a member with a name of its own
  bool reached;
};

struct Collecting {
  MarchRun& run;
  Member* members;
  std::int32_t count, capacity;
  WordMap byNumber;    // number to its member
  std::int32_t* open;  // members reached and not yet scanned
  std::int32_t openCount;
};

// The number in ":-<digits>.m", or 0.
std::uint32_t objectNumber(const char* name) {
  if (name[0] != ':' || name[1] != '-') return 0;
  std::uint64_t number = 0;
  const char* at = name + 2;
  for (; *at >= '0' && *at <= '9' && number <= 0xffffffff; ++at)
    number = 10 * number + static_cast<std::uint64_t>(*at - '0');
  return at > name + 2 && std::strcmp(at, ".m") == 0 && number <= 0xffffffff ? static_cast<std::uint32_t>(number) : 0;
}

void takeMember(void* context, const char* text, std::int64_t position) {
  auto& c = *static_cast<Collecting*>(context);
  const int size = c.run.pair.entrySize;
  if (c.count == c.capacity) {
    c.capacity = c.capacity == 0 ? 256 : 2 * c.capacity;
    auto* members =
        static_cast<Member*>(std::realloc(c.members, static_cast<std::size_t>(c.capacity) * sizeof(Member)));
    if (members == nullptr) notimpl("out of memory allocating hash table");
    c.run.memory = c.members = members;
  }
  char name[largestEntry + 1] = "";
  std::memcpy(name, text, static_cast<std::size_t>(size));
  Member member{IndexEntry(), position, objectNumber(name), false};
  if (!readEntry(text, size, fileSize(c.run.pair.data), member.entry)) member.entry.length = 0;
  if (member.number != 0) c.byNumber.insert(member.number, c.count);
  c.members[c.count++] = member;
}

void reach(Collecting& c, std::int32_t i) {
  if (c.members[i].reached) return;
  c.members[i].reached = true;
  c.open[c.openCount++] = i;
}

// Finds the names of objects in a stream of bytes.
class NameScanner {
 public:
  /// True when `ch` completes a name, whose number `number()` tells.
  bool take(int ch) {
    if (ch == ' ' || (ch >= 9 && ch <= 13)) return false;  // lines break anywhere
    switch (state_) {
      case State::start: return begin(ch);
      case State::colon:
        if (ch == ':') return state_ = State::minus, false;
        return begin(ch);
      case State::minus:
        if (ch == '-') return state_ = State::digits, number_ = 0, false;
        return begin(ch);
      case State::digits:
        if (ch < '0' || ch > '9') return begin(ch);
        number_ = 10 * number_ + static_cast<std::uint64_t>(ch - '0');
        if (--left_ > 0) return false;
        state_ = State::start;
        return number_ <= 0xffffffff;
    }
    return false;
  }
  std::uint32_t number() const { return static_cast<std::uint32_t>(number_); }

 private:
  enum class State { start, colon, minus, digits };
  // A character that breaks a name may begin another.
  bool begin(int ch) {
    if (ch >= '$' && ch <= '-') {
      left_ = ch - 35;
      state_ = State::colon;
    } else {
      state_ = State::start;
    }
    return false;
  }

  State state_ = State::start;
  int left_ = 0;
  std::uint64_t number_ = 0;
};

constexpr std::int64_t headerLength = 5;

void scanMember(Collecting& c, std::int32_t i) {
  NameScanner scanner;
  char buffer[65536];
  const IndexEntry entry = c.members[i].entry;
  for (std::int64_t done = headerLength; done < entry.length;) {
    std::int64_t piece = std::int64_t{entry.length} - done;
    if (piece > static_cast<std::int64_t>(sizeof buffer)) piece = sizeof buffer;
    if (readAt(c.run.pair.data, buffer, piece, entry.offset + done) != piece) return;
    for (std::int64_t k = 0; k < piece; ++k)
      if (scanner.take(static_cast<unsigned char>(buffer[k])))
        if (const std::int32_t* member = c.byNumber.find(scanner.number())) reach(c, *member);
    done += piece;
  }
}

void releaseMap(const char*) { reinterpret_cast<Collecting*>(errorProcParam)->byNumber.release(); }

}  // namespace

DAG marchCollect(MarchRun& run) {
  if (memberCount(run.arguments) != 0)
    KernelException("no additional arguments expected for %1 command", strinstall(run.command));
  run.file = enterDirectory(run.place.directory, DirectoryUse::collect);
  openArchiveForChange(run, "index could not be opened for updating");
  Collecting c{run, nullptr, 0, 0, WordMap(), nullptr, 0};
  PushParamErrorProc(releaseMap, &c);
  forEachEntry(run, takeMember, &c);
  c.open = static_cast<std::int32_t*>(std::malloc(static_cast<std::size_t>(c.count + 1) * sizeof *c.open));
  if (c.open == nullptr) notimpl("out of memory allocating object reference table");
  for (std::int32_t i = 0; i < c.count; ++i)
    if (c.members[i].number == 0) reach(c, i);
  while (c.openCount > 0) scanMember(c, c.open[--c.openCount]);
  std::free(c.open);
  std::int64_t dead = 0, freed = 0;
  for (std::int32_t i = 0; i < c.count; ++i) {
    if (c.members[i].reached) continue;
    char entry[largestEntry] = {tombstone};
    if (writeAt(run.pair.index, entry, run.pair.entrySize, c.members[i].position) != run.pair.entrySize)
      KernelException("error while updating index");
    ++dead;
    freed += c.members[i].entry.length;
  }
  PopErrorProc();
  c.byNumber.release();
  return simpl(newSequence({NewInteger(c.count), NewInteger(c.count - dead), NewInteger(freed)}));
}

}  // namespace korel
