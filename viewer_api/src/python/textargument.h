#pragma once

#include "pythoncompat.h"

#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace pythoncompat {

/// A text argument while it is in use: a zero-terminated string that is borrowed from the Python
/// object where that is possible. The object must outlive it. Null until something is stored.
/// [ui-thread]
class TextArgument {
public:
    TextArgument() = default;
    TextArgument(TextArgument&& other) noexcept
        : text(std::exchange(other.text, nullptr)), encoded(std::exchange(other.encoded, nullptr)) {
    }
    TextArgument& operator=(TextArgument&& other) noexcept {
        std::swap(text, other.text);
        std::swap(encoded, other.encoded);
        return *this;
    }
    ~TextArgument() { Py_XDECREF(encoded); }

    /// Null when nothing was stored.
    [[nodiscard]] const char* get() const noexcept { return text; }
    explicit operator bool() const noexcept { return text != nullptr; }

    /// Takes the text of a `str`. False with an error set for any other object, and for text that
    /// no bytes stand for.
    [[nodiscard]] bool store(PyObject* object) {
        text = borrowedText(object);
        if (!text && clearUnencodableError()) {
            Py_XDECREF(encoded);
            encoded = encodedText(object);
            text = encoded ? PyBytes_AS_STRING(encoded) : nullptr;
        }
        return text != nullptr;
    }

private:
    template <class... Targets>
    friend bool parseArguments(PyObject* args, const char* format, Targets&&... targets);

    // As PyArg_ParseTuple's "O&" calls it.
    static int convert(PyObject* object, void* target) {
        auto& self = *static_cast<TextArgument*>(target);
        if (!self.store(object)) {
            return 0;
        }
        if (self.encoded &&
            std::strlen(self.text) != static_cast<std::size_t>(PyBytes_GET_SIZE(self.encoded))) {
            PyErr_SetString(PyExc_ValueError, "embedded null character");
            return 0;
        }
        return 1;
    }

    const char* text = nullptr;
    PyObject* encoded = nullptr; // owned
};

/// PyArg_ParseTuple with every "s" of the format stored in a TextArgument; all other targets are
/// what PyArg_ParseTuple wants, pointers and type objects. Leaves the parser's own error.
template <class... Targets>
bool parseArguments(PyObject* args, const char* format, Targets&&... targets) {
    const auto parse = [args](const char* parserFormat, const auto& pointers) {
        return std::apply(
            [&](auto... pointer) { return PyArg_ParseTuple(args, parserFormat, pointer...) != 0; },
            pointers);
    };
    const auto borrowing = [](auto&& target) {
        if constexpr (std::is_same_v<std::decay_t<decltype(target)>, TextArgument>) {
            return std::make_tuple(&target.text);
        } else {
            return std::make_tuple(target);
        }
    };
    if (parse(format, std::tuple_cat(borrowing(targets)...))) {
        return true;
    }
    // The parser's "s" refuses text that stands for bytes outside UTF-8. That is rare, so only
    // then are the strings encoded, which costs a copy of each.
    if (!clearUnencodableError()) {
        return false;
    }
    std::string encodingFormat;
    for (const char* c = format; *c; ++c) {
        encodingFormat += *c == 's' ? std::string("O&") : std::string(1, *c);
    }
    const auto encoding = [](auto&& target) {
        if constexpr (std::is_same_v<std::decay_t<decltype(target)>, TextArgument>) {
            return std::make_tuple(&TextArgument::convert, static_cast<void*>(&target));
        } else {
            return std::make_tuple(target);
        }
    };
    return parse(encodingFormat.c_str(), std::tuple_cat(encoding(targets)...));
}

} // namespace pythoncompat
