"""Shows models: in a window, or as a picture.

The command line of ./view.sh, which builds what this needs and starts it with the right paths.
"""
from __future__ import print_function

import os
import sys

#: How long to wait for the scene to tell of its models, so that reading them begins, in seconds.
_HEAD_START = 0.0005
#: How many cameras are told to a user who named another one.
_MOST_CAMERAS = 5
#: Columns of the line on a terminal that tells of it.
_PROGRESS_WIDTH = 60


def drawsPicture(arguments):
    """Whether these ask for a picture and no window, as can be told before they are parsed."""
    names = set(argument.split("=")[0] for argument in arguments)
    if names.intersection(("-h", "--help")):
        return False
    return bool(names.intersection(("--output", "--pick"))) or not os.environ.get("DISPLAY")


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
    failures = Failures()
    try:
        if drawsPicture(arguments):
            import PyWindowSystem

            # The renderer is loaded while everything else is.
            PyWindowSystem.openAhead()
        import commandline

        options = commandline.parse(arguments)
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
