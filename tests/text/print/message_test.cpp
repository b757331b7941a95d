// Parameter marks of messages.

#include <gtest/gtest.h>

#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/convert_text.h"
#include "text/print/message.h"
#include "text/printed_text.h"

namespace korel::test {
namespace {

std::string expanded(const char* text, std::initializer_list<DAG> parameters) {
  DAG exception = newl2(static_cast<Word>(3 + parameters.size()), EXPSEQ);
  exception[1] = cons0;
  exception[2] = strinstall(text);
  Word i = 3;
  for (DAG parameter : parameters) exception[i++] = parameter;
  return messageText(exception);
}

TEST(Message, MarksTakeTheirParameters) {
  DAG name = naminstall("a b"), list = new2(LIST, newSequence({strinstall("s"), name}));
  EXPECT_EQ(expanded("plain", {}), "plain");
  EXPECT_EQ(expanded("%1 and %2, again %1", {name, list}), "a b and [s, a b], again a b");
  EXPECT_EQ(expanded("all: %0.", {cons1, name, strinstall("x")}), "all: 1, a b, x.");
  EXPECT_EQ(expanded("all: %0.", {}), "all: .");
  EXPECT_EQ(expanded("100%% of %1%", {cons1}), "100% of 1%");
  EXPECT_EQ(expanded("`%1` %x %3", {cons1, cons0}), "`1` %x %3");
}

TEST(Message, Ordinals) {
  struct Row {
    int n;
    const char* text;
  };
  for (Row row : std::initializer_list<Row>{{1, "1st"},
                                            {2, "2nd"},
                                            {3, "3rd"},
                                            {4, "4th"},
                                            {10, "10th"},
                                            {11, "11th"},
                                            {12, "12th"},
                                            {13, "13th"},
                                            {21, "21st"},
                                            {102, "102nd"},
                                            {111, "111th"},
                                            {0, "0th"}})
    EXPECT_EQ(expanded("the %-1 one", {Newint(row.n)}), std::string("the ") + row.text + " one");
  EXPECT_EQ(expanded("%-1", {NewInteger(100000000000021)}), "100000000000021st");
  EXPECT_EQ(expanded("%-1", {NewInteger(100000000000011)}), "100000000000011th");
  EXPECT_EQ(expanded("%-2", {cons1, naminstall("n")}), "nth");
}

TEST(Message, FormsOfAnException) {
  EXPECT_EQ(messageText(strinstall("50%%")), "50%");
  EXPECT_EQ(messageText(newSequence({strinstall("bad %1"), cons1})), "bad 1");
  EXPECT_EQ(messageText(newSequence({naminstall("f"), strinstall("bad %1"), cons1})), "bad 1");
  EXPECT_EQ(messageText(newSequence({strinstall("bad %1"), strinstall("x%1")})), "bad x%1");
  EXPECT_EQ(messageText(newSequence({cons0, naminstall("bad %0"), cons1, cons10})), "bad 1, 10");
}

TEST(ConvertText, NamesAndStrings) {
  DAG name = naminstall("a b"), string = strinstall("a b");
  EXPECT_EQ(ConvertToString(string), string);
  EXPECT_EQ(ConvertToString(name), string);
  EXPECT_EQ(ConvertToName(name, false), name);
  EXPECT_EQ(ConvertToName(name, true), naminstall("`a b`"));
  EXPECT_EQ(ConvertToName(string, false), name);
  EXPECT_EQ(ConvertToName(string, true), naminstall("\"a b\""));
  DAG list = new2(LIST, newSequence({name, string}));
  EXPECT_EQ(ConvertToString(list), strinstall("[a b, a b]"));
  EXPECT_EQ(ConvertToName(list, true), naminstall("[`a b`, \"a b\"]"));
}

TEST(ConvertText, Formats) {
  DAG name = naminstall("a b");
  EXPECT_EQ(FormattedConvertToString("%a|%A|%s|%d|%%", newSequence({name, name, name, Newint(-12)})),
            strinstall("`a b`|a b|a b|-12|%"));
  EXPECT_EQ(FormattedConvertToString("f%a", Newint(3)), strinstall("f3"));
  EXPECT_EQ(errorOf([&] { FormattedConvertToString("%a %a", name); }), "number of parameters does not match format");
  EXPECT_EQ(errorOf([&] { FormattedConvertToString("%d", name); }), "integer expected for integer format");
  EXPECT_EQ(errorOf([&] { ConvertToString(new2(LIST, newl2(3, BINARY))); }), "unprintable data structure");
}

}  // namespace
}  // namespace korel::test
