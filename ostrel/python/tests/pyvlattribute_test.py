"""The attribute types as Python sees them."""
import array
import gc
import io
import itertools
import math
import os
import struct
import sys
import unittest

import PyVlAttribute
from PyVlAttribute import (Attribute, DoubleAttribute, FloatAttribute, GroupAttribute,
                           GroupBuilder, IntAttribute, StringAttribute)

NUMERIC = (IntAttribute, FloatAttribute, DoubleAttribute)
DATA = NUMERIC + (StringAttribute,)
NAN = float("nan")


def sample(kind, *numbers):
    """The numbers as values of a kind."""
    return [str(number) for number in numbers] if kind is StringAttribute else list(numbers)


class DataAttributeTest(unittest.TestCase):
    def testConstructorsTakeAValueASequenceOrADictOfSamples(self):
        for kind in DATA:
            one, two, three, four = sample(kind, 1, 2, 3, 4)
            rows = [
                (kind(one), 1, 1, 1, [one]),
                (kind([one, two]), 2, 1, 1, [one, two]),
                (kind((one, two)), 2, 1, 1, [one, two]),
                (kind(x for x in [one, two]), 2, 1, 1, [one, two]),
                (kind([one, two, three, four], 2), 4, 2, 1, [one, two, three, four]),
                (kind(value=[one, two], tupleSize=2), 2, 2, 1, [one, two]),
                (kind([]), 0, 1, 1, []),
                (kind([], 3), 0, 3, 1, []),
                (kind({0: [one, two], 1: [three, four]}), 2, 1, 2, [one, two]),
                (kind({0: one, 1: two}), 1, 1, 2, [one]),
                (kind(kind([one, two])), 2, 1, 1, [one, two]),
            ]
            for attribute, values, tuples, samples, content in rows:
                self.assertEqual(attribute.getNumberOfValues(), values)
                self.assertEqual(attribute.getTupleSize(), tuples)
                self.assertEqual(attribute.getNumberOfTimeSamples(), samples)
                self.assertEqual(list(attribute), content)
                self.assertEqual(len(attribute), len(content))
                self.assertTrue(isinstance(attribute, Attribute))

    def testValuesKeepTheirTypes(self):
        self.assertTrue(isinstance(IntAttribute(1).getValue(), int))
        self.assertTrue(isinstance(FloatAttribute(1).getValue(), float))
        self.assertTrue(isinstance(DoubleAttribute(1).getValue(), float))
        self.assertTrue(isinstance(StringAttribute("1").getValue(), str))

    def testGetValueGivesTheDefaultOnlyWithoutValues(self):
        for kind in DATA:
            one, = sample(kind, 1)
            self.assertEqual(kind(one).getValue("default"), one)
            self.assertEqual(kind([]).getValue("default"), "default")
            self.assertTrue(kind([]).getValue() is None)

    def testNearestSampleIsTheClosestAndTheEarlierOnATie(self):
        attribute = IntAttribute({4: [40], -2: [10], 1: [30], 0: [20]})
        rows = [(-100, 10), (-2, 10), (-1, 10), (-0.99, 20), (0, 20), (0.5, 20), (2.5, 30),
                (3, 40), (1e30, 40), (float("inf"), 40), (NAN, 20)]
        for time, expected in rows:
            self.assertEqual(attribute.getNearestSample(time), (expected,), time)
        self.assertEqual([attribute.getSampleTime(i) for i in range(4)], [-2, 0, 1, 4])

    def testSequenceIsTheSampleNearestToZero(self):
        attribute = IntAttribute({-5: [1, 2], 1: [3, 4]})
        self.assertEqual(list(attribute), [3, 4])
        self.assertEqual((attribute[0], attribute[1], attribute[-1]), (3, 4, 4))
        with self.assertRaises(IndexError) as context:
            attribute[2]
        self.assertEqual(str(context.exception), "attribute index out of range")
        self.assertEqual(attribute.getValue(), 3)

    def testSampleTimeKeepsToItsRange(self):
        for index in (-1, 1):
            with self.assertRaises(IndexError) as context:
                IntAttribute(1).getSampleTime(index)
            self.assertEqual(str(context.exception), "getSampleTime: sample %d of 1" % index)

    def testErrorsSayWhatIsWrong(self):
        wrong = object()
        rows = [
            (lambda: IntAttribute("1"), TypeError, "IntAttribute: expected a number, a sequence "
             "of them, or a dict from times to either, not str"),
            (lambda: IntAttribute(None), TypeError, "IntAttribute: expected a number, a sequence "
             "of them, or a dict from times to either, not NoneType"),
            (lambda: StringAttribute(1), TypeError, "StringAttribute: expected a str, a sequence "
             "of them, or a dict from times to either, not int"),
            (lambda: IntAttribute({0: {0: 1}}), TypeError, "IntAttribute: expected a number, a "
             "sequence of them, or a dict from times to either, not dict"),
            (lambda: IntAttribute([1.5]), TypeError,
             "IntAttribute: values must be integers, not float"),
            (lambda: IntAttribute(1.5), TypeError,
             "IntAttribute: values must be integers, not float"),
            (lambda: FloatAttribute([1, "2"]), TypeError,
             "FloatAttribute: values must be numbers, not str"),
            (lambda: DoubleAttribute([wrong]), TypeError,
             "DoubleAttribute: values must be numbers, not object"),
            (lambda: StringAttribute(["a", 1]), TypeError,
             "StringAttribute: values must be str, not int"),
            (lambda: IntAttribute(1 << 31), OverflowError,
             "IntAttribute: a value does not fit 32 signed bits"),
            (lambda: IntAttribute([1 << 100]), OverflowError,
             "IntAttribute: a value does not fit 32 signed bits"),
            (lambda: IntAttribute(-(1 << 31) - 1), OverflowError,
             "IntAttribute: a value does not fit 32 signed bits"),
            (lambda: FloatAttribute(1e300), OverflowError,
             "FloatAttribute: a value does not fit single precision"),
            (lambda: IntAttribute([1, 2, 3], 2), ValueError,
             "int attribute: the tuple size 2 does not divide 3 values"),
            (lambda: IntAttribute([1], 0), ValueError,
             "int attribute: the tuple size must be a positive 32-bit number, not 0"),
            (lambda: FloatAttribute({0: [1], 1: [1, 2]}), ValueError,
             "float attribute: samples differ in length: 1 values and 2"),
            (lambda: DoubleAttribute({NAN: [1]}), ValueError,
             "double attribute: the sample time nan is not a finite number"),
            (lambda: DoubleAttribute({float("-inf"): [1]}), ValueError,
             "double attribute: the sample time -inf is not a finite number"),
            (lambda: StringAttribute({1: "a", 1 + 1e-12: "b"}), ValueError,
             "string attribute: the sample time 1 stands twice"),
            (lambda: IntAttribute({}), ValueError,
             "int attribute: at least one time sample is needed"),
            (lambda: IntAttribute({"0": [1]}), TypeError,
             "IntAttribute: sample times must be numbers, not str"),
        ]
        for index, (make, error, text) in enumerate(rows):
            with self.assertRaises(error) as context:
                make()
            self.assertEqual(str(context.exception), text, "row %d" % index)

    def testConstructorArgumentsAreChecked(self):
        for kind in DATA:
            self.assertRaises(TypeError, kind)
            self.assertRaises(TypeError, kind, [], 1, 2)
            self.assertRaises(TypeError, kind, [], "1")
            self.assertRaises(TypeError, kind, [], tuplesize=1)

    def testTheOtherKindOfStringIsRefused(self):
        other = b"a" if sys.version_info[0] >= 3 else u"a"
        for value in (other, [other], {0: other}):
            self.assertRaises(TypeError, StringAttribute, value)
        for kind in NUMERIC:
            self.assertRaises(TypeError, kind, b"12")

    def testErrorsOfAForeignObjectComeThrough(self):
        class Number(object):
            def __float__(self):
                raise KeyError("mine")

            def __index__(self):
                raise KeyError("mine")

        class Sequence(object):
            def __getitem__(self, index):
                raise KeyError("mine")

        for kind in NUMERIC:
            self.assertRaises(KeyError, kind, [Number()])
            self.assertRaises(KeyError, kind, Sequence())

    def testListThatShrinksWhileItIsReadIsSafe(self):
        values = []

        class Shrinking(object):
            def __float__(self):
                del values[1:]
                return 1.0

        values.extend([Shrinking()] + [2.0] * 1000)
        self.assertEqual(list(DoubleAttribute(values)), [1.0])

    def testExtremesSurvive(self):
        self.assertEqual(list(IntAttribute([-(1 << 31), (1 << 31) - 1, True])),
                         [-(1 << 31), (1 << 31) - 1, 1])
        inf = float("inf")
        self.assertEqual(list(FloatAttribute([inf, -inf])), [inf, -inf])
        self.assertTrue(math.isnan(DoubleAttribute(NAN).getValue()))
        self.assertEqual(math.copysign(1, DoubleAttribute(-0.0).getValue()), -1)
        self.assertEqual(StringAttribute("a\0b").getValue(), "a\0b")

    @unittest.skipUnless(sys.version_info[0] >= 3, "text is Unicode on Python 3")
    def testTextOutsideAsciiSurvivesAndSoDoBytesThatAreNone(self):
        for text in (u"\xe4\u20ac\U0001f600", b"\xff\x80".decode("utf-8", "surrogateescape")):
            self.assertEqual(StringAttribute(text).getValue(), text)
        self.assertRaises(UnicodeEncodeError, StringAttribute, u"\ud800")

    def testEmptyAttributeIsTrue(self):
        self.assertTrue(IntAttribute([]))
        self.assertTrue(StringAttribute([]))
        self.assertTrue(GroupAttribute())


