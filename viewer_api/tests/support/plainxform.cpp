#include "support/plainxform.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

namespace ViewerAPI::test {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;

namespace {

template <class DataAttribute, class Value>
DataAttribute toAttributeOf(const PlainComponent& component) {
    const std::vector<Value> all(component.values.begin(), component.values.end());
    if (component.times.empty()) {
        return DataAttribute(all);
    }
    const std::size_t length = all.size() / component.times.size();
    std::vector<std::vector<Value>> samples;
    for (std::size_t start = 0; start < all.size(); start += length) {
        samples.emplace_back(all.data() + start, all.data() + start + length);
    }
    return DataAttribute(component.times, samples);
}

std::vector<double> valuesAt(const PlainComponent& component, float time) {
    if (component.times.empty()) {
        return component.values;
    }
    const std::size_t length = component.values.size() / component.times.size();
    std::map<float, std::vector<double>> samples;
    for (std::size_t index = 0; index < component.times.size(); ++index) {
        const double* const start = component.values.data() + index * length;
        samples[component.times[index]].assign(start, start + length);
    }
    return nearest(samples, time);
}

bool beginsWith(const std::string& name, const char* prefix) {
    return name.rfind(prefix, 0) == 0;
}

/// By the formula for a turn by an angle around an axis, counter-clockwise seen from its tip.
PlainMatrix rotation(double degrees, double x, double y, double z) {
    PlainMatrix matrix;
    const double length = std::sqrt(x * x + y * y + z * z);
    if (length == 0) {
        return matrix;
    }
    const std::array<double, 3> axis{x / length, y / length, z / length};
    const double sine = std::sin(degrees * std::numbers::pi / 180.0);
    const double cosine = std::cos(degrees * std::numbers::pi / 180.0);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            double value = axis[row] * axis[column] * (1 - cosine);
            if (row == column) {
                value += cosine;
            } else { // the axis that is neither, with the sign of the cyclic order
                value += axis[3 - row - column] * ((row + 1) % 3 == column ? sine : -sine);
            }
            matrix.values[row * 4 + column] = value;
            matrix.sizes[row * 4 + column] = 1;
        }
    }
    return matrix;
}

PlainMatrix matrixOf(const std::string& name, const std::vector<double>& v) {
    PlainMatrix matrix;
    if (beginsWith(name, "rotate") && v.size() == 4) {
        return rotation(v[0], v[1], v[2], v[3]);
    }
    if (beginsWith(name, "translate") && v.size() == 3) {
        std::copy(v.begin(), v.end(), matrix.values.begin() + 12);
    } else if (beginsWith(name, "scale") && v.size() == 3) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            matrix.values[axis * 5] = v[axis];
        }
    } else if (beginsWith(name, "matrix") && v.size() == 16) {
        std::copy(v.begin(), v.end(), matrix.values.begin());
    }
    for (std::size_t index = 0; index < 16; ++index) {
        matrix.sizes[index] = std::abs(matrix.values[index]);
    }
    return matrix;
}

bool hasTimes(const PlainComponent& component) {
    const auto count =
        component.times.empty() ? 0 : component.values.size() / component.times.size();
    for (const auto& [prefix, size] :
         {std::pair{"translate", 3U}, {"rotate", 4U}, {"scale", 3U}, {"matrix", 16U}}) {
        if (beginsWith(component.name, prefix) && count == size) {
            return component.times.size() > 1;
        }
    }
    return false;
}

} // namespace

GroupAttribute toAttribute(const PlainXform& xform) {
    GroupBuilder builder;
    for (const PlainGroup& group : xform) {
        GroupBuilder components;
        for (const PlainComponent& component : group.components) {
            if (component.isFloat) {
                components.set(component.name, toAttributeOf<FloatAttribute, float>(component));
            } else {
                components.set(component.name, toAttributeOf<DoubleAttribute, double>(component));
            }
        }
        builder.set(group.name, components.build());
    }
    return builder.build();
}

PlainMatrix operator*(const PlainMatrix& left, const PlainMatrix& right) {
    PlainMatrix product;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            double value = 0;
            double size = 0;
            for (std::size_t inner = 0; inner < 4; ++inner) {
                value += left.values[row * 4 + inner] * right.values[inner * 4 + column];
                size += left.sizes[row * 4 + inner] * right.sizes[inner * 4 + column];
            }
            product.values[row * 4 + column] = value;
            product.sizes[row * 4 + column] = size;
        }
    }
    return product;
}

PlainTransform evaluate(const PlainXform& xform, float time) {
    PlainTransform result;
    for (const PlainGroup& group : xform) {
        for (const PlainComponent& component : group.components) {
            if (beginsWith(component.name, "reset")) {
                result = {PlainMatrix(), true};
            } else {
                result.matrix = matrixOf(component.name, valuesAt(component, time)) * result.matrix;
            }
        }
    }
    return result;
}

