// Statements, the heads of procedures and modules, and the lists in them.

#include "text/read/parser.h"

#include "session/interface.h"
#include "store/append.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"
#include "text/read/parser_machine.h"
#include "text/read/parser_objects.h"
#include "text/read/parser_tables.h"

namespace korel {

DAG vectorConstructor(bool row) { return naminstall(row ? "rtable/ConstructRow" : "rtable/ConstructColumn"); }

namespace {

bool isTerminator(int token) { return token == T_SEMI || token == T_COLON; }

/// Tokens that may follow an empty statement.
bool endsStatement(int token) {
  switch (token) {
    case T_END: case T_FI: case T_OD: case T_ELIF: case T_ELSE: case T_COLON: case T_SEMI: case T_CATCH: case T_FINALLY:
      return true;
    default: return false;
  }
}

bool beginsExpression(int token) {
  switch (token) {
    case T_NAME: case T_STRING: case T_INTEGER: case T_EXPINT: case T_DOT: case T_SDOT: case T_LPAREN: case T_LBRACKET:
    case T_LBRACE: case T_QUOTE: case T_LT: case T_LABEL: case T_MEMBER: case T_NOT: case T_PLUS: case T_MINUS:
    case T_DOLLAR: case T_NEUTRAL: case T_AMPSTAR: case T_PROC: case T_MODULE:
      return true;
    default: return false;
  }
}

// ---- the clauses of a counted loop, by their field in the FOR

struct LoopClause {
  int token;
  Symbol symbol;
  Word field;
  const char* repeated;
};
constexpr LoopClause loopClauseRows[] = {
    // token  symbol             field      error when it comes twice
    {T_FROM,  Symbol::fromWord,  loopFrom,  "repeated from part"},
    {T_BY,    Symbol::byWord,    loopBy,    "repeated by part"},
    {T_TO,    Symbol::toWord,    loopTo,    "repeated to part"},
    {T_WHILE, Symbol::whileWord, loopWhile, "repeated while part"},
};

// ---- the parts of a head, and what their lists consist of

enum ItemForms : std::uint8_t { names = 1, strings = 2, types = 4, values = 8 };

struct HeadPart {
  int token;
  Symbol symbol;
  std::uint8_t forms;  // of an item
  int closing;         // token behind the list; 0: a terminator
  Word field;          // in the PROC or MODDEF; 0: not a part of its own
  const char* repeated;
};
constexpr HeadPart headParts[] = {
    // token        symbol                   forms            closing   field            error when it comes twice
    {T_PROC,        Symbol::parameters,      names | types,   T_RPAREN, 0,               nullptr},
    {T_LOCAL,       Symbol::localPart,       names | types,   0,        procLocals,      "repeated local part"},
    {T_EXPORT,      Symbol::exportPart,      names | types,   0,        moddefExports,   "repeated export part"},
    {T_GLOBAL,      Symbol::globalPart,      names,           0,        procGlobals,     "repeated global part"},
    {T_OPTION,      Symbol::optionPart,      names | values,  0,        procOptions,     "repeated options part"},
    {T_DESCRIPTION, Symbol::descriptionPart, names | strings, 0,        procDescription, "repeated description part"},
    {T_CATCH,       Symbol::catchWord,       strings,         T_COLON,  0,               nullptr},
};

const HeadPart& partOf(Symbol symbol) {
  const HeadPart* part = headParts;
  while (part->symbol != symbol) ++part;
  return *part;
}

}  // namespace

void Parser::setDisplay(int terminatorToken) {
  take();
  defaultNerinVariables.display = terminatorToken == T_SEMI;
}

/// `end` or `end` and the word that began the construct; the token at hand is `end`.
void Parser::endConstruct(int keyWord) {
  if (look() != T_END) unexpected();
  push(Symbol::mark);
  take();
  acceptToken(keyWord);
  --top;
}

// ---- a statement begins

Step Parser::statement() {
  bool outermost = at(0).symbol == Symbol::prelude;
  auto keyWord = [&](Symbol symbol, Step next) {
    push(symbol);
    take();
    return next;
  };
  auto simple = [&](DAG value) {
    push(Symbol::statement, value);
    take();
    return Step::statementDone;
  };
  int token = look();
  switch (token) {
    case T_EOF:
      if (!outermost) unexpected();
      parsestat = new2(CONTROL, cons1);
      return Step::accept;
    case T_QUIT:
      if (!outermost) return simple(new1(STOP));
      parsestat = new1(STOP);
      return Step::accept;
    case T_BREAK: return simple(new1(BREAK));
    case T_NEXT: return simple(new1(NEXT));
    case T_READ: return keyWord(Symbol::readWord, Step::operand);
    case T_SAVE: return keyWord(Symbol::saveWord, Step::operand);
    case T_ERROR: return optionalExpression(Symbol::errorWord, ERROR);
    case T_RETURN: return optionalExpression(Symbol::returnWord, RETURN);
    case T_IF: return keyWord(Symbol::ifWord, Step::operand);
    case T_FOR: return keyWord(Symbol::forWord, Step::operand);
    case T_TRY: return keyWord(Symbol::tryBody, Step::statement);
    case T_USE: return keyWord(Symbol::useWord, Step::operand);
    case T_FROM: case T_BY: case T_TO: case T_WHILE: case T_IN: case T_DO:
      push(Symbol::forPrefix, null); return Step::loopClauses;
    default:
      if (!endsStatement(token)) return Step::operand;
      push(Symbol::statement, null);
      return Step::statementDone;
  }
}

/// `error` or `return`, at hand, with or without an expression.
Step Parser::optionalExpression(Symbol symbol, Tag tag) {
  push(symbol);
  take();
  if (beginsExpression(look())) return Step::operand;
  reduce(1, Symbol::statement, new2(tag, null));
  return Step::statementDone;
}

/// A whole expression is on top behind a key word.
Step Parser::closeKeyWord(Symbol below, int token) {
  DAG value = at(0).value;
  if (kindOf(below) == SymbolKind::opening) {
    if (token == T_ASSIGN) {
      push(Symbol::assign);
      take();
      return Step::operand;
    }
    at(0).symbol = Symbol::statement;
    return Step::statementDone;
  }
  auto done = [&](Tag tag) {
    reduce(2, Symbol::statement, new2(tag, value));
    return Step::statementDone;
  };
  switch (below) {
    case Symbol::assign: reduce(3, Symbol::statement, new3(ASSIGN, at(2).value, value)); return Step::statementDone;
    case Symbol::readWord: return done(READ);
    case Symbol::saveWord: return done(SAVE);
    case Symbol::errorWord: return done(ERROR);
    case Symbol::returnWord: return done(RETURN);
    case Symbol::ifWord: case Symbol::elifWord:
      if (token != T_THEN) unexpected();
      push(Symbol::then);
      take();
      return Step::statement;
    case Symbol::forWord:
      if (at(0).level > Level::nameExpr) unexpected();
      reduce(2, Symbol::forPrefix, value);
      return Step::loopClauses;
    case Symbol::fromWord: case Symbol::byWord: case Symbol::toWord: case Symbol::whileWord:
      for (const LoopClause& clause : loopClauseRows) {
        if (clause.symbol != below) continue;
        DAG loop = at(2).value;
        if (loop[clause.field]) yyerror(clause.repeated);
        loop[clause.field] = value;
        reduce(3, Symbol::forClauses, loop);
      }
      return Step::loopClauses;
    case Symbol::inWord:
      if (token == T_WHILE) {
        push(Symbol::inWhileWord);
        take();
        return Step::operand;
      }
      push(Symbol::inWhile, ini("true"));
      break;
    case Symbol::inWhileWord: reduce(2, Symbol::inWhile, value); break;
    case Symbol::useWord: case Symbol::useComma: return binding(token);
    case Symbol::bindingValue: reduce(3, Symbol::operand, new3(EQUATION, at(2).value, value)); return Step::bindingDone;
    case Symbol::itemType: reduce(3, Symbol::operand, new3(DCOLON, at(2).value, value)); return Step::itemDone;
    case Symbol::itemColon: yyerror("`:` is obsolete, use `::` instead");
    case Symbol::itemValue: reduce(3, Symbol::operand, new3(EQUATION, at(2).value, value)); return Step::itemDone;
    default: unexpected();
  }
  // for x in y, with or without its `while`
  if (token != T_DO) unexpected();
  push(Symbol::doMembers);
  take();
  return Step::statement;
}

// ---- loops

Step Parser::loopClauses() {
  int token = look();
  if (at(0).symbol == Symbol::forPrefix) {
    if (token == T_IN) {
      push(Symbol::inWord);
      take();
      return Step::operand;
    }
    push(Symbol::forClauses, newl2(countedLoopLength, FOR));
  }
  if (token == T_DO) {
    push(Symbol::doCounted);
    take();
    return Step::statement;
  }
  for (const LoopClause& clause : loopClauseRows) {
    if (clause.token != token) continue;
    push(clause.symbol);
    take();
    return Step::operand;
  }
  unexpected();
}

// ---- a statement is on top

Step Parser::statementDone() {
  Symbol opening = at(1).symbol;
  int token = look();
  if (opening == Symbol::prelude) {
    if (!isTerminator(token)) unexpected();
    parsestat = at(0).value;
    push(Symbol::mark);
    setDisplay(token);
    return Step::accept;
  }
  if (opening == Symbol::terminator) reduce(3, Symbol::statSeq, joinStatements(at(2).value, at(0).value));
  else at(0).symbol = Symbol::statSeq;
  if (isTerminator(token)) {
    push(Symbol::terminator);
    setDisplay(token);
    return Step::statement;
  }
  return closeStatements(at(1).symbol, token);
}

/// A whole sequence of statements is on top; what opened it decides what ends it.
Step Parser::closeStatements(Symbol opening, int token) {
  DAG body = at(0).value;
  switch (opening) {
    case Symbol::then: {
      bool first = at(3).symbol == Symbol::ifWord;
      if (first) reduce(4, Symbol::ifParts, new3(IF, at(2).value, body));
      else reduce(5, Symbol::ifParts, Append3(at(4).value, at(2).value, body));
      if (token == T_ELIF) {
        push(Symbol::elifWord);
        take();
        return Step::operand;
      }
      if (token == T_ELSE) {
        push(Symbol::otherwise);
        take();
        return Step::statement;
      }
      return endIf();
    }
    case Symbol::otherwise: reduce(3, Symbol::ifParts, Append2(at(2).value, body)); return endIf();
    case Symbol::doCounted: case Symbol::doMembers:
      if (token == T_OD) take();
      else endConstruct(T_DO);
      if (opening == Symbol::doCounted) reduce(4, Symbol::statement, makeLoop(at(2).value, at(3).value, body));
      else reduce(6, Symbol::statement, makeContainerLoop(at(5).value, at(3).value, at(2).value, body));
      return Step::statementDone;
    case Symbol::tryBody: case Symbol::catchColon: case Symbol::finallyBody: return endTry();
    case Symbol::useIn:
      endConstruct(T_USE);
      reduce(4, Symbol::statement, new3(USE, at(2).value, body));
      return Step::statementDone;
    case Symbol::procHead: case Symbol::moduleHead: {
      endConstruct(opening == Symbol::procHead ? T_PROC : T_MODULE);
      DAG head = at(1).value;
      bodyOf(head) = body;
      reduce(2, Symbol::operand, head, Level::primary);
      return Step::operandDone;
    }
    default: unexpected();
  }
}

/// The parts of an `if` are on top: its end makes a statement of them, or the body of an arrow.
Step Parser::endIf() {
  if (look() == T_FI) take();
  else endConstruct(T_IF);
  if (at(1).symbol == Symbol::arrow) {
    reduce(1, Symbol::operand, at(0).value, Level::expr);
    return Step::operandDone;
  }
  at(0).symbol = Symbol::statement;
  return Step::statementDone;
}

/// The statements of a `try`, of a `catch` or of a `finally` are on top.
Step Parser::endTry() {
  Symbol opening = at(1).symbol;
  DAG body = at(0).value;
  if (opening == Symbol::catchColon) {
    // The pairs are collected in a STATSEQ, which is no statement. Catch strings may be missing.
    bool anything = at(2).symbol == Symbol::catchWord;
    DAG texts = anything ? null : at(2).value;
    int symbols = anything ? 3 : 4;
    if (at(symbols).symbol == Symbol::catchParts)
      reduce(symbols + 1, Symbol::catchParts, Append3(at(symbols).value, texts, body));
    else reduce(symbols, Symbol::catchParts, new3(STATSEQ, texts, body));
  }
  if (opening != Symbol::finallyBody && look() == T_FINALLY) {
    push(Symbol::finallyBody);
    take();
    return Step::statement;
  }
  if (opening != Symbol::finallyBody && look() == T_CATCH) {
    push(Symbol::catchWord);
    take();
    if (look() != T_COLON) return Step::item;
    push(Symbol::catchColon);
    take();
    return Step::statement;
  }
  endConstruct(T_TRY);
  DAG finallyBody = opening == Symbol::finallyBody ? body : DAG();
  int symbols = opening == Symbol::finallyBody ? 2 : 0;
  DAG catches;
  if (at(symbols).symbol == Symbol::catchParts) catches = at(symbols++).value;
  reduce(symbols + 2, Symbol::statement, makeTry(at(symbols).value, catches, finallyBody));
  return Step::statementDone;
}

// ---- use

/// An expression is on top where a binding is wanted.
Step Parser::binding(int token) {
  Entry& operand = at(0);
  bool nameExpr = operand.level == Level::nameExpr;
  bool name = nameExpr && hasTag(operand.value, NAME);
  if (name && token == T_EQ) {
    push(Symbol::bindingValue);
    take();
    return Step::operand;
  }
  bool member = nameExpr && hasTag(operand.value, MEMBER) && operand.value[1] != null;
  if ((name || member) && (token == T_COMMA || token == T_IN)) return Step::bindingDone;
  unexpected();
}

Step Parser::bindingDone() {
  if (at(1).symbol == Symbol::useComma) reduce(3, Symbol::bindings, Append2(at(2).value, at(0).value));
  else reduce(1, Symbol::bindings, new2(EXPSEQ, at(0).value));
  if (acceptToken(T_COMMA)) {
    push(Symbol::useComma);
    return Step::operand;
  }
  expect(T_IN);
  push(Symbol::useIn);
  return Step::statement;
}

// ---- heads

/// An item begins: behind the word of its part, or behind a comma.
Step Parser::item() {
  bool first = at(0).symbol != Symbol::itemComma;
  const HeadPart& part = partOf(first ? at(0).symbol : at(2).symbol);
  int token = look();
  if (first && token == T_RPAREN && part.symbol == Symbol::parameters) {
    push(Symbol::items, null);
    return head();
  }
  bool fits = (token == T_NAME && (part.forms & names)) || (token == T_STRING && (part.forms & strings));
  if (!fits) unexpected();
  pushOperand(take(), Level::nameExpr);
  if (token == T_STRING) return Step::itemDone;
  auto follows = [&](Symbol symbol) {
    push(symbol);
    take();
    return Step::operand;
  };
  if ((part.forms & types) && look() == T_DCOLON) return follows(Symbol::itemType);
  if (part.symbol == Symbol::parameters && look() == T_COLON) return follows(Symbol::itemColon);
  if ((part.forms & values) && look() == T_EQ) return follows(Symbol::itemValue);
  return Step::itemDone;
}

Step Parser::itemDone() {
  if (at(1).symbol == Symbol::itemComma) reduce(3, Symbol::items, Append2(at(2).value, at(0).value));
  else reduce(1, Symbol::items, new2(EXPSEQ, at(0).value));
  if (acceptToken(T_COMMA)) {
    push(Symbol::itemComma);
    return Step::item;
  }
  if (at(1).symbol == Symbol::catchWord) {
    expect(T_COLON);
    push(Symbol::catchColon);
    return Step::statement;
  }
  return Step::head;
}

/// A list of items is on top, or a head that is complete so far.
Step Parser::head() {
  if (at(0).symbol == Symbol::items) {
    const HeadPart& part = partOf(at(1).symbol);
    int token = look();
    if (part.symbol == Symbol::parameters) {
      if (token != T_RPAREN) unexpected();
      push(Symbol::mark);
      take();
      DAG list = at(1).value;
      // [word, parameters, items, `)`], with the module's name behind the word
      bool named = at(3).symbol == Symbol::operand;
      bool module = named || at(3).symbol == Symbol::moduleWord;
      DAG name = named ? at(3).value : null;
      DAG made = module ? newModuleDefinition({.params = list, .locals = rawLocals(), .name = name})
                        : newProcedure({.params = list, .locals = rawLocals()});
      reduce(named ? 5 : 4, module ? Symbol::moduleHead : Symbol::procHead, made);
    } else {
      if (!isTerminator(token)) unexpected();
      push(Symbol::mark);
      setDisplay(token);
      applyPart(part.symbol);
    }
  }
  int token = look();
  for (const HeadPart& part : headParts) {
    if (part.token != token || part.field == 0) continue;
    if (token == T_EXPORT && at(0).symbol != Symbol::moduleHead) break;
    push(part.symbol);
    take();
    return Step::item;
  }
  return Step::statement;
}

/// [head, part, items, terminator]: the head takes the list.
void Parser::applyPart(Symbol symbol) {
  const HeadPart& part = partOf(symbol);
  Entry& head = at(3);
  DAG list = at(1).value;
  DAG& field = symbol == Symbol::localPart ? localsOf(head.value)[1] : head.value[part.field];
  if (field != null) yyerror(part.repeated);
  field = list;
  top -= 3;
}

}  // namespace korel
