#pragma once

#include "modeldata.h"

#include <sys/types.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

namespace VlScenelibEngine {

/// One reading of a model file by the import program, in a process of its own: a damaged file can
/// end or occupy that process, which is then given up. [any-thread]
class ImportProcess {
public:
    explicit ImportProcess(std::string filePath) : path(std::move(filePath)) {}
    ImportProcess(const ImportProcess&) = delete;
    ImportProcess& operator=(const ImportProcess&) = delete;

    /// Waits for the process. Throws std::runtime_error, "Can't import 'PATH': REASON." in one
    /// line, when there is no such file or it can't be read. To be called once.
    [[nodiscard]] ModelData read();
    /// Ends the process, if it is under way, and keeps it from being started: read() throws.
    void cancel();

private:
    [[nodiscard]] ModelData readAnswer();
    /// Why it failed, or nothing.
    [[nodiscard]] std::string runProgram(std::uintmax_t fileSize, int answer);

    const std::string path;
    std::mutex mutex;
    pid_t process = -1; // while it is there
    bool isCancelled = false;
};

} // namespace VlScenelibEngine
