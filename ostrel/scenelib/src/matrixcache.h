#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <array>
#include <cstddef>

namespace VlScenelib {

/// The matrices of the transforms that were evaluated last, found by the identity of the group. In
/// a scene of many alike locations it saves the arithmetic and, above all, one matrix per location.
///
/// Direct-mapped and bounded; belongs to one thread. It holds the groups that it knows, so that
/// none of them can be mistaken for a later one at the same address.
class MatrixCache {
public:
    struct Entry {
        VlAttribute::GroupAttribute xform;
        VlAttribute::DoubleAttribute matrix;
        float time = 0;
        bool isAbsolute = false;
    };

    /// The slot for that group and time: it holds them or whatever it is to be overwritten with.
    Entry& slot(const VlAttribute::GroupAttribute& xform, float time) noexcept;
    [[nodiscard]] static bool holds(const Entry& entry, const VlAttribute::GroupAttribute& xform,
                                    float time) noexcept;

private:
    static constexpr std::size_t kSlots = 512;
    std::array<Entry, kSlots> entries;
};

} // namespace VlScenelib