class BufferTest(unittest.TestCase):
    def testNumericAttributesOfferTheirValuesAsAReadOnlyBuffer(self):
        for kind, code in ((IntAttribute, "i"), (FloatAttribute, "f"), (DoubleAttribute, "d")):
            view = memoryview(kind([1, 2, 3]))
            self.assertEqual((view.format, view.itemsize, view.shape, view.readonly, view.ndim),
                             (code, array.array(code).itemsize, (3,), True, 1))
            self.assertEqual(view.tobytes(), struct.pack("3" + code, 1, 2, 3))

    def testBufferOutlivesTheName(self):
        view = memoryview(DoubleAttribute([1.0, 2.0]))
        gc.collect()
        self.assertEqual(view.tobytes(), struct.pack("2d", 1, 2))

    def testBufferIsTheSampleNearestToZero(self):
        view = memoryview(IntAttribute({-5: [1, 2], 1: [3, 4]}))
        self.assertEqual(view.tobytes(), memoryview(IntAttribute([3, 4])).tobytes())

    def testEmptyBuffer(self):
        view = memoryview(IntAttribute([]))
        self.assertEqual((view.shape, view.tobytes()), ((0,), b""))

    def testWritableBufferIsRefused(self):
        attribute = IntAttribute(1)
        self.assertRaises((TypeError, BufferError), io.BytesIO(b"1234").readinto, attribute)
        self.assertEqual(attribute.getValue(), 1)

    def testStringsAndGroupsOfferNone(self):
        self.assertRaises(TypeError, memoryview, StringAttribute("a"))
        self.assertRaises(TypeError, memoryview, GroupAttribute())

    def testBuffersOfTheSameTypeAreTakenWholeAndOthersByItem(self):
        self.assertEqual(FloatAttribute(memoryview(FloatAttribute([1.5, 2.5]))),
                         FloatAttribute([1.5, 2.5]))
        for code in "hilfd":
            self.assertEqual(DoubleAttribute(array.array(code, [1, 2])), DoubleAttribute([1, 2]))
        self.assertRaises(TypeError, IntAttribute, array.array("d", [1]))


