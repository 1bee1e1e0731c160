"""What tests of host suites share: the probes of a real plug-in library, which call the tables as
they are told."""
import collections
import os
import re
import unittest

import PyScenelib  # offers the scene runtime
import PyVlPluginSystem
from PyVlAttribute import IntAttribute, StringAttribute

HEADERS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "viewer_api", "include",
                       "viewer_api")
IDENTITY = "(1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1)"
RANGE_ERROR = "invalid vector<T> subscript"


#: As a result: the call throws through the table, with this text.
Raises = collections.namedtuple("Raises", "text")


def entriesOf(suite):
    """The names in a suite's header, in their order."""
    with open(os.path.join(HEADERS, suite + ".h")) as header:
        return re.findall(r"\(\*(\w+)\)\(", header.read())


class ProbeTest(unittest.TestCase):
    """Tables are dicts by entry: calls and their results, in order. A call is the entry and its
    arguments, as the probes' `callHost` reads them; with "object." before it where that is another
    one than the table's.

    A fixture has a `probe`, which takes the commands that are for none in particular.
    """
    longMessage = True  # which is not what Python 2.7 begins with

    @classmethod
    def setUpClass(cls):
        PyVlPluginSystem.loadLibrary(os.path.join(os.environ["OSTREL_TEST_PLUGINS"],
                                                  "ProbePlugins.so"))

    def renew(self):
        """Brings the fixture back to its start, with objects that nothing was called on."""
        raise NotImplementedError

    def probeOf(self, kind):
        """The probe that calls the table of this object."""
        raise NotImplementedError

    def command(self, text, probe=None):
        (probe or self.probe).setOptionByName("command", StringAttribute(text))

    def call(self, probe, call):
        """What an entry answers, as text; what it throws comes as RuntimeError."""
        self.command("call:" + call, probe)
        return self.logOf(probe)[-1].partition(": ")[2]

    def logOf(self, probe):
        return list(probe.getOptionByName("log").getNearestSample(0.0))

    def libraryLog(self):
        return list(self.probe.getOptionByName("libraryLog").getNearestSample(0.0))

    def clearLog(self):
        self.probe.setOptionByName("clearLog", IntAttribute(1))

    def checkEntries(self, suite, table):
        """A table calls every entry of a suite under the entry's name."""
        self.assertEqual(sorted(entriesOf(suite)), sorted(table))
        for entry, rows in table.items():
            self.assertIn(entry, [call.split()[0] for call, _ in rows])

    def checkCalls(self, kind, table):
        for entry in sorted(table):
            self.renew()
            self.checkRows(kind, entry, table[entry])

    def checkRows(self, kind, name, rows):
        probe = self.probeOf(kind)
        for row, expected in rows:
            call = row if "." in row.split()[0] else "%s.%s" % (kind, row)
            try:
                result = self.call(probe, call)
            except RuntimeError as error:
                result = Raises(str(error))
            self.assertEqual(expected, result, "%s: %s" % (name, call))
