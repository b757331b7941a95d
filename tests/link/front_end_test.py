"""The kernel process under an independent front end:   front_end_test.py KORELKERNEL [unittest arguments]"""

import os
import random
import signal
import sys
import tempfile
import threading
import time
import unittest

import records
from front_end import Ended, Kernel
from records import Object, call, encode, integer, name, same, sequence, string

PROGRAM = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else ""
SEED = int(os.environ.get("SEED", "20240611"))
SANITIZED = bool(os.environ.get("KOREL_SANITIZED"))


def kernel(*arguments, **keywords):
    return Kernel(PROGRAM, *arguments, **keywords)


def streams(said):
    return [stream for stream, _ in said]


def lst(*members):
    return Object("LIST", sequence(*members))


class Start(unittest.TestCase):
    def test_first_statement_runs_the_start(self):
        with kernel("-c", "a := 5:") as k:
            said = streams(k.run(sequence()))
            self.assertEqual(said[:2], ["START", "LOGO"])
            self.assertEqual(said[-1], "DONE")
            self.assertIn("HELP", said)
            self.assertEqual(said.count("GET"), said.count("SET"))
            self.assertEqual(streams(k.run(sequence())), ["DONE"])
            self.assertTrue(same(k.value(name("a")), integer(5)))

    def test_restart(self):
        with kernel() as k:
            k.run(sequence())
            k.read("a := 5")
            said = streams(k.run(name("restart")))
            self.assertEqual((said[0], said[-1]), ("START", "DONE"))
            self.assertIn("HELP", said)
            self.assertTrue(same(k.value(name("a")), name("a")))

    def test_failed_start(self):
        k = kernel("-e", "7")
        self.assertNotEqual(k.close(), 0)
        with open(k.error_file) as file:
            self.assertEqual(file.read(), "korel: error break level must be 0, 1, or 2")
        k = kernel("-w", "9", file_name="/nonexistent/directory/file")
        self.assertNotEqual(k.close(), 0)

    def test_arguments_that_fail(self):
        for data in (b"", b"3", b"2\0korel\0-s", b"1\0korel\0x", b"-1\0\1", b"99999999\0\1", b"2\0korel\0" + b"x" * 5000):
            k = kernel(raw_arguments=data)
            self.assertNotEqual(k.close(), 0, data[:20])
        long = "%s := 7:" % ("b" * 5000)
        with kernel("-c", long) as k:
            k.run(sequence())
            self.assertTrue(same(k.value(name("b" * 5000)), integer(7)))

    def test_no_pipes(self):
        status = os.spawnve(os.P_WAIT, PROGRAM, [PROGRAM], {})
        self.assertNotEqual(status, 0)


