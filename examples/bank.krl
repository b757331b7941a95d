# State that belongs to closures, and modules as objects: a bank of accounts.

# A counter is a closure: each call of `counter` makes a new local `n`, which only its procedure knows.
counter := proc()
  local n;
  n := 0;
  proc() n := n + 1 end proc
end proc:
tick, tock := counter(), counter():
tick(), tick(), tick(), tock(), tick();

# An account is a module: what it exports can be called from outside, its balance cannot.
account := proc(owner::string, opening::nonnegint)
  module()
    export deposit, withdraw, balance, statement;
    local funds, entries, record;
    funds := opening;
    entries := [["opening", opening]];
    record := proc(what, amount) entries := [op(entries), [what, amount]]; funds end proc;
    balance := () -> funds;
    deposit := proc(amount::posint) funds := funds + amount; record("deposit", amount) end proc;
    withdraw := proc(amount::posint)
      if amount > funds then error "%1 has only %2, not %3", owner, funds, amount end if;
      funds := funds - amount;
      record("withdrawal", -amount)
    end proc;
    statement := () -> entries;
  end module
end proc:

ada := account("Ada", 100):
ada:-deposit(50), ada:-withdraw(30), ada:-balance();
ada:-statement();
evalb(add(entry[2], entry = ada:-statement()) = ada:-balance());

# What goes wrong leaves the state alone, and names the procedure and its operands.
ada:-withdraw(1000);
ada:-deposit(-5);
ada:-balance();
ada:-funds;

# The bank keeps its accounts in a table, by name. A transfer happens whole or not at all: when the second
# half fails, the first is undone and the error goes on.
bank := module()
  export open, transfer, total, names, of;
  local accounts, find;
  accounts := table();
  find := proc(owner)
    if not assigned(accounts[owner]) then error "no account of %1", owner end if;
    accounts[owner]
  end proc;
  open := proc(owner, amount)
    if assigned(accounts[owner]) then error "%1 has an account", owner end if;
    accounts[owner] := account(owner, amount);
    owner
  end proc;
  of := owner -> find(owner);
  transfer := proc(giver, taker, amount)
    find(giver):-withdraw(amount);
    try
      find(taker):-deposit(amount)
    catch "no account":
      find(giver):-deposit(amount);
      error
    end try;
    [of(giver):-balance(), of(taker):-balance()]
  end proc;
  names := () -> {seq(op(k), k = [indices(accounts)])};
  total := () -> add(a[1]:-balance(), a = [entries(accounts)]);
end module:

bank:-open("Ada", 100), bank:-open("Bo", 20), bank:-open("Cy", 0);
bank:-open("Bo", 5);
bank:-transfer("Ada", "Bo", 40);
bank:-transfer("Bo", "Cy", 60);
bank:-transfer("Bo", "Cy", 1);
bank:-transfer("Ada", "Dee", 10);
bank:-of("Ada"):-balance(), bank:-of("Bo"):-balance(), bank:-of("Cy"):-balance();
bank:-total();                                # money neither came nor went
evalb(bank:-names() = {"Ada", "Bo", "Cy"});
bank:-of("Ada"):-statement()[-2..-1];         # the failed transfer, and its way back

# `use` reads a module's members without its name.
use ada in deposit(5); balance() end use;

# Savings with interest: a procedure that remembers, and one that takes a procedure.
grow := proc(years) option remember; 21/20*grow(years - 1) end proc: grow(0) := 1000:
grow(10);
evalf(grow(10));
until := proc(holds) local k; for k from 0 while not holds(k) do end do; k end proc:
until(k -> grow(k) >= 2000);                  # doubled in the 15th year
