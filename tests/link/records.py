"""The record format, read and written anew: an encoder and a decoder that share nothing with the kernel's own.

An object is an `Object` with the name of its tag and its fields; None is the word 0. Two places that hold one
Python object are one object of the record: the second is a back reference.
"""

# code -> (character, tag)
CODES = {
    1: "!", 2: '"', 3: "#", 4: "$", 5: "]", 6: "^", 7: "Q", 8: "%", 9: "_", 10: "&", 11: "'", 12: "(", 13: ")",
    14: "*", 15: "+", 16: ",", 17: "d", 18: "-", 19: ".", 20: "/", 21: "0", 22: "1", 23: "2", 24: "3", 25: "4",
    26: "5", 27: "6", 28: "7", 29: "8", 30: "9", 31: "T", 32: "R", 33: ";", 34: "<", 35: "=", 36: "X", 37: "b",
    38: "`", 39: ">", 40: "?", 41: "@", 42: "A", 43: "B", 44: "C", 45: "D", 46: "Y", 47: "Z", 48: "O", 49: "[",
    50: "\\", 51: "a", 52: "e", 53: "E", 54: "F", 55: "G", 56: "c", 57: "N", 58: "P", 59: "H", 63: "I", 65: "J",
    73: "K", 83: "L", 89: "M",
}
TAGS = {
    1: "INTNEG", 2: "INTPOS", 3: "RATIONAL", 4: "FLOAT", 5: "HFLOAT", 6: "COMPLEX", 7: "STRING", 8: "NAME",
    9: "MEMBER", 10: "TABLEREF", 11: "DCOLON", 12: "CATENATE", 13: "POWER", 14: "PROD", 15: "SERIES", 16: "SUM",
    17: "ZPPOLY", 18: "FUNCTION", 19: "UNEVAL", 20: "EQUATION", 21: "INEQUAT", 22: "LESSEQ", 23: "LESSTHAN",
    24: "AND", 25: "NOT", 26: "OR", 27: "EXPSEQ", 28: "LIST", 29: "LOCAL", 30: "PARAM", 31: "LEXICAL", 32: "PROC",
    33: "RANGE", 34: "SET", 35: "TABLE", 36: "RTABLE", 37: "MODDEF", 38: "MODULE", 39: "ASSIGN", 40: "FOR",
    41: "IF", 42: "READ", 43: "SAVE", 44: "STATSEQ", 45: "STOP", 46: "ERROR", 47: "TRY", 48: "RETURN", 49: "BREAK",
    50: "NEXT", 51: "USE", 53: "HASHTAB", 57: "CONTROL", 58: "DEBUG",
}
CHARACTER = {name: ord(CODES[code]) for code, name in TAGS.items()}
CODE_OF = {ord(character): code for code, character in CODES.items()}
ATTRIBUTE = 55

# Records of fields alone, by their number.
FIXED = {
    "RATIONAL": 2, "MEMBER": 2, "DCOLON": 2, "CATENATE": 2, "POWER": 2, "EQUATION": 2, "INEQUAT": 2, "LESSEQ": 2,
    "LESSTHAN": 2, "AND": 2, "OR": 2, "RANGE": 2, "ASSIGN": 2, "TABLE": 3, "MODULE": 3, "UNEVAL": 1, "NOT": 1,
    "READ": 1, "SAVE": 1, "ERROR": 1, "RETURN": 1, "CONTROL": 1, "STOP": 0, "BREAK": 0, "NEXT": 0, "MODDEF": 9,
}
COUNTED = {"COMPLEX", "PROD", "SUM", "EXPSEQ", "FOR", "IF", "STATSEQ", "TRY", "USE", "DEBUG"}
ATTRIBUTED = {"FLOAT", "TABLEREF", "FUNCTION"}


