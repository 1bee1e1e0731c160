#include "xformcomponents.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"

#include <array>
#include <numbers>
#include <string_view>

namespace VlScenelib {

namespace {

using VlAttribute::Attribute;
using VlAttribute::AttributeType;
using VlAttribute::DataAttribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;

enum class Kind { None, Translate, Rotate, Scale, Matrix, Reset };

struct KindRow {
    std::string_view prefix;
    Kind kind;
    std::size_t valueCount;
};

/// `shear` is missing: its six values are reserved.
constexpr std::array<KindRow, 5> kKinds{{{"translate", Kind::Translate, 3},
                                         {"rotate", Kind::Rotate, 4},
                                         {"scale", Kind::Scale, 3},
                                         {"matrix", Kind::Matrix, 16},
                                         {"reset", Kind::Reset, 0}}};
constexpr std::size_t kMaxValues = 16;

const KindRow* findKind(std::string_view name) noexcept {
    for (const KindRow& row : kKinds) {
        if (name.starts_with(row.prefix)) {
            return &row;
        }
    }
    return nullptr;
}

using Values = std::array<double, kMaxValues>;

template <typename T>
bool copyValues(std::span<const T> from, std::size_t count, Values& to) {
    if (from.size() != count) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        to[i] = static_cast<double>(from[i]);
    }
    return true;
}

/// False when the attribute isn't `count` numbers.
bool readValues(const Attribute& attribute, float time, std::size_t count, Values& to) {
    switch (attribute.getType()) {
    case AttributeType::Double:
        return copyValues(DoubleAttribute(attribute).getNearestSample(time), count, to);
    case AttributeType::Float:
        return copyValues(FloatAttribute(attribute).getNearestSample(time), count, to);
    default:
        return false;
    }
}

/// `to` = local * `to`, where only the translation of `local` is not the identity's.
void translateOnLeft(Imath::M44d& to, double x, double y, double z) {
    for (int column = 0; column < 4; ++column) {
        to[3][column] += x * to[0][column] + y * to[1][column] + z * to[2][column];
    }
}

void applyComponent(Kind kind, const Values& values, Imath::M44d& matrix) {
    switch (kind) {
    case Kind::Translate:
        translateOnLeft(matrix, values[0], values[1], values[2]);
        break;
    case Kind::Rotate: {
        const Imath::V3d axis(values[1], values[2], values[3]);
        // Without an axis there is no rotation; Imath would scale by the angle's cosine.
        if (axis.length2() > 0) {
            Imath::M44d rotation;
            rotation.setAxisAngle(axis, values[0] * std::numbers::pi / 180.0);
            matrix = rotation * matrix;
        }
        break;
    }
    case Kind::Scale:
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 4; ++column) {
                matrix[row][column] *= values[static_cast<std::size_t>(row)];
            }
        }
        break;
    case Kind::Matrix: {
        Imath::M44d local;
        for (std::size_t i = 0; i < kMaxValues; ++i) {
            local[static_cast<int>(i / 4)][static_cast<int>(i % 4)] = values[i];
        }
        matrix = local * matrix;
        break;
    }
    case Kind::Reset:
    case Kind::None:
        break;
    }
}

void walk(const GroupAttribute& group, float time, TransformAtTime& result) {
    const std::int64_t count = group.getNumberOfChildren();
    Values values;
    for (std::int64_t i = 0; i < count; ++i) {
        const Attribute& child = group.borrowChildByIndex(i);
        const KindRow* row = findKind(group.getChildName(i));
        if (row && row->kind == Kind::Reset) {
            result.matrix.makeIdentity();
            result.isAbsolute = true;
        } else if (child.getType() == AttributeType::Group) {
            walk(GroupAttribute(child), time, result);
        } else if (row && readValues(child, time, row->valueCount, values)) {
            applyComponent(row->kind, values, result.matrix);
        }
    }
}

} // namespace

TransformAtTime evaluateTransform(const GroupAttribute& xform, float time) {
    TransformAtTime result;
    walk(xform, time, result);
    return result;
}

void addComponentTimes(const GroupAttribute& xform, SampleTimes& times) {
    const std::int64_t count = xform.getNumberOfChildren();
    for (std::int64_t i = 0; i < count; ++i) {
        const Attribute& child = xform.borrowChildByIndex(i);
        const KindRow* row = findKind(xform.getChildName(i));
        if (child.getType() == AttributeType::Group) {
            addComponentTimes(GroupAttribute(child), times);
        } else if (row && (child.getType() == AttributeType::Double ||
                           child.getType() == AttributeType::Float)) {
            const DataAttribute data(child);
            if (static_cast<std::size_t>(data.getNumberOfValues()) == row->valueCount) {
                times.add(data);
            }
        }
    }
}

} // namespace VlScenelib
