#include "support/xvfb.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

Xvfb::Xvfb() {
    int ends[2];
    if (pipe(ends) != 0) {
        reason = std::strerror(errno);
        return;
    }
    process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(ends[0]);
        const std::string descriptor = std::to_string(ends[1]);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "640x480x24",
               "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(ends[1]);
    // The server writes the number of its display once it answers; the pipe ends when it can't.
    std::string number;
    char c = 0;
    while (read(ends[0], &c, 1) == 1 && c != '\n') {
        number += c;
    }
    close(ends[0]);
    if (number.empty()) {
        kill();
        reason = "Xvfb isn't installed or doesn't start";
    } else {
        display = ":" + number;
    }
}

Xvfb::~Xvfb() {
    kill();
}

void Xvfb::kill() {
    if (process > 0) {
        ::kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        process = -1;
    }
    display.clear();
}
