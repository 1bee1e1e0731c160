#include "scene/scenemirror.h"

#include "support/geometries.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <Imath/ImathBoxAlgo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

// The mirror, fed random events, against a plain model that is evaluated from scratch.
namespace {

using namespace Bundled;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;

/// What a receiver of the events knows of one location.
struct Known {
    GroupAttribute attributes;
    Imath::M44d xform;
    bool absolute = false;
    bool hidden = false;
};

class PlainModel {
public:
    void apply(const LocationUpdate& update) {
        const std::string path(update.path);
        if (update.flags & kVlLocationEventRemoved) {
            std::erase_if(locations, [&path](const auto& entry) {
                return entry.first == path || entry.first.starts_with(path + "/");
            });
            return;
        }
        Known& known = locations[path];
        if (update.flags & kVlLocationEventAttributesChanged) {
            known.attributes = update.attributes;
        }
        if (update.flags & kVlLocationEventXformChanged) {
            known.xform = Imath::M44d();
            const auto values = update.xform.getNearestSample(0.0f);
            std::copy(values.begin(), values.end(), known.xform.getValue());
            known.absolute = (update.flags & kVlLocationEventXformAbsolute) != 0;
        }
        if (update.flags & kVlLocationEventHiddenChanged) {
            known.hidden = (update.flags & kVlLocationEventHidden) != 0;
        }
    }

    [[nodiscard]] Imath::M44d world(const std::string& path) const {
        if (path.empty()) {
            return {};
        }
        const auto found = locations.find(path);
        const Known known = found == locations.end() ? Known() : found->second;
        return known.absolute ? known.xform : known.xform * world(path.substr(0, path.rfind('/')));
    }

    [[nodiscard]] bool isSelected(const std::string& path) const {
        return std::any_of(selection.begin(), selection.end(), [&path](const std::string& one) {
            return path == one || path.starts_with(one + "/");
        });
    }

    std::map<std::string, Known> locations;
    std::vector<std::string> selection;
};

/// What a consumer would have drawn: path, geometry, material, instance.
struct Drawn {
    VlAttribute::Hash geometry;
    VlAttribute::Hash material;
    Instance instance;

    friend bool operator==(const Drawn&, const Drawn&) = default;
};

class Feed {
public:
    explicit Feed(unsigned seed) : random(seed) {
        for (int i = 1; i <= 3; ++i) {
            const auto edge = static_cast<float>(i);
            looks.push_back(cubeLocation(edge));
            looks.push_back(cubeLocation(
                edge, GroupAttribute{{"baseColor", FloatAttribute({edge, 0.0f, 0.0f}, 3)}}));
        }
        looks.push_back(GroupAttribute::Empty());
        VlAttribute::GroupBuilder builder;
        builder.update(cubeLocation(1.0f));
        builder.set("viewer.default.drawOptions.fill", VlAttribute::StringAttribute("wireframe"));
        looks.push_back(builder.build());
        builder.update(looks.back());
        builder.set("viewer.default.drawOptions.hide", VlAttribute::IntAttribute(1));
        looks.push_back(builder.build());
        // The same points as dots, and as something that isn't drawn.
        for (const char* type : {"points", "camera"}) {
            builder.update(cubeLocation(1.0f));
            builder.set("type", VlAttribute::StringAttribute(type));
            builder.del("geometry.poly");
            looks.push_back(builder.build());
        }
    }

    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); }

    /// The flag once in so many times.
    std::uint32_t perhaps(int times, VlLocationEventFlag flag) {
        return below(times) == 0 ? static_cast<std::uint32_t>(flag) : 0u;
    }

    /// Few enough names that locations come back often; one begins as another does.
    std::string path() {
        constexpr const char* kNames[] = {"/a", "/ab", "/b"};
        std::string result = "/root";
        for (int depth = below(5); depth > 0; --depth) {
            result += kNames[below(3)];
        }
        return result;
    }

    LocationUpdate update(const std::string& path) {
        LocationUpdate result;
        result.path = path;
        if (below(8) == 0) {
            result.flags = kVlLocationEventRemoved;
            return result;
        }
        // The state is always there; what is new of it says the upper half.
        result.attributes = looks[static_cast<std::size_t>(below(static_cast<int>(looks.size())))];
        if (below(4) != 0) {
            Imath::M44d matrix = translation(below(9) - 4, below(9) - 4, below(9) - 4);
            matrix.rotate(Imath::V3d(below(3), below(3), 0));
            matrix.scale(Imath::V3d(below(4) == 0 ? -1 : 1, 1, 1));
            result.xform = matrixAttribute(matrix);
        }
        result.flags |= perhaps(6, kVlLocationEventXformAbsolute);
        result.flags |= perhaps(3, kVlLocationEventHidden);
        result.flags |= perhaps(2, kVlLocationEventAttributesChanged);
        result.flags |= perhaps(2, kVlLocationEventXformChanged);
        result.flags |= perhaps(2, kVlLocationEventHiddenChanged);
        return result;
    }

