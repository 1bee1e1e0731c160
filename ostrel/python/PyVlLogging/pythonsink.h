#pragma once

#include "pythoncompat.h"

/// Sends the log to a Python callable, called with (level, channel, text, source, line), all text
/// but the line number.
///
/// A thread that holds the interpreter lock calls it at once. Any other thread must not wait for
/// the lock, as its holder may be waiting for that very thread: its lines are kept and delivered by
/// the main thread when it next runs Python code after having given the lock away, or before the
/// next line from a thread that holds the lock, whichever comes first. A callable that raises has
/// its error printed, and the line goes to stderr.
namespace PythonSink {

/// Sets the callable; None restores stderr. What still waits is delivered to the one before. Holds
/// a reference to the callable.
void set(PyObject* callable);

/// The callable, borrowed; null when there is none.
PyObject* get() noexcept;

/// Restores stderr without touching Python, for the interpreter's end.
void abandon() noexcept;

} // namespace PythonSink