class Object:
    """Integers hold their value, strings and names their bytes first; everything else only objects."""

    __slots__ = ("tag", "fields")

    def __init__(self, tag, *fields):
        self.tag = tag
        self.fields = list(fields)

    def __repr__(self):
        if self.tag in ("INTPOS", "INTNEG"):
            return str(self.fields[0])
        if self.tag in ("NAME", "STRING"):
            return repr(self.fields[0].decode("latin-1"))
        return "%s(%s)" % (self.tag, ", ".join(map(repr, self.fields)))


def integer(value):
    return Object("INTNEG" if value < 0 else "INTPOS", value)


def name(text):
    return Object("NAME", text.encode("latin-1"), None)


def string(text):
    return Object("STRING", text if isinstance(text, bytes) else text.encode("latin-1"), sequence())


def sequence(*members):
    return Object("EXPSEQ", *members)


def call(function, *arguments):
    return Object("FUNCTION", name(function), sequence(*arguments))


def same(a, b):
    """Whether two objects have the same structure."""
    work = [(a, b)]
    while work:
        a, b = work.pop()
        if isinstance(a, Object) and isinstance(b, Object):
            if a.tag != b.tag or len(a.fields) != len(b.fields):
                return False
            work.extend(zip(a.fields, b.fields))
        elif a != b or isinstance(a, Object) != isinstance(b, Object):
            return False
    return True


# ---- writing


def int_bytes(value):
    if value < 0:
        return b"~" + int_bytes(-value)
    if value <= 57:
        return bytes([33 + value])
    out = bytearray()
    while value >= 16:
        out.append(91 + value % 16)
        value //= 16
    out.append(107 + value)
    return bytes(out)


def text_bytes(text):
    out = bytearray(int_bytes(len(text)))
    for c in text:
        if c == 32:
            out += b"~"
        elif 33 <= c < 123:
            out.append(c)
        else:
            out += b"|" + int_bytes(c)
    return bytes(out)


def digit_bytes(digits):
    """`digits` is the decimal text of a number."""
    out = bytearray(int_bytes(len(digits)))
    low = [int(c) for c in reversed(digits)]
    i = 0
    while i < len(low):
        if i + 1 < len(low) and low[i] + 10 * low[i + 1] < 80:
            out.append(43 + low[i] + 10 * low[i + 1])
            i += 2
        else:
            out.append(33 + low[i])
            i += 1
    return bytes(out)


def holds_builtin(options):
    return options is not None and any(
        f is not None and f.tag == "NAME" and f.fields[0] == b"builtin" for f in options.fields)


