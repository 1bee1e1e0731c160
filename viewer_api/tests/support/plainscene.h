#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/GroupBuilder.h"

#include <ImathMatrix.h>
#include <ImathVec.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Transforms evaluated the plain way, to compare the viewer's answers with.
namespace ViewerAPI::test {

/// One component of an `xform` group.
struct PlainComponent {
    std::string name;
    std::vector<double> values;
};

/// A group of components of a location's `xform`.
struct PlainGroup {
    std::string name;
    std::vector<PlainComponent> components;
};

using PlainXform = std::vector<PlainGroup>;

inline VlAttribute::GroupAttribute toAttribute(const PlainXform& xform) {
    VlAttribute::GroupBuilder builder;
    for (const PlainGroup& group : xform) {
        VlAttribute::GroupBuilder components;
        for (const PlainComponent& component : group.components)
            components.set(component.name, VlAttribute::DoubleAttribute(component.values));
        builder.set(group.name, components.build());
    }
    return builder.build();
}

inline Imath::M44d matrixOf(const PlainComponent& component) {
    const auto begins = [&](const char* prefix) { return component.name.rfind(prefix, 0) == 0; };
    const std::vector<double>& v = component.values;
    Imath::M44d matrix;
    if (begins("translate"))
        matrix.setTranslation(Imath::V3d(v[0], v[1], v[2]));
    else if (begins("rotate"))
        matrix.setAxisAngle(Imath::V3d(v[1], v[2], v[3]), v[0] * M_PI / 180.0);
    else if (begins("scale"))
        matrix.setScale(Imath::V3d(v[0], v[1], v[2]));
    else if (begins("matrix"))
        std::copy(v.begin(), v.end(), matrix.getValue());
    return matrix;
}

struct PlainMatrix {
    Imath::M44d matrix;
    bool isAbsolute = false;
};

/// Walks the components in order: row vectors, so each later one stands on the left.
inline void applyComponents(PlainMatrix& result, const std::vector<PlainComponent>& components) {
    for (const PlainComponent& component : components) {
        if (component.name.rfind("reset", 0) == 0)
            result = {Imath::M44d(), true};
        else
            result.matrix = matrixOf(component) * result.matrix;
    }
}

inline PlainMatrix evaluate(const PlainXform& xform) {
    PlainMatrix result;
    for (const PlainGroup& group : xform)
        applyComponents(result, group.components);
    return result;
}

/// Largest difference of any two values, relative to their size where that exceeds 1.
inline double difference(const Imath::M44d& expected, const VlAttribute::DoubleAttribute& actual) {
    const auto values = actual.getNearestSample(0.0F);
    if (values.size() != 16)
        return HUGE_VAL;
    double largest = 0;
    for (std::size_t index = 0; index < 16; ++index) {
        const double wanted = expected.getValue()[index];
        largest =
            std::max(largest, std::abs(wanted - values[index]) / std::max(1.0, std::abs(wanted)));
    }
    return largest;
}

/// Random transforms of all kinds of components; `isResetPossible` lets some be absolute.
inline PlainXform randomXform(std::mt19937& random, bool isResetPossible) {
    std::uniform_real_distribution<double> number(-3.0, 3.0);
    const auto upTo = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    PlainXform xform;
    const int groups = upTo(4);
    for (int group = 0; group < groups; ++group) {
        PlainGroup& added = xform.emplace_back();
        added.name = "group" + std::to_string(group);
        const int components = upTo(4);
        for (int component = 0; component < components; ++component) {
            const std::string suffix = std::to_string(component);
            switch (upTo(isResetPossible ? 9 : 8)) {
            case 0:
            case 1:
            case 2:
                added.components.push_back(
                    {"translate" + suffix, {number(random), number(random), number(random)}});
                break;
            case 3:
            case 4:
                added.components.push_back(
                    {"rotate" + suffix,
                     {number(random) * 60, number(random), number(random), 4.0 + number(random)}});
                break;
            case 5:
            case 6:
                added.components.push_back(
                    {"scale" + suffix,
                     {3.5 + number(random), 3.5 + number(random), 3.5 + number(random)}});
                break;
            case 7: {
                std::vector<double> values(16, 0.0);
                for (std::size_t row = 0; row < 4; ++row)
                    for (std::size_t column = 0; column < 3; ++column)
                        values[row * 4 + column] = (row == column ? 1.0 : 0.0) + number(random) / 4;
                values[15] = 1.0;
                added.components.push_back({"matrix" + suffix, values});
                break;
            }
            default:
                added.components.push_back({"reset" + suffix, {1.0}});
                break;
            }
        }
    }
    return xform;
}

} // namespace ViewerAPI::test
