#pragma once

namespace ViewerAPI {

/// Calls one and then the other, which is called also when the first throws. What was thrown last
/// is let out.
template <class First, class Second>
void callBoth(const First& first, const Second& second) {
    try {
        first();
    } catch (...) {
        second();
        throw;
    }
    second();
}

} // namespace ViewerAPI
