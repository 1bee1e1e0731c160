#include "textargument.h"

#include "VlWindowSystem/Offscreen.h"
#include "boundary.h"
#include "pythonmodule.h"

#include <stdexcept>

namespace {

PyObject* openAheadFunction(PyObject*, PyObject*) {
    return guarded([] {
        static const bool waits = Py_AtExit(waitForOffscreenOpening) == 0;
        if (waits) {
            openOffscreenAhead();
        }
        return pythoncompat::returnNone();
    });
}

PyObject* createOffscreenFunction(PyObject*, PyObject* args) {
    int width = 0;
    int height = 0;
    if (!PyArg_ParseTuple(args, "ii:createOffscreen", &width, &height)) {
        return nullptr;
    }
    return guarded([&] { return pythoncompat::newInt(createOffscreen(width, height)); });
}

PyObject* resizeOffscreenFunction(PyObject*, PyObject* args) {
    int id = 0;
    int width = 0;
    int height = 0;
    if (!PyArg_ParseTuple(args, "iii:resizeOffscreen", &id, &width, &height)) {
        return nullptr;
    }
    return guarded([&] {
        resizeOffscreen(id, width, height);
        return pythoncompat::returnNone();
    });
}

PyObject* destroyOffscreenFunction(PyObject*, PyObject* args) {
    int id = 0;
    if (!PyArg_ParseTuple(args, "i:destroyOffscreen", &id)) {
        return nullptr;
    }
    return guarded([&] {
        destroyOffscreen(id);
        return pythoncompat::returnNone();
    });
}

PyObject* readPixelsFunction(PyObject*, PyObject* args) {
    int id = 0;
    if (!PyArg_ParseTuple(args, "i:readPixels", &id)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        const Image& image = readPixels(id);
        const Reference width(pythoncompat::newInt(image.width));
        const Reference height(pythoncompat::newInt(image.height));
        const Reference pixels(
            PyBytes_FromStringAndSize(reinterpret_cast<const char*>(image.rgba.data()),
                                      static_cast<Py_ssize_t>(image.rgba.size())));
        return width && height && pixels ? PyTuple_Pack(3, width.get(), height.get(), pixels.get())
                                         : nullptr;
    });
}

PyObject* writePngFunction(PyObject*, PyObject* args) {
    int id = 0;
    pythoncompat::TextArgument path;
    if (!pythoncompat::parseArguments(args, "is:writePng", &id, path)) {
        return nullptr;
    }
    return guarded([&]() -> PyObject* {
        const Image& image = readPixels(id);
        try {
            writePng(path.get(), image);
        } catch (const std::runtime_error& error) {
            PyErr_SetString(PyExc_IOError, error.what());
            return nullptr;
        }
        return pythoncompat::returnNone();
    });
}

const char documentation[] =
    "Off-screen windows: what a viewport draws to where there is no screen.\n\n"
    "    import PyWindowSystem\n"
    "    window = PyWindowSystem.createOffscreen(1280, 720)\n"
    "    viewport.setup(window)             # and resize, and draw, as in any window\n"
    "    PyWindowSystem.writePng(window, \"view.png\")\n\n"
    "The id of an off-screen window is a negative int; one of a window on the screen is\n"
    "positive (the X11 id, such as a Tk widget's winfo_id()). The first window that is set up\n"
    "decides for the whole process: after an off-screen one no window on the screen can be.\n"
    "An id that is none, or a size that isn't from 1 to 16384 each way, raises ValueError.";

PyMethodDef functions[] = {
    {"openAhead", openAheadFunction, METH_NOARGS,
     "openAhead()\n\n"
     "Begins to load the renderer for off-screen windows, in the background: a script that calls\n"
     "this first has its first picture sooner. Without it the first window loads it."},
    {"createOffscreen", createOffscreenFunction, METH_VARARGS,
     "createOffscreen(width, height) -> int\n\n"
     "Makes an off-screen window of so many pixels and returns its id, a negative number."},
    {"resizeOffscreen", resizeOffscreenFunction, METH_VARARGS,
     "resizeOffscreen(id, width, height)\n\n"
     "Changes the size. The picture is black until the next one is drawn. The viewport has to\n"
     "be told by its own resize."},
    {"destroyOffscreen", destroyOffscreenFunction, METH_VARARGS,
     "destroyOffscreen(id)\n\n"
     "Ends the window. A viewport that still has it can't draw any more."},
    {"readPixels", readPixelsFunction, METH_VARARGS,
     "readPixels(id) -> (width, height, bytes)\n\n"
     "The picture that was drawn last: four bytes per pixel (red, green, blue, alpha), rows from\n"
     "the top. Black and transparent before the first draw."},
    {"writePng", writePngFunction, METH_VARARGS,
     "writePng(id, path)\n\n"
     "Writes the picture that was drawn last to a PNG file. Raises IOError, with the path and\n"
     "the reason in its text, when the file can't be written."},
    {}};

} // namespace

PYTHONCOMPAT_MODULE(PyWindowSystem) {
    return pythoncompat::createModule("PyWindowSystem", functions, documentation);
}
