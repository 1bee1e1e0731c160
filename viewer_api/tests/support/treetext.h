#pragma once

#include "locationchange.h"
#include "support/flagstext.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <string>
#include <vector>

namespace ViewerAPI::test {

using Lines = std::vector<std::string>;

/// Collects a tree; per record its path and the names of the set fields.
template <class Tree>
Lines collectLines(Tree& tree) {
    std::vector<LocationChange> changes;
    tree.collect(changes);
    Lines lines;
    for (const LocationChange& change : changes) {
        lines.push_back(change.path.str() + " " + textOfFlags(change.getFlags()));
    }
    return lines;
}

/// Attributes that differ for different numbers.
inline VlAttribute::GroupAttribute numbered(int number) {
    return {{"number", VlAttribute::IntAttribute(number)}};
}

/// Attributes with a transform: a translation along x, absolute if told.
inline VlAttribute::GroupAttribute moved(double x, bool isAbsolute = false) {
    VlAttribute::GroupBuilder builder;
    if (isAbsolute) {
        builder.set("xform.group.reset", VlAttribute::IntAttribute(1));
    }
    builder.set("xform.group.translate", VlAttribute::DoubleAttribute({x, 0.0, 0.0}, 3));
    return builder.build();
}

} // namespace ViewerAPI::test
