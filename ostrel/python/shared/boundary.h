#pragma once

#include "pythoncompat.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <utility>

/// Runs the body of an entry that Python calls. What the library behind it refuses becomes
/// ValueError with its text, and lack of memory MemoryError; `failed` is then returned.
template <typename Body, typename Result = decltype(std::declval<Body>()())>
Result guarded(Body body, Result failed) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::runtime_error& error) {
        PyErr_SetString(PyExc_ValueError, error.what());
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    }
    return failed;
}

template <typename Body>
PyObject* guarded(Body body) noexcept {
    return guarded(std::move(body), static_cast<PyObject*>(nullptr));
}

/// Owns one reference, or none.
class Reference {
public:
    Reference() noexcept = default;
    explicit Reference(PyObject* stolen) noexcept : object(stolen) {}
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;
    ~Reference() { Py_XDECREF(object); }

    [[nodiscard]] PyObject* get() const noexcept { return object; }
    [[nodiscard]] PyObject* release() noexcept { return std::exchange(object, nullptr); }
    explicit operator bool() const noexcept { return object != nullptr; }

private:
    PyObject* object = nullptr;
};
