#pragma once

namespace ViewerAPI {

/// What a cook said about a location's place in the working set.
struct WorkingSetState {
    bool hasData = false;  ///< the cook told at all; the other two count only then
    bool included = false; ///< a location that is not included is shown hidden
    bool leaf = false;     ///< nothing below it is included

    friend bool operator==(const WorkingSetState&, const WorkingSetState&) = default;
};

} // namespace ViewerAPI
