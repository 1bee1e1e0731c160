"""The groups that tell viewports what users do."""
import unittest

from ostrel import events

ROWS = [
    ("press", events.mousePress(3, -4, "left", ["left", "right"], ["shift", "alt"]),
     {"type": ["mousePress"], "x": [3], "y": [-4], "button": ["left"],
      "buttons": ["left", "right"], "modifiers": ["shift", "alt"]}),
    ("press holds its own button", events.mousePress(0, 0, "right"),
     {"type": ["mousePress"], "x": [0], "y": [0], "button": ["right"], "buttons": ["right"],
      "modifiers": []}),
    ("release", events.mouseRelease(1, 2, "middle", ["left"]),
     {"type": ["mouseRelease"], "x": [1], "y": [2], "button": ["middle"], "buttons": ["left"],
      "modifiers": []}),
    ("move", events.mouseMove(1, 2, modifiers=["control"]),
     {"type": ["mouseMove"], "x": [1], "y": [2], "buttons": [], "modifiers": ["control"]}),
    ("wheel", events.wheel(5, 6, -1),
     {"type": ["wheel"], "x": [5], "y": [6], "delta": [-1.0], "buttons": [], "modifiers": []}),
    ("key", events.keyPress("f", ["shift"]),
     {"type": ["keyPress"], "key": ["f"], "modifiers": ["shift"]}),
    ("key's end", events.keyRelease("Escape"),
     {"type": ["keyRelease"], "key": ["Escape"], "modifiers": []}),
]


class EventsTest(unittest.TestCase):
    def testEveryKindHasItsGroup(self):
        for name, event, expected in ROWS:
            told = dict((key, list(value.getNearestSample(0.0))) for key, value in event)
            self.assertEqual(told, expected, name)

    def testWhatIsNoPlaceIsRefused(self):
        self.assertRaises(ValueError, events.mouseMove, "left", 0)
        self.assertRaises(TypeError, events.wheel, 0, 0, None)
        self.assertRaises(TypeError, events.keyPress, 5)


if __name__ == "__main__":
    unittest.main()
