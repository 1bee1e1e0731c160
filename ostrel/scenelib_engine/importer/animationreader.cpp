#include "animationreader.h"

#include "convert.h"

#include <assimp/anim.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace {

// What the importer's documentation says to assume where a file doesn't tell.
constexpr double kDefaultTicksPerSecond = 25;

bool isFinite(std::span<const float> values) {
    return std::ranges::all_of(values, [](float value) { return std::isfinite(value); });
}

// Keys in the order of their times, as sampling needs them; files don't always have them so.
template <class Key>
void sortByTime(std::vector<Key>& keys) {
    const auto isEarlier = [](const Key& a, const Key& b) { return a.time < b.time; };
    if (!std::ranges::is_sorted(keys, isEarlier)) {
        std::ranges::stable_sort(keys, isEarlier);
    }
}

template <std::size_t N, class SourceKey, class Components>
std::vector<ModelData::Key<N>> readKeys(const SourceKey* keys, unsigned count,
                                        double ticksPerSecond, Components components) {
    std::vector<ModelData::Key<N>> result;
    for (unsigned i = 0; keys && i < count; ++i) {
        const ModelData::Key<N> key{keys[i].mTime / ticksPerSecond, components(keys[i].mValue)};
        if (std::isfinite(key.time) && isFinite(key.value)) {
            result.push_back(key);
        }
    }
    sortByTime(result);
    return result;
}

std::array<float, 3> components(const aiVector3D& v) {
    return {v.x, v.y, v.z};
}

} // namespace

ModelData::Animation readAnimation(const aiAnimation& animation, const NodeIndices& nodes) {
    const double rate =
        animation.mTicksPerSecond > 0 ? animation.mTicksPerSecond : kDefaultTicksPerSecond;
    ModelData::Animation result;
    result.name = toString(animation.mName);
    for (unsigned c = 0; c < animation.mNumChannels; ++c) {
        const aiNodeAnim& source = *animation.mChannels[c];
        const auto node = nodes.find(toString(source.mNodeName));
        if (node == nodes.end()) {
            continue;
        }
        result.channels.push_back(
            {node->second,
             readKeys<3>(source.mPositionKeys, source.mNumPositionKeys, rate, components),
             readKeys<4>(source.mRotationKeys, source.mNumRotationKeys, rate,
                         [](const aiQuaternion& q) {
                             return std::array<float, 4>{q.w, q.x, q.y, q.z};
                         }),
             readKeys<3>(source.mScalingKeys, source.mNumScalingKeys, rate, components)});
    }
    for (unsigned c = 0; c < animation.mNumMorphMeshChannels; ++c) {
        const aiMeshMorphAnim& source = *animation.mMorphMeshChannels[c];
        // Some readers add the mesh's number to the name: "Node*0".
        std::string name = toString(source.mName);
        auto node = nodes.find(name);
        if (node == nodes.end()) {
            node = nodes.find(name.substr(0, name.rfind('*')));
        }
        if (node == nodes.end()) {
            continue;
        }
        ModelData::MorphChannel channel{node->second, {}};
        for (unsigned k = 0; k < source.mNumKeys; ++k) {
            const aiMeshMorphKey& key = source.mKeys[k];
            ModelData::MorphKey morphKey{key.mTime / rate, {}};
            for (unsigned i = 0; i < key.mNumValuesAndWeights; ++i) {
                constexpr unsigned kMaximumMorphs = 1 << 16;
                if (key.mValues[i] < kMaximumMorphs && std::isfinite(key.mWeights[i])) {
                    morphKey.weights.resize(
                        std::max<std::size_t>(morphKey.weights.size(), key.mValues[i] + 1u));
                    morphKey.weights[key.mValues[i]] = static_cast<float>(key.mWeights[i]);
                }
            }
            if (std::isfinite(morphKey.time)) {
                channel.keys.push_back(std::move(morphKey));
            }
        }
        sortByTime(channel.keys);
        result.morphChannels.push_back(std::move(channel));
    }
    return result;
}