def encode(top):
    """The record of `top`. Iterative: nesting has no bound here."""
    out = bytearray()
    numbers = {}
    work = [top]  # objects, None, or bytes that stand between the fields
    while work:
        x = work.pop()
        if isinstance(x, (bytes, bytearray)):
            out += x
            continue
        if x is None:
            out += b"G"
            continue
        if id(x) in numbers:
            out += b"F" + int_bytes(numbers[id(x)])
            continue
        numbers[id(x)] = len(numbers) + 1
        tag, f = x.tag, x.fields
        code = CHARACTER[tag]
        follow = []
        if tag in ("INTPOS", "INTNEG"):
            out.append(code)
            out += digit_bytes(str(abs(f[0])))
        elif tag in ("STRING", "NAME"):
            if tag == "NAME" and len(f) == 3:
                code = ord("I")
            out.append(code)
            out += text_bytes(f[0])
            follow = f[1:]
        elif tag in FIXED:
            out.append(code)
            follow = f
        elif tag in COUNTED:
            out.append(code)
            out += int_bytes(len(f) + 1)
            follow = f
        elif tag in ATTRIBUTED:
            out.append(ord(CODES[CODE_OF[code] + ATTRIBUTE]) if len(f) == 3 else code)
            follow = f
        elif tag in ("LIST", "SET"):
            body = f[0].fields
            out.append(ord(CODES[CODE_OF[code] + ATTRIBUTE]) if len(f) == 2 else code)
            out += int_bytes(len(body) + 1)
            follow = body + f[1:]
        elif tag in ("LOCAL", "PARAM"):
            out.append(code)
            out += int_bytes(f[0] + 2)
        elif tag == "LEXICAL":
            out.append(code)
            out += int_bytes(2 * f[0] if f[0] >= 0 else 1 - 2 * f[0])
        elif tag == "PROC":
            out.append(code)
            follow = f
        elif tag == "HASHTAB":
            out.append(code)
            out += int_bytes(f[0]) + int_bytes((len(f) - 1) // 2)
            follow = f[1:]
        else:
            raise ValueError("no record of " + tag)
        work.extend(reversed(follow))
    return bytes(out)


# ---- reading


class BadRecord(Exception):
    pass


class Decoder:
    def __init__(self, data):
        self.data = data
        self.at = 0
        self.objects = [None]

    def byte(self):
        while self.at < len(self.data):
            c = self.data[self.at]
            self.at += 1
            if 33 <= c < 127:
                return c
        raise BadRecord("end of record")

    def int(self):
        c = self.byte()
        if c == ord("~"):
            return -self.int()
        if c <= 90:
            return c - 33
        value = shift = 0
        while True:
            if 91 <= c < 107:
                value += (c - 91) << shift
            elif 107 <= c < 123:
                return value + ((c - 107) << shift)
            else:
                raise BadRecord("bad integer")
            shift += 4
            c = self.byte()

    def text(self):
        out = bytearray()
        for _ in range(self.int()):
            c = self.byte()
            if c == ord("~"):
                c = 32
            elif c == ord("|"):
                c = self.int()
            out.append(c)
        return bytes(out)

    def digits(self):
        left = self.int()
        low = []
        while left > 0:
            c = self.byte()
            if c < 43:
                low.append(c - 33)
                left -= 1
            else:
                if left < 2 or c - 43 >= 80:
                    raise BadRecord("bad digits")
                low += [(c - 43) % 10, (c - 43) // 10]
                left -= 2
        return int("".join(map(str, reversed(low))))

    def begun(self, tag, *fields):
        x = Object(tag, *fields)
        self.objects.append(x)
        return x

    def whole(self):
        """The one record of the data."""
        x = self.record()
        if self.at != len(self.data):
            raise BadRecord("bytes behind the record")
        return x

    def record(self):
        c = self.byte()
        code = CODE_OF.get(c)
        if code is None:
            raise BadRecord("unknown code %r" % chr(c))
        if code == 55:
            return None
        if code == 54:
            number = self.int()
            if not 1 <= number < len(self.objects):
                raise BadRecord("bad back reference")
            return self.objects[number]
        attributed = code > 58
        tag = TAGS.get(code - ATTRIBUTE if attributed else code)
        if tag in ("INTPOS", "INTNEG"):
            value = self.digits()
            return self.begun(tag, value if tag == "INTPOS" else -value)
        if tag in ("STRING", "NAME"):
            x = self.begun(tag, self.text())
            x.fields += [self.record() for _ in range(2 if attributed else 1)]
            return x
        if tag in ("LOCAL", "PARAM"):
            return self.begun(tag, self.int() - 2)
        if tag == "LEXICAL":
            v = self.int()
            return self.begun(tag, v // 2 if v % 2 == 0 else -(v // 2))
        if tag == "HASHTAB":
            x = self.begun(tag, self.int())
            x.fields += [self.record() for _ in range(2 * self.int())]
            return x
        if tag in ("LIST", "SET"):
            x = self.begun(tag)
            x.fields.append(sequence(*[self.record() for _ in range(self.int() - 1)]))
            if attributed:
                x.fields.append(self.record())
            return x
        x = self.begun(tag)
        if tag in FIXED:
            count = FIXED[tag]
        elif tag in COUNTED:
            count = self.int() - 1
        elif tag in ATTRIBUTED:
            count = 3 if attributed else 2
        elif tag == "PROC":
            count = 8
        else:
            raise BadRecord("no record of %s" % tag)
        for _ in range(count):
            x.fields.append(self.record())
        if tag == "PROC" and holds_builtin(x.fields[2]):
            x.fields.append(self.record())
        return x


def decode(data):
    return Decoder(data).whole()
