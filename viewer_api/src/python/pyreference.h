#pragma once

#include "pythoncompat.h"

#include <utility>

namespace ViewerAPI {

/// Owns one reference to a Python object, or none. [ui-thread]
class PyReference {
public:
    PyReference() = default;
    /// Takes over the caller's reference, or null: what a call that returns a new one gave.
    explicit PyReference(PyObject* stolen) noexcept : object(stolen) {}
    /// Adds a reference to a borrowed object; null stays null.
    [[nodiscard]] static PyReference retain(PyObject* borrowed) noexcept {
        Py_XINCREF(borrowed);
        return PyReference(borrowed);
    }

    PyReference(PyReference&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    PyReference& operator=(PyReference&& other) noexcept {
        PyReference old(std::exchange(object, std::exchange(other.object, nullptr)));
        return *this;
    }
    ~PyReference() { Py_XDECREF(object); }

    explicit operator bool() const noexcept { return object != nullptr; }
    /// Borrowed.
    [[nodiscard]] PyObject* get() const noexcept { return object; }
    /// Hands the reference to the caller.
    [[nodiscard]] PyObject* release() noexcept { return std::exchange(object, nullptr); }
    void reset() noexcept { PyReference old(std::exchange(object, nullptr)); }

private:
    PyObject* object = nullptr;
};

} // namespace ViewerAPI
