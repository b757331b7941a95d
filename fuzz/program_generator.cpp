#include <iterator>

#include "program_generator.h"
#include "program_words.h"

namespace korel::fuzz {

namespace {

// ---- the generator

constexpr int maxDepth = 6;
constexpr std::size_t maxLength = 3000;  // of a statement

class Generator {
 public:
  Generator(const std::uint8_t* bytes, std::size_t count) : next_(bytes), end_(bytes + count) {}

  bool more() const { return next_ < end_; }
  std::string statement() {
    text_.clear();
    statementAt(0);
    text_ += pick(8) == 0 ? ":" : ";";
    return text_;
  }

 private:
  // 0 when the bytes are used up: the first choice everywhere is a leaf.
  unsigned byte() { return next_ < end_ ? *next_++ : 0; }
  unsigned pick(unsigned count) { return byte() % count; }
  template <std::size_t n>
  const char* one(Texts<n> texts) {
    return texts[pick(n)];
  }
  void put(const char* text) { text_ += text; }
  void put(const std::string& text) { text_ += text; }
  bool full(int depth) const { return depth > maxDepth || text_.size() > maxLength; }

  // ---- parts

  void name() {
    switch (pick(12)) {
      default: put(one(variables)); break;
      case 7: put(one(functions)); break;
      case 8: put(one(tables)); break;
      case 9: put(one(oddNames)); break;
      case 10: put(one(keyNames)); break;
      case 11:
        put(one(variables));
        put("||");
        put(std::to_string(pick(4)));
        break;
    }
  }

  void sequence(int depth, unsigned most) {
    unsigned count = pick(most + 1);
    for (unsigned i = 0; i < count; ++i) {
      if (i > 0) put(", ");
      expression(depth + 1);
    }
  }

  void builtinName() {
    constexpr unsigned count = lastBuiltin - firstBuiltin + 1;
    unsigned index = byte() % count;
    std::string_view chosen = inistrings[static_cast<std::size_t>(firstBuiltin) + index];
    for (std::string_view excluded : excludedBuiltins)
      if (chosen == excluded) chosen = "op";
    text_ += '`';
    text_ += chosen;
    text_ += '`';
  }

  void range(int depth) {
    switch (pick(6)) {
      case 0: put("1..4"); break;
      case 1: put("-2..2"); break;
      case 2: put("3..1"); break;
      case 3: put("1..100"); break;
      case 4: put("1..30000"); break;
      default:
        expression(depth + 1);
        put("..");
        expression(depth + 1);
    }
  }

  void procedure(int depth) {
    put("proc(");
    unsigned count = pick(4);
    for (unsigned i = 0; i < count; ++i) {
      if (i > 0) put(", ");
      put(variables[(i * 3 + pick(3)) % std::size(variables)]);
      if (pick(3) == 0) {
        put("::");
        put(one(typeNames));
      }
    }
    put(") ");
    if (pick(3) == 0) {
      put("local i, j");
      if (pick(4) == 0) put("::integer");
      put(", v; ");
    }
    if (pick(6) == 0) put(pick(2) ? "global a, x; " : "global b, Digits; ");
    if (pick(4) == 0) {
      put("option ");
      put(one(optionNames));
      put("; ");
    }
    if (pick(12) == 0) put("description \"d\", e; ");
    body(depth);
    put(pick(2) ? " end" : " end proc");
  }

  void module(int depth) {
    put(pick(4) == 0 ? "module m() " : "module() ");
    if (pick(2)) put("export f, a; ");
    if (pick(3) == 0) put("local g, i; ");
    if (pick(6) == 0) put("global x; ");
    if (pick(6) == 0) put("option package; ");
    body(depth);
    put(" end module");
  }

  void builtinCall(int depth) {
    builtinName();
    put("(");
    sequence(depth, 4);
    put(")");
  }

