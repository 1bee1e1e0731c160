"""Shows models: in a window, or as a picture.

The command line of ./view.sh, which builds what this needs and starts it with the right paths.
"""
from __future__ import print_function

import argparse
import os
import re
import sys

DESCRIPTION = """Shows models: in a window, or as a picture."""
EPILOG = """With a display a window opens: drag to orbit, drag with shift to pan, turn the wheel to
come nearer, click to select. F frames the selection, W, E and R move, turn and size it, Ctrl+Z
undoes that, Q or Escape closes the window; docs/events.md has all that mouse and keys do. Without a
display, or with --output, a picture is written. A model that can't be read is reported on a line of
its own and the others still show; the exit status is then 1."""


#: How long to wait for the scene to tell of its models, so that reading them begins, in seconds.
_HEAD_START = 0.003
#: How many cameras are told to a user who named another one.
_MOST_CAMERAS = 5
#: Columns of the line on a terminal that tells of it.
_PROGRESS_WIDTH = 60


def parseSize(text):
    match = re.match(r"^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$", text)
    if not match or max(int(number) for number in match.groups()) > 16384:
        raise argparse.ArgumentTypeError("\"%s\" is not WIDTHxHEIGHT, 1x1 to 16384x16384" % text)
    return tuple(int(number) for number in match.groups())


def parseRegion(text):
    match = re.match(r"^(\d{1,5}),(\d{1,5})(?:,([1-9]\d{0,4}),([1-9]\d{0,4}))?$", text)
    if not match:
        raise argparse.ArgumentTypeError("\"%s\" is not X,Y or X,Y,WIDTH,HEIGHT" % text)
    return tuple(int(number or 1) for number in match.groups())


def parseLocation(text):
    if not re.match(r"^/root(/[^/]+)*$", text):
        raise argparse.ArgumentTypeError("\"%s\" is not the path of a location, \"/root/...\"" % text)
    return text


def parsePicture(text):
    if os.path.splitext(text)[1].lower() not in ("", ".png"):
        raise argparse.ArgumentTypeError("pictures are PNG files: \"%s\" should end in .png" % text)
    return text


def formatter(prog):
    # The parser makes one for each option, and asking the terminal for its width would import
    # modules for longer than the parser itself.
    return argparse.HelpFormatter(prog, width=78)


def parseArguments(arguments):
    parser = argparse.ArgumentParser(prog="view", description=DESCRIPTION, epilog=EPILOG,
                                     formatter_class=formatter)
    parser.add_argument("scenes", metavar="SCENE", nargs="*",
                        help="a model file; several are shown together (default: a bundled scene)")
    parser.add_argument("--output", metavar="FILE.png", type=parsePicture,
                        help="write a picture (default without a display: view.png)")
    parser.add_argument("--size", metavar="WxH", type=parseSize, default=(1280, 720),
                        help="of the picture or window, in pixels (default: 1280x720)")
    parser.add_argument("--frame", metavar="N", type=float, default=0.0,
                        help="show animated models, and proxies, at this frame (default: 0)")
    parser.add_argument("--collapse", action="store_true",
                        help="show the models closed: each by its box, or its proxy")
    parser.add_argument("--proxy", metavar="FILE",
                        help="a lighter model, which is shown in place of each while it is closed; "
                        "closes them as --collapse does")
    parser.add_argument("--no-boxes", action="store_true",
                        help="show no boxes for what is closed")
    parser.add_argument("--no-proxies", action="store_true",
                        help="show no proxies for what is closed")
    parser.add_argument("--camera", metavar="PATH", type=parseLocation,
                        help="look through this location, a camera or a light, \"/root/...\"; a "
                        "wrong path is answered with those of the cameras in what is open")
    parser.add_argument("--pick", metavar="X,Y[,W,H]", type=parseRegion,
                        help="print the locations that this pixel, or region, of the picture shows, "
                        "a line each; pixels count from the top left")
    parser.add_argument("--deep", action="store_true",
                        help="with --pick: also the locations hidden behind those")
    parser.add_argument("--python", metavar="2.7|3", help="the interpreter that runs this")
    parsed = parser.parse_args(arguments)
    if parsed.proxy is not None and not parsed.scenes:
        parser.error("--proxy goes with a SCENE")
    if parsed.deep and not parsed.pick:
        parser.error("--deep goes with --pick")
    if parsed.pick:
        x, y, width, height = parsed.pick
        if x + width > parsed.size[0] or y + height > parsed.size[1]:
            parser.error("--pick %d,%d,%d,%d reaches beyond the picture of %dx%d"
                         % (parsed.pick + parsed.size))
    parsed.hasNoDisplay = not (parsed.pick or parsed.output or os.environ.get("DISPLAY"))
    if parsed.hasNoDisplay:
        parsed.output = "view.png"
    return parsed