class EqualityTest(unittest.TestCase):
    def attributes(self):
        return [IntAttribute(1), IntAttribute(2), IntAttribute([1] * 2), IntAttribute([1] * 2, 2),
                IntAttribute({1: 1}), IntAttribute({0: 1, 1: 1}), IntAttribute([]),
                FloatAttribute(1), DoubleAttribute(1), DoubleAttribute(NAN), StringAttribute("1"),
                StringAttribute(""), StringAttribute([]), GroupAttribute(),
                GroupAttribute(("a", IntAttribute(1))), GroupAttribute(("b", IntAttribute(1))),
                GroupAttribute(("a", IntAttribute(1)), ("b", IntAttribute(1))),
                GroupAttribute(("b", IntAttribute(1)), ("a", IntAttribute(1)))]

    def testHoldsForEqualContentOnly(self):
        for (i, left), (j, right) in itertools.product(enumerate(self.attributes()),
                                                       enumerate(self.attributes())):
            self.assertEqual(left == right, i == j)
            self.assertEqual(left != right, i != j)
            self.assertEqual(left.getHash() == right.getHash(), i == j)
            if i == j:
                self.assertEqual(hash(left), hash(right))

    def testAttributesAreDictionaryKeys(self):
        table = dict((attribute, i) for i, attribute in enumerate(self.attributes()))
        self.assertEqual([table[attribute] for attribute in self.attributes()],
                         list(range(len(table))))

    def testForeignObjectsAreUnequal(self):
        for other in (1, "1", None, object()):
            self.assertFalse(IntAttribute(1) == other)
            self.assertTrue(IntAttribute(1) != other)

    def testThereIsNoOrder(self):
        with self.assertRaises(TypeError) as context:
            IntAttribute(1) < IntAttribute(2)
        self.assertEqual(str(context.exception),
                         "attributes are equal or not, they have no order")

    def testHashIsTheSameOnBothInterpreters(self):
        self.assertEqual(StringAttribute("x").getHash(), "d5399fcf6886b9a08f0f8dd8aa384fca")


