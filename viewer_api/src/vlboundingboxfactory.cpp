#include "vlboundingboxfactory.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <array>
#include <span>

namespace ViewerAPI {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

namespace {

constexpr const char* kBoundName = "bound";
constexpr std::int64_t kBoundValues = 6;

/// Eight corners: those at the largest z, then those at the smallest, of which the first two are
/// at the largest y.
FloatAttribute makeCorners(std::span<const double> bound) {
    // Which of bound's values each coordinate is.
    constexpr std::array<std::array<std::size_t, 3>, 8> kCorners = {{
        {0, 2, 5},
        {1, 2, 5},
        {0, 3, 5},
        {1, 3, 5},
        {0, 3, 4},
        {1, 3, 4},
        {0, 2, 4},
        {1, 2, 4},
    }};
    std::array<float, 24> points{};
    auto point = points.begin();
    for (const auto& corner : kCorners) {
        for (const std::size_t value : corner) {
            *point++ = static_cast<float>(bound[value]);
        }
    }
    return FloatAttribute(std::span<const float>(points), 3);
}

GroupAttribute buildBox(std::span<const double> bound) {
    // What all boxes have in common they share.
    static const StringAttribute type("locator");
    static const GroupAttribute poly{
        {"vertexList", IntAttribute({2,      3, 1, 0, /**/ 4, 5, 3, 2, /**/ 6, 7, 5, 4,
                                     /**/ 0, 1, 7, 6, /**/ 3, 5, 7, 1, /**/ 4, 2, 0, 6})},
        {"startIndex", IntAttribute({0, 4, 8, 12, 16, 20, 24})}};
    static const GroupAttribute viewer =
        GroupBuilder()
            .set("default.drawOptions.fill", StringAttribute("wireframe"))
            .set("default.drawOptions.smoothing", StringAttribute("off"))
            .build();
    return GroupBuilder()
        .set("type", type)
        .set("geometry.point.P", makeCorners(bound))
        .set("geometry.poly", poly)
        .set("viewer", viewer)
        .build();
}

} // namespace

VlBoundingBoxFactory::~VlBoundingBoxFactory() = default;

bool VlBoundingBoxFactory::hasRequiredAttributes(const GroupAttribute& attrs) const {
    const DoubleAttribute bound(attrs.borrowChildByName(kBoundName));
    return bound.getNumberOfValues() == kBoundValues;
}

bool VlBoundingBoxFactory::storeLocation(const LocationPath& path, const GroupAttribute& attrs) {
    return locations.assign(path, attrs.borrowChildByName(kBoundName));
}

void VlBoundingBoxFactory::collectProducts(std::vector<FactoryProduct>& out) {
    collectRemovals(out);
    dropRequestsIfDisabled();
    for (const LocationPath& path : toProduce) {
        // One that was forgotten after it had been asked for has no box.
        if (const Attribute* const bound = locations.find(path)) {
            out.push_back({kFactoryProductProduced, generatedPath(path),
                           buildBox(DoubleAttribute(*bound).getNearestSample(0.0F))});
        }
    }
    toProduce.clear();
}

} // namespace ViewerAPI
