#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "viewer_api/plugin/PickRegion.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The tiles of a plug-in: what both its picture and its ids show, and the picks that a test asks
/// of the host. Options:
///
/// | option | |
/// |---|---|
/// | "tiles" | set: 6 ints a tile: x, y, width, height (pixels from the top left), depth in
/// percent, colour as 0xRRGGBB | | "objectsBefore" | set: so many objects are registered before the
/// tiles, so that ids begin there | | "ignoreExcluded" | set: 1 to draw what is excluded, too | |
/// "pick" | set: x, y, width, height, deep: picks | | "picked" | get: what that answered: the
/// objects are the tiles' indices | | "depth" | get: the depth that it wrote, or -1 | | "passes" |
/// get: how often ids were drawn since the last pick began |
class Tiles {
public:
    using Attribute = VlAttribute::Attribute;
    using GroupAttribute = VlAttribute::GroupAttribute;
    /// The host's operations.
    using Add = std::function<std::uint64_t(const Attribute&)>;
    using Pick = std::function<GroupAttribute(const ViewerPlugin::PickRegion&, bool, float*)>;

    Tiles(Add add, Pick pick) : addObject(std::move(add)), pickObjects(std::move(pick)) {}

    void setOption(const std::string& name, const Attribute& value);
    [[nodiscard]] Attribute getOption(const std::string& name) const;

    void draw(int viewportWidth, int viewportHeight) const;
    void drawIds(const GroupAttribute& excluded, int viewportWidth, int viewportHeight);

private:
    struct Tile {
        int x, y, width, height, depthPercent, color;
    };

    Add addObject;
    Pick pickObjects;
    std::vector<Tile> tiles;
    std::vector<std::uint64_t> ids; ///< of the tiles, in the pick under way
    int objectsBefore = 0;
    bool ignoresExcluded = false;
    GroupAttribute picked;
    float depth = -1.0F;
    int passes = 0;
};