private:
    std::mt19937 random;
    std::vector<GroupAttribute> looks;
};

std::map<std::string, Drawn> expected(const PlainModel& model) {
    std::map<std::string, Drawn> result;
    for (const auto& [path, known] : model.locations) {
        if (!known.hidden && Geometry::kindOf(known.attributes) &&
            !DrawOptions::fromAttributes(known.attributes).hide) {
            result[path] = {known.attributes.getChildByName("geometry").getHash(),
                            known.attributes.getChildByName("material").getHash(),
                            Instance(model.world(path), model.isSelected(path))};
        }
    }
    return result;
}

bool isClose(const Instance& a, const Instance& b) {
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            if (std::abs(a.rows[row][column] - b.rows[row][column]) > 1e-4f) {
                return false;
            }
        }
    }
    return a.selected == b.selected;
}

/// Uploads what a batch says has changed, as the graphics card's copy does.
class Uploads {
public:
    void take(const SceneMirror& mirror) {
        std::set<std::uint64_t> alive;
        for (Batch* batch : mirror.getBatches()) {
            alive.insert(batch->serial);
            auto& copy = copies[batch->serial];
            copy.resize(batch->instances.size());
            batch->takeChanges([&](std::size_t first, std::size_t count) {
                ASSERT_LE(first + count, copy.size());
                std::copy_n(batch->instances.begin() + static_cast<std::ptrdiff_t>(first), count,
                            copy.begin() + static_cast<std::ptrdiff_t>(first));
            });
        }
        std::erase_if(copies, [&alive](const auto& entry) { return !alive.contains(entry.first); });
    }

    std::map<std::uint64_t, std::vector<Instance>> copies;
};

