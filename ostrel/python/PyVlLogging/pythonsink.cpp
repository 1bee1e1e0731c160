#include "pythonsink.h"

#include "VlLogging/LogSink.h"
#include "boundary.h"

#include <cstdio>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace {

PyObject* callableInUse = nullptr; // owned; guarded by the interpreter lock

// Lines of threads without the interpreter lock.
std::mutex waitingMutex;
std::deque<LogRecord> waiting;
bool isDeliveryScheduled = false; // guarded by waitingMutex

// What the callable itself logs would come back to it for ever.
thread_local bool isDelivering = false;

// Calls the callable. False when there is none or it raised, which is printed. An error that was
// pending before is pending afterwards.
bool callSink(const LogRecord& record) {
    if (!callableInUse) {
        return false;
    }
    const Reference callable(callableInUse); // it may replace itself meanwhile
    Py_INCREF(callable.get());
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    isDelivering = true;
    const Reference level(pythoncompat::newText(logLevelName(record.level)));
    const Reference channel(pythoncompat::newText(record.channel));
    const Reference text(pythoncompat::newText(record.text));
    const Reference source(pythoncompat::newText(record.source));
    const Reference line(pythoncompat::newInt(record.line));
    const bool isReady = level && channel && text && source && line;
    const Reference result(isReady ? PyObject_CallFunctionObjArgs(
                                         callable.get(), level.get(), channel.get(), text.get(),
                                         source.get(), line.get(), static_cast<PyObject*>(nullptr))
                                   : nullptr);
    isDelivering = false;
    if (!result) {
        PyErr_WriteUnraisable(callable.get());
    }
    PyErr_Restore(type, value, traceback);
    return static_cast<bool>(result);
}

void deliverWaiting() {
    std::deque<LogRecord> records;
    {
        const std::lock_guard lock(waitingMutex);
        records.swap(waiting);
        isDeliveryScheduled = false;
    }
    for (const LogRecord& record : records) {
        if (!callSink(record)) {
            std::fprintf(stderr, "%s %s: %s\n", logLevelName(record.level), record.channel.c_str(),
                         record.text.c_str());
        }
    }
}

void keep(const LogRecord& record) {
    const std::lock_guard lock(waitingMutex);
    waiting.push_back(record);
    if (!isDeliveryScheduled) {
        // Fails while too many others wait; the next line tries again.
        isDeliveryScheduled = Py_AddPendingCall(
                                  [](void*) {
                                      return guarded(
                                          [] {
                                              deliverWaiting();
                                              return 0;
                                          },
                                          -1);
                                  },
                                  nullptr) == 0;
    }
}

// What it throws makes the line go to stderr.
void sink(const LogRecord& record) {
    if (isDelivering) {
        throw std::runtime_error("the sink logs");
    }
    if (!pythoncompat::holdsInterpreterLock()) {
        keep(record);
        return;
    }
    deliverWaiting();
    if (!callSink(record)) {
        throw std::runtime_error("the sink failed");
    }
}

} // namespace

namespace PythonSink {

void set(PyObject* callable) {
    deliverWaiting();
    setLogSink(callable == Py_None ? LogSink() : LogSink(&sink));
    PyObject* const next = callable == Py_None ? nullptr : callable;
    Py_XINCREF(next);
    PyObject* const before = std::exchange(callableInUse, next);
    Py_XDECREF(before);
}

PyObject* get() noexcept {
    return callableInUse;
}

void abandon() noexcept {
    setLogSink({});
}

} // namespace PythonSink
