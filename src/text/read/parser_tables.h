#pragma once
// The tables of the parsing machine: what each symbol allows, and which token is which operator.

#include <iterator>

#include "store/dag.h"
#include "text/read/parser_machine.h"
#include "text/read/tokens.h"

namespace korel {

enum class SymbolKind : std::uint8_t { value, opening, open, prefix, infix };

struct SymbolRow {
  Level limit;   // widest operand that may follow
  Level result;  // of an operator: the level of what it makes
  SymbolKind kind;
};
inline constexpr SymbolRow symbolRows[] = {
#define KOREL_SYMBOL(symbol, limit, result, kind) {Level::limit, Level::result, SymbolKind::kind},
#include "text/read/parser_symbols.def"
#undef KOREL_SYMBOL
};
static_assert(std::size(symbolRows) == static_cast<std::size_t>(Symbol::dcolon) + 1);

inline const SymbolRow& rowOf(Symbol symbol) { return symbolRows[static_cast<int>(symbol)]; }
inline Level limitOf(Symbol symbol) { return rowOf(symbol).limit; }
inline Level resultOf(Symbol symbol) { return rowOf(symbol).result; }
inline SymbolKind kindOf(Symbol symbol) { return rowOf(symbol).kind; }
inline bool isOperator(Symbol symbol) { return kindOf(symbol) >= SymbolKind::prefix; }
inline bool isBindingStart(Symbol symbol) { return symbol == Symbol::useWord || symbol == Symbol::useComma; }

/// A token that may follow an operand as part of the expression.
struct InfixOperator {
  int token;
  Level left;    // widest operand that it takes
  Level result;  // what the whole expression is
  Symbol symbol;
};
// Loosest first. `mark`: brackets and postfix operators, which have ways of their own.
inline constexpr InfixOperator infixOperators[] = {
    // token       left                result              symbol
    {T_COMMA,    Level::exprSeq,     Level::exprSeq,     Symbol::comma},
    {T_ARROW,    Level::primary,     Level::expr,        Symbol::arrow},
    {T_OR,       Level::orExpr,      Level::orExpr,      Symbol::disjunction},
    {T_AND,      Level::andExpr,     Level::andExpr,     Symbol::conjunction},
    {T_DOLLAR,   Level::modExpr,     Level::seqExpr,     Symbol::dollar},
    {T_RELOP,    Level::range,       Level::relation,    Symbol::relop},
    {T_LT,       Level::range,       Level::relation,    Symbol::less},
    {T_GT,       Level::range,       Level::relation,    Symbol::greater},
    {T_EQ,       Level::range,       Level::relation,    Symbol::equal},
    {T_DOTDOT,   Level::modExpr,     Level::range,       Symbol::dotDot},
    {T_MOD,      Level::sumExpr,     Level::modExpr,     Symbol::modulo},
    {T_PLUS,     Level::modExpr,     Level::sumExpr,     Symbol::plus},
    {T_MINUS,    Level::modExpr,     Level::sumExpr,     Symbol::minus},
    {T_UNION,    Level::modExpr,     Level::sumExpr,     Symbol::setUnion},
    {T_STAR,     Level::prodExpr,    Level::prodExpr,    Symbol::times},
    {T_SLASH,    Level::prodExpr,    Level::prodExpr,    Symbol::divide},
    {T_AT,       Level::prodExpr,    Level::prodExpr,    Symbol::at},
    {T_AMPSTAR,  Level::prodExpr,    Level::prodExpr,    Symbol::ampStar},
    {T_DOT,      Level::prodExpr,    Level::prodExpr,    Symbol::dot},
    {T_SDOT,     Level::prodExpr,    Level::prodExpr,    Symbol::dot},
    {T_DOTS,     Level::prodExpr,    Level::prodExpr,    Symbol::dot},
    {T_SDOTS,    Level::prodExpr,    Level::prodExpr,    Symbol::dot},
    {T_CARET,    Level::factExpr,    Level::powExpr,     Symbol::power},
    {T_ATAT,     Level::factExpr,    Level::powExpr,     Symbol::atAt},
    {T_BANG,     Level::factExpr,    Level::factExpr,    Symbol::mark},
    {T_NEUTRAL,  Level::neutralExpr, Level::neutralExpr, Symbol::neutral},
    {T_DCOLON,   Level::prefixExpr,  Level::neutralExpr, Symbol::dcolon},
    {T_LPAREN,   Level::primary,     Level::nameExpr,    Symbol::mark},
    {T_LBRACKET, Level::atom,        Level::nameExpr,    Symbol::mark},
    {T_MEMBER,   Level::atom,        Level::nameExpr,    Symbol::mark},
    {T_CONCAT,   Level::stringExpr,  Level::nameExpr,    Symbol::mark},
};

struct InfixIndex {
  std::int8_t row[namedTokenCount];
};
constexpr InfixIndex makeInfixIndex() {
  InfixIndex index{};
  for (std::int8_t& row : index.row) row = -1;
  for (std::size_t i = 0; i < std::size(infixOperators); ++i)
    index.row[infixOperators[i].token - firstNamedToken] = static_cast<std::int8_t>(i);
  return index;
}
inline constexpr InfixIndex infixIndex = makeInfixIndex();

/// The row of a token that may follow an operand, or null.
inline const InfixOperator* infixOperator(int token) {
  if (token < firstNamedToken) return nullptr;
  int row = infixIndex.row[token - firstNamedToken];
  return row < 0 ? nullptr : &infixOperators[row];
}

/// The procedure that makes a vector of its entries: a row or a column.
DAG vectorConstructor(bool row);

}  // namespace korel
