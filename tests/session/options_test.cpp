#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "frame/environment.h"
#include "kernel_fixture.h"
#include "library/search_path.h"
#include "session/driver.h"
#include "session/getopt.h"
#include "session/interface.h"
#include "session/options.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"

namespace korel {
namespace {

/// The words of a command line.
struct Words {
  std::vector<std::string> texts;
  std::vector<char*> pointers;
  explicit Words(std::vector<std::string> given) : texts(std::move(given)) {
    for (std::string& word : texts) pointers.push_back(word.data());
    pointers.push_back(nullptr);
  }
  int count() const { return static_cast<int>(texts.size()); }
  char** vector() { return pointers.data(); }
};

/// Starts a kernel in a process of its own, as the very first one, and prints the message or what
/// `observe` prints.
std::string start(std::vector<std::string> options, void (*observe)()) {
  options.insert(options.begin(), "korel");
  Words words(std::move(options));
  test::ChildResult child = test::inChild([&] {
    Environment = nullptr;  // as in a process that has just begun
    const char* message = InitializeKorel(words.count(), words.vector());
    if (message != nullptr) {
      std::printf("%s", message);
    } else {
      observe();
    }
  });
  return child.output;
}

struct OptionCase {
  std::vector<std::string> options;
  void (*observe)();
  const char* output;
};

void assertLevel() { std::printf("%d", optASSERT); }
void errorBreak() { std::printf("%d", defaultNerinVariables.errorbreak); }
void warnLevel() { std::printf("%d", defaultNerinVariables.warnlevel); }
void collection() {
  std::printf("%ld %ld %ld", static_cast<long>(nextgc), static_cast<long>(incrgc), static_cast<long>(incrgen));
}
void flags() { std::printf("%d %d %d", optnoinit, secureMode, defaultNerinVariables.quiet); }
void testMode() {
  std::printf("%d %s %d %d", printgcstatus, defaultNerinVariables.prompt, defaultNerinVariables.noStatus,
              defaultNerinVariables.echo);
}
void libraries() { std::printf("%s|%s", firstlibname, libraryText); }
void limits() {
  rlimit core{};
  getrlimit(RLIMIT_CORE, &core);
  std::printf("%ld %ld %ld %ld", static_cast<long>(korelLimitCPU), static_cast<long>(korelLimitData),
              static_cast<long>(korelLimitStack), static_cast<long>(core.rlim_cur));
}
void starts() {
  for (int i = 0; i < startListLength; ++i) std::printf("%c:%s ", startList[i].letter, startList[i].text);
}

// Every row of the table, with what it sets and each way to refuse it.
TEST(Options, EveryRowSetsItsSettingOrFailsWithItsMessage) {
  const std::string longName = "/" + std::string(300, 'x');
  const OptionCase cases[] = {
      {{}, assertLevel, "0"},
      {{"-a"}, assertLevel, "1"},
      {{"-A", "2"}, assertLevel, "2"},
      {{"-A0"}, assertLevel, "0"},
      {{"-A", "3"}, assertLevel, "korel: assertion level must be 0, 1, or 2"},
      {{"-A", "x"}, assertLevel, "korel: assertion level must be 0, 1, or 2"},
      {{"-b", "/tmp"}, libraries, "/tmp|/tmp"},
      {{"-b", "/usr/../tmp;/etc,/usr"}, libraries, "/tmp|/tmp,/etc,/usr"},
      {{"-b", "/tmp", "-b", "/usr"}, libraries, "/usr|/usr"},
      {{"-b", "/no/such/place"}, libraries, "korel: directory does not exist"},
      {{"-b", longName}, libraries, "korel: directory does not exist"},
      {{"-c", "x:=1", "-i", "file", "-cy"}, starts, "c:x:=1 i:file c:y "},
      {{"-e", "2"}, errorBreak, "2"},
      {{"-e", "-1"}, errorBreak, "korel: error break level must be 0, 1, or 2"},
      {{"-g", "99999999"}, collection, "99999999 99999999 146484"},
      {{"-g", "2048"}, collection, "2048 2048 3"},
      {{"-g", "0"}, collection, "korel: gc increment out of range"},
      {{"-g", "-1"}, collection, "korel: gc increment out of range"},
      {{"-g", "100000000"}, collection, "korel: gc increment out of range"},
      {{"-L", "/no/such/place"}, flags, "korel: could not open log file"},
      {{"-qsz"}, flags, "1 1 1"},
      {{"-D", "x", "-F", "-I", "y", "-l", "h", "-P", "-U", "z", "-s"}, flags, "1 0 0"},
      {{"-t"}, testMode, "0 #--> 1 0"},
      {{"-T", "10,,,"}, limits, "10 0 0 0"},
      {{"-T", "0,2000000,65,1"}, limits, "0 2048000000 66560 1024"},
      {{"-T", "1,2,3,4,5"}, limits, "korel: too many arguments for test limit"},
      {{"-T", ",100"}, limits, "korel: data size must be at least 1024k"},
      {{"-T", ",,63"}, limits, "korel: stack size must be at least 64k"},
      {{"-T", "x"}, limits, "korel: test limits must be nonnegative integers"},
      {{"-T", "-1"}, limits, "korel: test limits must be nonnegative integers"},
      {{"-T", "10,2000k"}, limits, "korel: test limits must be nonnegative integers"},
      {{"-T", ",9007199254740993"}, limits, "korel: test limits must be nonnegative integers"},
      {{"-w", "4"}, warnLevel, "4"},
      {{"-w", "5"}, warnLevel, "korel: warning level must be from 0 to 4"},
  };
  rlimit noCore{0, RLIM_INFINITY};
  getrlimit(RLIMIT_CORE, &noCore);
  noCore.rlim_cur = 0;
  setrlimit(RLIMIT_CORE, &noCore);
  for (const OptionCase& c : cases) {
    std::string line;
    for (const std::string& word : c.options) line += word + " ";
    EXPECT_EQ(start(c.options, c.observe), c.output) << line;
  }
}

TEST(Options, LibraryNamesAreBounded) {
  std::string list = "/tmp";
  while (list.size() < 250) list += ",/tmp";
  EXPECT_EQ(start({"-b", list}, libraries), "/tmp|" + list);
  EXPECT_EQ(start({"-b", list + ",/tmp,/tmp"}, libraries), "korel: library names too long");
}

TEST(Options, LibraryComesFromTheEnvironment) {
  setenv("KOREL", "/opt/k", 1);
  EXPECT_EQ(start({}, libraries), "/opt/k/lib|/opt/k/lib");
  setenv("KOREL", std::string(300, 'x').c_str(), 1);
  EXPECT_EQ(start({}, libraries), "korel: library names too long");
  unsetenv("KOREL");
  EXPECT_EQ(start({}, libraries), "/usr/local/korel/lib|/usr/local/korel/lib");
}

TEST(Options, LogOfLibraryReadsIsCreated) {
  char path[] = "/tmp/korel_option_XXXXXX";
  close(mkstemp(path));
  EXPECT_EQ(start({"-L", path}, [] { std::printf("%zd", write(logfiles, "read\n", 5)); }), "5");
  char text[8] = "";
  int file = open(path, O_RDONLY);
  EXPECT_EQ(read(file, text, sizeof text), 5);
  close(file);
  unlink(path);
}

// ---- start files

/// Starts a kernel whose first statement is `null`, with a home directory that holds a start file.
std::string startWithFiles(std::vector<std::string> options) {
  char home[] = "/tmp/korel_home_XXXXXX";
  EXPECT_NE(mkdtemp(home), nullptr);
  std::string startFile = std::string(home) + "/.korelinit", other = std::string(home) + "/other";
  std::FILE* file = std::fopen(startFile.c_str(), "w");
  std::fputs("homeread := 1: error \"in file\"; afterwards := 2:\n", file);
  std::fclose(file);
  file = std::fopen(other.c_str(), "w");
  std::fputs("otherread := 3:\n", file);
  std::fclose(file);
  setenv("HOME", home, 1);
  optnoinit = 0;  // the test program itself runs without start files
  for (std::string& option : options)
    if (option == "other") option = other;
  std::string output = start(options, [] {
    test::FrontEnd frontEnd;
    EvaluateDAG(null, test::receive, nullptr, 1, 0, &frontEnd);
    const std::string started = frontEnd.output;
    std::printf("%s%s", started.c_str(), test::sayTo(frontEnd, "homeread, afterwards, otherread, c;").c_str());
  });
  unlink(startFile.c_str());
  unlink(other.c_str());
  rmdir(home);
  return output;
}

// `-s` skips the files that are there by custom, and never those that the command line names. An
// error in one entry doesn't keep the next from running.
TEST(StartFiles, RunBeforeTheFirstStatement) {
  std::string started = startWithFiles({"-i", "other", "-c", "c := 4:"});
  EXPECT_EQ(started.substr(0, started.find("/tmp")), "Error, in file\nError, while reading `") << started;
  EXPECT_EQ(started.substr(started.rfind('\n') + 1), "1, afterwards, 3, 4") << started;
  EXPECT_EQ(startWithFiles({"-s", "-i", "other", "-c", "1/0", "-c", "c := 4"}),
            "Error, numeric exception: division by zero\nhomeread, afterwards, 3, 4");
  EXPECT_EQ(startWithFiles({"-s", "-c", "c := := 1", "-c", "c := 5;"}),
            "Error, incorrect syntax in parse: `:=` unexpected (8)\nhomeread, afterwards, "
            "otherread, 5");
}

// ---- the option reader

std::string lettersOf(std::vector<std::string> given, const char* options) {
  given.insert(given.begin(), "prog");
  Words words(std::move(given));
  moptrewind();
  std::string seen;
  int letter;
  while ((letter = mgetopt(words.count(), words.vector(), options, "prog", "")) != -1) {
    seen += static_cast<char>(letter);
    if (moptarg != nullptr) seen += "=" + std::string(moptarg);
    seen += " ";
  }
  return seen + std::to_string(moptind);
}

TEST(OptionReader, ReadsGroupsAndValues) {
  EXPECT_EQ(lettersOf({"-ab", "-cval", "-c", "val", "rest", "-a"}, "abc:"), "a b c=val c=val 5");
  EXPECT_EQ(lettersOf({"-abcval", "-a"}, "abc:"), "a b c=val a 3");
  EXPECT_EQ(lettersOf({"-a", "--", "-b"}, "ab"), "a 3");
  EXPECT_EQ(lettersOf({"-", "-a"}, "a"), "1");
  EXPECT_EQ(lettersOf({"-c", "-a"}, "ac:"), "c=-a 3");
  EXPECT_EQ(lettersOf({}, "a"), "1");
}

std::string usageOf(const char* program, const char* option) {
  Words words({program, option});
  test::ChildResult child = test::inChild([&] { readOptions(words.count(), words.vector()); });
  EXPECT_EQ(child.status, 1);
  return child.output;
}

TEST(OptionReader, AnythingElseShowsTheUsage) {
  const std::string line =
      "Usage: korel [-aFPqstz] [-A...] [-b...] [-c...] [-D...] [-e...] [-g...] [-I...] [-i...] "
      "[-L...] [-l...] [-T...] [-U...] [-w...]\n";
  for (const char* option : {"-x", "-:", "-g", "-ay"}) EXPECT_EQ(usageOf("/bin/korel", option), line);
  std::string withTable = usageOf("/bin/korelTTY", "-x");
  EXPECT_NE(withTable.find(" [file]\n-a\t\t\tturn on Assertions (equivalent to -A 1)\n"), std::string::npos)
      << withTable;
  EXPECT_NE(withTable.find("\n-T cpu,data,stack,core\tresource limiTs"), std::string::npos);
}

// ---- limits in force

TEST(Limits, StackIsBoundedByTheSmallerLimit) {
  rlimit limit{};
  getrlimit(RLIMIT_STACK, &limit);
  if (limit.rlim_cur == RLIM_INFINITY) GTEST_SKIP() << "the stack is unlimited";
  recordStackBounds();
  EXPECT_EQ(maxKorelStackSize, static_cast<std::int64_t>(limit.rlim_cur) - 32768);
  korelLimitStack = 100000;
  recordStackBounds();
  EXPECT_EQ(maxKorelStackSize, 100000 - 32768);
  korelLimitStack = 0;
  recordStackBounds();
  EXPECT_FALSE(stackExhausted());
}

TEST(Limits, ProcessorTimeEndsTheProcessWithAText) {
  test::ChildResult child = test::inChild([] {
    Words words({"korel", "-T", "1"});
    readOptions(words.count(), words.vector());
    raise(SIGXCPU);
  });
  EXPECT_EQ(child.output, "Execution stopped by CPU time exceeded.\n");
  EXPECT_EQ(child.status, 128 + SIGABRT);
}

// ---- directories

TEST(QualifyDirectory, KeepsTheWorkingDirectory) {
  char before[1024], after[1024];
  ASSERT_NE(getcwd(before, sizeof before), nullptr);
  EXPECT_STREQ(FullyQualifyDir("/usr/.."), "/");
  EXPECT_EQ(test::errorOf([] { FullyQualifyDir("no such directory"); }), "directory does not exist");
  ASSERT_NE(getcwd(after, sizeof after), nullptr);
  EXPECT_STREQ(before, after);
}

}  // namespace
}  // namespace korel
