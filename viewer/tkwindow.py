"""The viewer's window, with Tk: for Python 2.7, and where Qt is not installed."""
try:
    import tkinter
except ImportError:
    import Tkinter as tkinter

from interaction import Pump, pressKey, titleAt
from ostrel import events

_TICK_MS = 16

_BUTTONS = ((0x100, "left"), (0x200, "middle"), (0x400, "right"))
_MODIFIERS = ((0x1, "shift"), (0x4, "control"), (0x8, "alt"))
_KEYS = {
    "Prior": "PageUp", "Next": "PageDown", "BackSpace": "Backspace", "space": "Space",
    "Shift_L": "Shift", "Shift_R": "Shift", "Control_L": "Control", "Control_R": "Control",
    "Alt_L": "Alt", "Alt_R": "Alt", "ISO_Left_Tab": "Tab",
}


def _names(state, table):
    return [name for bit, name in table if state & bit]


def _keyName(event):
    """As docs/events.md has them; "" for other keys."""
    symbol = event.keysym
    if symbol in _KEYS:
        return _KEYS[symbol]
    if len(symbol) == 1:
        return symbol.lower()
    if len(event.char) == 1 and " " < event.char <= "~":
        return str(event.char)  # Tk calls "+" "plus"
    return symbol if len(symbol) < 20 else ""


class ViewWindow(object):
    """A window with a frame that the viewer draws into."""

    def __init__(self, session, size, title, loaded, cameraPath=None):
        self._session = session
        self._title = title
        self._root = tkinter.Tk()
        self._root.title(titleAt(title, session.getTime()))
        # No background: Tk would paint it over the picture at every change of size.
        self._frame = tkinter.Frame(self._root, width=size[0], height=size[1], background="")
        self._frame.pack(fill="both", expand=True)
        self._root.update()
        self._view = session.addView(self._frame.winfo_id(), self._frame.winfo_width(),
                                     self._frame.winfo_height())
        self._view.lookThrough(cameraPath)
        self._pump = Pump(session, self._view, lambda: loaded(self._view))
        self._bindEvents()
        self._root.bind("<Control-z>", lambda event: session.undo())
        for key in ("<Control-Shift-Z>", "<Control-y>"):
            self._root.bind(key, lambda event: session.redo())

    def _bindEvents(self):
        frame = self._frame
        frame.bind("<Configure>", lambda event: self._view.resize(event.width, event.height))
        frame.bind("<Expose>", lambda event: self._view.draw())
        for number, (bit, name) in enumerate(_BUTTONS, 1):
            frame.bind("<ButtonPress-%d>" % number, self._button(events.mousePress, bit, name, bit))
            frame.bind("<ButtonRelease-%d>" % number,
                       self._button(events.mouseRelease, bit, name, 0))
        frame.bind("<Motion>", self._move)
        frame.bind("<Leave>", lambda event: self._view.viewport.hover())
        # The wheel's notches are buttons on X11.
        frame.bind("<Button-4>", lambda event: self._wheel(event, 1))
        frame.bind("<Button-5>", lambda event: self._wheel(event, -1))
        self._root.bind("<KeyPress>", self._keyPress)
        self._root.bind("<KeyRelease>", lambda event: self._sendKey(event, events.keyRelease))

    def _send(self, event):
        return self._view.viewport.event(event)

    def _button(self, build, bit, name, after):
        # Tk tells the buttons that were held before the event.
        def handle(event):
            self._send(build(event.x, event.y, name, _names(event.state & ~bit | after, _BUTTONS),
                             _names(event.state, _MODIFIERS)))
        return handle

    def _move(self, event):
        buttons = _names(event.state, _BUTTONS)
        self._send(events.mouseMove(event.x, event.y, buttons, _names(event.state, _MODIFIERS)))
        if not buttons:
            self._view.viewport.hover(event.x, event.y)

    def _wheel(self, event, notches):
        self._send(events.wheel(event.x, event.y, notches, _names(event.state, _BUTTONS),
                                _names(event.state, _MODIFIERS)))

    def _sendKey(self, event, build):
        name = _keyName(event)
        return bool(name) and self._send(build(name, _names(event.state, _MODIFIERS)))

    def _keyPress(self, event):
        if self._sendKey(event, events.keyPress):
            return
        pressKey(self._session, self._view, _keyName(event), _names(event.state, _MODIFIERS),
                 self._root.quit)
        self._showTitle()

    def _showTitle(self):
        title = titleAt(self._title, self._session.getTime()) + self._pump.progress
        if title != self._root.title():
            self._root.title(title)

    def _tick(self):
        self._pump.tick()
        self._showTitle()
        self._root.after(_TICK_MS, self._tick)

    def run(self):
        """Until the window is closed."""
        self._root.protocol("WM_DELETE_WINDOW", self._root.quit)
        self._root.after(0, self._tick)
        self._root.mainloop()


def run(session, size, title, loaded, cameraPath=None):
    """Shows the session's scene in a window until the user closes it. `loaded` is called with the
    view once the whole scene is there. Raises RuntimeError when no window can be shown."""
    try:
        window = ViewWindow(session, size, title, loaded, cameraPath)
    except tkinter.TclError as error:
        raise RuntimeError("the window can't be shown: %s" % error)
    window.run()
