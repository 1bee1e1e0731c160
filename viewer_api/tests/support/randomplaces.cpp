#include "support/randomplaces.h"

namespace ViewerAPI::test {

int RandomPlaces::place() {
    const int count = static_cast<int>(universe.places.size());
    if (oneIn(12)) {
        focus = upTo(count);
    }
    if (oneIn(4)) {
        return upTo(count);
    }
    std::vector<int> near = {focus};
    for (int i = 0; i < count; ++i) {
        const int parent = universe.places[static_cast<std::size_t>(i)].parent;
        if (parent == focus) {
            near.push_back(i);
        }
        if (i == focus && parent >= 0) {
            near.push_back(parent);
        }
    }
    return near[static_cast<std::size_t>(upTo(static_cast<int>(near.size())))];
}

} // namespace ViewerAPI::test
