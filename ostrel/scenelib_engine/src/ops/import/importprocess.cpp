#include "ops/import/importprocess.h"

#include "modelarchive.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <span>
#include <stdexcept>

extern char** environ;

namespace VlScenelibEngine {

namespace {

namespace fs = std::filesystem;

// Where the program finds its answer's file.
constexpr int kAnswerDescriptor = 3;

// What reading may take at most, in seconds of processor time: far more than any sound file needs.
std::uint64_t processorSeconds(std::uintmax_t fileSize) {
    return 5 + 10 * (fileSize >> 20);
}

// The most memory that reading may take: a damaged file can ask for any amount, and then the
// machine's should not all go. None where the sanitizers map far more than they use.
std::uint64_t memoryLimit([[maybe_unused]] std::uintmax_t fileSize) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 0;
#else
    const auto physical = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                          static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    const std::uint64_t ample = (std::uint64_t{2} << 30) + 200 * fileSize;
    return std::min(ample, std::max(physical / 4 * 3, std::uint64_t{1} << 30));
#endif
}

// The program lies beside this library.
std::string programPath() {
    Dl_info information{};
    const bool isFound = dladdr(reinterpret_cast<void*>(&programPath), &information) != 0;
    return (fs::path(isFound ? information.dli_fname : "").parent_path() / "ostrel_import_model")
        .string();
}

// Throws with the reason why the file needn't be tried; returns its size.
std::uintmax_t checkFile(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw std::runtime_error(errno == ENOENT ? "there is no such file" : std::strerror(errno));
    }
    if (S_ISDIR(status.st_mode)) {
        throw std::runtime_error("it is a directory");
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error("it is no regular file");
    }
    if (access(path.c_str(), R_OK) != 0) {
        throw std::runtime_error(std::strerror(errno));
    }
    if (status.st_size == 0) {
        throw std::runtime_error("it is empty");
    }
    return static_cast<std::uintmax_t>(status.st_size);
}

class AnswerFile {
public:
    AnswerFile() : descriptor(memfd_create("model", MFD_CLOEXEC)) {
        if (descriptor < 0) {
            throw std::runtime_error(std::strerror(errno));
        }
    }
    ~AnswerFile() {
        if (content) {
            munmap(content, size);
        }
        close(descriptor);
    }
    AnswerFile(const AnswerFile&) = delete;
    AnswerFile& operator=(const AnswerFile&) = delete;

    [[nodiscard]] int getDescriptor() const { return descriptor; }

    // Once, when it is written.
    std::span<const std::byte> read() {
        struct stat status {};
        if (fstat(descriptor, &status) != 0 || status.st_size <= 0) {
            return {};
        }
        size = static_cast<std::size_t>(status.st_size);
        void* const mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (mapped == MAP_FAILED) {
            return {};
        }
        content = mapped;
        return {static_cast<const std::byte*>(content), size};
    }

private:
    int descriptor;
    void* content = nullptr;
    std::size_t size = 0;
};

// What posix_spawn needs, released together.
class SpawnSettings {
public:
    explicit SpawnSettings(int answer) {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        for (const int standard : {0, 1, 2}) {
            posix_spawn_file_actions_addopen(&actions, standard, "/dev/null", O_RDWR, 0);
        }
        posix_spawn_file_actions_adddup2(&actions, answer, kAnswerDescriptor);
        posix_spawn_file_actions_addclosefrom_np(&actions, kAnswerDescriptor + 1);
        // The limits end the program by signals that the application may have blocked or ignored.
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

} // namespace

std::string ImportProcess::runProgram(std::uintmax_t fileSize, int answer) {
    std::string program = programPath();
    std::string argument = path;
    std::string descriptor = std::to_string(kAnswerDescriptor);
    std::string seconds = std::to_string(processorSeconds(fileSize));
    std::string memory = std::to_string(memoryLimit(fileSize));
    const std::array<char*, 6> arguments = {program.data(), argument.data(), descriptor.data(),
                                            seconds.data(), memory.data(),   nullptr};
    const SpawnSettings settings(answer);
    {
        const std::lock_guard lock(mutex);
        if (isCancelled) {
            return "nobody wants it any more";
        }
        const int error = posix_spawn(&process, program.c_str(), &settings.actions,
                                      &settings.attributes, arguments.data(), environ);
        if (error != 0) {
            process = -1;
            return "the import program '" + program + "' can't be started: " + std::strerror(error);
        }
    }
    // It is taken away with the lock held, so that no other process is ended that got its number.
    siginfo_t information{};
    while (waitid(P_PID, static_cast<id_t>(process), &information, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR) {
    }
    const std::lock_guard lock(mutex);
    int status = 0;
    if (waitpid(std::exchange(process, -1), &status, 0) < 0) {
        return {}; // somebody else has seen it end; the answer says the rest
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
        return "reading it takes too long; it may be damaged";
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) {
        return isCancelled ? "nobody wants it any more"
                           : "it needs too much memory; it may be damaged";
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0
               ? std::string()
               : "the import library fails on it; it may be damaged";
}

ModelData ImportProcess::readAnswer() {
    const std::uintmax_t size = checkFile(path);
    AnswerFile answer;
    const std::string failure = runProgram(size, answer.getDescriptor());
    if (!failure.empty()) {
        throw std::runtime_error(failure);
    }
    return unpackModel(answer.read());
}

ModelData ImportProcess::read() {
    try {
        return readAnswer();
    } catch (const std::runtime_error& error) {
        std::string text = "Can't import '" + path + "': " + error.what() + ".";
        std::ranges::replace_if(
            text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
        throw std::runtime_error(text);
    }
}

void ImportProcess::cancel() {
    const std::lock_guard lock(mutex);
    isCancelled = true;
    if (process > 0) {
        kill(process, SIGKILL);
    }
}

} // namespace VlScenelibEngine
