#pragma once

#include "support/attributetext.h"
#include "vlproxyfactorylist.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <string>
#include <string_view>
#include <vector>

namespace ViewerAPI::test {

/// The first record of a leaf, as a tree would report it.
inline LocationChange leafChange(std::string_view path, VlAttribute::GroupAttribute attributes) {
    LocationChange change;
    change.path = LocationPath(path);
    change.attributes = std::move(attributes);
    change.leaf = true;
    change.attributesChanged = change.hiddenChanged = change.leafChanged = true;
    return change;
}

inline LocationChange removalOf(std::string_view path) {
    LocationChange change;
    change.path = LocationPath(path);
    change.removed = true;
    return change;
}

/// Attributes with a `bound` from 0 to `size` along each axis.
inline VlAttribute::GroupAttribute bounded(double size) {
    return {{"bound", VlAttribute::DoubleAttribute({0, size, 0, size, 0, size})}};
}

/// `produced PATH` or `removed PATH`.
inline std::vector<std::string> linesOf(const std::vector<FactoryProduct>& products) {
    std::vector<std::string> lines;
    for (const FactoryProduct& product : products) {
        lines.push_back((product.kind == kFactoryProductProduced ? "produced " : "removed ") +
                        product.path);
    }
    return lines;
}

/// What a factory, or a list of them, has to bring.
template <class Factory>
std::vector<FactoryProduct> collect(Factory& factory) {
    std::vector<FactoryProduct> products;
    factory.collectProducts(products);
    return products;
}

} // namespace ViewerAPI::test
