#pragma once

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/GroupAttribute.h"

#include <array>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

/// Transforms evaluated the plain way, to compare the viewer's answers with: nothing here calls
/// what it checks, nor the library that does the viewer's arithmetic.
namespace ViewerAPI::test {

/// One component of an `xform` group.
struct PlainComponent {
    std::string name;
    std::vector<double> values; ///< of all samples, one behind the other
    std::vector<float> times{}; ///< ascending; none for the one sample that holds for all times
    bool isFloat = false;       ///< a FloatAttribute; its values are floats
};

/// A group of components of a location's `xform`.
struct PlainGroup {
    std::string name;
    std::vector<PlainComponent> components;
};

/// The transforms of several locations behind each other, from the root down, are one too.
using PlainXform = std::vector<PlainGroup>;

[[nodiscard]] VlAttribute::GroupAttribute toAttribute(const PlainXform& xform);

/// A 4x4 matrix for row vectors.
struct PlainMatrix {
    static constexpr std::array<double, 16> kIdentity{1, 0, 0, 0, 0, 1, 0, 0,
                                                      0, 0, 1, 0, 0, 0, 0, 1};

    std::array<double, 16> values = kIdentity;
    /// What each value would be if nothing had cancelled out on the way: rounding errors are in
    /// proportion to these, and may exceed the value.
    std::array<double, 16> sizes = kIdentity;
};

[[nodiscard]] PlainMatrix operator*(const PlainMatrix& left, const PlainMatrix& right);

/// How far two evaluations of one value may lie apart, in proportion to its size. A value is the
/// outcome of at most 80 factors. Each brings no more than 8 roundings of its own (degrees to
/// radians, sine and cosine, an axis made one long, three products) and 4 of the matrix product; a
/// rounding is off by 2^-53, and both sides round: 2 * 80 * 12 < 2048.
inline constexpr double kPlainTolerance = 2048 * 0x1p-53;

struct PlainTransform {
    PlainMatrix matrix;
    bool isAbsolute = false;
};

/// Walks the components in order. Row vectors: each later one stands on the left.
[[nodiscard]] PlainTransform evaluate(const PlainXform& xform, float time);

/// A matrix that may vary: by time, the sample nearest to a time holds for it.
using PlainSamples = std::map<float, PlainMatrix>;

/// With a sample for every time at which a component that varies has one.
[[nodiscard]] PlainSamples evaluateAtExistingTimes(const PlainXform& xform);
/// With a sample for every time at which a factor that varies has one.
[[nodiscard]] PlainSamples multiply(const PlainSamples& left, const PlainSamples& right);
/// The earlier one on a tie. Of any map by time.
template <class Value>
const Value& nearest(const std::map<float, Value>& samples, float time) {
    auto best = samples.begin();
    for (auto each = samples.begin(); each != samples.end(); ++each) {
        const auto distance = [&](float from) { return from < time ? time - from : from - time; };
        if (distance(each->first) < distance(best->first)) {
            best = each;
        }
    }
    return best->second;
}
/// The times at which one of these maps by time varies; 0 alone when none does.
template <class Value>
std::set<float> timesOf(const std::map<float, Value>& first, const std::map<float, Value>& second) {
    std::set<float> times;
    for (const auto* samples : {&first, &second}) {
        for (const auto& sample : *samples) {
            if (samples->size() > 1) {
                times.insert(sample.first);
            }
        }
    }
    return times.empty() ? std::set<float>{0.0F} : times;
}

/// Empty when a matrix attribute is what was expected; else what is wrong.
[[nodiscard]] std::string complaint(const PlainSamples& expected,
                                    const VlAttribute::DoubleAttribute& actual);

/// Random transforms of all kinds of components, those without effect among them.
struct RandomXforms {
    std::mt19937& random;
    bool mayReset = true;
    bool mayVary = true;

    [[nodiscard]] PlainXform make() const;

private:
    [[nodiscard]] int upTo(int count) const;
    [[nodiscard]] PlainComponent makeComponent(int number) const;
    [[nodiscard]] std::vector<double> makeValues(const std::string& kind) const;
};

} // namespace ViewerAPI::test
