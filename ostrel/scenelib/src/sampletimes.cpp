#include "sampletimes.h"

#include <algorithm>

namespace VlScenelib {

void SampleTimes::add(const VlAttribute::DataAttribute& attribute) {
    const std::int64_t count = attribute.getNumberOfTimeSamples();
    if (count < 2) {
        return;
    }
    for (std::int64_t i = 0; i < count; ++i) {
        times.push_back(attribute.getSampleTime(i));
    }
}

const std::vector<float>& SampleTimes::finish() {
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

} // namespace VlScenelib
