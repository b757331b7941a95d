// Native library procedures on texts: strings and names, read as bytes.
//
// Results are strings. Letters are those of ASCII; other bytes stay as they are.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/integer/integer.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/print/convert_text.h"

namespace korel {

namespace {

constexpr std::string_view blanks = " \t\n\r\f\v";
constexpr std::int64_t longestText = 4 * (std::int64_t{maxLength} - 8);

std::string_view textArgument(const BuiltinCall& call, Word i) {
  if (argumentCount(call) < i || !isText(call.arguments[i])) wrongParameters(call);
  return textOf(call.arguments[i]);
}
std::int64_t integerArgument(const BuiltinCall& call, Word i) {
  if (argumentCount(call) < i || !isImmediate(call.arguments[i])) wrongParameters(call);
  return immediateValue(call.arguments[i]);
}

// A text of known length under construction, which ends as a STRING. Its bytes lie in an object of the store, so that
// an error on the way leaves nothing behind.
struct TextSpace {
  DAG space;
  char* end;

  explicit TextSpace(std::int64_t length) {
    if (length > longestText) KernelException("object too large");
    passWork(length / 8);
    space = newl2(textLength(static_cast<std::uint64_t>(length)) + 1, BINARY);
    end = bytes();
  }
  char* bytes() { return reinterpret_cast<char*>(&rawField(space, 1)); }
  void append(std::string_view text) {
    std::memcpy(end, text.data(), text.size());
    end += text.size();
  }
  void fill(char c, std::int64_t count) {
    std::memset(end, c, static_cast<std::size_t>(count));
    end += count;
  }
  DAG string() {
    *end = 0;
    return strinstall(bytes());
  }
};

DAG stringOf(std::string_view text) {
  TextSpace result(static_cast<std::int64_t>(text.size()));
  result.append(text);
  return result.string();
}

DAG mapBytes(const BuiltinCall& call, char (*f)(char)) {
  std::string_view text = textArgument(call, 1);
  TextSpace result(static_cast<std::int64_t>(text.size()));
  for (char c : text) *result.end++ = f(c);
  return result.string();
}

// Places where `pattern`, not empty, occurs, none overlapping one before.
Word occurrences(std::string_view text, std::string_view pattern) {
  Word count = 0;
  for (std::size_t at = text.find(pattern); at != text.npos; at = text.find(pattern, at + pattern.size())) ++count;
  passWork(static_cast<std::int64_t>(text.size()));
  return count;
}

}  // namespace

DAG native::lowertext(const BuiltinCall& call) {
  return mapBytes(call, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
}
DAG native::uppertext(const BuiltinCall& call) {
  return mapBytes(call, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
}

DAG native::reversetext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1);
  TextSpace result(static_cast<std::int64_t>(text.size()));
  result.append(text);
  std::reverse(result.bytes(), result.end);
  return result.string();
}

// splittext(text): its words; splittext(text, separator): what stands between separators; a separator of no
// characters splits into characters.
DAG native::splittext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1);
  if (argumentCount(call) == 1) {
    auto wordFrom = [&](std::size_t at) { return std::min(text.find_first_not_of(blanks, at), text.size()); };
    auto wordEnd = [&](std::size_t at) { return std::min(text.find_first_of(blanks, at), text.size()); };
    Word count = 0;
    for (std::size_t at = wordFrom(0); at < text.size(); at = wordFrom(wordEnd(at))) ++count;
    DAG words = newl2(count + 1, EXPSEQ);
    count = 0;
    for (std::size_t at = wordFrom(0); at < text.size(); at = wordFrom(wordEnd(at)))
      words[++count] = stringOf(text.substr(at, wordEnd(at) - at));
    return new2(LIST, simpl(words));
  }
  std::string_view separator = textArgument(call, 2);
  if (separator.empty()) {
    DAG characters = newl2(static_cast<Word>(text.size()) + 1, EXPSEQ);
    for (std::size_t i = 0; i < text.size(); ++i) characters[static_cast<Word>(i) + 1] = charinstall(text[i]);
    return new2(LIST, simpl(characters));
  }
  const Word count = occurrences(text, separator) + 1;
  DAG pieces = newl2(count + 1, EXPSEQ);
  std::size_t from = 0;
  for (Word i = 1; i <= count; ++i) {
    std::size_t to = i < count ? text.find(separator, from) : text.size();
    pieces[i] = stringOf(text.substr(from, to - from));
    from = to + separator.size();
  }
  return new2(LIST, simpl(pieces));
}

