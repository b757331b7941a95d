#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

#include "kernel_fixture.h"
#include "session/interface.h"
#include "session/statement_reader.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {
namespace {

using test::text;

/// "ok", or the message with its parameters filled in.
std::string outcome(DAG result) {
  if (result == null) return "ok";
  if (!hasTag(result, ERROR)) return text(result);
  DAG members = result[1];
  DAG exception = newl2(lengthOf(members) + 1, EXPSEQ);
  exception[1] = cons0;
  for (Word i = 1; i < lengthOf(members); ++i) exception[i + 1] = members[i];
  return test::messageText(exception);
}

std::string set(InterfaceVariables& record, const char* name, const char* value) {
  return outcome(setinterface(newSequence({naminstall(name), test::parsed(value)}), record));
}
std::string get(InterfaceVariables& record, const char* name) {
  return outcome(getinterface(newSequence({naminstall(name)}), record));
}

std::string quotedText(int length) { return "\"" + std::string(length, 'q') + "\""; }

struct VariableCase {
  const char* name;
  std::string value;
  std::string result;     // of setting it
  std::string readsBack;  // afterwards
};

// Every variable: a value of each kind that it takes, the bounds, and its own words for a failure.
// A failure changes nothing.
TEST(Interface, VariablesTakeWhatTheirKindAllows) {
  const std::string notBoolean = " must be true or false";
  const std::string preplotRange = "preplot values must be in the range -128..255";
  const VariableCase cases[] = {
      {"ansi", "true", "ok", "true"},
      {"ansi", "1", "ansi" + notBoolean, "true"},
      {"echo", "4", "ok", "4"},
      {"echo", "5", "echo must be an integer in the range 0..4", "4"},
      {"errorbreak", "0", "ok", "0"},
      {"errorbreak", "-1", "errorbreak must be an integer in the range 0..2", "0"},
      {"errorcursor", "false", "ok", "false"},
      {"errorcursor", "\"true\"", "errorcursor" + notBoolean, "false"},
      {"indentamount", "2147483647", "ok", "2147483647"},
      {"indentamount", "2147483648", "indentamount must be an integer in the range 0..2147483647", "2147483647"},
      {"labelling", "false", "ok", "false"},
      {"labeling", "true", "ok", "true"},
      {"labelling", "3", "labelling" + notBoolean, "true"},
      {"labelwidth", "0", "ok", "0"},
      {"labelwidth", "x", "labelwidth must be an integer in the range 0..2147483647", "0"},
      {"latexwidth", "100", "ok", "100."},
      {"latexwidth", "5/2", "ok", "2.5"},
      {"latexwidth", "100.1", "latexwidth must be a number in the range 0...100.0", "2.5"},
      {"latexwidth", "w", "latexwidth must be a number in the range 0...100.0", "2.5"},
      {"longdelim", "false", "ok", "false"},
      {"plotdevice", "postscript", "ok", "ps"},
      {"plotdevice", "default", "ok", "char"},
      {"plotdevice", quotedText(23), "ok", std::string(23, 'q')},
      {"plotdevice", quotedText(24), "plotdevice must be a symbol or string of at most 23 characters",
       std::string(23, 'q')},
      {"plotoptions", quotedText(3000), "ok", std::string(3000, 'q')},
      {"plotoptions", "7", "plotoptions must be a symbol or string", std::string(3000, 'q')},
      {"plotoutput", quotedText(1023), "ok", std::string(1023, 'q')},
      {"plotoutput", quotedText(1024), "plotoutput must be a string or symbol of at most 1023 characters",
       std::string(1023, 'q')},
      {"preplot", "[1, -1, 255, -128]", "ok", "[1, 255, 255, 128]"},
      {"postplot", "[7]", "ok", "[7]"},
      {"preplot", "[256]", preplotRange, "[1, 255, 255, 128]"},
      {"preplot", "[-129]", preplotRange, "[1, 255, 255, 128]"},
      {"preplot", "[x]", "preplot must be a list of small integers", "[1, 255, 255, 128]"},
      {"preplot", "[2^40]", "preplot must be a list of small integers", "[1, 255, 255, 128]"},
      {"preplot", "7", "preplot must be a list of small integers", "[1, 255, 255, 128]"},
      {"preplot", "[0$81]", "preplot list can have at most 80 entries", "[1, 255, 255, 128]"},
      {"preplot", "[]", "ok", "[]"},
      {"prettyprint", "3", "ok", "3"},
      {"prettyprint", "true", "ok", "1"},
      {"prettyprint", "false", "ok", "0"},
      {"prettyprint", "4", "prettyprint must be an integer in the range 0..3", "0"},
      {"prompt", quotedText(127), "ok", std::string(127, 'q')},
      {"prompt", quotedText(128), "prompt must be a string or symbol of at most 127 characters", std::string(127, 'q')},
      {"quiet", "true", "ok", "true"},
      {"rtablesize", "infinity", "ok", "infinity"},
      {"rtablesize", "0", "ok", "0"},
      {"screenheight", "9999", "ok", "infinity"},
      {"screenheight", "0", "screenheight must be an integer in the range 1..9999, or infinity", "infinity"},
      {"screenwidth", "10", "ok", "10"},
      {"screenwidth", "9", "screenwidth must be an integer in the range 10..9999, or infinity", "10"},
      {"screenwidth", "infinity", "ok", "infinity"},
      {"showassumed", "2", "ok", "2"},
      {"showassumed", "infinity", "showassumed must be an integer in the range 0..2", "2"},
      {"verboseproc", "3", "ok", "3"},
      {"version", "1", "version cannot be set", "`Local kernel server test program`"},
      {"warnlevel", "0", "ok", "0"},
      {"nonsense", "1", "unknown interface variable, nonsense", "unknown interface variable, nonsense"},
  };
  InterfaceVariables record = defaultNerinVariables;
  record.plotoptions = nullptr;  // each record owns its text
  for (const VariableCase& c : cases) {
    if (std::strstr(c.value.c_str(), "$") != nullptr) {
      DAG body = newl2(82, EXPSEQ);
      for (Word i = 1; i < 82; ++i) body[i] = cons0;
      DAG list = new2(LIST, body);
      EXPECT_EQ(outcome(setinterface(newSequence({naminstall(c.name), list}), record)), c.result);
    } else {
      EXPECT_EQ(set(record, c.name, c.value.c_str()), c.result) << c.name << " = " << c.value;
    }
    EXPECT_EQ(get(record, c.name), c.readsBack) << c.name << " = " << c.value;
  }
}

TEST(Interface, ImaginaryUnitIsAnUnprotectedSymbol) {
  InterfaceVariables record = defaultNerinVariables;
  record.plotoptions = nullptr;  // each record owns its text
  EXPECT_EQ(outcome(setinterface(newSequence({naminstall("imaginaryunit"), sqrtm1}), record)), "ok");
  EXPECT_EQ(get(record, "imaginaryunit"), "I");
  EXPECT_EQ(set(record, "imaginaryunit", quotedText(79).c_str()), "ok");
  EXPECT_EQ(get(record, "imaginaryunit"), std::string(79, 'q'));
  const char* tooLong = "imaginaryunit must be a symbol or a string representing a symbol, of at most 79 characters";
  EXPECT_EQ(set(record, "imaginaryunit", quotedText(80).c_str()), tooLong);
  EXPECT_EQ(set(record, "imaginaryunit", "2"), tooLong);
  for (DAG attribute : {ini("protected"), newSequence({ini("constants"), ini("protected")})}) {
    DAG name = naminstall("guarded");
    name[2] = attribute;
    EXPECT_EQ(set(record, "imaginaryunit", "\"guarded\""),
              "the symbol `guarded` is protected and cannot be used for the imaginary unit");
    name[2] = null;
  }
  EXPECT_EQ(set(record, "imaginaryunit", "guarded"), "ok");
}

TEST(Interface, StreamCallsWantANameAndAValue) {
  InterfaceVariables record = defaultNerinVariables;
  record.plotoptions = nullptr;  // each record owns its text
  const char* wantsBoth = "INTERFACE_SET stream expects a name and value";
  DAG name = naminstall("echo");
  for (DAG wrong : {null, newSequence({name}), newSequence({cons1, cons1}), newSequence({name, cons1, cons1}), cons1})
    EXPECT_EQ(outcome(setinterface(wrong, record)), wantsBoth);
  for (DAG wrong : {null, newSequence({cons1}), newSequence({name, cons1}), DAG(name)})
    EXPECT_EQ(outcome(getinterface(wrong, record)), "INTERFACE_GET stream expects a name");
}

TEST(Interface, RecordsOwnTheirPlotOptions) {
  InterfaceVariables* first = newIFVars();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(setIFStringVar(&first->plotoptions, "portrait"), 0);
  EXPECT_EQ(setIFStringVar(&first->plotoptions, first->plotoptions + 4), 0);
  EXPECT_STREQ(first->plotoptions, "rait");
  EXPECT_EQ(setIFStringVar(nullptr, "x"), -1);
  EXPECT_EQ(setIFStringVar(&first->plotoptions, nullptr), 0);
  EXPECT_EQ(first->plotoptions, nullptr);
  EXPECT_EQ(first->screenwidth, defaultNerinVariables.screenwidth);
  deleteIFVars(first);
  deleteIFVars(nullptr);
}

// What the front end reported at the start is what it is told again.
TEST(Interface, RememberedSettingsAreSentAgain) {
  test::ChildResult child = test::inChild([] {
    test::FrontEnd frontEnd;
    frontEnd.variables.screenwidth = 60;
    std::strcpy(frontEnd.variables.prompt, "?? ");
    auto run = [&frontEnd](DAG (*body)()) { ReadStatement(body, test::receive, nullptr, &frontEnd); };
    run([]() -> DAG { return RememberInterface(), null; });
    frontEnd.variables = InterfaceVariables{};
    run([]() -> DAG { return ResetInterface(), null; });
    std::printf("%zu %d %s %d", frontEnd.streams.size(), frontEnd.variables.screenwidth, frontEnd.variables.prompt,
                defaultNerinVariables.screenwidth);
  });
  EXPECT_EQ(child.output, "46 60 ??  60");
}

}  // namespace
}  // namespace korel
