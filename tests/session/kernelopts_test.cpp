#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "frame/environment.h"
#include "kernel_fixture.h"
#include "session/driver.h"
#include "session/kernelopts.h"
#include "store/allocator.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"

namespace korel {
namespace {

using test::say;

struct OptionCase {
  const char* call;
  const char* shown;
};

// Each row read, set and read again, and its own words for a failure. Settings that report show the
// value before.
TEST(KernelOpts, RowsReadSetAndRefuse) {
  const OptionCase cases[] = {
      {"kernelopts(ASSERT);", "false"},
      {"kernelopts(ASSERT=true);", "false"},
      {"kernelopts(assertlevel);", "1"},
      {"kernelopts(assertlevel=2);", "1"},
      {"kernelopts(ASSERT);", "true"},
      {"kernelopts(ASSERT=false);", "true"},
      {"kernelopts(ASSERT=1);", "Error, ASSERT option must be set to a boolean value"},
      {"kernelopts(assertlevel=3);", "Error, assertlevel must be 0, 1, or 2"},
      {"kernelopts(assertlevel=true);", "Error, assertlevel must be 0, 1, or 2"},
      {"kernelopts(cpulimit=-1);", "Error, cpulimit must have a positive integer value"},
      {"kernelopts(cpulimit=2.5);", "Error, cpulimit must have a positive integer value"},
      {"kernelopts(datalimit=x);", "Error, datalimit must have a positive integer value"},
      {"kernelopts(stacklimit=-5);", "Error, stacklimit must have a positive integer value"},
      {"kernelopts(dagtag=27);", "EXPSEQ"},
      {"kernelopts(dagtag=7*16^7);", "LIST"},
      {"kernelopts(dagtag=-7*16^7);", "Error, invalid data structure tag"},
      {"kernelopts(dagtag=16^8 + 5);", "Error, invalid data structure tag"},
      {"kernelopts(dagtag=EXPSEQ);", "27"},
      {"kernelopts(dagtag=59);", "Error, invalid data structure tag"},
      {"kernelopts(dagtag=2^70);", "Error, invalid data structure tag"},
      {"kernelopts(dagtag=0);", "Error, invalid data structure tag"},
      {"kernelopts(dagtag=NOSUCHTAG);", "Error, unknown data structure label NOSUCHTAG"},
      {"kernelopts(dagtag=\"x\");", "Error, name or integer required"},
      {"kernelopts(dagtag);", "Error, name or integer required"},
      {"kernelopts(dirsep);", "\"/\""},
      {"kernelopts(gcfreq=0);", "Error, gcfreq option must be set to a positive integer"},
      {"kernelopts(gcfreq=x);", "Error, gcfreq option must be set to a positive integer"},
      {"kernelopts(gcfreq=2000000000);", "Error, integer too large in context"},
      {"kernelopts(gcfreq=2^40);", "Error, integer too large in context"},
      {"kernelopts(inline=false);", "true"},
      {"kernelopts(inline=true);", "false"},
      {"kernelopts(inline=2);", "Error, inline must have a boolean value"},
      {"kernelopts(level);", "2"},
      {"kernelopts(maxdigits);", "268435448"},
      {"kernelopts(maximmediate);", "1073741823"},
      {"kernelopts(platform);", "\"unix\""},
      {"kernelopts(printbytes=true);", "false"},
      {"kernelopts(printbytes=false);", "true"},
      {"kernelopts(printbytes=0);", "Error, printbytes option must be set to a boolean"},
      {"kernelopts('printlevel'=5);", "1"},
      {"printlevel;", "5"},
      {"kernelopts('printlevel'=1);", "5"},
      {"kernelopts('printlevel'=-1);", "Error, printlevel must be set to a positive integer"},
      {"kernelopts(profile=1);", "Error, profile option must be set to a boolean value"},
      {"kernelopts(profile);", "false"},
      {"kernelopts(unread=3);", "Error, name required"},
      {"kernelopts(wordsize);", "32"},
      {"kernelopts(version);", "Korel 6.01, SGI MIPS UNIX, Nov 24 2026"},
      {"kernelopts(3);", "Error, unrecognized kernelopts option name, 3"},
      {"kernelopts(3=4);", "Error, unrecognized kernelopts option name, 3"},
      {"kernelopts(Version);", "Error, unrecognized option name for kernelopts, Version"},
      {"kernelopts(nonsense=4);", "Error, unrecognized option name for kernelopts, nonsense"},
      {"kernelopts();", ""},
      {"kernelopts(wordsize, maximmediate);", "32, 1073741823"},
  };
  for (const OptionCase& c : cases) EXPECT_EQ(say(c.call), c.shown) << c.call;
}

TEST(KernelOpts, CountersCannotBeSet) {
  for (const char* name :
       {"bytesalloc", "bytesused", "cputime", "dirsep", "gcbytesavail", "gcbytesreturned", "gctimes", "gcwordsavail",
        "gcwordsreturned", "level", "maxdigits", "maximmediate", "memusage", "platform", "version", "wordsize"}) {
    std::string call = std::string("kernelopts(") + name + "=1);";
    EXPECT_EQ(say(call.c_str()), std::string("Error, kernelopts cannot set ") + name + " value");
  }
}

// An assignment that comes before a failing one stays.
TEST(KernelOpts, EarlierArgumentsStayDone) {
  EXPECT_EQ(say("kernelopts(assertlevel=2, nonsense);"), "Error, unrecognized option name for kernelopts, nonsense");
  EXPECT_EQ(say("kernelopts(assertlevel=0);"), "2");
}

// The counters agree with one another, past 4 gigabytes as well.
TEST(KernelOpts, CountersAreConsistent) {
  EXPECT_EQ(say("evalb(kernelopts(gcbytesavail) = 4*kernelopts(gcwordsavail));"), "true");
  EXPECT_EQ(say("evalb(kernelopts(gcbytesreturned) = 4*kernelopts(gcwordsreturned));"), "true");
  std::int64_t before = ocused;
  ocused = 25;
  std::string used = say("kernelopts(bytesused);");
  ocused = before;
  std::int64_t words = std::atoll(used.c_str()) / 4 - 2500000000;
  EXPECT_GE(words, 0) << used;
  EXPECT_LE(words, cused) << used;
  std::int64_t times = totgcs;
  say("gc();");
  EXPECT_EQ(say("kernelopts(gctimes);"), std::to_string(times + 1));
}

// The next check after a new interval collects.
TEST(KernelOpts, FrequencyTakesEffectAtOnce) {
  std::int64_t interval = incrgc, times = totgcs;
  EXPECT_EQ(say("kernelopts(gcfreq=200000);"), std::to_string(interval));
  say("1;");
  EXPECT_GT(totgcs, times);
  EXPECT_EQ(say("kernelopts(gcfreq);"), "200000");
  // And it is followed to the letter, also where little dies.
  const std::int64_t used = wordsUsed();
  times = totgcs;
  say("held := [seq([k, f(k)^2], k = 1 .. 20000)]: for i to 300000 do [i, g(i)] od:");
  say("for i to 300000 do [i, g(i)] od:");
  EXPECT_NEAR(static_cast<double>(totgcs - times), static_cast<double>(wordsUsed() - used) / 200000, 5);
  say("held := 'held':");
  std::string back = "kernelopts(gcfreq=" + std::to_string(interval) + "):";
  say(back.c_str());
}

TEST(KernelOpts, UnreadForgetsAName) {
  say("forgotten := 3:");
  EXPECT_EQ(say("kernelopts(unread='forgotten');"), "");
  EXPECT_NE(controlWord(naminstall("forgotten")) & deferredBit, 0u);
  EXPECT_EQ(say("forgotten;"), "forgotten");
}

TEST(KernelOpts, LimitsReachTheSystem) {
  test::ChildResult child = test::inChild([] {
    std::printf("[%s]", say("kernelopts(cpulimit=1000);").c_str());
    std::printf("[%s]", say("kernelopts(stacklimit=4096);").c_str());
    std::printf("%s;", say("kernelopts(cpulimit, stacklimit);").c_str());
    rlimit cpu{}, stack{};
    getrlimit(RLIMIT_CPU, &cpu);
    getrlimit(RLIMIT_STACK, &stack);
    std::printf("%ld %ld %ld", static_cast<long>(cpu.rlim_cur), static_cast<long>(cpu.rlim_max),
                static_cast<long>(stack.rlim_cur));
  });
  EXPECT_EQ(child.output, "[][]1000, 4096;1000 1001 4194304");
}

TEST(KernelOpts, TimeHasThreeDecimals) {
  if (say("kernelopts(cputime);") != "0") {
    EXPECT_EQ(say("op(2, kernelopts(cputime));"), "-3");
  }
}

}  // namespace
}  // namespace korel