// jointext(list, separator): members that are no texts as they print.
DAG native::jointext(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isTag(call.arguments[1], LIST)) wrongParameters(call);
  std::string_view separator = argumentCount(call) > 1 ? textArgument(call, 2) : "";
  DAG members = asSequence(call.arguments[1][1]);
  const Word n = memberCount(members);
  if (n == 0) return strinstall("");
  DAG texts = CopyAlg(members);
  std::int64_t length = static_cast<std::int64_t>(separator.size()) * (n - 1);
  for (Word i = 1; i <= n; ++i) {
    texts[i] = isText(members[i]) ? members[i] : ConvertToString(members[i]);
    length += static_cast<std::int64_t>(std::strlen(textOf(texts[i])));
  }
  TextSpace result(length);
  for (Word i = 1; i <= n; ++i) {
    if (i > 1) result.append(separator);
    result.append(textOf(texts[i]));
  }
  return result.string();
}

// trimtext(text), trimtext(text, characters): without the blanks, or those characters, at both ends.
DAG native::trimtext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1);
  std::string_view dropped = argumentCount(call) > 1 ? textArgument(call, 2) : blanks;
  std::size_t from = text.find_first_not_of(dropped);
  if (from == text.npos) return strinstall("");
  return stringOf(text.substr(from, text.find_last_not_of(dropped) - from + 1));
}

// padtext(text, n, character): filled up behind it to n characters, and in front for a negative n.
DAG native::padtext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1);
  const std::int64_t n = integerArgument(call, 2);
  std::string_view filler = argumentCount(call) > 2 ? textArgument(call, 3) : " ";
  if (filler.size() != 1) wrongParameters(call);
  const auto length = static_cast<std::int64_t>(text.size());
  const std::int64_t missing = std::max<std::int64_t>(std::abs(n) - length, 0);
  TextSpace result(length + missing);
  if (n < 0) result.fill(filler[0], missing);
  result.append(text);
  if (n > 0) result.fill(filler[0], missing);
  return result.string();
}

// replacetext(text, pattern, replacement): every occurrence, from the left.
DAG native::replacetext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1), pattern = textArgument(call, 2), replacement = textArgument(call, 3);
  if (pattern.empty()) wrongParameters(call);
  const auto count = static_cast<std::int64_t>(occurrences(text, pattern));
  TextSpace result(static_cast<std::int64_t>(text.size()) +
                   count * (static_cast<std::int64_t>(replacement.size()) - static_cast<std::int64_t>(pattern.size())));
  std::size_t from = 0;
  for (std::int64_t i = 0; i < count; ++i) {
    std::size_t to = text.find(pattern, from);
    result.append(text.substr(from, to - from));
    result.append(replacement);
    from = to + pattern.size();
  }
  result.append(text.substr(from));
  return result.string();
}

DAG native::repeattext(const BuiltinCall& call) {
  std::string_view text = textArgument(call, 1);
  const std::int64_t n = integerArgument(call, 2);
  if (n < 0) wrongParameters(call);
  TextSpace result(static_cast<std::int64_t>(text.size()) * n);
  for (std::int64_t i = 0; i < n && !text.empty(); ++i) result.append(text);
  return result.string();
}

DAG native::counttext(const BuiltinCall& call) {
  std::string_view pattern = textArgument(call, 1), text = textArgument(call, 2);
  if (pattern.empty()) wrongParameters(call);
  return immediate(static_cast<std::int32_t>(occurrences(text, pattern)));
}

// textcodes(text): its bytes as a list of numbers; textcodes(list): the string of such a list.
DAG native::textcodes(const BuiltinCall& call) {
  if (argumentCount(call) == 1 && isTag(call.arguments[1], LIST)) {
    DAG codes = asSequence(call.arguments[1][1]);
    TextSpace result(memberCount(codes));
    for (Word i = 1; i <= memberCount(codes); ++i) {
      if (!isImmediate(codes[i]) || immediateValue(codes[i]) < 1 || immediateValue(codes[i]) > 255)
        KernelException("the code of a character is an integer from 1 to 255, but received %1", codes[i]);
      *result.end++ = static_cast<char>(immediateValue(codes[i]));
    }
    return result.string();
  }
  std::string_view text = textArgument(call, 1);
  DAG codes = newl2(static_cast<Word>(text.size()) + 1, EXPSEQ);
  for (std::size_t i = 0; i < text.size(); ++i)
    codes[static_cast<Word>(i) + 1] = immediate(static_cast<unsigned char>(text[i]));
  return new2(LIST, simpl(codes));
}

// objecttext(x): the text of x, as it prints with nothing quoted at the outside.
DAG native::objecttext(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return ConvertToString(call.arguments[1]);
}

}  // namespace korel
