// Logs from threads of its own, for tests that can't.

#include "VlLogging/VlLoggerGlue.h"

#include <thread>

extern "C" __attribute__((visibility("default"))) void logHere(const char* text) {
    VlLoggerGlue("caller").error(text, "caller", 1);
}

extern "C" __attribute__((visibility("default"))) void logFromAnotherThread(const char* text) {
    std::thread([text] { logHere(text); }).join();
}