  /// A call that the language has a form of its own for.
  void knownCall(int depth) {
    switch (pick(30)) {
      case 0:
        put("op(");
        expression(depth + 1);
        put(")");
        break;
      case 1:
        put("seq(");
        expression(depth + 1);
        put(", i = ");
        range(depth);
        put(")");
        break;
      case 2:
        put("add(");
        expression(depth + 1);
        put(", i = ");
        range(depth);
        put(")");
        break;
      case 3:
        put("mul(");
        expression(depth + 1);
        put(", j = ");
        range(depth);
        put(")");
        break;
      case 4:
        put("op(");
        range(depth);
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 5:
        put("subs(x = ");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 6:
        put("map(");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 7:
        put("seq(");
        expression(depth + 1);
        put(", x = ");
        expression(depth + 1);
        put(")");
        break;
      case 8:
        put("eval(");
        expression(depth + 1);
        put(", ");
        put(std::to_string(pick(3)));
        put(")");
        break;
      case 9:
        put("eval(");
        expression(depth + 1);
        put(", x = ");
        expression(depth + 1);
        put(")");
        break;
      case 10:
        put("evaln(");
        expression(depth + 1);
        put(")");
        break;
      case 11:
        put("evalf(");
        expression(depth + 1);
        if (pick(3) == 0) put(", 30");
        put(")");
        break;
      case 12:
        put("traperror(");
        expression(depth + 1);
        put(")");
        break;
      case 13:
        put("assigned(");
        name();
        put(")");
        break;
      case 14:
        put("type(");
        expression(depth + 1);
        put(", ");
        put(one(typeNames));
        put(")");
        break;
      case 15:
        put("table([");
        sequence(depth, 4);
        put("])");
        break;
      case 16:
        put("table(sparse, [");
        sequence(depth, 3);
        put("])");
        break;
      case 17:
        put("`if`(");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 18:
        put("subsop(");
        range(depth);
        put(" = ");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 19:
        put("kernelopts(");
        put(one(kernelOptions));
        if (pick(3) == 0) {
          put(" = ");
          expression(depth + 1);
        }
        put(")");
        break;
      case 20:
        put("NumericEventHandler(");
        put(one(eventNames));
        if (pick(2)) {
          put(" = ");
          expression(depth + 1);
        }
        put(")");
        break;
      case 21:
        put("timelimit(1, ");
        expression(depth + 1);
        put(")");
        break;
      case 22:
        put("setattribute(");
        name();
        put(", ");
        expression(depth + 1);
        put(")");
        break;
      case 23:
        put("alias(");
        name();
        put(" = ");
        expression(depth + 1);
        put(")");
        break;
      case 24:
        put("macro(");
        name();
        put(" = ");
        expression(depth + 1);
        put(")");
        break;
      case 25:
        put("parse(");
        put(one(strings));
        put(")");
        break;
      case 26:
        put("member(");
        expression(depth + 1);
        put(", ");
        expression(depth + 1);
        put(", 'v')");
        break;
      case 27:
        put("setattribute('");
        name();
        put("', protected)");
        break;
      case 28:
        put("disassemble(addressof(");
        expression(depth + 1);
        put("))");
        break;
      default:
        put("assemble(");
        sequence(depth, 4);
        put(")");
        break;
    }
  }

  void deepNest(int depth) {
    static const char* const pairs[][2] = {{"(", ")"},  {"[", "]"},     {"{", "}"},  {"f(", ")"},  {"'", "'"},
                                           {"-(", ")"}, {"not (", ")"}, {"t[", "]"}, {"x^(", ")"}, {"1+1/(", ")"}};
    const auto& pair = pairs[pick(std::size(pairs))];
    unsigned count = 1 + pick(4) * 60;
    if (pair[0][0] == '\'') count = 1;
    for (unsigned i = 0; i < count; ++i) put(pair[0]);
    expression(depth + 1);
    for (unsigned i = 0; i < count; ++i) put(pair[1]);
  }

  void expression(int depth) {
    if (full(depth)) {
      put(pick(2) ? one(variables) : one(numbers));
      return;
    }
    switch (pick(26)) {
      case 0: case 1: case 2: name(); break;
      case 3: case 4: put(one(numbers)); break;
      case 5: case 6: case 7:
        put("(");
        expression(depth + 1);
        put(")");
        put(one(operators));
        put("(");
        expression(depth + 1);
        put(")");
        break;
      case 8:
        name();
        put(operators[pick(4)]);
        name();
        break;
      case 9:
        put("[");
        sequence(depth, 4);
        put("]");
        break;
      case 10:
        put("{");
        sequence(depth, 4);
        put("}");
        break;
      case 11: case 12:
        put(one(functions));
        put("(");
        sequence(depth, 3);
        put(")");
        break;
      case 13:
        put(one(tables));
        put("[");
        sequence(depth, 2);
        put("]");
        break;
      case 14: case 15: builtinCall(depth); break;
      case 16: case 17: case 18: knownCall(depth); break;
      case 19:
        put("'");
        expression(depth + 1);
        put("'");
        break;
      case 20:
        put(pick(2) ? "-(" : "not (");
        expression(depth + 1);
        put(pick(4) == 0 ? ")!" : ")");
        break;
      case 21: put(one(strings)); break;
      case 22: procedure(depth); break;
      case 23:
        put("(");
        switch (pick(4)) {
          case 0: put("x"); break;
          case 1: put("()"); break;
          case 2: put("(x, y)"); break;
          default: put("(a, b::integer)");
        }
        put(" -> ");
        expression(depth + 1);
        put(")");
        break;
      case 24:
        switch (pick(6)) {
          case 0: module(depth); break;
          case 1: put("m:-f"); break;
          case 2: put("m:-a"); break;
          case 3: put("(:-x)"); break;
          case 4:
            put("<");
            expression(depth + 1);
            put(pick(2) ? ", " : " | ");
            put("1>");
            break;
          default:
            put("(");
            expression(depth + 1);
            put(")(");
            sequence(depth, 2);
            put(")");
            break;
        }
        break;
      default:
        if (pick(4) == 0) deepNest(depth);
        else name();
    }
  }

