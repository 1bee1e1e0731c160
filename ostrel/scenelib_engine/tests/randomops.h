#pragma once

#include "VlAttribute/GroupAttribute.h"

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Random types and arguments of ops over scenes of a few names, and the other choices of a random
/// test: all from one seed.
class RandomOps {
public:
    /// Locations lie up to `sceneDepth` levels below the root.
    RandomOps(std::vector<const char*> sceneNames, int sceneDepth, unsigned seed)
        : names(std::move(sceneNames)), depth(sceneDepth), random(seed) {}

    /// Below `count`, which is not 0.
    [[nodiscard]] std::size_t pick(std::size_t count);
    [[nodiscard]] bool chance(int percent);
    [[nodiscard]] bool chance(double percent);
    /// Mostly of a location that a scene may have.
    [[nodiscard]] std::string pickPath();
    /// Changes the arguments, and sometimes the type, which may be one that there isn't.
    void edit(std::string& type, VlAttribute::GroupAttribute& args);

private:
    std::string pickName();
    VlAttribute::GroupAttribute pickEdits(const VlAttribute::GroupAttribute& before);
    VlAttribute::GroupAttribute pickWorkingSet();
    VlAttribute::GroupAttribute pickLevel(int levels);

    std::vector<const char*> names;
    int depth;
    std::mt19937 random;
};
