#include "tiles.h"

#include "tilepainter.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"

using VlAttribute::FloatAttribute;
using VlAttribute::IntAttribute;

namespace {

std::vector<int> valuesOf(const VlAttribute::Attribute& value) {
    std::vector<int> values;
    const IntAttribute numbers(value);
    for (const int number : numbers.getNearestSample(0.0F)) {
        values.push_back(number);
    }
    return values;
}

} // namespace

void Tiles::setOption(const std::string& name, const Attribute& value) {
    const std::vector<int> v = valuesOf(value);
    if (name == "tiles") {
        tiles.clear();
        for (std::size_t i = 0; i + 5 < v.size(); i += 6) {
            tiles.push_back({v[i], v[i + 1], v[i + 2], v[i + 3], v[i + 4], v[i + 5]});
        }
    } else if (name == "objectsBefore") {
        objectsBefore = v.at(0);
    } else if (name == "ignoreExcluded") {
        ignoresExcluded = v.at(0) != 0;
    } else if (name == "pick") {
        depth = -1.0F;
        passes = 0;
        picked = pickObjects({v.at(0), v.at(1), v.at(2), v.at(3)}, v.at(4) != 0, &depth);
    }
}

Tiles::Attribute Tiles::getOption(const std::string& name) const {
    if (name == "picked") {
        return picked;
    }
    if (name == "depth") {
        return FloatAttribute(depth);
    }
    return name == "passes" ? IntAttribute(passes) : Attribute();
}

void Tiles::draw(int viewportWidth, int viewportHeight) const {
    for (const Tile& tile : tiles) {
        const auto color = static_cast<std::uint32_t>(tile.color) << 8 | 0xFFU;
        TilePainter::instance().fill(tile.x, tile.y, tile.width, tile.height,
                                     static_cast<float>(tile.depthPercent) / 100.0F, color,
                                     viewportWidth, viewportHeight);
    }
}

void Tiles::drawIds(const GroupAttribute& excluded, int viewportWidth, int viewportHeight) {
    // Objects hold through all passes of a pick, so the first registers them.
    if (excluded.getNumberOfChildren() == 0) {
        for (int i = 0; i < objectsBefore; ++i) {
            addObject(Attribute());
        }
        ids.clear();
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            ids.push_back(addObject(IntAttribute(static_cast<int>(i))));
        }
    }
    ++passes;
    for (std::size_t i = 0; i < ids.size() && i < tiles.size(); ++i) {
        if (!ignoresExcluded && excluded.getChildByName(std::to_string(ids[i])).isValid()) {
            continue;
        }
        const Tile& tile = tiles[i];
        TilePainter::instance().fill(
            tile.x, tile.y, tile.width, tile.height, static_cast<float>(tile.depthPercent) / 100.0F,
            static_cast<std::uint32_t>(ids[i]), viewportWidth, viewportHeight);
    }
}