PlainSamples evaluateAtExistingTimes(const PlainXform& xform) {
    std::set<float> times;
    for (const PlainGroup& group : xform) {
        for (const PlainComponent& component : group.components) {
            if (hasTimes(component)) {
                times.insert(component.times.begin(), component.times.end());
            }
        }
    }
    if (times.empty()) {
        times.insert(0.0F);
    }
    PlainSamples samples;
    for (const float time : times) {
        samples[time] = evaluate(xform, time).matrix;
    }
    return samples;
}

PlainSamples multiply(const PlainSamples& left, const PlainSamples& right) {
    PlainSamples product;
    for (const float time : timesOf(left, right)) {
        product[time] = nearest(left, time) * nearest(right, time);
    }
    return product;
}

std::string complaint(const PlainSamples& expected, const DoubleAttribute& actual) {
    std::ostringstream out;
    if (actual.getNumberOfTimeSamples() != static_cast<std::int64_t>(expected.size())) {
        out << actual.getNumberOfTimeSamples() << " samples instead of " << expected.size();
        return out.str();
    }
    std::int64_t sample = 0;
    for (const auto& [time, matrix] : expected) {
        const auto values = actual.getSample(sample);
        if (expected.size() > 1 && actual.getSampleTime(sample) != time) {
            out << "a sample at " << actual.getSampleTime(sample) << " instead of " << time << "\n";
        }
        if (values.size() != 16) {
            out << values.size() << " values\n";
            return out.str();
        }
        for (std::size_t index = 0; index < 16; ++index) {
            // Written so that what is no number is complained of too.
            if (!(std::abs(values[index] - matrix.values[index]) <=
                  kPlainTolerance * matrix.sizes[index])) {
                out << "at " << time << " value " << index << " is " << values[index]
                    << " instead of " << matrix.values[index] << "\n";
            }
        }
        ++sample;
    }
    return out.str();
}

int RandomXforms::upTo(int count) const {
    return std::uniform_int_distribution<int>(0, count - 1)(random);
}

PlainXform RandomXforms::make() const {
    // A group named "xform" lies where the part of a transform is put together.
    static const std::vector<std::string> kNames{"interactive", "pivot", "xform", "deform"};
    PlainXform xform;
    const int groups = upTo(4);
    for (int group = 0; group < groups; ++group) {
        PlainGroup& added = xform.emplace_back();
        added.name = kNames[static_cast<std::size_t>(group + upTo(2))];
        if (group > 0 && added.name == xform[static_cast<std::size_t>(group) - 1].name) {
            added.name += "2";
        }
        const int components = upTo(4);
        for (int component = 0; component < components; ++component) {
            added.components.push_back(makeComponent(component));
        }
    }
    return xform;
}

PlainComponent RandomXforms::makeComponent(int number) const {
    static const std::vector<std::string> kKinds{
        "translate", "translate", "translatePivot", "rotate", "rotate", "rotateX",    "scale",
        "scaleB",    "matrix",    "shear",          "turn",   "reset",  "resetParent"};
    const int kinds = static_cast<int>(kKinds.size()) - (mayReset ? 0 : 2);
    const std::string& kind = kKinds[static_cast<std::size_t>(upTo(kinds))];
    PlainComponent component{kind + std::to_string(number), {}};
    component.isFloat = upTo(5) == 0;
    if (mayVary && upTo(4) == 0) {
        static const std::vector<std::vector<float>> kTimes{
            {0, 1}, {-1, 1}, {1, 2}, {-2.5F, 0.25F, 4}, {3}};
        component.times = kTimes[static_cast<std::size_t>(upTo(5))];
    }
    for (std::size_t sample = 0; sample < std::max<std::size_t>(1, component.times.size());
         ++sample) {
        for (const double value : makeValues(kind)) {
            component.values.push_back(component.isFloat ? static_cast<float>(value) : value);
        }
    }
    if (upTo(20) == 0) { // of a size that has no effect
        component.times.clear();
        component.values.assign(2, 5.0);
    }
    return component;
}

std::vector<double> RandomXforms::makeValues(const std::string& kind) const {
    const auto number = [this](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    if (beginsWith(kind, "translate")) {
        return {number(-3, 3), number(-3, 3), number(-3, 3)};
    }
    if (beginsWith(kind, "rotate")) {
        return upTo(10) == 0 ? std::vector<double>{number(-180, 180), 0, 0, 0}
                             : std::vector<double>{number(-180, 180), number(-2, 2), number(-2, 2),
                                                   number(0.1, 2)};
    }
    if (beginsWith(kind, "scale")) {
        return {number(0.5, 3), upTo(4) == 0 ? -1.0 : number(0.5, 2), number(0.5, 2)};
    }
    if (beginsWith(kind, "matrix")) {
        std::vector<double> values(PlainMatrix::kIdentity.begin(), PlainMatrix::kIdentity.end());
        for (std::size_t index = 0; index < 15; ++index) {
            if (index % 4 != 3) {
                values[index] += number(-0.5, 0.5);
            }
        }
        return values;
    }
    if (beginsWith(kind, "reset")) {
        return {1};
    }
    return {number(-3, 3), number(-3, 3), number(-3, 3), 1, 1, 1}; // shear, turn
}

} // namespace ViewerAPI::test
