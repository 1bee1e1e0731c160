#pragma once

#include "pyreference.h"
#include "textargument.h"

#include <cstdint>
#include <vector>

namespace ViewerAPI {

/// A Python list of location paths as the array of strings that host objects take. Only a true
/// list of `str` passes, despite the error's text: a tuple is refused, and nothing is handed on
/// when one item is. The strings are borrowed from the list's items, which this object keeps alive
/// should the list change meanwhile; hosts copy what they keep. [ui-thread]
class StringListArgument {
public:
    /// Takes the one argument of a method. False with TypeError `errorText` set when it is not a
    /// list of strings.
    [[nodiscard]] bool parse(PyObject* args,
                             const char* errorText = "Argument must be a sequence of strings.");
    /// Takes a list that has been parsed already. False as above for an item that is no string.
    [[nodiscard]] bool store(PyObject* list, const char* errorText);

    [[nodiscard]] const char* const* paths() const noexcept { return pointers.data(); }
    [[nodiscard]] std::uint32_t count() const noexcept {
        return static_cast<std::uint32_t>(pointers.size());
    }

private:
    PyReference items;
    std::vector<pythoncompat::TextArgument> texts;
    std::vector<const char*> pointers;
};

} // namespace ViewerAPI
