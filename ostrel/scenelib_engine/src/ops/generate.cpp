#include "ops/generate.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/IntAttribute.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

namespace VlScenelibEngine {

namespace {

using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr std::int64_t kGroupsInSet = 10;
constexpr std::int64_t kLeavesInGroup = 100;
constexpr std::int64_t kLeavesInSet = kGroupsInSet * kLeavesInGroup;
/// A StringAttribute of as many set names is as large as one may be.
constexpr std::int64_t kMostLeaves = 100'000'000;

enum class Level { Set, Group, Leaf };

/// Rotates by `turns` steps of `stepRadians` about z, then translates.
GroupAttribute makeXform(std::int64_t turns, double stepRadians, double x, double y, double z) {
    const double degrees = static_cast<double>(turns) * stepRadians * 180.0 / std::numbers::pi;
    return GroupAttribute{{"translate", DoubleAttribute({x, y, z}, 3)},
                          {"rotateZ", DoubleAttribute({degrees, 0, 0, 1}, 4)}};
}

GroupAttribute makeSetXform(std::int64_t set) {
    return makeXform(set % 5, 0.05, 170.0 * static_cast<double>(set % 32),
                     18.0 * static_cast<double>(set / 32), static_cast<double>(set % 3));
}

GroupAttribute makeGroupXform(std::int64_t group) {
    return makeXform(group % 3, 0.1, 16.0 * static_cast<double>(group), 0,
                     0.5 * static_cast<double>(group & 1));
}

GroupAttribute makeLeafXform(std::int64_t leaf) {
    return makeXform(leaf % 7, 0.2, 1.5 * static_cast<double>(leaf % 10),
                     1.5 * static_cast<double>(leaf / 10), 0);
}

/// A cube of edge 1 about the origin: six quads, each with its own corners and normals.
GroupAttribute makeCube() {
    std::vector<float> points;
    std::vector<float> normals;
    std::vector<std::int32_t> vertices;
    std::vector<std::int32_t> starts{0};
    for (std::size_t face = 0; face < 6; ++face) {
        const std::size_t axis = face / 2;
        const float side = face % 2 == 1 ? 1.0F : -1.0F;
        for (int corner = 0; corner < 4; ++corner) {
            // Around the face counter-clockwise as seen from outside.
            const int around = side > 0 ? corner : 3 - corner;
            std::array<float, 3> point{};
            std::array<float, 3> normal{};
            point[axis] = 0.5F * side;
            normal[axis] = side;
            point[(axis + 1) % 3] = around == 1 || around == 2 ? 0.5F : -0.5F;
            point[(axis + 2) % 3] = around >= 2 ? 0.5F : -0.5F;
            points.insert(points.end(), point.begin(), point.end());
            normals.insert(normals.end(), normal.begin(), normal.end());
            vertices.push_back(static_cast<std::int32_t>(vertices.size()));
        }
        starts.push_back(static_cast<std::int32_t>(vertices.size()));
    }
    return GroupAttribute{
        {"point", GroupAttribute{{"P", FloatAttribute(std::span<const float>(points), 3)},
                                 {"N", FloatAttribute(std::span<const float>(normals), 3)}}},
        {"poly",
         GroupAttribute{{"vertexList", IntAttribute(std::span<const std::int32_t>(vertices))},
                        {"startIndex", IntAttribute(std::span<const std::int32_t>(starts))}}}};
}

std::vector<std::string> makeNames(const char* prefix, std::int64_t count) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        names.push_back(prefix + std::to_string(i));
    }
    return names;
}

/// What a set, a group or a leaf is told: what it is, and how many leaves its siblings and it have
/// in all. Its own place follows from its index.
class GenerateContexts final : public ChildContexts {
public:
    GenerateContexts(Level childLevel, std::int64_t leaves, bool geometry)
        : level(childLevel), leafCount(leaves), withGeometry(geometry) {}

