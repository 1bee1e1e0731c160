#pragma once

#include "support/universe.h"

#include <random>

namespace ViewerAPI::test {

/// What a random history does next, and where in a universe. The same seed makes the same choices.
class RandomPlaces {
public:
    RandomPlaces(const Universe& theUniverse, unsigned seed)
        : universe(theUniverse), random(seed) {}

    /// 0 to `count` - 1.
    int upTo(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    bool oneIn(int count) { return upTo(count) == 0; }

    /// Mostly a place at, above or below the one in focus: changes that undo each other, or meet in
    /// a parent and its child, happen close together.
    int place();

private:
    const Universe& universe;
    std::mt19937 random;
    int focus = 0;
};

} // namespace ViewerAPI::test
