"""The viewer's window, with Tk: for Python 2.7, and where Qt is not installed."""
try:
    import tkinter
except ImportError:
    import Tkinter as tkinter

from interaction import ORBIT, PAN, ZOOM, Interaction, Pump

_TICK_MS = 16
_SHIFT = 0x1


class ViewWindow(object):
    """A window with a frame that the viewer draws into."""

    def __init__(self, session, size, title, loaded):
        self._root = tkinter.Tk()
        self._root.title(title)
        # No background: Tk would paint it over the picture at every change of size.
        self._frame = tkinter.Frame(self._root, width=size[0], height=size[1], background="")
        self._frame.pack(fill="both", expand=True)
        self._root.update()
        view = session.addView(self._frame.winfo_id(), self._frame.winfo_width(),
                               self._frame.winfo_height())
        self._view = view
        self._interaction = Interaction(view)
        self._pump = Pump(session, view, loaded)
        self._bindEvents()
        self._root.bind("<Control-z>", lambda event: session.undo())
        for key in ("<Control-Shift-Z>", "<Control-y>"):
            self._root.bind(key, lambda event: session.redo())

    def _bindEvents(self):
        frame, interaction = self._frame, self._interaction
        frame.bind("<Configure>", lambda event: self._view.resize(event.width, event.height))
        frame.bind("<Expose>", lambda event: self._view.draw())
        frame.bind("<ButtonPress-1>", lambda event: interaction.press(
            PAN if event.state & _SHIFT else ORBIT, event.x, event.y))
        frame.bind("<ButtonPress-2>", lambda event: interaction.press(PAN, event.x, event.y))
        frame.bind("<ButtonPress-3>", lambda event: interaction.press(ZOOM, event.x, event.y))
        for button in "123":
            frame.bind("<B%s-Motion>" % button,
                       lambda event: interaction.move(event.x, event.y))
            frame.bind("<ButtonRelease-%s>" % button, lambda event: interaction.release())
        # The wheel's notches are buttons on X11.
        frame.bind("<Button-4>", lambda event: interaction.wheel(1))
        frame.bind("<Button-5>", lambda event: interaction.wheel(-1))
        self._root.bind("<KeyPress-f>", lambda event: self._view.frame())
        for key in ("<KeyPress-q>", "<Escape>"):
            self._root.bind(key, lambda event: self._root.quit())

    def _tick(self):
        self._pump.tick()
        self._root.after(_TICK_MS, self._tick)

    def run(self):
        """Until the window is closed."""
        self._root.protocol("WM_DELETE_WINDOW", self._root.quit)
        self._root.after(0, self._tick)
        self._root.mainloop()


def run(session, size, title, loaded):
    """Shows the session's scene in a window until the user closes it. `loaded` is called once the
    whole scene is there. Raises RuntimeError when no window can be shown."""
    try:
        window = ViewWindow(session, size, title, loaded)
    except tkinter.TclError as error:
        raise RuntimeError("the window can't be shown: %s" % error)
    window.run()
