#include "ops/import/animationsampler.h"

#include <Imath/ImathMatrixAlgo.h>
#include <Imath/ImathQuat.h>
#include <Imath/ImathVec.h>

#include <algorithm>
#include <cstddef>

namespace VlScenelibEngine {

namespace {

using Imath::M44d;
using Imath::Quatd;
using Imath::V3d;

struct Place {
    std::size_t from;
    std::size_t to;
    double fraction; // of the way
};

// Between which two keys a time lies. There is at least one key.
template <class Key>
Place findPlace(const std::vector<Key>& keys, double seconds) {
    const auto next = std::ranges::upper_bound(keys, seconds, {}, &Key::time);
    if (next == keys.begin()) {
        return {0, 0, 0};
    }
    const auto to = static_cast<std::size_t>(next - keys.begin());
    if (next == keys.end()) {
        return {to - 1, to - 1, 0};
    }
    return {to - 1, to, (seconds - keys[to - 1].time) / (next->time - keys[to - 1].time)};
}

V3d sample(const std::vector<ModelData::Key<3>>& keys, double seconds, const V3d& rest) {
    if (keys.empty()) {
        return rest;
    }
    const Place place = findPlace(keys, seconds);
    const auto value = [&](std::size_t index) {
        const auto& v = keys[index].value;
        return V3d(v[0], v[1], v[2]);
    };
    return value(place.from) * (1 - place.fraction) + value(place.to) * place.fraction;
}

Quatd sample(const std::vector<ModelData::Key<4>>& keys, double seconds, const Quatd& rest) {
    if (keys.empty()) {
        return rest;
    }
    const Place place = findPlace(keys, seconds);
    const auto value = [&](std::size_t index) {
        const auto& q = keys[index].value;
        const Quatd quaternion(q[0], q[1], q[2], q[3]);
        return quaternion.length() > 0 ? quaternion.normalized() : Quatd();
    };
    return Imath::slerpShortestArc(value(place.from), value(place.to), place.fraction);
}

} // namespace

M44d sampleMatrix(const ModelData::Channel& channel, double seconds, const M44d& rest) {
    V3d scale(1);
    V3d shear(0);
    V3d translation = rest.translation();
    Quatd rotation;
    // A matrix that can't be taken apart, as one that flattens, has no rotation to keep.
    M44d turned = rest;
    if (Imath::extractAndRemoveScalingAndShear(turned, scale, shear, false)) {
        rotation = Imath::extractQuat(turned);
    } else {
        scale = V3d(1);
    }
    scale = sample(channel.scales, seconds, scale);
    translation = sample(channel.translations, seconds, translation);
    rotation = sample(channel.rotations, seconds, rotation);

    M44d scaling;
    scaling.setScale(scale);
    M44d matrix = scaling * rotation.toMatrix44();
    matrix[3][0] = translation.x;
    matrix[3][1] = translation.y;
    matrix[3][2] = translation.z;
    return matrix;
}

std::vector<float> sampleWeights(const ModelData::MorphChannel& channel, double seconds) {
    if (channel.keys.empty()) {
        return {};
    }
    const Place place = findPlace(channel.keys, seconds);
    const std::vector<float>& from = channel.keys[place.from].weights;
    const std::vector<float>& to = channel.keys[place.to].weights;
    std::vector<float> weights(std::max(from.size(), to.size()));
    const auto fraction = static_cast<float>(place.fraction);
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const float a = i < from.size() ? from[i] : 0;
        const float b = i < to.size() ? to[i] : 0;
        weights[i] = a * (1 - fraction) + b * fraction;
    }
    return weights;
}

} // namespace VlScenelibEngine
