#include "xconnection.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <limits>

namespace {

// The trap in force. X has one handler of each kind per process and gives it no data of ours.
Display* trappedDisplay = nullptr;
bool hasTrappedError = false;
XErrorHandler handlerBefore = nullptr;
XIOErrorHandler lossHandlerBefore = nullptr;

int handleError(Display* display, XErrorEvent* event) {
    if (display == trappedDisplay) {
        hasTrappedError = true;
        return 0;
    }
    return handlerBefore ? handlerBefore(display, event) : 0;
}

int handleLoss(Display* display) {
    // The default handler ends the process. When this one returns, the connection's own is asked.
    return display == trappedDisplay || !lossHandlerBefore ? 0 : lossHandlerBefore(display);
}

} // namespace

std::unique_ptr<XConnection> XConnection::open() {
    Display* const display = XOpenDisplay(nullptr);
    return display ? std::unique_ptr<XConnection>(new XConnection(display)) : nullptr;
}

XConnection::XConnection(_XDisplay* xDisplay) : display(xDisplay) {
    // Xlib ends the process after a loss, unless the connection has something else to do.
    XSetIOErrorExitHandler(
        display, [](Display*, void* self) { static_cast<XConnection*>(self)->isLost = true; },
        this);
}

XConnection::~XConnection() {
    if (!isLost) {
        XCloseDisplay(display);
    }
}

bool XConnection::beginTrap() {
    if (isLost) {
        return false;
    }
    handlerBefore = XSetErrorHandler(&handleError);
    lossHandlerBefore = XSetIOErrorHandler(&handleLoss);
    trappedDisplay = display;
    // What went wrong before belongs to nobody.
    XSync(display, False);
    hasTrappedError = false;
    if (isLost) {
        endTrap();
    }
    return !isLost;
}

bool XConnection::endTrap() {
    if (!isLost) {
        XSync(display, False);
    }
    trappedDisplay = nullptr;
    XSetErrorHandler(handlerBefore);
    XSetIOErrorHandler(lossHandlerBefore);
    return !hasTrappedError && !isLost;
}

bool XConnection::hasWindow(std::intptr_t windowId) {
    XWindowAttributes attributes{};
    return !isLost && XGetWindowAttributes(display, static_cast<Window>(windowId), &attributes);
}

bool XConnection::areAlike(std::uint32_t visual, std::uint32_t other) noexcept {
    if (visual == other) {
        return true;
    }
    const auto describe = [this](std::uint32_t id, XVisualInfo& description) {
        XVisualInfo wanted{};
        wanted.visualid = id;
        int count = 0;
        XVisualInfo* const found = XGetVisualInfo(display, VisualIDMask, &wanted, &count);
        if (!found) {
            return false;
        }
        description = *found;
        XFree(found);
        return true;
    };
    XVisualInfo a{};
    XVisualInfo b{};
    return !isLost && describe(visual, a) && describe(other, b) && a.screen == b.screen &&
           a.depth == b.depth && a.c_class == b.c_class && a.red_mask == b.red_mask &&
           a.green_mask == b.green_mask && a.blue_mask == b.blue_mask;
}

std::optional<std::uint32_t> XConnection::windowVisual(std::intptr_t windowId) {
    if (windowId <= 0 || windowId > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    XWindowAttributes attributes{};
    const bool isFound = attempt([&] {
        return XGetWindowAttributes(display, static_cast<Window>(windowId), &attributes) != 0;
    });
    if (!isFound || attributes.c_class != InputOutput) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(XVisualIDFromVisual(attributes.visual));
}
