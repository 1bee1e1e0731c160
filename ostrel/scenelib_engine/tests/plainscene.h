#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A location and all below it, written out.
struct PlainLocation {
    VlAttribute::GroupAttribute attrs;
    std::vector<std::pair<std::string, PlainLocation>> children;

    [[nodiscard]] const PlainLocation* findChild(std::string_view name) const;
    [[nodiscard]] std::vector<std::string> getChildNames() const;
};

/// A root, or none.
using PlainScene = std::optional<PlainLocation>;

/// The location at a path; null when there is none.
[[nodiscard]] const PlainLocation* findLocation(const PlainScene& scene, std::string_view path);

/// What an op of that type makes of its inputs' scenes: the whole of it, the simple way. The
/// counterpart of every op type that the engine's tests use.
[[nodiscard]] PlainScene evaluatePlainly(const std::string& type,
                                         const VlAttribute::GroupAttribute& args,
                                         const std::vector<PlainScene>& inputs);