class ReprTest(unittest.TestCase):
    def testReadsBackAsTheSameValue(self):
        rows = [
            (IntAttribute(5), "IntAttribute(5)"),
            (IntAttribute([1, 2]), "IntAttribute([1, 2])"),
            (IntAttribute([1, 2], 2), "IntAttribute([1, 2], 2)"),
            (IntAttribute([]), "IntAttribute([])"),
            (FloatAttribute(0.1), "FloatAttribute(0.1)"),
            (DoubleAttribute([0.1, 1e300, -2]), "DoubleAttribute([0.1, 1e+300, -2.0])"),
            (DoubleAttribute([NAN, float("-inf")]),
             "DoubleAttribute([float('nan'), float('-inf')])"),
            (FloatAttribute({0: 1, 1.5: 2}), "FloatAttribute({0.0: [1.0], 1.5: [2.0]})"),
            (FloatAttribute({2: 1}), "FloatAttribute({2.0: [1.0]})"),
            (StringAttribute("it's"), "StringAttribute(\"it's\")"),
            (StringAttribute(["a", "b"]), "StringAttribute(['a', 'b'])"),
            (GroupAttribute(), "GroupAttribute()"),
            (GroupAttribute(("a.b", IntAttribute(1)), ("c", StringAttribute("x"))),
             "GroupAttribute(('a', GroupAttribute(('b', IntAttribute(1)))), "
             "('c', StringAttribute('x')))"),
        ]
        for attribute, text in rows:
            self.assertEqual(repr(attribute), text)
            self.assertEqual(eval(text), attribute)

    def testIsShortForLongAttributes(self):
        self.assertTrue(repr(IntAttribute(range(1000))).endswith(", 31, ... 968 more])"))
        group = GroupAttribute(*[("a%d" % i, IntAttribute(i)) for i in range(1000)])
        self.assertTrue(repr(group).endswith("... 968 more)"))

    def testNestingBeyondTheRecursionLimitIsAnError(self):
        group = GroupAttribute()
        for _ in range(100000):
            group = GroupAttribute(("a", group))
        self.assertRaises(RuntimeError, repr, group)  # RecursionError is one


