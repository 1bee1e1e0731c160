"""The Python examples of the documents run as they stand, and write the pictures that they name."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MODELS = "/usr/share/assimp/models/Collada"


def scripts(document):
    with open(os.path.join(SOURCE, document), "rb") as stream:
        text = stream.read().decode("utf-8")
    return re.findall(r"```python\n(.*?)```", text, re.S)


class DocumentedScriptsTest(unittest.TestCase):
    def runScript(self, script):
        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        for name in ("duck.dae", "duckCM.tga"):
            shutil.copy(os.path.join(MODELS, name), folder)
        name = os.path.join(folder, "script.py")
        with open(name, "w") as target:
            target.write(script)
        process = subprocess.Popen([sys.executable, name], cwd=folder, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT)
        output = process.communicate()[0].decode("utf-8")
        self.assertEqual(process.returncode, 0, "%s\n%s" % (script, output))
        for picture in re.findall(r"\"([\w%]+\.png)\"", script):
            path = os.path.join(folder, picture.replace("%04d", "0003"))
            with open(path, "rb") as written:
                self.assertEqual(written.read(8), b"\x89PNG\r\n\x1a\n", picture)
        return output

    def testReadme(self):
        example, = scripts("README.md")
        self.runScript(example)

    def testScripting(self):
        examples = scripts("docs/scripting.md")
        self.assertTrue(len(examples) >= 9)
        output = "".join(self.runScript(example) for example in examples)
        for line in ("/root/duck_dae/LOD3sp polymesh", "DoubleAttribute([0.0, 25.0, 0.0]",
                     "['/root', '/root/duck_dae', '/root/duck_dae/LOD3sp']",
                     "['/root/duck_dae/LOD3sp']", "selected: ['/root/duck_dae/LOD3sp']",
                     "the scene changed"):
            self.assertTrue(line in output, (line, output))


if __name__ == "__main__":
    unittest.main()
