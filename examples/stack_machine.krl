# A stack machine: an assembler from text to instructions, the machine, and a compiler for it.

# A program is a list of lines, each a label (a string with a colon), or an instruction with its operand.
# The assembler resolves labels to positions.
assembled := proc(lines::list)
  local labels, code, line, at;
  at := 0;
  for line in lines do
    if type(line, string) then
      if assigned(labels[line]) then error "label %1 occurs twice", line end if;
      labels[line] := at + 1
    else at := at + 1
    end if
  end do;
  code := NULL;
  for line in lines do
    if type(line, string) then next
    elif nops(line) = 2 and type(line[2], string) then
      if not assigned(labels[line[2]]) then error "no label %1", line[2] end if;
      code := code, [line[1], labels[line[2]]]
    else code := code, line
    end if
  end do;
  [code]
end proc:

# The machine: a stack, named cells, a stack of return positions and a list of what it has printed. The
# instructions are procedures in a table, so that a new one is a new entry. (A sum `take() + take()` would be
# `2*take()` before it ran: what has effects is called in statements of its own.)
machine := proc(code::list)
  local stack, depth, cells, calls, output, at, steps, put, take, instructions, line;
  depth := 0; calls := []; output := []; at := 1; steps := 0;
  put := proc(x) depth := depth + 1; stack[depth] := x end proc;
  take := proc()
    if depth = 0 then error "the stack is empty at instruction %1", at - 1 end if;
    depth := depth - 1;
    stack[depth + 1]
  end proc;
  instructions := table([
    push  = proc(x) put(x) end proc,
    dup   = proc() local x; x := take(); put(x); put(x) end proc,
    swap  = proc() local x, y; x := take(); y := take(); put(x); put(y) end proc,
    drop  = proc() take() end proc,
    plus  = proc() local x; x := take(); put(x + take()) end proc,
    times = proc() local x; x := take(); put(x*take()) end proc,
    less  = proc() local x; x := take(); put(take() - x) end proc,
    rest  = proc() local x; x := take(); put(irem(take(), x)) end proc,
    over  = proc() local x; x := take(); put(iquo(take(), x)) end proc,
    load  = proc(name) if not assigned(cells[name]) then error "cell %1 is empty", name end if;
                       put(cells[name]) end proc,
    store = proc(name) cells[name] := take() end proc,
    jump  = proc(target) at := target end proc,
    jumpz = proc(target) if take() = 0 then at := target end if end proc,
    jumpn = proc(target) if take() < 0 then at := target end if end proc,
    call  = proc(target) calls := [op(calls), at]; at := target end proc,
    ret   = proc() at := calls[-1]; calls := calls[1..-2] end proc,
    show  = proc() output := [op(output), take()] end proc,
    halt  = proc() at := 0 end proc
  ]);
  while at >= 1 and at <= nops(code) do
    line := code[at];
    if not assigned(instructions[line[1]]) then error "no instruction %1", line[1] end if;
    at := at + 1; steps := steps + 1;
    if steps > 2000 then error "the program does not end" end if;
    instructions[line[1]](op(line[2..-1]))
  end do;
  output
end proc:
run := lines -> machine(assembled(lines)):

# The factorials up to 10, in a loop.
run([
  [push, 1], [store, n], [push, 1], [store, f],
  "loop:", [load, f], [load, n], [times], [dup], [show], [store, f],
  [load, n], [push, 1], [plus], [dup], [store, n],
  [push, 11], [less], [jumpn, "loop:"]]);

# The greatest common divisor by Euclid, as a subroutine.
gcdRoutine := "gcd:", [dup], [jumpz, "done:"], [dup], [store, b], [rest], [load, b], [swap], [jump, "gcd:"],
              "done:", [drop], [ret]:
run([[push, 1071], [push, 462], [call, "gcd:"], [show],
     [push, 2^40], [push, 6^20], [call, "gcd:"], [show], [halt], gcdRoutine]);
igcd(1071, 462), igcd(2^40, 6^20);

# What can go wrong.
run([[push, 1], [plus]]);
run([[load, x]]);
run([[fly]]);
run([[jump, "nowhere:"]]);
run(["here:", [jump, "here:"]]);
run(["a:", "a:"]);

# A compiler: an expression of the system becomes code that computes it. Sums and products are taken apart
# by their operands, powers become products.
compile := proc(e)
  local k;
  if type(e, integer) then [push, e]
  elif type(e, name) then [load, e]
  elif type(e, `+`) then compile(op(1, e)), seq(op([compile(op(k, e)), [plus]]), k = 2..nops(e))
  elif type(e, `*`) then compile(op(1, e)), seq(op([compile(op(k, e)), [times]]), k = 2..nops(e))
  elif type(e, anything^posint) then
    compile(op(1, e)), seq(op([compile(op(1, e)), [times]]), k = 2..op(2, e))
  else error "no code for %1", e
  end if
end proc:

compile(3*x^2 + 1);
polynomial := x^3 - 6*x^2 + 11*x - 6:
values := run([seq(op([[push, v], [store, x], compile(polynomial), [show]]), v = 0..5)]);
evalb(values = [seq(eval(polynomial, x = v), v = 0..5)]);
compile(sin(x));
