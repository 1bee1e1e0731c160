"""The viewer's command line, from a model file to a picture."""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from pngfile import Picture

VIEW = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "view.py")
MODELS = "/usr/share/assimp/models"
DUCK = MODELS + "/Collada/duck.dae"
SIZE = "320x180"


class ViewTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.output = os.path.join(self.folder, "out.png")
        self.addCleanup(shutil.rmtree, self.folder)

    def view(self, *arguments, **options):
        """Runs the viewer in the test's folder; gives (status, lines on stderr)."""
        environment = dict(os.environ)
        environment.pop("DISPLAY", None)
        environment.update(options)
        process = subprocess.Popen([sys.executable, VIEW] + list(arguments), cwd=self.folder,
                                   env=environment, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        _, errors = process.communicate()
        return process.returncode, errors.decode("utf-8").splitlines()

    def picks(self, *arguments):
        """The lines that a run prints which must succeed."""
        environment = dict(os.environ)
        environment.pop("DISPLAY", None)
        output = subprocess.check_output(
            [sys.executable, VIEW, "--size", SIZE] + list(arguments), cwd=self.folder,
            env=environment)
        return output.decode("utf-8").splitlines()

    def picture(self, *arguments):
        """The picture of a run that must succeed without a word."""
        result = self.view("--output", self.output, "--size", SIZE, *arguments)
        self.assertEqual(result, (0, []))
        return Picture(self.output)

    def path(self, name, content=b""):
        path = os.path.join(self.folder, name)
        if not os.path.isdir(os.path.dirname(path)):
            os.makedirs(os.path.dirname(path))
        with open(path, "wb") as stream:
            stream.write(content)
        return path

    def checkFails(self, path, reason=""):
        """One clear line that names the file, status 1, and no picture."""
        status, lines = self.view(path, "--output", self.output, "--size", SIZE)
        self.assertEqual(status, 1)
        self.assertEqual(len(lines), 1, lines)
        self.assertTrue(lines[0].startswith("view: "), lines)
        self.assertTrue(os.path.basename(path) in lines[0], lines)
        self.assertTrue(reason.lower() in lines[0].lower(), lines)
        self.assertFalse(os.path.exists(self.output))

    def checkShowsSomething(self, picture):
        """What is in the middle differs from the background at the same height's edge."""
        x, y = picture.width // 2, picture.height // 2
        self.assertNotEqual(picture.pixel(x, y)[:3], picture.pixel(0, y)[:3])

    # Pictures.

    def testModelsOfManyFormatsGivePictures(self):
        for model in ("Collada/duck.dae", "glTF2/BoxTextured-glTF/BoxTextured.gltf",
                      "OBJ/spider.obj", "FBX/spider.fbx", "PLY/Wuson.ply"):
            picture = self.picture(os.path.join(MODELS, model))
            self.assertEqual((picture.width, picture.height), (320, 180))
            self.checkShowsSomething(picture)

    def testWithoutASceneABundledOneShows(self):
        picture = self.picture()
        colours = set(tuple(value // 64 for value in picture.pixel(x, y)[:3])
                      for x in range(0, 320, 4) for y in range(0, 180, 4))
        self.assertTrue(len(colours) > 6, "several colours")

    def testWithoutADisplayThePictureIsViewPng(self):
        self.assertEqual(self.view(DUCK),
                         (0, ["view: no display, so the picture is in view.png"]))
        picture = Picture(os.path.join(self.folder, "view.png"))
        self.assertEqual((picture.width, picture.height), (1280, 720))
        self.checkShowsSomething(picture)

    def testSeveralScenesAreShownTogether(self):
        box = MODELS + "/FBX/box.fbx"
        both = self.picture(DUCK, box)
        for alone in (self.picture(DUCK), self.picture(box)):
            self.assertTrue(both.difference(alone) > 0.01)

    def testModelsOfOneNameAreShownTogether(self):
        left = self.path("a/model.obj", b"v -3 0 0\nv -2 0 0\nv -2 1 0\nf 1 2 3\n")
        right = self.path("b/model.obj", b"v 2 0 0\nv 3 0 0\nv 3 1 0\nf 1 2 3\n")
        both = self.picture(left, right)
        self.assertTrue(both.difference(self.picture(left)) > 0.01)
        self.assertTrue(both.difference(self.picture(right)) > 0.01)

    def testFrameShowsAnotherMomentOfAnAnimation(self):
        model = MODELS + "/Collada/box_nested_animation.dae"
        first = self.picture(model)
        self.assertEqual(first.difference(self.picture(model, "--frame", "0")), 0)
        later = max(first.difference(self.picture(model, "--frame", str(frame)))
                    for frame in (10, 25, 50))
        self.assertTrue(later > 0.005)

    # What stands for models that are closed.

    def testClosedModelsAreBoxes(self):
        whole = self.picture(DUCK)
        boxed = self.picture(DUCK, "--collapse")
        nothing = self.picture(DUCK, "--collapse", "--no-boxes")
        self.assertTrue(boxed.difference(whole) > 0.01)
        self.assertTrue(boxed.difference(nothing) > 0.001, "wires of a box")
        self.assertTrue(nothing.difference(whole) > 0.01)

    def testAClosedModelIsPickedByItsBox(self):
        hits = self.picks(DUCK, "--collapse", "--pick", "0,0,320,180")
        self.assertEqual(hits, ["/root/duck_dae/__VlOst_bbox"])

    def testAProxyStandsForAClosedModel(self):
        light = self.path("light.obj", b"v -90 0 0\nv 90 0 0\nv 0 160 0\nf 1 2 3\n")
        hits = self.picks(DUCK, "--proxy", light, "--no-boxes", "--pick", "0,0,320,180")
        self.assertEqual(len(hits), 1, hits)
        self.assertTrue(hits[0].startswith("/root/duck_dae/__VlOst_proxy/light_obj"), hits)
        shown = self.picture(DUCK, "--proxy", light, "--no-boxes")
        self.checkShowsSomething(shown)
        nothing = self.picture(DUCK, "--proxy", light, "--no-boxes", "--no-proxies")
        self.assertTrue(shown.difference(nothing) > 0.01)
        self.assertEqual(nothing.difference(self.picture(DUCK, "--collapse", "--no-boxes")), 0)

    def testFrameShowsTheProxyOfThatMoment(self):
        moving = MODELS + "/Collada/box_nested_animation.dae"
        closed = (moving, "--proxy", moving, "--no-boxes", "--frame")
        pictures = [self.picture(*closed + (frame,)) for frame in ("0", "25")]
        self.assertTrue(pictures[0].difference(pictures[1]) > 0.005)

    def testAProxyThatCannotBeReadIsToldAndTheBoxStillShows(self):
        for name, content in (("missing.obj", None), ("garbage.dae", bytearray(range(256)) * 20),
                              ("letter.txt", b"Dear reader,\n")):
            path = os.path.join(self.folder, name)
            if content is not None:
                self.path(name, content)
            status, lines = self.view(DUCK, "--proxy", path, "--output", self.output, "--size", SIZE)
            self.assertEqual(status, 1)
            self.assertEqual(len(lines), 1, lines)
            self.assertTrue(name in lines[0], lines)
            self.assertEqual(Picture(self.output).difference(self.picture(DUCK, "--collapse")), 0)

    def testCameraOfTheSceneIsLookedThrough(self):
        through = self.picture(DUCK, "--camera", "/root/duck_dae/camera1")
        self.checkShowsSomething(through)
        self.assertTrue(through.difference(self.picture(DUCK)) > 0.01)

    # What goes wrong.

    def testMissingCamera(self):
        for camera in ("/root/duck_dae/camera7", "/root/nowhere"):
            status, lines = self.view(DUCK, "--camera", camera, "--output", self.output)
            self.assertEqual((status, lines), (1, [
                "view: %s: no such location; there are cameras at /root/duck_dae/camera1" % camera]))
            self.assertFalse(os.path.exists(self.output))
        status, lines = self.view("--camera", "/root/camera", "--output", self.output)
        self.assertEqual((status, lines), (1, ["view: /root/camera: no such location"]))

    def testMissingFile(self):
        self.checkFails(os.path.join(self.folder, "missing.dae"), "No such file")

    def testDirectory(self):
        path = os.path.join(self.folder, "folder.dae")
        os.mkdir(path)
        self.checkFails(path, "directory")

    def testUnknownFormat(self):
        self.checkFails(self.path("letter.txt", b"Dear reader,\n"))

    def testTruncatedModels(self):
        for model in (DUCK, MODELS + "/FBX/spider.fbx"):
            with open(model, "rb") as stream:
                content = stream.read()
            name = "truncated" + os.path.splitext(model)[1]
            self.checkFails(self.path(name, content[:len(content) // 2]))

    def testGarbageAndEmptyModels(self):
        for extension in ("dae", "gltf", "fbx", "ply", "obj"):
            self.checkFails(self.path("garbage." + extension, bytearray(range(256)) * 20))
            self.checkFails(self.path("empty." + extension, b""))

    @unittest.skipIf(os.getuid() == 0, "root may read everything")
    def testNoPermission(self):
        path = self.path("secret.dae")
        os.chmod(path, 0)
        self.checkFails(path, "Permission denied")

    def testTheOthersStillShow(self):
        status, lines = self.view("missing.dae", DUCK, self.path("bad.fbx", b"bad"), "--output",
                                  self.output, "--size", SIZE)
        self.assertEqual(status, 1)
        self.assertEqual(len(lines), 2, lines)
        for name in ("missing.dae", "bad.fbx"):
            self.assertEqual(sum(name in line for line in lines), 1, lines)
        self.assertTrue(Picture(self.output).difference(self.picture(DUCK)) < 0.001)

    def testPictureThatCantBeWritten(self):
        target = os.path.join(self.folder, "missing", "out.png")
        status, lines = self.view(DUCK, "--output", target, "--size", SIZE)
        self.assertEqual(status, 1)
        self.assertEqual(len(lines), 1, lines)
        self.assertTrue(target in lines[0] and "No such file" in lines[0], lines)

    def testWithoutPlugins(self):
        status, lines = self.view(DUCK, "--output", self.output, OSTREL_PLUGINS=self.folder)
        self.assertEqual((status, lines), (1, ["view: no plug-ins in " + self.folder]))

    def testPickPrintsTheLocationsHit(self):
        middle = self.picks(DUCK, "--pick", "160,90")
        self.assertEqual(len(middle), 1, middle)
        self.assertTrue(middle[0].startswith("/root/duck_dae/"), middle)
        self.assertEqual(self.picks(DUCK, "--pick", "0,0"), [])
        self.assertEqual(self.picks(DUCK, "--pick", "0,0,320,180"), middle)
        self.assertEqual(os.listdir(self.folder), [], "no picture was asked for")

    def testDeepPickPrintsWhatIsHiddenToo(self):
        def quad(name, z):
            corners = "".join("v %d %d %g\n" % (x, y, z)
                              for x, y in ((-1, -1), (1, -1), (1, 1), (-1, 1)))
            return self.path(name, (corners + "f 1 2 3 4\n").encode("ascii"))

        front, back = quad("front.obj", 0.1), quad("back.obj", -0.1)
        hit = self.picks(front, back, "--pick", "160,90")
        self.assertEqual([path.split("/")[2] for path in hit], ["front_obj"])
        hit = self.picks(front, back, "--pick", "160,90", "--deep")
        self.assertEqual([path.split("/")[2] for path in hit], ["back_obj", "front_obj"])

    def testPickWritesAPictureWhenAskedTo(self):
        self.picks(DUCK, "--pick", "160,90", "--output", self.output)
        self.checkShowsSomething(Picture(self.output))

    def testArgumentsAreChecked(self):
        size = "argument --size: \"%s\" is not WIDTHxHEIGHT, 1x1 to 16384x16384"
        pick = "argument --pick: \"%s\" is not X,Y or X,Y,WIDTH,HEIGHT"
        beyond = "--pick %s reaches beyond the picture of 1280x720"
        camera = "argument --camera: \"%s\" is not the path of a location, \"/root/...\""
        for arguments, problem in (
                (["--size", "0x5"], size % "0x5"),
                (["--size", "20"], size % "20"),
                (["--size", "16385x1"], size % "16385x1"),
                (["--frame", "x"], "argument --frame: invalid float value: 'x'"),
                (["--unknown"], "unrecognized arguments: --unknown"),
                (["--output"], "argument --output: expected"),
                (["--output", "picture.jpg"], "argument --output: pictures are PNG files: "
                 "\"picture.jpg\" should end in .png"),
                (["--pick", "1"], pick % "1"),
                (["--pick", "1,2,3"], pick % "1,2,3"),
                (["--pick", "1,2,0,3"], pick % "1,2,0,3"),
                (["--pick=-1,2"], pick % "-1,2"),
                (["--pick", "1280,0"], beyond % "1280,0,1,1"),
                (["--pick", "1270,0,11,1"], beyond % "1270,0,11,1"),
                (["--deep"], "--deep goes with --pick"),
                (["--proxy"], "argument --proxy: expected"),
                (["--camera", "camera1"], camera % "camera1"),
                (["--camera", "/root/"], camera % "/root/")):
            status, lines = self.view(DUCK, *arguments)
            self.assertEqual(status, 2, arguments)
            self.assertTrue(lines[-1].startswith("view: error: " + problem), lines)
        status, lines = self.view("--proxy", DUCK)
        self.assertEqual((status, lines[-1]), (2, "view: error: --proxy goes with a SCENE"))

    def testATerminalIsToldWhatTakesLong(self):
        materials = os.path.join(self.folder, "held.mtl")
        os.mkfifo(materials)  # reading the model takes until somebody writes them
        model = self.path("held.obj", b"mtllib held.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        reader, terminal = os.openpty()
        self.addCleanup(os.close, reader)
        process = subprocess.Popen([sys.executable, VIEW, model, "--output", self.output],
                                   stderr=terminal)
        os.close(terminal)
        told = b""
        while b"1 to come" not in told:
            told += os.read(reader, 1000)  # fails when the viewer ends
        open(materials, "w").close()
        try:
            while True:
                told += os.read(reader, 1000)
        except OSError:
            self.assertEqual(process.wait(), 0)
        lines = told.decode("ascii").split("\r")
        for line in lines[1:-2]:
            self.assertTrue(re.match(r"view: loading, \d+\.\d s, [01] to come +$", line), line)
        self.assertEqual((lines[-2].strip(), lines[-1]), ("", ""), "it is wiped away again")
        self.assertTrue(os.path.exists(self.output))

    def testHelpTellsTheOptions(self):
        process = subprocess.Popen([sys.executable, VIEW, "--help"], stdout=subprocess.PIPE)
        text = process.communicate()[0].decode("utf-8")
        self.assertEqual(process.returncode, 0)
        for option in ("SCENE", "--output", "--size", "--frame", "--collapse", "--proxy",
                       "--no-boxes", "--no-proxies", "--camera", "--pick", "--deep", "--python"):
            self.assertTrue(option in text, option)


if __name__ == "__main__":
    unittest.main()
