#pragma once

#include <sys/types.h>

#include <string>

/// An X server without a screen, for the tests that need windows.
class Xvfb {
public:
    /// Starts a server and waits until it answers. Without one, reason() says why.
    Xvfb();
    ~Xvfb();
    Xvfb(const Xvfb&) = delete;
    Xvfb& operator=(const Xvfb&) = delete;

    [[nodiscard]] bool isRunning() const { return !display.empty(); }
    /// Such as ":7".
    [[nodiscard]] const std::string& getDisplay() const { return display; }
    [[nodiscard]] const std::string& getReason() const { return reason; }

    /// Ends the server and waits until it is gone.
    void kill();

private:
    pid_t process = -1;
    std::string display;
    std::string reason;
};
