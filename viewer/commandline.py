"""The options of the viewer's command line."""
import argparse
import os
import re

DESCRIPTION = """Shows models: in a window, or as a picture."""
EPILOG = """With a display a window opens: drag to orbit, drag with shift to pan, turn the wheel to
come nearer, click to select. F frames the selection, W, E and R move, turn and size it, Ctrl+Z
undoes that, Q or Escape closes the window; docs/events.md has all that mouse and keys do. Without a
display, or with --output, a picture is written. A model that can't be read is reported on a line of
its own and the others still show; the exit status is then 1."""


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


def parse(arguments):
    """The options that the arguments give; ends the process, with a word, where they are wrong."""
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