void compare(SceneMirror& mirror, const PlainModel& model, Uploads& uploads) {
    ASSERT_EQ(mirror.getNumberOfLocations(), model.locations.size());
    std::vector<std::string> told;
    for (const auto& [path, known] : model.locations) {
        told.push_back(path);
        ASSERT_TRUE(mirror.hasLocation(path)) << path;
        ASSERT_TRUE(mirror.getWorldXform(path).equalWithAbsError(model.world(path), 1e-9)) << path;
    }
    ASSERT_EQ(mirror.getLocationPaths(), told);
    std::map<std::string, Drawn> drawn;
    uploads.take(mirror);
    for (const Batch* batch : mirror.getBatches()) {
        ASSERT_FALSE(batch->nodes.empty());
        ASSERT_EQ(batch->nodes.size(), batch->instances.size());
        ASSERT_EQ(uploads.copies[batch->serial], batch->instances);
        const Geometry& geometry = mirror.getGeometries()[batch->geometry];
        for (std::size_t i = 0; i < batch->nodes.size(); ++i) {
            const std::string path = mirror.getPath(batch->nodes[i]);
            const auto& attributes = model.locations.at(path).attributes;
            ASSERT_EQ(batch->options, DrawOptions::fromAttributes(attributes)) << path;
            drawn[path] = {geometry.attributes.getHash(),
                           attributes.getChildByName("material").getHash(), batch->instances[i]};
            ASSERT_EQ(
                Material::fromAttributes(GroupAttribute(attributes.getChildByName("material"))),
                mirror.getMaterials()[batch->material]);
        }
    }
    const auto wanted = expected(model);
    Imath::Box3d wantedBounds;
    for (const auto& [path, known] : model.locations) {
        if (wanted.contains(path)) {
            const GroupAttribute geometry{known.attributes.getChildByName("geometry")};
            wantedBounds.extendBy(Imath::transform(
                Geometry::fromAttributes(geometry, GeometryKind::Mesh).bounds, model.world(path)));
        }
    }
    const Imath::Box3d bounds = mirror.getBounds();
    ASSERT_EQ(bounds.isEmpty(), wantedBounds.isEmpty());
    if (!bounds.isEmpty()) {
        // Instances are of single precision, and nothing is farther away than 40.
        ASSERT_TRUE(bounds.min.equalWithAbsError(wantedBounds.min, 1e-5));
        ASSERT_TRUE(bounds.max.equalWithAbsError(wantedBounds.max, 1e-5));
    }
    for (const Batch* batch : mirror.getBatches()) {
        ASSERT_EQ(batch->isMirrored,
                  std::any_of(batch->nodes.begin(), batch->nodes.end(), [&](std::uint32_t node) {
                      return model.world(mirror.getPath(node)).determinant() < 0.0;
                  }));
    }
    std::size_t selected = 0;
    for (const auto& [path, one] : wanted) {
        selected += one.instance.selected != 0.0f ? 1 : 0;
    }
    ASSERT_EQ(mirror.getSelectedNodes().size(), selected);
    for (const std::uint32_t node : mirror.getSelectedNodes()) {
        ASSERT_TRUE(model.isSelected(mirror.getPath(node)));
        const auto [batch, position] = mirror.getInstance(node);
        ASSERT_EQ(batch->nodes[position], node);
    }
    ASSERT_EQ(drawn.size(), wanted.size());
    for (const auto& [path, one] : wanted) {
        ASSERT_TRUE(drawn.contains(path)) << path;
        ASSERT_EQ(drawn[path].geometry, one.geometry) << path;
        ASSERT_TRUE(isClose(drawn[path].instance, one.instance)) << path;
    }
}

/// What a receiver is told of when a location gets another path with everything below it.
std::vector<LocationUpdate> renaming(const PlainModel& model, const std::string& from,
                                     const std::string& to, std::deque<std::string>& texts) {
    std::vector<LocationUpdate> updates;
    updates.push_back({from, {}, {}, kVlLocationEventRemoved});
    for (const auto& [path, known] : model.locations) {
        if (path == from || path.starts_with(from + "/")) {
            texts.push_back(to + path.substr(from.size()));
            std::uint32_t flags = kVlLocationEventAttributesChanged | kVlLocationEventXformChanged |
                                  kVlLocationEventHiddenChanged;
            if (known.absolute) {
                flags |= kVlLocationEventXformAbsolute;
            }
            if (known.hidden) {
                flags |= kVlLocationEventHidden;
            }
            updates.push_back(
                {texts.back(), known.attributes, matrixAttribute(known.xform), flags});
        }
    }
    return updates;
}

void run(unsigned seed, int steps, int eventsBetweenUpdates) {
    Feed feed(seed);
    SceneMirror mirror;
    PlainModel model;
    Uploads uploads;
    const auto tell = [&](const LocationUpdate& update) {
        mirror.apply(update);
        model.apply(update);
    };
    for (int step = 0; step < steps; ++step) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
        for (int i = feed.below(eventsBetweenUpdates) + 1; i > 0; --i) {
            const std::string path = feed.path();
            tell(feed.update(path));
        }
        if (feed.below(10) == 0) {
            std::deque<std::string> texts;
            const std::string from = feed.path();
            for (const auto& update : renaming(model, from, feed.path(), texts)) {
                tell(update);
            }
        }
        if (feed.below(10) == 0) {
            model.selection = {feed.path(), feed.path()};
            std::vector<const char*> paths;
            for (const std::string& path : model.selection) {
                paths.push_back(path.c_str());
            }
            mirror.setSelection(paths);
        }
        mirror.update();
        compare(mirror, model, uploads);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

TEST(SceneMirrorOracle, equalsAFromScratchEvaluationEventByEvent) {
    run(1, 5000, 1);
}

TEST(SceneMirrorOracle, equalsAFromScratchEvaluationBatchByBatch) {
    for (unsigned seed = 2; seed < 10; ++seed) {
        run(seed, 400, 20);
    }
}

} // namespace
