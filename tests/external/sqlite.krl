# SQLite: handles as numbers, text both ways, rows that arrive in a procedure of the language.
d := proc(f) define_external(f, args[2..-1], LIB = "libsqlite3.so.0") end proc:
open_ := d('sqlite3_open', file::string[], db::REF(integer[8], RETURN_ONLY), RETURN::integer[4]):
close_ := d('sqlite3_close', db::integer[8], RETURN::integer[4]):
errmsg := d('sqlite3_errmsg', db::integer[8], RETURN::string[]):
Texts := ARRAY(1..n, integer[8]):
exec := d('sqlite3_exec', db::integer[8], sql::string[],
    row::PROC(data::ANYTHING, n::integer[4], values::Texts, names::Texts, RETURN::integer[4]), data::ANYTHING, message::integer[8], RETURN::integer[4]):
open_(":memory:", 'd0');
exec(d0, "create table people(name text, age integer); insert into people values('ada', 36), ('emil', 57), ('sofia', 41), ('nobody', null)", 0, 0, 0);

# the text behind an address
strlen := define_external('strlen', s::integer[8], RETURN::integer[8], LIB = "libc.so.6"):
strcpy := define_external('strncpy', dest::REF(string[50]), source::integer[8], n::integer[8], RETURN::integer[8], LIB = "libc.so.6"):
text := proc(address) local t; if address = 0 then NULL else t := ""; strcpy('t', address, strlen(address) + 1); t end if end proc:
rows := []:
exec(d0, "select name, age from people order by age", proc(data, n, values, names) global rows; rows := [op(rows), [seq([text(names[i]) = text(values[i])], i = 1..n)]]; 0 end proc, 0, 0);
rows;

# the object that goes with the call comes to the callback
exec(d0, "select 1", proc(data, n, values, names) data[seen] := n; 0 end proc, seen_, 0):
T := table(): exec(d0, "select 1, 2", proc(data, n, values, names) data[seen] := n; 0 end proc, T, 0); T[seen];

# a procedure that ends the query; an error that leaves it; the handle is good after both
exec(d0, "select name from people", () -> 1, 0, 0), errmsg(d0);
exec(d0, "select name from people", proc() error "no more of %1", args[2] end proc, 0, 0);
exec(d0, "nonsense", 0, 0, 0), errmsg(d0);
count := 0: exec(d0, "select name from people", proc() global count; count := count + 1; gc(); 0 end proc, 0, 0), count;

# a statement step by step, with values bound to it
prepare := d('sqlite3_prepare_v2', db::integer[8], sql::string[], n::integer[4], statement::REF(integer[8], RETURN_ONLY), tail::integer[8], RETURN::integer[4]):
bind_int := d('sqlite3_bind_int', s::integer[8], i::integer[4], v::integer[4], RETURN::integer[4]):
step := d('sqlite3_step', s::integer[8], RETURN::integer[4]):
column_text := d('sqlite3_column_text', s::integer[8], i::integer[4], RETURN::string[]):
column_double := d('sqlite3_column_double', s::integer[8], i::integer[4], RETURN::float[8]):
finalize := d('sqlite3_finalize', s::integer[8], RETURN::integer[4]):
prepare(d0, "select name, age / 2.0 from people where age > ? order by name", -1, 'st', 0), bind_int(st, 1, 40);
while step(st) = 100 do column_text(st, 0), column_double(st, 1) end do;
finalize(st), prepare(d0, "select age from people where name = 'nobody'", -1, 'st', 0), step(st), [column_text(st, 0)], finalize(st);