class Values(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.kernel = kernel()
        cls.kernel.run(sequence())

    @classmethod
    def tearDownClass(cls):
        assert cls.kernel.close() == 0

    def check_bytes(self):
        """What the kernel has written is what this side writes of it."""
        for data in self.kernel.messages:
            self.assertEqual(encode(records.decode(data)), data)

    def round_trip(self, x):
        value = self.kernel.value(x)
        self.check_bytes()
        self.assertTrue(same(value, x), "%.300r came back as %.300r" % (x, value))

    def test_integers(self):
        rng = random.Random(SEED)
        values = [0, 1, -1, 9, 10, 79, 80, 99, 9999, 10000, 2**29, -2**29, 2**31, 2**32, 10**12 - 1, 10**12]
        values += [rng.choice((1, -1)) * rng.randrange(10**rng.randrange(1, 200)) for _ in range(300)]
        for value in values:
            self.round_trip(integer(value))

    def test_arithmetic(self):
        rng = random.Random(SEED + 1)
        for _ in range(200):
            terms = [rng.choice((1, -1)) * rng.randrange(10**rng.randrange(1, 80)) for _ in range(rng.randrange(2, 6))]
            one = integer(1)
            total = Object("SUM", *[f for t in terms for f in (integer(t), one)])
            self.assertTrue(same(self.kernel.value(total), integer(sum(terms))), terms)
            product = 1
            for t in terms:
                product *= t
            self.assertTrue(
                same(self.kernel.value(Object("PROD", *[f for t in terms for f in (integer(t), one)])),
                     integer(product)), terms)

    def test_texts(self):
        every = bytes(range(2, 256))
        self.round_trip(string(every))
        self.round_trip(string(b"\1 in the midst"))
        self.round_trip(string(b""))
        self.round_trip(Object("NAME", b"a name {with} |marks~ and " + bytes(range(200, 256)), None))
        for c in range(1, 256):
            self.round_trip(string(bytes([c])))

    def test_structures(self):
        rng = random.Random(SEED + 2)

        def random_value(depth):
            kind = rng.randrange(8 if depth > 0 else 3)
            if kind == 0:
                return integer(rng.randrange(-10**6, 10**6))
            if kind == 1:
                return name("".join(rng.choice("pqrs_ 7é") for _ in range(rng.randrange(1, 6))) + "x")
            if kind == 2:
                return string("".join(rng.choice("ab \n{~|é") for _ in range(rng.randrange(9))))
            if kind in (3, 4):
                return lst(*[random_value(depth - 1) for _ in range(rng.randrange(5))])
            if kind == 5:
                return call("f%d" % rng.randrange(9), *[random_value(depth - 1) for _ in range(rng.randrange(4))])
            if kind == 6:
                return Object("EQUATION", random_value(depth - 1), random_value(depth - 1))
            return Object("RANGE", random_value(depth - 1), integer(rng.randrange(9)))

        for _ in range(300):
            # A list around it: a result of several members is no single value.
            self.round_trip(lst(random_value(rng.randrange(1, 6))))

    def test_sharing(self):
        # Two to the sixtieth leaves, sixty objects: each list holds the one before twice.
        x = call("f", name("z"))
        for _ in range(60):
            x = lst(x, x)
        data = encode(x)
        self.assertLess(len(data), 600)
        self.kernel.begin(Object("ASSIGN", name("shared"), x))
        self.kernel.finish()
        value = records.encode(records.decode(self.kernel.messages[0]).fields[1].fields[0].fields[1])
        self.assertLess(len(value), 600)
        self.assertEqual(value, data)

    def test_long_and_deep(self):
        rng = random.Random(SEED + 3)
        self.round_trip(lst(*[integer(rng.randrange(10**9)) for _ in range(100000)]))
        x = name("core")
        for _ in range(1000):
            x = lst(x)
        self.round_trip(x)
        self.round_trip(string(b"0123456789" * 100000))

    def test_every_kind_of_value_keeps_its_bytes(self):
        for text in ("2/3", "1.5", "-2.5e-30", "1/2 + 2*I", "1.5 - 0.25*I", "x^(1/2)", "3*x*y^2 - 7", "a..b", "a <> b",
                     "a <= b", "a < b", "a and not b or c", "''f(x)''", "{1, b, \"c\"}", "x[1, 2]", "a::b", "f(g(h()))",
                     "table([a = 1, b = 2])", "array(1..2)", "proc(x, y::integer) local t; option remember; description "
                     "\"d\"; t := x; while t > 1 do t := t - 1 end do; try f(t) catch \"e\": 1 finally 2 end try; "
                     "if t = 1 then return y else error \"bad %1\", x end if end proc", "x -> x^2 + args[1]",
                     "proc() local a; proc() a end proc end proc()", "eval(seq)", "NULL", "infinity", "undefined",
                     "module() export e; local l; e := 2 end module", "a || 1", "[]", "{}", "2^100/3^70"):
            self.kernel.read("v := " + text)
            self.check_bytes()
            self.kernel.run(call("eval", name("v")))
            self.check_bytes()

    def test_values_that_this_side_knows(self):
        k = self.kernel
        self.assertTrue(same(k.value(call("parse", string("[1, 2/3, `a b`, \"s\"]"))),
                             lst(integer(1), Object("RATIONAL", integer(2), integer(3)), name("a b"), string("s"))))
        self.assertTrue(same(k.value(Object("FLOAT", integer(15), integer(-1))),
                             Object("FLOAT", integer(15), integer(-1))))
        # A name comes without its value, a procedure with its positions.
        k.read("p := proc(x) local y; y := x end proc")
        value = k.value(call("eval", name("p")))
        self.assertEqual(value.tag, "PROC")
        self.assertTrue(same(value.fields[4], Object("ASSIGN", Object("LOCAL", 1), Object("PARAM", 1))), value)
        # Members of a sequence are the arguments of the message.
        said = k.run(sequence(integer(1), integer(2)))
        self.assertEqual([len(a) for s, a in said if s == "RESULT"], [2])
        # Unordered on the way in, a set without repetition on the way out.
        value = k.value(Object("SET", sequence(name("b"), integer(3), name("b"), integer(3))))
        self.assertEqual(sorted(map(repr, value.fields[0].fields)), ["'b'", "3"])

    def test_line_breaks_change_nothing(self):
        rng = random.Random(SEED + 4)
        record = encode(lst(integer(10**50), string("a text | of {many} kinds"), call("f", name("x"))))
        for _ in range(50):
            broken = bytearray()
            for c in record:
                broken.append(c)
                while rng.randrange(3) == 0 and len(broken) < 5 * len(record):
                    broken.append(rng.choice([2, 10, 13, 32, 127, 128, 255]))
            # Behind a record nothing but the flush stands.
            while broken[-1] != record[-1]:
                broken.pop()
            value = self.kernel.value(bytes(broken))
            self.assertEqual(encode(value), record)


class Messages(unittest.TestCase):
    def test_results_wanted(self):
        with kernel() as k:
            k.run(sequence())
            self.assertEqual(streams(k.run(integer(5), results=False)), ["DONE"])
            self.assertEqual(streams(k.run(call("print", integer(5)), results=False)), ["PRINT", "DONE"])
            self.assertEqual(streams(k.run(integer(5))), ["RESULT", "DONE"])

    def test_streams_of_a_program(self):
        with kernel() as k:
            k.run(sequence())
            said = k.run(call("INTERFACE_OWN", integer(3)), answer=lambda s, a: lst(name("reply")) if s == "OWN" else None)
            self.assertEqual(streams(said), ["OWN", "RESULT", "DONE"])
            self.assertTrue(same(said[1][1][0], lst(name("reply"))))
            said = k.run(call("callback", integer(3), name("x")),
                         answer=lambda s, a: integer(42) if s == "CALLBACK" else None)
            self.assertTrue(same(said[-2][1][0], integer(42)))
            said = k.run(call("INTERFACE_READLINE"), answer=lambda s, a: string("typed\n") if s == "READLINE" else None)
            self.assertTrue(same(said[-2][1][0], string("typed\n")))
            said = k.read("f := proc() z := 1 end proc")
            self.assertEqual(said[0][0], "WARN")

    def test_errors(self):
        with kernel() as k:
            k.run(sequence())
            k.read("f := proc(x) error \"%1 is bad\", x end proc")
            said = k.run(call("f", integer(7)))
            self.assertEqual(streams(said), ["EXCEPT", "DONE"])
            self.assertTrue(same(said[0][1][0], name("f")))
            self.assertTrue(same(said[0][1][1], string("%1 is bad")))
            self.assertTrue(same(said[0][1][2], integer(7)))
            # What has no record is an error of the statement; its value is there all the same.
            k.read("nested := proc(n) local s; s := 1; to n do s := [s] end do; s end proc")
            self.assertEqual(k.error(call("nested", integer(1000000))), "too many levels of recursion")
            self.assertTrue(same(k.value(integer(1)), integer(1)))

    def test_stop(self):
        for statement, code in ((call("quit", integer(7)), 7), (Object("STOP"), 0)):
            with kernel() as k:
                k.run(sequence())
                said = k.run(statement)
                self.assertEqual(streams(said)[-2:], ["STOP", "DONE"])
                self.assertTrue(same(said[-2][1][0], integer(code)))
                # The front end ends the process: until then it waits.
                self.assertTrue(same(k.value(integer(2)), integer(2)))
                self.assertEqual(k.close(), 0)


BAD_RECORDS = [
    b"", b"G", b"z", b"eee", b"F\"", b"F!", b'"!', b'"$+', b'""z', b'"Zk', b"7", b"7!", b'7#7#F"', b"6~$",
    b"6" + b"[" * 7 + b"k", b"6" + b"[" * 9 + b"k", b"6jjjjjjz", b"7jjjjjjz", b"Qjjjjjjz", b"Q$ab", b'Q"|!6"', b'Q"a', b'Q"aG',
    b'%"x', b'%"', b"#" + b'""&', b"#" + b'%"xG%"yG', b'$%"xG""&', b"^!", b'^$""&%"xG""&', b'-%"fG""&', b"-GG", b"-\"\"&G",
    b'>""&', b"R", b"RGGGGGGGG", b'R6"6"6"6"6"6"6"6#%"aG', b"8!", b"T!", b"E", b"E%!", b'E#"', b"E\"!", b"X",
    b'X(%"xG6"6"!', b'd#%"xG""&', b'a#', b"Z!", b"?\"", b"@!", b"C!", b"N", b'P!', b'+"', b'+%6"',
    b'=""&', b'=6"6"6"', b'`6"', b'b6"6"6"', b'I"x', b"L!", b'L"', b'H""&""&', b"]", b"e", b":6\"", b"W", b"{",
    b"7#" * 300000, b'6"extra', b'""&""&', b"(" * 200000, b"~", b'""&\n', b'""& ',
]


class BadInput(unittest.TestCase):
    def alive(self, k):
        self.assertTrue(same(k.value(integer(12345)), integer(12345)))

    def resident_megabytes(self, k):
        with open("/proc/%d/status" % k.process.pid) as file:
            return [int(line.split()[1]) / 1024 for line in file if line.startswith("VmRSS")][0]

    def test_bad_records(self):
        with kernel() as k:
            k.run(sequence())
            for record in BAD_RECORDS:
                said = k.run(record)
                self.assertEqual(streams(said), ["EXCEPT", "DONE"], record[:40])
                self.assertTrue(same(said[0][1][1], string("invalid data structure received from user interface")),
                                record[:40])
                self.alive(k)
            if not SANITIZED:
                self.assertLess(self.resident_megabytes(k), 300)

    def test_bad_replies(self):
        with kernel() as k:
            k.run(sequence())
            for record in BAD_RECORDS:
                said = k.run(call("INTERFACE_OWN"), answer=lambda s, a: record if s == "OWN" else None)
                self.assertEqual(streams(said), ["OWN", "EXCEPT", "DONE"], record[:40])
                self.assertTrue(same(said[1][1][1], string("invalid data structure returned from user interface")))
            # Replies that nobody looks at may be anything.
            for stream in ("RESULT", "DONE"):
                k.run(integer(1), answer=lambda s, a: b"zz" if s == stream else None)
                self.alive(k)

    def test_names_keep_what_they_hold(self):
        with kernel() as k:
            k.run(sequence())
            k.read("a := 5")
            # A value and an attribute in a record are not assigned.
            k.run(Object("NAME", b"a", integer(6), sequence(name("protected"))))
            self.assertTrue(same(k.value(name("a")), integer(5)))
            k.run(lst(Object("NAME", b"fresh", integer(6))))
            self.assertTrue(same(k.value(name("fresh")), name("fresh")))

    def test_spoiled_records(self):
        """Any bytes as a statement: an answer, and a kernel that goes on."""
        rng = random.Random(SEED + 5)
        seeds = [encode(lst(integer(10**30), string("text"), call("f", name("x"), Object("FLOAT", integer(5), integer(-1))))),
                 encode(Object("SET", sequence(name("a"), Object("SUM", name("x"), integer(2), integer(7), integer(1))))),
                 encode(Object("TABLE", sequence(), sequence(), Object("HASHTAB", 5, name("a"), integer(1)))),
                 encode(Object("PROC", sequence(name("x")), sequence(name("y")), sequence(), sequence(),
                               Object("ASSIGN", Object("LOCAL", 1), Object("PARAM", 1)), sequence(), sequence(),
                               sequence())),
                 encode(Object("TRY", Object("ERROR", string("x")), string("x"), integer(1)))]
        with tempfile.TemporaryDirectory() as directory:
            here = os.getcwd()
            os.chdir(directory)
            try:
                with kernel("-z") as k:
                    k.run(sequence())
                    for _ in range(300 if SANITIZED else 1500):
                        data = bytearray(rng.choice(seeds))
                        for _ in range(rng.randrange(1, 4)):
                            at = rng.randrange(len(data))
                            what = rng.randrange(4)
                            if what == 0:
                                data[at] = rng.randrange(33, 127)
                            elif what == 1:
                                del data[at:at + rng.randrange(1, 4)]
                            elif what == 2:
                                data.insert(at, rng.randrange(2, 256))
                            else:
                                other = rng.choice(seeds)
                                data[at:at] = other[rng.randrange(len(other)):][:rng.randrange(20)]
                            if not data:
                                break
                        stop = threading.Timer(5, k.interrupt)  # a loop without end may be among them
                        stop.start()
                        try:
                            k.run(bytes(data))
                        except Ended:
                            self.fail("the kernel ended (%s) at %r" % (k.close(), bytes(data)))
                        stop.cancel()
                    self.alive(k)
                    self.assertEqual(k.close(), 0)
            finally:
                os.chdir(here)

    def test_ends_in_the_midst(self):
        statement = b"\1" + encode(lst(integer(10**20), string("text"))) + b"\1"
        for length in range(len(statement)):
            k = kernel()
            k.run(sequence())
            k.send(statement[:length])
            self.assertEqual(k.close(), 0, length)
        # And in the midst of a reply.
        k = kernel()
        k.run(sequence())
        k.begin(call("INTERFACE_OWN"))
        k.receive()
        k.send(b'Q$a')
        self.assertEqual(k.close(), 0)


class Processes(unittest.TestCase):
    def test_interrupt(self):
        with kernel() as k:
            k.run(sequence())
            k.interrupt()  # nothing runs: no effect
            self.assertTrue(same(k.value(integer(3)), integer(3)))
            for _ in range(5):
                threading.Timer(0.2, k.interrupt).start()
                said = k.read("do end do")
                self.assertEqual(streams(said), ["INTR", "DONE"])
            k.read("a := 8")
            # One that comes while the kernel waits for a line is for the program that asks.
            def interrupting(stream, arguments):
                if stream == "READLINE":
                    k.interrupt()
                    time.sleep(0.05)
                return None
            self.assertEqual(streams(k.run(call("INTERFACE_READLINE"), answer=interrupting)), ["READLINE", "INTR", "DONE"])
            self.assertTrue(same(k.value(name("a")), integer(8)))

    def test_terminate_and_kill(self):
        k = kernel()
        k.run(sequence())
        k.process.send_signal(signal.SIGTERM)
        self.assertEqual(k.close(), 0)
        k = kernel()
        k.run(sequence())
        k.begin(call("parse", string("do end do"), name("statement")))
        time.sleep(0.1)
        k.process.send_signal(signal.SIGTERM)
        self.assertEqual(k.close(), 0)
        k = kernel()
        k.run(sequence())
        k.process.kill()
        with self.assertRaises(Ended):
            k.receive()
        self.assertEqual(k.close(), -signal.SIGKILL)

    def test_front_end_that_is_gone(self):
        # In a loop without output, in one that prints, and before the answer to a message.
        for text in ("do end do", "do print(1) end do", "INTERFACE_OWN()"):
            k = kernel()
            k.run(sequence())
            k.begin(call("parse", string(text), name("statement")))
            time.sleep(0.05)
            os.close(k.into)
            k.into = -1
            self.assertEqual(k.close(), 0, text)

    def test_environment(self):
        with kernel() as k:
            k.run(sequence())
            # The commands of a program don't see the pipes' variable.
            with tempfile.NamedTemporaryFile() as file:
                k.run(call("system", string("env > " + file.name)))
                self.assertNotIn(b"PIPES_TRANSFER_VAR", file.read())


if __name__ == "__main__":
    sys.setrecursionlimit(20000)
    threading.stack_size(256 * 1024 * 1024)
    result = []

    def main():
        program = unittest.main(argv=[sys.argv[0]] + sys.argv[2:], exit=False)
        result.append(program.result.wasSuccessful())

    # Records are read by recursion, which wants a stack of its own.
    thread = threading.Thread(target=main)
    thread.start()
    thread.join()
    sys.exit(0 if result and result[0] else 1)
