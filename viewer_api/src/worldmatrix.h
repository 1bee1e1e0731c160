#pragma once

#include <ImathMatrix.h>

#include <vector>

namespace ViewerAPI {

struct LocationNode;

/// From a location's space to world space, at time 0.
struct WorldMatrix {
    Imath::M44d values;
    bool isIdentity = true; ///< there is no transform on the way; boxes are left as they are

    friend bool operator==(const WorldMatrix&, const WorldMatrix&) = default;
};

/// That of a location, given its parent's.
[[nodiscard]] WorldMatrix worldMatrixOf(const LocationNode& node, const WorldMatrix& parentWorld);

/// Remembers the matrices on the line of ancestors of the location that was asked about last. In a
/// walk from parents to children the next one's parent mostly stands on it, and otherwise much of
/// its line. Locations may change meanwhile: what is remembered of them stays what it was. None may
/// go.
class WorldMatrices {
public:
    /// Valid until the next call.
    [[nodiscard]] const WorldMatrix& get(const LocationNode& node);

private:
    struct Ancestor {
        const LocationNode* node;
        WorldMatrix world;
    };

    [[nodiscard]] bool isOnLine(const LocationNode& node) const;

    std::vector<Ancestor> line_; ///< by depth, from the root
    std::vector<const LocationNode*> climbed_;
};

} // namespace ViewerAPI
