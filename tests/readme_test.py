"""The Python example of the README runs as it stands, and draws a picture."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DUCK = "/usr/share/assimp/models/Collada/duck.dae"


class ReadmeTest(unittest.TestCase):
    def testTheExampleRuns(self):
        with open(os.path.join(SOURCE, "README.md"), "rb") as readme:
            text = readme.read().decode("utf-8")
        examples = re.findall(r"```python\n(.*?)```", text, re.S)
        self.assertEqual(len(examples), 1)

        folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, folder)
        shutil.copy(DUCK, folder)
        subprocess.check_call([sys.executable, "-c", examples[0]], cwd=folder)
        with open(os.path.join(folder, "duck.png"), "rb") as picture:
            self.assertEqual(picture.read(8), b"\x89PNG\r\n\x1a\n")


if __name__ == "__main__":
    unittest.main()