    /// The leaves at or below a child.
    [[nodiscard]] std::int64_t countLeaves(std::size_t index) const {
        const std::int64_t most = level == Level::Set     ? kLeavesInSet
                                  : level == Level::Group ? kLeavesInGroup
                                                          : 1;
        return std::min(most, leafCount - static_cast<std::int64_t>(index) * most);
    }

    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override {
        const auto& others = static_cast<const GenerateContexts&>(other);
        return index == otherIndex && level == others.level &&
               withGeometry == others.withGeometry &&
               countLeaves(index) == others.countLeaves(otherIndex);
    }

    const Level level;
    const std::int64_t leafCount;
    const bool withGeometry;
};

ChildList::Ptr makeList(const char* prefix, std::int64_t count, Level level, std::int64_t leafCount,
                        bool withGeometry) {
    return ChildList::create(StringAttribute(makeNames(prefix, count)),
                             std::make_shared<GenerateContexts>(level, leafCount, withGeometry));
}

/// What full groups and sets have in common, with and without geometry.
struct Shared {
    explicit Shared(bool withGeometry)
        : leaves(makeList("leaf_", kLeavesInGroup, Level::Leaf, kLeavesInGroup, withGeometry)),
          groups(makeList("group_", kGroupsInSet, Level::Group, kLeavesInSet, withGeometry)) {
        const StringAttribute groupType("group");
        for (std::int64_t i = 0; i < kGroupsInSet; ++i) {
            groupAttrs.push_back({{"type", groupType}, {"xform", makeGroupXform(i)}});
        }
        const StringAttribute leafType(withGeometry ? "polymesh" : "locator");
        const DoubleAttribute bound({-0.5, 0.5, -0.5, 0.5, -0.5, 0.5});
        const GroupAttribute cube = withGeometry ? makeCube() : GroupAttribute();
        for (std::int64_t i = 0; i < kLeavesInGroup; ++i) {
            leafAttrs.push_back({{"type", leafType},
                                 {"xform", makeLeafXform(i)},
                                 {"bound", bound},
                                 {"geometry", cube}});
        }
    }

    static const Shared& get(bool withGeometry) {
        static const Shared plain(false);
        static const Shared meshes(true);
        return withGeometry ? meshes : plain;
    }

    ChildList::Ptr leaves;
    ChildList::Ptr groups;
    std::vector<GroupAttribute> groupAttrs;
    std::vector<GroupAttribute> leafAttrs;
};

CookResult cookRoot(CookContext& context) {
    const std::int64_t leafCount = std::clamp<std::int64_t>(
        IntAttribute(context.getArg("leafCount")).getValue(1000), 0, kMostLeaves);
    const bool withGeometry = IntAttribute(context.getArg("withGeometry")).getValue(0) != 0;
    const std::int64_t sets = (leafCount + kLeavesInSet - 1) / kLeavesInSet;
    return {GroupAttribute{{"type", StringAttribute("group")}},
            makeList("set_", sets, Level::Set, leafCount, withGeometry)};
}

} // namespace

CookResult Generate::cook(CookContext& context) const {
    if (context.isRoot()) {
        return cookRoot(context);
    }
    const auto& contexts = context.getContextsAs<GenerateContexts>();
    const std::size_t index = context.getChildIndex();
    const Shared& shared = Shared::get(contexts.withGeometry);
    if (contexts.level == Level::Leaf) {
        return {shared.leafAttrs[index]};
    }
    const std::int64_t leafCount = contexts.countLeaves(index);
    if (contexts.level == Level::Group) {
        return {shared.groupAttrs[index],
                leafCount == kLeavesInGroup
                    ? shared.leaves
                    : makeList("leaf_", leafCount, Level::Leaf, leafCount, contexts.withGeometry)};
    }
    const std::int64_t groups = (leafCount + kLeavesInGroup - 1) / kLeavesInGroup;
    return {GroupAttribute{{"type", StringAttribute("group")},
                           {"xform", makeSetXform(static_cast<std::int64_t>(index))}},
            leafCount == kLeavesInSet
                ? shared.groups
                : makeList("group_", groups, Level::Group, leafCount, contexts.withGeometry)};
}

} // namespace VlScenelibEngine
