"""A front end for the kernel process, with nothing of the kernel's own."""

import os
import select
import signal
import subprocess
import tempfile
import time

import records
from records import call, integer, name, sequence, string

PATIENCE = 60  # seconds for one message

# What `interface` is asked for at the start, as any front end could have it.
SETTINGS = {
    "ansi": name("false"), "echo": integer(1), "errorbreak": integer(1), "errorcursor": name("true"),
    "imaginaryunit": name("I"), "indentamount": integer(4), "labelling": name("true"), "latexwidth": integer(5),
    "longdelim": name("true"), "plotdevice": name("char"), "plotoptions": name(""), "plotoutput": name("terminal"),
    "preplot": records.Object("LIST", sequence()), "postplot": records.Object("LIST", sequence()),
    "prettyprint": integer(1), "prompt": name("> "), "quiet": name("true"), "rtablesize": integer(10),
    "screenheight": integer(25), "screenwidth": integer(79), "showassumed": integer(1), "verboseproc": integer(1),
    "warnlevel": integer(3),
}


class Ended(Exception):
    """The kernel's pipe has ended."""


class Kernel:
    def __init__(self, program, *arguments, raw_arguments=None, file_name=None, environment=None):
        down, up = os.pipe(), os.pipe()
        self.error_file = file_name or os.path.join(tempfile.mkdtemp(), "error text")
        variables = dict(os.environ, PIPES_TRANSFER_VAR="%d %d %s" % (down[0], up[1], self.error_file))
        variables.update(environment or {})
        self.process = subprocess.Popen([program], pass_fds=(down[0], up[1]), env=variables,
                                        stdin=subprocess.DEVNULL)
        os.close(down[0])
        os.close(up[1])
        self.out, self.into = down[1], up[0]
        self.pending = bytearray()
        self.messages = []  # bytes of all messages of the last statement
        if raw_arguments is None:
            texts = ["korel", "-s"] + list(arguments)
            raw_arguments = b"%d\0" % len(texts) + b"".join(t.encode() + b"\0" for t in texts) + b"\1"
        self.send(raw_arguments)

    # ---- bytes

    def send(self, data):
        view = memoryview(data)
        while view:
            view = view[os.write(self.out, view):]

    def receive(self):
        """The bytes of the next message, without its flush."""
        deadline = time.monotonic() + PATIENCE
        while True:
            at = self.pending.find(1)
            if at >= 0:
                message = bytes(self.pending[:at])
                del self.pending[:at + 1]
                return message
            ready, _, _ = select.select([self.into], [], [], max(0, deadline - time.monotonic()))
            if not ready:
                raise TimeoutError("no message from the kernel")
            data = os.read(self.into, 65536)
            if not data:
                raise Ended()
            self.pending += data

    # ---- statements

    def begin(self, statement, results=True):
        record = statement if isinstance(statement, bytes) else records.encode(statement)
        self.send((b"\1" if results else b"\0") + record + b"\1")

    def reply(self, stream, arguments):
        if stream == "GET":
            return SETTINGS.get(arguments[0].fields[0].decode(), sequence())
        return sequence()

    def run(self, statement, results=True, answer=None):
        """The messages of a statement, as pairs of the stream's name and the list of its arguments."""
        self.begin(statement, results)
        return self.finish(answer)

    def finish(self, answer=None):
        said = []
        self.messages = []
        while True:
            data = self.receive()
            self.messages.append(data)
            message = records.decode(data)
            assert message.tag == "FUNCTION", message
            stream = message.fields[0].fields[0].decode()
            assert stream.startswith("INTERFACE_"), stream
            stream = stream[len("INTERFACE_"):]
            arguments = message.fields[1].fields
            said.append((stream, arguments))
            reply = answer(stream, arguments) if answer else None
            if reply is None:
                reply = self.reply(stream, arguments)
            self.send((reply if isinstance(reply, bytes) else records.encode(reply)) + b"\1")
            if stream == "DONE":
                return said

    def value(self, expression):
        """The value that the kernel shows for an expression."""
        results = [arguments for stream, arguments in self.run(expression) if stream == "RESULT"]
        assert len(results) == 1, results
        return results[0][0] if len(results[0]) == 1 else sequence(*results[0])

    def read(self, text):
        """Has the kernel itself read and run a statement."""
        return self.run(call("parse", string(text), name("statement")))

    def error(self, statement):
        """The message of the error that a statement ends with."""
        for stream, arguments in self.run(statement):
            if stream == "EXCEPT":
                return arguments[1].fields[0].decode("latin-1")
        return None

    # ---- the end

    def interrupt(self):
        self.process.send_signal(signal.SIGINT)

    def close(self):
        """Ends the pipe; the process's exit status."""
        if self.out >= 0:
            os.close(self.out)
            self.out = -1
        try:
            status = self.process.wait(PATIENCE)
        finally:
            if self.process.poll() is None:
                self.process.kill()
                self.process.wait()
            if self.into >= 0:
                os.close(self.into)
                self.into = -1
        return status

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