  /// What can be assigned to.
  void place(int depth) {
    switch (pick(9)) {
      default: put(one(variables)); break;
      case 4: put(one(functions)); break;
      case 5:
        put(one(tables));
        put("[");
        sequence(depth, 2);
        put("]");
        break;
      case 6:
        put(one(functions));
        put("(");
        sequence(depth, 2);
        put(")");
        break;
      case 7:
        put(one(variables));
        put("||(");
        expression(depth + 1);
        put(")");
        break;
      case 8:
        put(one(functions));
        put("[");
        expression(depth + 1);
        put("](x)");
        break;
    }
  }

  void body(int depth) {
    unsigned count = 1 + pick(3);
    for (unsigned i = 0; i < count; ++i) {
      if (i > 0) put(pick(6) == 0 ? ": " : "; ");
      statementAt(depth + 1);
    }
  }

  void loop(int depth) {
    switch (pick(7)) {
      case 0:
        put("to ");
        put(std::to_string(pick(20)));
        put(" do ");
        break;
      case 1:
        put("for i to ");
        put(std::to_string(pick(40)));
        put(" do ");
        break;
      case 2:
        put("for i from ");
        expression(depth + 1);
        put(" by ");
        expression(depth + 1);
        put(" to 9 do ");
        break;
      case 3:
        put("for x in ");
        expression(depth + 1);
        put(" do ");
        break;
      case 4:
        put("for j from 5 by -1 to 0 while ");
        expression(depth + 1);
        put(" do ");
        break;
      case 5:
        put("for ");
        place(depth);
        put(" in ");
        expression(depth + 1);
        put(" while j <> 3 do ");
        break;
      default:
        put("while ");
        expression(depth + 1);
        put(" do ");
        break;
    }
    body(depth);
    if (pick(4) == 0) put("; break");
    put(pick(2) ? " od" : " end do");
  }

  void tryStatement(int depth) {
    put("try ");
    body(depth);
    if (pick(4) != 0) {
      put(" catch ");
      if (pick(3) == 0) put("\"numeric\", \"division\", \"wrong\"");
      put(": ");
      body(depth);
    }
    if (pick(3) == 0) {
      put(" finally ");
      body(depth);
    }
    put(" end try");
  }

  void statementAt(int depth) {
    if (full(depth)) {
      put(one(variables));
      return;
    }
    switch (pick(32)) {
      case 0: case 1: case 2: case 3: case 4: expression(depth + 1); break;
      case 5: case 6: case 7: case 8: case 9: case 10:
        place(depth);
        put(" := ");
        expression(depth + 1);
        break;
      case 11: case 12: case 13:
        put(one(functions));
        put(" := ");
        procedure(depth);
        break;
      case 14:
        put("m := ");
        module(depth);
        break;
      case 15: case 16: case 17: loop(depth); break;
      case 18: case 19:
        put("if ");
        expression(depth + 1);
        put(" then ");
        body(depth);
        if (pick(3) == 0) {
          put(" elif ");
          expression(depth + 1);
          put(" then ");
          body(depth);
        }
        if (pick(2)) {
          put(" else ");
          body(depth);
        }
        put(pick(2) ? " fi" : " end if");
        break;
      case 20: case 21: tryStatement(depth); break;
      case 22:
        put("return ");
        sequence(depth, 2);
        break;
      case 23:
        put("error ");
        sequence(depth, 3);
        break;
      case 24: put(pick(2) ? "next" : "break"); break;
      case 25:
        put(one(environmentNames));
        put(" := ");
        expression(depth + 1);
        break;
      case 26:
        put("use a = ");
        expression(depth + 1);
        put(", m:-f in ");
        body(depth);
        put(" end use");
        break;
      case 27: {  // a name that stands for itself, or for something that holds it
        const char* self = one(variables);
        put(self);
        put(" := '");
        put(self);
        put("'");
        if (pick(2)) {
          put(one(operators));
          put("1");
        }
        break;
      }
      case 28: {  // endless recursion
        const char* self = one(functions);
        put(self);
        put(" := proc() ");
        put(self);
        put(pick(2) ? "(args, 1) end; " : "(nargs) + 1 end; ");
        put(self);
        put("()");
        break;
      }
      case 29: put("restart"); break;
      case 30:
        put("(");
        place(depth);
        put(", ");
        place(depth);
        put(") := (");
        expression(depth + 1);
        put("), 2");
        break;
      default:
        expression(depth + 1);
        if (depth > 0) break;
        put(" ");
        put(one(broken));
        put(" ");
        expression(depth + 1);
        break;
    }
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  std::string text_;
};

}  // namespace

std::vector<std::string> programOf(const std::uint8_t* bytes, std::size_t count) {
  constexpr std::size_t mostStatements = 40;
  std::vector<std::string> statements;
  Generator generator(bytes, count);
  while (generator.more() && statements.size() < mostStatements) statements.push_back(generator.statement());
  return statements;
}

}  // namespace korel::fuzz
