#pragma once

#include "VlAttribute/DataAttribute.h"

#include <vector>

namespace VlScenelib {

/// Collects the times at which any of several attributes has a sample. An attribute with a single
/// sample holds for all times and asks for none.
class SampleTimes {
public:
    void add(const VlAttribute::DataAttribute& attribute);
    /// Sorted, without repeats; empty when no attribute varies. Call once, after the last add().
    const std::vector<float>& finish();

private:
    std::vector<float> times;
};

} // namespace VlScenelib
