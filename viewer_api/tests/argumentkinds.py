"""Kinds of parameter for tests of every method: which values are refused, and how."""

from scripted import IS_PYTHON_3
from PyVlAttribute import IntAttribute


class Of(object):
    """As an expected result: any object of exactly this type."""

    def __init__(self, kind):
        self.kind = kind


# ---- A kind is a list of a refused value and the error, or the text of the TypeError.

FOREIGN_TEXT = b"/root" if IS_PYTHON_3 else u"/root"
# Text that no bytes stand for, and text with a zero in it, which no C string can have.
UNENCODABLE = "\ud800" if IS_PYTHON_3 else u"caf\xe9"
WITH_ZERO = "a\0b"

NO_TEXT = [(value, TypeError) for value in (1, None, 1.5, [], object())] + [
    (UNENCODABLE, UnicodeEncodeError), (WITH_ZERO, ValueError if IS_PYTHON_3 else TypeError),
    (bytearray(b"/root"), TypeError)]
if IS_PYTHON_3:
    NO_TEXT.append((FOREIGN_TEXT, TypeError))  # Python 2's parser takes unicode of ASCII
NO_INT = [(value, TypeError) for value in ("1", None, 1.5, [])] + [
    (value, OverflowError) for value in (2 ** 31, -2 ** 31 - 1, 2 ** 100)]
NO_OPTION_ID = [(value, TypeError) for value in ("1", None, 1.5, [])]
NO_GROUP = [(value, "First argument must be an VlGroupAttribute object")
            for value in (None, 1, {}, IntAttribute(1), "text")]
NO_ATTRIBUTE = [(value, "Second argument must be an VlAttribute object")
                for value in (None, 1, "text", [])]
NO_LIST_OF_TEXT = [(value, TypeError) for value in (
    ("/root",), "/root", None, {"/root": 1}, iter(["/root"]), 1, [1], ["/root", None],
    ["/root", FOREIGN_TEXT], [["/root"]], [bytearray(b"/root")])]
if IS_PYTHON_3:
    NO_LIST_OF_TEXT.append((["/root", UNENCODABLE], TypeError))
NO_CHANNEL = [(value, TypeError) for value in (1, None, FOREIGN_TEXT, [])]
ANYTHING = []
NO_FLOAT = [(value, TypeError) for value in ("1", None, [], (1.0,), object())] + [
    (10 ** 400, OverflowError)]
# As "!O" of the type int takes them.
NO_TRUE_INT = [(value, TypeError) for value in ("1", None, 1.5, [])]
if not IS_PYTHON_3:
    NO_TRUE_INT.append((2 ** 100, TypeError))  # a long
NO_MATRIX = [(value, TypeError) for value in (
    None, 1.0, (), (1.0,) * 15, (1.0,) * 17, "x" * 16, ["x"] * 16, (1.0,) * 15 + (None,),
    {1: 2.0}, set(range(16)))] + [((1.0,) * 15 + (10 ** 400,), OverflowError)]
