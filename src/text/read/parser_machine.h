#pragma once
// The machine behind `yyparse`: a stack of grammar symbols and the steps that work on it.
//
// The grammar is layered: an expression of one level may stand wherever a looser level is allowed.
// The machine keeps the level with each operand, so that the chain of unit productions from a name to
// a sequence costs nothing. Between two operands it compares three levels: of the operand at hand, of
// the operator that follows (what it takes and what it makes), and of what the symbol below allows.
//
// What is on the stack is what the grammar would have there: every terminal and nonterminal that waits
// for its continuation has one place. Nothing recurses; a step does its work and names the next one.

#include <cstdint>

#include "store/dag.h"
#include "text/read/lexer.h"

namespace korel {

/// The nonterminals of expressions, tightest first: a lower level may stand for a higher one.
enum class Level : std::uint8_t {
  nameExpr,
  stringExpr,
  atom,
  primary,
  prefixExpr,
  neutralExpr,
  factExpr,
  powExpr,
  prodExpr,
  sumExpr,
  modExpr,
  range,
  relation,
  seqExpr,
  notExpr,
  andExpr,
  orExpr,
  expr,
  exprSeq,
  none,
};

enum class Symbol : std::uint8_t {
#define KOREL_SYMBOL(symbol, limit, result, kind) symbol,
#include "text/read/parser_symbols.def"
#undef KOREL_SYMBOL
};

/// What the machine does next.
enum class Step : std::uint8_t {
  statement,      // a statement begins
  statementDone,  // a statement is on top
  operand,        // an operand begins
  operandDone,    // an operand is on top
  loopClauses,    // behind `for`, a name, or the last clause
  bindingDone,    // a binding of `use` is on top
  item,           // an item of a list in a head, or of catch strings, begins
  itemDone,       // one is on top
  head,           // the next part of a head, or the body
  accept,
};

struct Entry {
  Symbol symbol;
  Level level;  // of an operand
  DAG value;
};

constexpr int parserStackSize = 1024;

struct Parser {
  Entry stack[parserStackSize];
  int top = -1;
  Lexeme ahead;  // the token at hand; behind `take` it is without a token, and keeps the rest

  void run();

  // ---- tokens
  int look();               // the token at hand
  DAG take();               // consumes it; its value
  bool acceptToken(int t);  // consumes it if it is `t`
  void expect(int t);
  [[noreturn]] void unexpected();        // the error of the token at hand
  void setDisplay(int terminatorToken);  // consumes a terminator

  // ---- the stack
  void push(Symbol symbol, DAG value = DAG(), Level level = Level::none);
  void pushOperand(DAG value, Level level) { push(Symbol::operand, value, level); }
  /// Replaces the `count` topmost entries by one.
  void reduce(int count, Symbol symbol, DAG value, Level level = Level::none);
  Entry& at(int depth) { return stack[top - depth]; }

  // ---- expressions (parser.cpp)
  Step operand();
  Step operandDone();
  Step shiftInfix(int token, Symbol symbol);
  Step openParenthesis(Symbol below);
  Step closeExpression(int token);
  Step closeBracket(int token, int closing, int symbols, DAG value, Level level);
  Step number();
  Step fraction();
  Step emptyOr(int closing);
  std::int64_t exponentOfFraction() const;
  DAG makeFloat(DAG mantissa, std::int64_t exponent);
  void reduceOperator();

  // ---- statements and heads (parser_statements.cpp)
  Step statement();
  Step statementDone();
  Step closeStatements(Symbol opening, int token);
  Step optionalExpression(Symbol symbol, Tag tag);
  Step closeKeyWord(Symbol symbol, int token);
  Step endIf();
  Step endTry();
  void endConstruct(int keyWord);
  Step loopClauses();
  Step bindingDone();
  Step binding(int token);
  Step item();
  Step itemDone();
  Step head();
  void applyPart(Symbol part);
};

}  // namespace korel
