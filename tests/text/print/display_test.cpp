// Display preparation: printing procedures, tables by name and by value, objects left alone.

#include <gtest/gtest.h>

#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/display.h"
#include "text/printed_text.h"

namespace korel::test {
namespace {

// Gives `name` a value for the time of a test.
class Assigned {
 public:
  Assigned(const char* name, DAG value) : name_(naminstall(name)), before_(name_[1]) { name_[1] = value; }
  ~Assigned() { name_[1] = before_; }
  DAG name() const { return name_; }

 private:
  DAG name_, before_;
};

DAG tableWith(DAG key, DAG value) {
  DAG table = new4(TABLE, null, ini("false"), newhashtab(4));
  if (key) hashinsert(key.word, value, table[3]);
  return simpl(table);
}

TEST(Display, ObjectsWithNothingToReplaceStayTheSame) {
  for (const char* source : {"x", "3", "1.5", "[x+y^2*f(z), {a, b}, \"s\"]", "x = 1 .. 2", "'f(x)'", "proc (x) x end",
                             "PLOT(f(x))", "a.b.c[1]::integer"}) {
    DAG x = parsed(source);
    EXPECT_EQ(prtprepro(x, DisplayOf::result), x) << source;
    EXPECT_EQ(lprtprepro(newSequence({x}))[1], x) << source;
  }
}

TEST(Display, CallsGoToTheirPrintingProcedure) {
  Assigned procedure("print/showf", parsed("proc (x) shown(x, nargs) end"));
  EXPECT_EQ(text(prtprepro(parsed("showf(a)"), DisplayOf::result)), "shown(a,1)");
  EXPECT_EQ(text(prtprepro(parsed("[showf(a), g(showf(b, c)) + 1]"), DisplayOf::result)),
            "[shown(a,1), g(shown(b,2))+1]");
  EXPECT_EQ(text(prtprepro(parsed("showf[3](a)"), DisplayOf::result)), "shown(a,1)");
  EXPECT_EQ(text(prtprepro(parsed("y := showf(a)"), DisplayOf::result)), "y := shown(a,1)");
  Assigned nothing("print/shown", parsed("proc () NULL end"));
  EXPECT_EQ(text(prtprepro(parsed("shown(1)"), DisplayOf::result)), "shown(1)");
  // The data of a plot are not looked at.
  EXPECT_EQ(text(prtprepro(parsed("PLOT(showf(a))"), DisplayOf::result)), "PLOT(showf(a))");
}

TEST(Display, SharedPartsAreShownOnce) {
  Assigned procedure("print/countf", parsed("proc (x) global counter; counter := counter+1; seen(x) end"));
  Assigned counter("counter", cons0);
  EXPECT_EQ(text(prtprepro(parsed("[countf(a), h(countf(a)), countf(b)]"), DisplayOf::result)),
            "[seen(a), h(seen(a)), seen(b)]");
  EXPECT_EQ(text(counter.name()[1]), "2");
}

TEST(Display, NamesShowTheirValueAtTheTopOnly) {
  DAG table = tableWith(cons1, naminstall("v")), procedure = parsed("proc (x) x end");
  Assigned t("tname", table), f("fname", procedure), n("nname", cons1);
  EXPECT_EQ(prtprepro(t.name(), DisplayOf::result), t.name());
  DAG arguments = simpl(newSequence({t.name(), f.name(), new2(LIST, newSequence({t.name()}))}));
  EXPECT_EQ(text(prtprepro(arguments, DisplayOf::arguments)), "table([(1)=v]), proc (x) x end proc, [tname]");
  EXPECT_EQ(text(lprtprepro(arguments)), "table([(1)=v]), proc (x) x end proc, [tname]");
  EXPECT_EQ(lprtprepro(newSequence({n.name()}))[1], n.name());
}

TEST(Display, TablesShowPreparedEntries) {
  Assigned procedure("print/showf", parsed("proc (x) shown(x) end"));
  DAG plain = tableWith(cons1, naminstall("v"));
  EXPECT_EQ(prtprepro(plain, DisplayOf::result), plain);
  EXPECT_EQ(text(prtprepro(tableWith(cons1, parsed("showf(a)")), DisplayOf::result)), "table([(1)=shown(a)])");
  EXPECT_EQ(text(prtprepro(tableWith(DAG(), DAG()), DisplayOf::result)), "table()");
  DAG array = new4(TABLE, null, new3(RANGE, cons1, Newint(2)), newhashtab(4));
  EXPECT_EQ(text(prtprepro(simpl(array), DisplayOf::result)), "array(1 .. 2)");
}

TEST(Display, PrintingProceduresRunUntracedAndErrorsRestoreTheLevel) {
  Frame* frame = Environment->frame;
  std::int32_t before = frame->printLevel;
  frame->printLevel = 5;
  {
    Assigned failing("print/failf", parsed("proc () error \"no %1\", 1 end"));
    EXPECT_EQ(errorOf([] { prtprepro(parsed("failf(a)"), DisplayOf::result); }), "no 1");
    EXPECT_EQ(frame->printLevel, 5);
  }
  prtprepro(parsed("g(a)"), DisplayOf::result);
  EXPECT_EQ(frame->printLevel, 5);
  frame->printLevel = before;
}

TEST(Display, KernelRecordsAreAnInternalError) {
  EXPECT_EQ(errorOf([] { prtprepro(parsed("if a then b fi"), DisplayOf::result); }), "in prtprepro1");
  EXPECT_EQ(errorOf([] { lprtprepro(newSequence({newhashtab(4)})); }), "in lprtprepro1");
}

}  // namespace
}  // namespace korel::test