class GroupAttributeTest(unittest.TestCase):
    def setUp(self):
        self.group = GroupAttribute(("x", IntAttribute(1)), ("a.b.c", StringAttribute("deep")),
                                    ("left out", None), ("x", IntAttribute(2)))

    def testIsAnOrderedListOfPairs(self):
        self.assertEqual(len(self.group), 2)
        self.assertEqual(self.group.getNumberOfChildren(), 2)
        self.assertEqual([name for name, _ in self.group], ["x", "a"])
        self.assertEqual(dict(self.group)["x"], IntAttribute(2))
        self.assertEqual(GroupAttribute(*self.group), self.group)
        self.assertEqual(self.group[-1][0], "a")
        with self.assertRaises(IndexError) as context:
            self.group[2]
        self.assertEqual(str(context.exception), "group index out of range")

    def testChildrenAreFoundByNameAndIndex(self):
        self.assertEqual(self.group.getChildByName("a.b.c").getValue(), "deep")
        self.assertEqual(self.group.getChildByIndex(0), IntAttribute(2))
        self.assertEqual(self.group.getChildName(1), "a")
        self.assertTrue(isinstance(self.group.getChildByName("a"), GroupAttribute))
        self.assertTrue("a.b" in self.group)
        self.assertFalse("a.x" in self.group)

    def testWhatIsMissingIsNone(self):
        for name in ("", "y", "a.", "a..b", "x.y", "left out"):
            self.assertTrue(self.group.getChildByName(name) is None, name)
        for index in (-1, 2):
            self.assertTrue(self.group.getChildByIndex(index) is None)
            with self.assertRaises(IndexError) as context:
                self.group.getChildName(index)
            self.assertEqual(str(context.exception), "getChildName: child %d of 2" % index)

    def testErrorsSayWhatIsWrong(self):
        rows = [
            (lambda: GroupAttribute(("a", None), 1), TypeError,
             "GroupAttribute: argument 2 must be a (name, attribute) pair, not int"),
            (lambda: GroupAttribute("ab"), TypeError,
             "GroupAttribute: argument 1 must be a (name, attribute) pair, not str"),
            (lambda: GroupAttribute(("a",)), TypeError,
             "GroupAttribute: argument 1 must be a (name, attribute) pair, not tuple"),
            (lambda: GroupAttribute((1, None)), TypeError,
             "GroupAttribute: the name in argument 1 must be str, not int"),
            (lambda: GroupAttribute(("a", 1)), TypeError,
             "GroupAttribute: \"a\" must be an attribute or None, not int"),
            (lambda: GroupAttribute(("a..b", IntAttribute(1))), ValueError,
             "GroupBuilder::set: empty name in \"a..b\""),
            (lambda: GroupAttribute(a=1), TypeError, "GroupAttribute takes no keyword arguments"),
            (lambda: GroupBuilder().set("a", 1), TypeError,
             "GroupBuilder.set: \"a\" must be an attribute or None, not int"),
            (lambda: GroupBuilder().set("", IntAttribute(1)), ValueError,
             "GroupBuilder::set: empty name in \"\""),
            (lambda: GroupBuilder().update(IntAttribute(1)), TypeError,
             "GroupBuilder.update: expected a GroupAttribute or None, not "
             "PyVlAttribute.IntAttribute"),
        ]
        for index, (make, error, text) in enumerate(rows):
            with self.assertRaises(error) as context:
                make()
            self.assertEqual(str(context.exception), text, "row %d" % index)
        for call in (lambda: self.group.getChildByName(1),
                     lambda: GroupBuilder().set(1, IntAttribute(1))):
            with self.assertRaises(TypeError) as context:
                call()
            self.assertEqual(str(context.exception), "expected str, not int")

    def testAttributesAreImmutableAndFinal(self):
        with self.assertRaises(AttributeError):
            self.group.x = 1
        with self.assertRaises(TypeError):
            self.group[0] = None
        self.assertRaises(TypeError, Attribute)
        self.assertRaises(TypeError, type, "Derived", (IntAttribute,), {})


