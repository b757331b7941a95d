#include "text/read/parser.h"

#include "frame/errors.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/append.h"
#include "store/vocabulary.h"
#include "text/read/parser_machine.h"
#include "text/read/parser_objects.h"
#include "text/read/parser_tables.h"

namespace korel {

DAG parsestat;

void Parser::unexpected() { yyerror(unexpectedTokenText(ahead.token)); }

// ---- tokens and the stack

int Parser::look() {
  if (ahead.token == noToken) ahead = yylex();
  return ahead.token;
}

DAG Parser::take() {
  ahead.token = noToken;
  return ahead.value;
}

bool Parser::acceptToken(int token) {
  if (look() != token) return false;
  ahead.token = noToken;
  return true;
}

void Parser::expect(int token) {
  if (!acceptToken(token)) unexpected();
}

void Parser::push(Symbol symbol, DAG value, Level level) {
  if (top == parserStackSize - 1) yyerror("yacc stack overflow");
  stack[++top] = {symbol, level, value};
}

void Parser::reduce(int count, Symbol symbol, DAG value, Level level) {
  top -= count - 1;
  stack[top] = {symbol, level, value};
}

// ---- an operand begins

// The same as an exponent far from the bounds of floats: nothing can be raised there.
constexpr std::int64_t ordinaryExponent = std::int64_t{1} << 30;

namespace {
void unprotect(const char*) { AllowGC(DAG(static_cast<Word>(errorProcParam))); }
}  // namespace

DAG Parser::makeFloat(DAG mantissa, std::int64_t exponent) {
  if (exponent > -ordinaryExponent && exponent < ordinaryExponent) return newFLOAT(mantissa, NewInteger(exponent));
  // An exponent out of bounds is a numeric event. Its handler is a procedure of the language, and
  // collections run in it: what the stack holds has to be reachable.
  DAG held = newl2(static_cast<Word>(top) + 3, EXPSEQ);
  for (int i = 0; i <= top; ++i)  // an operator holds a name, which is kept, or a plain word
    if (!isOperator(stack[i].symbol)) held[i + 1] = stack[i].value;
  held[top + 2] = mantissa;
  ProtectFromGC(held);
  PushParamErrorProc(unprotect, held);
  DAG result = newFLOAT(mantissa, NewInteger(exponent));
  PopErrorProc();
  AllowGC(held);
  forgetAppendSlack();
  return result;
}

/// Exponent of a float whose last digits, behind the point, have just been taken.
std::int64_t Parser::exponentOfFraction() const { return std::int64_t{ahead.exponent} - ahead.digits; }

/// An integer is at hand: alone, or the first part of a float. The float is made before another token
/// is read: `ahead` still tells its digits.
Step Parser::number() {
  push(Symbol::operand, take(), Level::primary);
  if (look() == T_DOTS) {
    push(Symbol::mark);
    take();
    reduce(2, Symbol::operand, makeFloat(at(1).value, 0), Level::primary);
  } else if (look() == T_DOT) {
    push(Symbol::mark);
    take();
    int next = look();
    if (next == T_INTEGER || next == T_EXPINT) {
      push(Symbol::mark, take());
      DAG mantissa = numcat(at(2).value, at(0).value, ahead.digits);
      reduce(3, Symbol::operand, makeFloat(mantissa, exponentOfFraction()), Level::primary);
    } else {
      reduce(2, Symbol::operand, makeFloat(at(1).value, 0), Level::primary);
    }
  }
  return Step::operandDone;
}

/// A dot is at hand that begins a number.
Step Parser::fraction() {
  push(Symbol::mark);
  take();
  int next = look();
  if (next != T_INTEGER && next != T_EXPINT) unexpected();
  push(Symbol::mark, take());
  reduce(2, Symbol::operand, makeFloat(at(0).value, exponentOfFraction()), Level::primary);
  return Step::operandDone;
}

/// Behind an opening bracket, already pushed, whose content may be missing.
Step Parser::emptyOr(int closing) {
  if (look() != closing) return Step::operand;
  pushOperand(null, Level::exprSeq);
  return closeExpression(closing);
}

/// A `(` is at hand where an operand begins; `below` is what waits for the operand.
Step Parser::openParenthesis(Symbol below) {
  push(Symbol::group);
  take();
  if (look() != T_RPAREN) return Step::operand;
  // Only parameters of an arrow and arguments of a neutral operator can be empty.
  if (limitOf(below) >= Level::expr) {
    push(Symbol::mark);
    take();
    reduce(2, Symbol::operand, null, Level::primary);
    if (look() != T_ARROW) unexpected();
    return Step::operandDone;
  }
  bool neutral =
      below == Symbol::ampStarSign || (below == Symbol::neutralSign && limitOf(at(2).symbol) >= Level::neutralExpr);
  if (!neutral) unexpected();
  push(Symbol::mark);
  take();
  reduce(3, Symbol::operand, new3(FUNCTION, at(2).value, null), Level::neutralExpr);
  return Step::operandDone;
}

Step Parser::operand() {
  Symbol below = at(0).symbol;
  Level limit = limitOf(below);
  auto prefix = [&](Symbol symbol) {
    if (resultOf(symbol) > limit) unexpected();
    push(symbol, ahead.value);
    take();
    return Step::operand;
  };
  auto bracket = [&](Symbol symbol) {
    push(symbol);
    take();
    return Step::operand;
  };
  switch (look()) {
    case T_NAME: pushOperand(take(), Level::nameExpr); return Step::operandDone;
    case T_STRING: pushOperand(take(), Level::stringExpr); return Step::operandDone;
    case T_INTEGER: return number();
    case T_EXPINT: {
      push(Symbol::mark, take());
      reduce(1, Symbol::operand, makeFloat(at(0).value, ahead.exponent), Level::primary);
      return Step::operandDone;
    }
    case T_DOT: case T_SDOT: return fraction();
    case T_LPAREN: return openParenthesis(below);
    case T_LBRACKET: bracket(Symbol::list); return emptyOr(T_RBRACKET);
    case T_LBRACE: bracket(Symbol::set); return emptyOr(T_RBRACE);
    case T_QUOTE: return bracket(Symbol::quote);
    case T_LT: return bracket(Symbol::vector);
    case T_LABEL: {
      push(Symbol::mark);
      take();
      if (look() != T_INTEGER) unexpected();
      push(Symbol::mark, take());
      DAG value = IGetlabel(at(0).value);
      if (!value) yyerror("undefined label");
      reduce(2, Symbol::operand, value, Level::atom);
      return Step::operandDone;
    }
    case T_MEMBER: {
      push(Symbol::mark);
      take();
      if (look() != T_NAME) unexpected();
      push(Symbol::mark, take());
      reduce(2, Symbol::operand, new3(MEMBER, null, at(0).value), Level::nameExpr);
      return Step::operandDone;
    }
    case T_NOT: return prefix(Symbol::notSign);
    case T_PLUS: return prefix(Symbol::plusSign);
    case T_MINUS: return prefix(Symbol::minusSign);
    case T_DOLLAR: return prefix(Symbol::dollarSign);
    case T_NEUTRAL: return prefix(Symbol::neutralSign);
    case T_AMPSTAR: return prefix(Symbol::ampStarSign);
    case T_PROC:
      push(Symbol::procWord);
      take();
      expect(T_LPAREN);
      push(Symbol::parameters);
      return Step::item;
    case T_MODULE:
      push(Symbol::moduleWord);
      take();
      if (look() == T_NAME) pushOperand(take(), Level::nameExpr);
      expect(T_LPAREN);
      push(Symbol::parameters);
      return Step::item;
    case T_IF:
      if (below != Symbol::arrow) unexpected();
      push(Symbol::ifWord);
      take();
      return Step::operand;
    default: unexpected();
  }
}

// ---- an operand is on top

/// Makes one operand of the operator below the topmost operand, and of what it takes.
void Parser::reduceOperator() {
  Entry& last = at(0);
  Entry& sign = at(1);
  DAG b = last.value;
  if (kindOf(sign.symbol) == SymbolKind::prefix) {
    DAG value;
    switch (sign.symbol) {
      case Symbol::notSign: value = new2(NOT, b); break;
      case Symbol::plusSign: value = b; break;
      case Symbol::minusSign: value = new3(SUM, b, consm1); break;
      case Symbol::dollarSign: value = unaryCall(ini("$"), b); break;
      default: value = new3(FUNCTION, sign.value, asSequence(b)); break;
    }
    reduce(2, Symbol::operand, value, resultOf(sign.symbol));
    return;
  }
  DAG a = at(2).value;
  DAG value;
  switch (sign.symbol) {
    case Symbol::comma: value = joinSequence(a, b); break;
    case Symbol::arrow: value = arrowProcedure(a, b); break;
    case Symbol::disjunction: value = new3(OR, a, b); break;
    case Symbol::conjunction: value = new3(AND, a, b); break;
    case Symbol::dollar: value = binaryCall(ini("$"), a, b); break;
    case Symbol::relop: value = makeRelation(sign.value.word, a, b); break;
    case Symbol::less: value = new3(LESSTHAN, a, b); break;
    case Symbol::greater: value = new3(LESSTHAN, b, a); break;
    case Symbol::equal: value = new3(EQUATION, a, b); break;
    case Symbol::dotDot: value = new3(RANGE, a, b); break;
    case Symbol::modulo: value = binaryCall(ini("mod"), a, b); break;
    case Symbol::plus: value = makeSum(a, b, cons1); break;
    case Symbol::minus: value = makeSum(a, b, consm1); break;
    case Symbol::times: value = makeProduct(a, b); break;
    case Symbol::divide: value = makeQuotient(a, b); break;
    case Symbol::dot: value = makeDot(a, b); break;
    case Symbol::power: value = makePower(a, b); break;
    case Symbol::dcolon: value = new3(DCOLON, a, b); break;
    default: value = binaryCall(sign.value, a, b); break;  // the call of what the token names
  }
  reduce(3, Symbol::operand, value, resultOf(sign.symbol));
}

/// The operator at hand takes the topmost operand as its left one.
Step Parser::shiftInfix(int token, Symbol symbol) {
  Entry& left = at(0);
  switch (token) {
    case T_BANG:
      push(Symbol::mark);
      take();
      reduce(2, Symbol::operand, unaryCall(ini("factorial"), at(1).value), Level::factExpr);
      return Step::operandDone;
    case T_LBRACKET:
      push(Symbol::index);
      take();
      return emptyOr(T_RBRACKET);
    case T_LPAREN:
      push(Symbol::call);
      take();
      return emptyOr(T_RPAREN);
    case T_MEMBER:
      push(Symbol::mark);
      take();
      if (look() != T_NAME) unexpected();
      push(Symbol::mark, take());
      reduce(3, Symbol::operand, new3(MEMBER, at(2).value, at(0).value), Level::nameExpr);
      return Step::operandDone;
    case T_CONCAT: {
      Level level = left.level;
      push(Symbol::mark);
      take();
      int next = look();
      if (next == T_LPAREN) {
        push(Symbol::concatGroup);
        take();
        return Step::operand;
      }
      if (next != T_INTEGER && next != T_NAME && next != T_STRING) unexpected();
      push(Symbol::mark, take());
      reduce(3, Symbol::operand, new3(CATENATE, at(2).value, at(0).value), level);
      return Step::operandDone;
    }
    default:
      push(symbol, ahead.value);
      take();
      return Step::operand;
  }
}

Step Parser::operandDone() {
  int token = look();
  if (const InfixOperator* op = infixOperator(token)) {
    for (;;) {
      Symbol below = at(1).symbol;
      // What follows a name or a bracket may still turn any operand into a name: no limit applies.
      if (at(0).level <= op->left && (op->result <= Level::stringExpr || op->result <= limitOf(below)))
        return shiftInfix(token, op->symbol);
      if (!isOperator(below)) break;
      reduceOperator();
    }
  } else {
    while (isOperator(at(1).symbol)) reduceOperator();
  }
  return closeExpression(token);
}

/// `)`, `]` and their kin: the `symbols` topmost entries and the bracket make `value`.
Step Parser::closeBracket(int token, int closing, int symbols, DAG value, Level level) {
  if (token != closing) unexpected();
  push(Symbol::mark);
  take();
  reduce(symbols + 1, Symbol::operand, value, level);
  return Step::operandDone;
}

/// A whole expression is on top, and what is below is no operator: it decides what may follow.
Step Parser::closeExpression(int token) {
  DAG value = at(0).value;
  Symbol below = at(1).symbol;
  switch (below) {
    case Symbol::group: return closeBracket(token, T_RPAREN, 2, value, Level::atom);
    case Symbol::call:
      if (token != T_RPAREN) unexpected();
      return closeBracket(token, T_RPAREN, 3, new3(FUNCTION, at(2).value, asSequence(value)), Level::nameExpr);
    case Symbol::index: {
      if (token != T_RBRACKET) unexpected();
      bool name = at(0).level == Level::nameExpr && hasTag(value, NAME);
      if (name && isBindingStart(at(3).symbol)) {  // use a[b]: the binding of a member
        push(Symbol::mark);
        take();
        reduce(4, Symbol::operand, new3(MEMBER, at(3).value, value), Level::none);
        return Step::bindingDone;
      }
      return closeBracket(token, T_RBRACKET, 3, new3(TABLEREF, at(2).value, asSequence(value)), Level::nameExpr);
    }
    case Symbol::concatGroup: {
      Level level = at(3).level;
      if (token != T_RPAREN) unexpected();
      return closeBracket(token, T_RPAREN, 4, new3(CATENATE, at(3).value, value), level);
    }
    case Symbol::quote:
      if (token != T_QUOTE) unexpected();
      return closeBracket(token, T_QUOTE, 2, new2(UNEVAL, value), Level::atom);
    case Symbol::set:
      if (token != T_RBRACE) unexpected();
      return closeBracket(token, T_RBRACE, 2, new2(SET, asSequence(value)), Level::atom);
    case Symbol::list:
      if (token != T_RBRACKET) unexpected();
      return closeBracket(token, T_RBRACKET, 2, new2(LIST, asSequence(value)), Level::atom);
    case Symbol::vector:
      if (token == T_COMMA || token == T_BAR) {
        push(token == T_COMMA ? Symbol::columnFirst : Symbol::rowFirst);
        take();
        return Step::operand;
      }
      if (token != T_GT) unexpected();
      return closeBracket(token, T_GT, 2, unaryCall(vectorConstructor(false), value), Level::atom);
    case Symbol::columnFirst: case Symbol::rowFirst: reduce(1, Symbol::operand, new2(EXPSEQ, value)); break;
    case Symbol::columnNext: case Symbol::rowNext: reduce(3, Symbol::operand, Append2(at(2).value, value)); break;
    default: return closeKeyWord(below, token);
  }
  // An entry of a vector is on top, as part of the list of those behind the first.
  bool row = at(1).symbol == Symbol::rowFirst;
  if (token == (row ? T_BAR : T_COMMA)) {
    push(row ? Symbol::rowNext : Symbol::columnNext);
    take();
    return Step::operand;
  }
  if (token != T_GT) unexpected();
  return closeBracket(token, T_GT, 4, binaryCall(vectorConstructor(row), at(2).value, at(0).value), Level::atom);
}

// ---- the loop

void Parser::run() {
  forgetAppendSlack();
  push(Symbol::bottom);
  push(Symbol::prelude);
  for (Step step = Step::statement; step != Step::accept;) {
    switch (step) {
      case Step::statement: step = statement(); break;
      case Step::statementDone: step = statementDone(); break;
      case Step::operand: step = operand(); break;
      case Step::operandDone: step = operandDone(); break;
      case Step::loopClauses: step = loopClauses(); break;
      case Step::bindingDone: step = bindingDone(); break;
      case Step::item: step = item(); break;
      case Step::itemDone: step = itemDone(); break;
      case Step::head: step = head(); break;
      case Step::accept: break;
    }
  }
  forgetAppendSlack();
}

void yyparse() {
  parsestat = DAG();
  Parser parser;
  parser.run();
}

}  // namespace korel
