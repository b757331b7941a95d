// Archives: members written and read through the byte layer and the tool, rebuilds, and damaged files.

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <unistd.h>

#include "kernel_fixture.h"
#include "library/archive/archive_files.h"
#include "library/archive/archive_index.h"
#include "library/archive/march.h"
#include "library/archive/member_io.h"
#include "library/repository/side_file.h"
#include "library/temporary_directory.h"

namespace korel::test {
namespace {

std::string march(const std::string& rest) { return say(("iolib(31, " + rest + ");").c_str()); }
std::string inQuotes(const std::string& text) { return "\"" + text + "\""; }

class Archive : public ::testing::Test {
 protected:
  void SetUp() override {
    say(("saved := [libname]: libname := " + inQuotes(dir.path()) + ":").c_str());
    say(("libname := " + inQuotes(dir.path()) + ":").c_str());
  }
  void TearDown() override {
    FlushDotMFileCache();
    say("libname := op(saved):");
  }
  std::string create(int n = 100) { return march("\"create\", " + inQuotes(dir.path()) + ", " + std::to_string(n)); }
  std::string run(const std::string& command, const std::string& rest = "") {
    return march(inQuotes(command) + ", " + inQuotes(dir.path()) + (rest.empty() ? "" : ", " + rest));
  }
  static std::string error(const std::string& text) { return "Error, " + text; }

  bool write(const std::string& member, const std::string& bytes) {
    char buffer[4096];
    AllocWrite(dir.file(member).c_str(), buffer, sizeof buffer);
    for (char c : bytes)
      if (!WriteByte(static_cast<unsigned char>(c))) return false;
    DeallocWrite();
    return true;
  }
  std::string read(const std::string& member) {
    char buffer[4096];
    ReadFailOK();
    if (!AllocRead(dir.file(member).c_str(), buffer, sizeof buffer)) return "absent";
    std::string bytes;
    for (int c; (c = ReadByte()) >= 0;) bytes += static_cast<char>(c);
    DeallocRead();
    return bytes;
  }