class GroupBuilderTest(unittest.TestCase):
    def testCallsChain(self):
        group = (GroupBuilder().set("a.b", IntAttribute(1)).set("a.c", IntAttribute(2), False)
                 .update(GroupAttribute(("d", IntAttribute(3)))).update(None)
                 .deepUpdate(GroupAttribute(("a.e", IntAttribute(4)))).deepUpdate(None)
                 .delete("a.b").set("d", None).build())
        self.assertEqual(repr(group), "GroupAttribute(('a', GroupAttribute(('c', IntAttribute(2)),"
                                      " ('e', IntAttribute(4)))))")
        inner = group.getChildByName("a")
        self.assertEqual([inner.isGroupInherit(i) for i in range(3)], [False, True, False])

    def testUpdateReplacesAndDeepUpdateMerges(self):
        old = GroupAttribute(("a.x", IntAttribute(1)))
        new = GroupAttribute(("a.y", IntAttribute(2)))
        updated = GroupBuilder().update(old).update(new).build()
        merged = GroupBuilder().update(old).deepUpdate(new).build()
        self.assertEqual([name for name, _ in updated.getChildByName("a")], ["y"])
        self.assertEqual([name for name, _ in merged.getChildByName("a")], ["x", "y"])

    def testBuildEmptiesUnlessKept(self):
        builder = GroupBuilder().set("a", IntAttribute(1))
        self.assertTrue(builder.isValid())
        self.assertEqual(len(builder.build(keepBuilder=True)), 1)
        self.assertEqual(len(builder.build()), 1)
        self.assertFalse(builder.isValid())
        self.assertEqual(builder.build(), GroupAttribute())


class DocumentationTest(unittest.TestCase):
    def testModuleExampleRuns(self):
        lines = [line[4:] for line in PyVlAttribute.__doc__.splitlines()
                 if line.startswith("    ")]
        names = {}
        exec("\n".join(lines), names)
        self.assertEqual(len(names["attrs"]), 3)


class ReferenceTest(unittest.TestCase):
    @unittest.skipIf("libasan" in os.environ.get("LD_PRELOAD", ""),
                     "the address sanitizer keeps what is freed for a while")
    def testNothingLeaks(self):
        def size():
            with open("/proc/self/statm") as statm:
                return int(statm.read().split()[1])

        def work():
            for _ in range(20000):
                group = GroupAttribute(("a.b", DoubleAttribute([1.0] * 16, 4)),
                                       ("c", StringAttribute(["x"] * 10)))
                list(group)
                repr(group)
                group.getChildByName("a.b").getNearestSample(0)
                memoryview(group.getChildByName("a.b")).tobytes()
                try:
                    GroupAttribute(("a", IntAttribute(1)), ("b", 1))
                except TypeError:
                    pass

        work()
        before = size()
        for _ in range(3):
            work()
        self.assertTrue(size() - before < 500, "grew by %d pages" % (size() - before))


if __name__ == "__main__":
    unittest.main()
