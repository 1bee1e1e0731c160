// The attribute library: what a location's attributes cost to build, to hash, to compare and to
// look up.

#include "measure.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <string>
#include <vector>

namespace {

using namespace VlAttribute;

/// A leaf as scenes have it: type, transform, bound, and a few values of its own.
GroupAttribute buildLeaf(long i) {
    const auto x = static_cast<double>(i);
    return GroupBuilder()
        .set("type", StringAttribute("polymesh"))
        .set("xform.group.translate", DoubleAttribute({x, 0.0, 1.0}, 3))
        .set("xform.group.rotateZ", DoubleAttribute({30.0, 0.0, 0.0, 1.0}, 4))
        .set("bound", DoubleAttribute({-0.5, 0.5, -0.5, 0.5, -0.5, 0.5}))
        .set("material.baseColor", DoubleAttribute({0.2, 0.4, 0.6}, 3))
        .build();
}

} // namespace

int main() {
    long sum = 0; // printed at the end, so that nothing measured can be left out

    constexpr long kLeaves = 100000;
    std::vector<GroupAttribute> leaves(kLeaves);
    bench::print("attribute-build", kLeaves, "leaf_ns", bench::nsPerCall(kLeaves, [&](long i) {
                     leaves[static_cast<std::size_t>(i)] = buildLeaf(i);
                 }));
    bench::print("attribute-look-up", kLeaves, "child_ns", bench::nsPerCall(kLeaves, [&](long i) {
                     const GroupAttribute& leaf = leaves[static_cast<std::size_t>(i)];
                     sum += leaf.getChildByName("bound").isValid() ? 1 : 0;
                 }));
    bench::print("attribute-look-up", kLeaves, "dotted_ns", bench::nsPerCall(kLeaves, [&](long i) {
                     const GroupAttribute& leaf = leaves[static_cast<std::size_t>(i)];
                     sum += leaf.getChildByName("xform.group.rotateZ").isValid() ? 1 : 0;
                 }));
    // A hash is computed once per value, so only the first round counts.
    bench::print("attribute-hash", kLeaves, "first_ns",
                 bench::nsPerCall(
                     kLeaves,
                     [&](long i) {
                         sum += static_cast<long>(
                             leaves[static_cast<std::size_t>(i)].getHash().first & 1U);
                     },
                     1));
    std::vector<GroupAttribute> others(kLeaves);
    for (long i = 0; i < kLeaves; ++i) {
        others[static_cast<std::size_t>(i)] = buildLeaf(i);
    }
    bench::print("attribute-equal", kLeaves, "deep_ns", bench::nsPerCall(kLeaves, [&](long i) {
                     const auto place = static_cast<std::size_t>(i);
                     sum += leaves[place] == others[place] ? 1 : 0;
                 }));

    for (const long children : {1000L, 1000000L}) {
        std::vector<std::string> names;
        for (long i = 0; i < children; ++i) {
            names.push_back("child_" + std::to_string(i));
        }
        const IntAttribute value(7);
        GroupAttribute large;
        bench::print("large-group", children, "build_ms", bench::timeMs([&] {
                         GroupBuilder builder;
                         for (const std::string& name : names) {
                             builder.set(name, value);
                         }
                         large = builder.build();
                     }));
        bench::print("large-group", children, "look_up_ns",
                     bench::nsPerCall(
                         children,
                         [&](long i) {
                             sum +=
                                 large.getChildByName(names[static_cast<std::size_t>(i)]).isValid()
                                     ? 1
                                     : 0;
                         },
                         3));
    }
    return sum > 0 ? 0 : 1;
}
