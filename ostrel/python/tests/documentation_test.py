"""help() is the manual: everything public has something to say there."""
import importlib
import inspect
import pkgutil
import unittest

MODULES = ("ostrel", "PyVlAttribute", "PyScenelib", "PyVlPluginSystem", "PyWindowSystem",
           "PyVlLogging", "ViewerAPI")


def publicMembers(owner):
    return [(name, value) for name, value in sorted(vars(owner).items())
            if not name.startswith("_")]


def withSubmodules(name):
    module = importlib.import_module(name)
    below = [importlib.import_module(name + "." + each[1])
             for each in pkgutil.iter_modules(getattr(module, "__path__", ()))]
    return [module] + below


def undocumented(name):
    """The names of what a module shows without a docstring."""
    found = []
    for module in withSubmodules(name):
        if not inspect.getdoc(module):
            found.append(module.__name__)
        for className, value in publicMembers(module):
            if inspect.isroutine(value) and not inspect.getdoc(value):
                found.append("%s.%s" % (module.__name__, className))
            if inspect.isclass(value):
                # Members of classes are no functions on 2.7 unless they are asked for there.
                members = [(className, value)] + [
                    ("%s.%s" % (className, member), getattr(value, member))
                    for member, entry in publicMembers(value)
                    if callable(entry) or inspect.isdatadescriptor(entry)]
                found += ["%s.%s" % (module.__name__, member)
                          for member, entry in members if not inspect.getdoc(entry)]
    return found


class DocumentationTest(unittest.TestCase):
    def testEverythingPublicHasADocstring(self):
        for name in MODULES:
            self.assertEqual(undocumented(name), [], name)

    def testFunctionsOfExtensionModulesBeginWithTheirSignature(self):
        for moduleName in MODULES:
            for name, value in publicMembers(importlib.import_module(moduleName)):
                if inspect.isbuiltin(value) and value.__module__ == moduleName:
                    self.assertTrue(value.__doc__.startswith(name + "("), (moduleName, name))


if __name__ == "__main__":
    unittest.main()
