# The settings that kernel and front end share.

interface := proc()
  description "interface(name), interface(name = value): the present value of a setting, or the one before it is set";
  local setting, name, before;
  if nargs = 0 then error "interface expects names of settings, or equations name = value" end if;
  if not type([args], list({symbol, string, symbol = anything, string = anything})) then
    error "name or name = value expected, but received %1", op(1, remove(type, [args], {symbol, string, symbol = anything, string = anything}))
  end if;
  before := NULL;
  for setting in [args] do
    name := cat(``, `if`(type(setting, `=`), lhs(setting), setting));
    before := before, INTERFACE_GET(name);
    if type(setting, `=`) then INTERFACE_SET(name, rhs(setting)) end if
  end do;
  before
end proc:
