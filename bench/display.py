"""A display for programs that need one."""

import contextlib
import os
import shutil
import subprocess


@contextlib.contextmanager
def display():
    """An environment with a display that has GLX; None where there is none to be had."""
    if os.environ.get("DISPLAY"):
        yield dict(os.environ)
        return
    if not shutil.which("Xvfb"):
        yield None
        return
    reading, writing = os.pipe()
    # Without a reset when the last client goes: who comes meanwhile is turned away.
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(writing), "-noreset", "-screen", "0", "1280x720x24"],
        pass_fds=[writing],
        stderr=subprocess.DEVNULL,
    )
    os.close(writing)
    try:
        with os.fdopen(reading) as number:
            yield dict(os.environ, DISPLAY=":" + number.readline().strip())
    finally:
        server.terminate()
        server.wait()