  TemporaryDirectory dir;
};

TEST_F(Archive, HashIsTheToldOne) {
  EXPECT_EQ(archiveHash(""), 0u);
  EXPECT_EQ(archiveHash("a"), 97u);
  EXPECT_EQ(archiveHash("ab.m"), ((97u * 131 + 98) * 131 + 46) * 131 + 109);
}

TEST_F(Archive, CreateMakesEmptyBlocks) {
  EXPECT_EQ(create(), "");
  EXPECT_EQ(bytesOf(dir.file("korel.lib")), std::string(1, '\1'));
  EXPECT_EQ(bytesOf(dir.file("korel.ind")), std::string(5 * 64 * 128, '\0'));  // 200 entries, 4 blocks, the prime 5
  EXPECT_EQ(create(), error("there is already an archive in \"" + dir.path() + "\""));
  EXPECT_EQ(run("list"), "[]");
}

TEST_F(Archive, RefusalsOfTheTool) {
  EXPECT_EQ(march("\"list\""), error("command and archive directory name required"));
  EXPECT_EQ(run("burn"), error("unrecognized march command burn"));
  EXPECT_EQ(run("list"), error("there is no existing archive in \"" + dir.path() + "\""));
  EXPECT_EQ(create(0), error("table size must be between 1 and 999999"));
  EXPECT_EQ(run("create"), error("positive integer argument expected for create command, but received nothing"));
  EXPECT_EQ(run("create", "-5"), error("positive integer argument expected for create command, but received -5"));
  EXPECT_EQ(run("create", "x"), error("positive integer argument expected for create command, but received x"));
  EXPECT_EQ(run("create", "1000000"), error("table size must be between 1 and 999999"));
  create();
  EXPECT_EQ(run("list", "3"), error("no additional arguments expected for list command"));
  EXPECT_EQ(run("add"), error("file and member name(s) expected for add command"));
  EXPECT_EQ(run("add", "\"f\""), error("there must be a member name for each file name"));
  EXPECT_EQ(run("add", "3, \"m\""), error("\"3\" is not a valid file name"));
  EXPECT_EQ(run("add", "\"f\", 3"), error("\"3\" is not a valid member name"));
  EXPECT_EQ(run("extract"), error("member and file name(s) expected for extract command"));
  EXPECT_EQ(run("extract", "\"m\""), error("there must be a file name for each member name"));
  EXPECT_EQ(run("delete"), error("member name(s) expected for delete command"));
  std::string longest(115, 'm');
  EXPECT_EQ(run("add", "\"/nowhere\", " + inQuotes(longest + "m")),
            error("member name \"" + longest + "m\" is longer than 115 characters"));
  EXPECT_EQ(run("add", "\"/nowhere\", " + inQuotes(longest)),
            "Warning, file \"/nowhere\" could not be opened, skipping");
}

TEST_F(Archive, MembersThroughTheTool) {
  create();
  writeBytes(dir.file("one"), "first");
  writeBytes(dir.file("two"), "other bytes");
  std::string one = inQuotes(dir.file("one")), two = inQuotes(dir.file("two"));
  EXPECT_EQ(run("add", one + ", \"a.m\", " + two + ", \"b.m\""), "");
  EXPECT_EQ(run("add", one + ", \"a.m\""), "Warning, member \"a.m\" already in archive, skipping");
  EXPECT_EQ(run("update", one + ", \"c.m\""), "Warning, member \"c.m\" not found in archive, skipping");
  EXPECT_EQ(read("a.m") + "|" + read("b.m") + "|" + read("c.m"), "first|other bytes|absent");
  EXPECT_EQ(run("update", one + ", \"b.m\""), "");  // in place, since it is shorter
  EXPECT_EQ(bytesOf(dir.file("korel.lib")), "\1firstfirst bytes");
  EXPECT_EQ(read("b.m"), "first");
  EXPECT_EQ(run("extract", "\"b.m\", " + inQuotes(dir.file("out"))), "");
  EXPECT_EQ(bytesOf(dir.file("out")), "first");
  EXPECT_EQ(run("delete", "\"a.m\", \"z.m\""), "Warning, member \"z.m\" not found in archive, skipping");
  EXPECT_EQ(read("a.m"), "absent");
  EXPECT_EQ(run("add", two + ", \"a.m\""), "");
  EXPECT_EQ(read("a.m"), "other bytes");
  EXPECT_EQ(run("pack"), "");
  EXPECT_EQ(bytesOf(dir.file("korel.lib")).size(), 1u + 5 + 11);
  EXPECT_EQ(read("a.m") + "|" + read("b.m"), "other bytes|first");
  EXPECT_EQ(
      say(("map(m -> m[1], {op(iolib(31, \"list\", " + inQuotes(dir.path()) + "))}) = {\"a.m\", \"b.m\"};").c_str()),
      "{\"a.m\", \"b.m\"} = {\"a.m\", \"b.m\"}");
}

TEST_F(Archive, PlainFilesAndMembersShadowEachOther) {
  create();
  EXPECT_TRUE(write("x.m", "member"));
  EXPECT_EQ(bytesOf(dir.file("korel.lib")), "\1member");
  writeBytes(dir.file("x.m"), "plain");
  EXPECT_EQ(read("x.m"), "plain");
  EXPECT_TRUE(write("x.m", "plain again"));
  EXPECT_EQ(bytesOf(dir.file("x.m")), "plain again");
  EXPECT_EQ(bytesOf(dir.file("korel.lib")), "\1member");
}

// Random writes against a map, over so small an index that it fills, is rebuilt, and the data are packed.
TEST_F(Archive, RandomWritesAgainstAMap) {
  create(1);
  std::mt19937 random(7);
  std::map<std::string, std::string> model;
  for (int i = 0; i < 1200; ++i) {
    std::string name = "n" + std::to_string(random() % 500) + ".m";
    std::string bytes(random() % 60, static_cast<char>('a' + random() % 26));
    if (random() % 10 == 0 && model.count(name) != 0) {
      EXPECT_EQ(run("delete", inQuotes(name)), "");
      model.erase(name);
    } else {
      ASSERT_TRUE(write(name, bytes));
      model[name] = bytes;
    }
    if (i % 300 == 299) {
      EXPECT_NE(run(i % 600 == 599 ? "pack" : "reindex").substr(0, 5), "Error");
    }
  }
  for (const auto& [name, bytes] : model) ASSERT_EQ(read(name), bytes) << name;
  EXPECT_EQ(read("nowhere.m"), "absent");
  std::string told = run("reindex");
  EXPECT_EQ(told.substr(0, told.find(',')), std::to_string(model.size()));
  for (const auto& [name, bytes] : model) ASSERT_EQ(read(name), bytes) << name;
}

TEST_F(Archive, DamagedFilesAreToldOf) {
  create();
  write("x.m", "K6R0\nI\"xG6\"\n");
  FlushDotMFileCache();
  std::string data = bytesOf(dir.file("korel.lib")), index = bytesOf(dir.file("korel.ind"));
  writeBytes(dir.file("korel.lib"), "\2" + data.substr(1));
  EXPECT_EQ(say("x;"), error("invalid entry size byte (2) in archive"));
  FlushDotMFileCache();
  writeBytes(dir.file("korel.lib"), "");
  EXPECT_EQ(run("list"), error("failed to read archive index entry size byte"));
  writeBytes(dir.file("korel.lib"), data);
  FlushDotMFileCache();
  writeBytes(dir.file("korel.ind"), index.substr(0, 100));
  EXPECT_EQ(errorOf([&] { read("x.m"); }), "archive index has zero length");
  FlushDotMFileCache();
  // Random bytes: never more than a message.
  std::mt19937 random(11);
  for (int round = 0; round < 60; ++round) {
    std::string damaged = index;
    for (int k = 0; k < 200; ++k) damaged[random() % damaged.size()] = static_cast<char>(random());
    writeBytes(dir.file("korel.ind"), damaged);
    FlushDotMFileCache();
    errorOf([&] { read("x.m"); });
    for (const char* command : {"list", "pack", "reindex", "gc"}) run(command);
    ResetDotMIO();
    writeBytes(dir.file("korel.lib"), data);
  }
}

// What a rebuild that was killed between its two renames left behind is readable at once, and completed by the next
// writer; what it left before them is removed.
TEST_F(Archive, KilledRebuildsAreCompletedOrRemoved) {
  create();
  write("a.m", "old");
  write("b.m", "second");
  run("delete", "\"a.m\"");
  std::string data = bytesOf(dir.file("korel.lib")), index = bytesOf(dir.file("korel.ind"));
  run("pack");
  std::string packedIndex = bytesOf(dir.file("korel.ind"));
  // Between the renames: the data are in place, the index still has its temporary name.
  writeBytes(dir.file("lerok.ind"), packedIndex);
  ASSERT_EQ(std::system(("mv " + dir.file("korel.ind") + " " + dir.file("x") + "; cp " + dir.file("x") + " " +
                         dir.file("korel.ind"))
                            .c_str()),
            0);
  writeBytes(dir.file("korel.ind"), index);
  EXPECT_EQ(read("b.m"), "second");
  write("c.m", "third");
  EXPECT_EQ(read("b.m") + "|" + read("c.m"), "second|third");
  EXPECT_NE(access(dir.file("lerok.ind").c_str(), F_OK), 0);
  // Before them: both temporaries are incomplete.
  writeBytes(dir.file("lerok.lib"), "\1half");
  writeBytes(dir.file("lerok.ind"), "rubbish");
  EXPECT_EQ(read("b.m"), "second");
  write("d.m", "fourth");
  EXPECT_EQ(read("b.m") + "|" + read("d.m"), "second|fourth");
  EXPECT_NE(access(dir.file("lerok.lib").c_str(), F_OK), 0);
}

// ---- the side file

TEST(SideFile, NumbersAndWaste) {
  TemporaryDirectory dir;
  const char* d = dir.path().c_str();
  EXPECT_EQ(CreateUniqueObjectNumber(d), 1u);
  std::string bytes = bytesOf(dir.file("korel.rep"));
  ASSERT_EQ(bytes.size(), 264u);
  EXPECT_EQ(bytes.substr(0, 4), std::string("\2\0\0\0", 4));
  EXPECT_EQ(bytes.substr(4, dir.path().size() + 1), dir.path() + '\0');
  EXPECT_EQ(CreateUniqueObjectNumber(d), 2u);
  EXPECT_EQ(UpdateWastedSpace(d, 10), 10u);
  EXPECT_EQ(UpdateWastedSpace(d, 5), 15u);
  EXPECT_EQ(UpdateWastedSpace(d, 0), 0u);
  EXPECT_EQ(CreateUniqueObjectNumber(d), 3u);
  writeBytes(dir.file("korel.rep"), "short");
  EXPECT_EQ(CreateUniqueObjectNumber(d), 0u);
  EXPECT_EQ(UpdateWastedSpace(d, 7), 7u);
  EXPECT_EQ(CreateUniqueObjectNumber("/nowhere/at/all"), 0u);
  TemporaryDirectory other;
  EXPECT_EQ(UpdateWastedSpace(other.path().c_str(), 4), 4u);
  EXPECT_EQ(CreateUniqueObjectNumber(other.path().c_str()), 1u);
}

}  // namespace
}  // namespace korel::test