class Failures(object):
    """Tells the user, once each, what could not be shown."""

    def __init__(self):
        self.told = set()

    def tell(self, text):
        line = " ".join(text.split())
        if line not in self.told:
            self.told.add(line)
            print("view: " + line, file=sys.stderr)

    def tellErrors(self, session):
        for path, message in session.getErrors():
            self.tell(message or "%s: unknown error" % path)

    def tellMissingCamera(self, session, view, camera):
        """Whether that camera is missing."""
        isMissing = camera is not None and view.getLookThrough() != camera
        if isMissing:
            cameras = getCameras(session)[:_MOST_CAMERAS]
            self.tell("%s: no such location" % camera +
                      ("; there are cameras at " + ", ".join(cameras) if cameras else ""))
        return isMissing


def getCameras(session):
    from PyVlAttribute import StringAttribute

    camera = StringAttribute("camera")
    return [path for path in session.getLocations()
            if session.delegate.getAttributes(path).getChildByName("type") == camera]


def loadScenes(session, options):
    if options.scenes:
        for scene in options.scenes:
            session.importModel(scene, options.proxy)
    else:
        import defaultscene

        defaultscene.addTo(session)
    session.setCollapsed(options.collapse or options.proxy is not None)
    session.setBoxesShown(not options.no_boxes)
    session.setProxiesShown(not options.no_proxies)
    session.setTime(options.frame)


def writePicture(session, options, failures):
    isTerminal = sys.stderr.isatty()
    shown = []

    def progress(elapsed):
        # Quick scenes need no word.
        if isTerminal and elapsed > 0.5:
            shown.append(elapsed)
            text = "view: loading, %.1f s, %d to come" % (elapsed, session.countLocationsToCome())
            print("\r" + text.ljust(_PROGRESS_WIDTH), end="", file=sys.stderr)
            sys.stderr.flush()

    # While the models are read and cooked, the window is made.
    session.pump(timeout=_HEAD_START)
    view = session.addOffscreenView(*options.size)
    view.lookThrough(options.camera)
    session.pump(progress)
    if shown:
        print("\r" + " " * _PROGRESS_WIDTH + "\r", end="", file=sys.stderr)
    failures.tellErrors(session)
    if session.getBounds() is None and failures.told:
        return  # a picture of nothing would pass for one of the models
    if failures.tellMissingCamera(session, view, options.camera):
        return  # nor would that be the picture that was asked for
    view.frame()
    if options.output:
        view.savePicture(options.output)
        if options.hasNoDisplay:
            print("view: no display, so the picture is in %s" % options.output, file=sys.stderr)
    if options.pick:
        for path in view.pick(*options.pick, deep=options.deep):
            print(path)


def openWindow(session, options, failures):
    try:
        import qtwindow as window
    except ImportError:
        import tkwindow as window

    def loaded(view):
        failures.tellErrors(session)
        failures.tellMissingCamera(session, view, options.camera)

    window.run(session, options.size, title(options.scenes), loaded, options.camera)


def title(scenes):
    names = [os.path.basename(scene) for scene in scenes]
    return ", ".join(names[:3]) + (", ..." if len(names) > 3 else "") if names else "view"


def main(arguments):
    options = parseArguments(arguments)
    failures = Failures()
    try:
        if options.output or options.pick:
            import PyWindowSystem

            # The renderer is loaded while everything else is.
            PyWindowSystem.openAhead()
        import ostrel
        import PyVlLogging

        # What a model lacks, a texture say, is no reason to talk to the user.
        PyVlLogging.setLevel("error")
        with ostrel.Session() as session:
            loadScenes(session, options)
            if options.output or options.pick:
                writePicture(session, options, failures)
            else:
                openWindow(session, options, failures)
    except (EnvironmentError, ImportError, RuntimeError, ValueError) as error:
        failures.tell(str(error))
    except KeyboardInterrupt:
        return 130
    return 1 if failures.told else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
