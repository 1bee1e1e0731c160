// The import program: reads one model file and writes what is in it, or why it can't, to a file
// that is open already. Model files come from everywhere, and the import library takes a damaged
// one badly: it may crash, or never come back. So it works in a process of its own, which may be
// lost without harm to the viewer.
//
//     ostrel_import_model PATH FD CPU_SECONDS MEMORY_BYTES
//
// The limits are this process's own; 0 is none.

#include "modelarchive.h"
#include "scenereader.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <new>
#include <string>

namespace {

void limit(decltype(RLIMIT_CPU) resource, rlim_t soft, rlim_t hard) {
    const rlimit limits = {soft, hard};
    setrlimit(resource, &limits);
}

std::string read(const char* path) {
    try {
        return packModel(readModelFile(path));
    } catch (const std::bad_alloc&) {
        return packFailure("it needs too much memory");
    } catch (const std::exception& error) {
        return packFailure(error.what());
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        return 2;
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0, 0);
    if (const rlim_t seconds = std::strtoul(argv[3], nullptr, 10)) {
        // At the soft limit comes a signal that says why, at the hard one just the end.
        limit(RLIMIT_CPU, seconds, seconds + 1);
    }
    if (const rlim_t bytes = std::strtoul(argv[4], nullptr, 10)) {
        limit(RLIMIT_AS, bytes, bytes);
    }
    const std::string answer = read(argv[1]);
    const int file = std::atoi(argv[2]);
    for (std::size_t written = 0; written < answer.size();) {
        const ssize_t count = write(file, answer.data() + written, answer.size() - written);
        if (count <= 0) {
            return 1;
        }
        written += static_cast<std::size_t>(count);
    }
    // Nothing is left to be done, and what a damaged file left behind is best not touched again.
    _exit(0);
}
