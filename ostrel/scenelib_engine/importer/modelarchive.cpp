#include "modelarchive.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace {

constexpr std::uint32_t kBegin = 0x314D4C56; // "VLM1"
constexpr std::uint32_t kEnd = 0x444E4556;

constexpr std::uint8_t kModel = 0;
constexpr std::uint8_t kFailure = 1;

// What any bits are a value of: such things cross as they are.
template <class T>
struct IsPlain : std::bool_constant<std::is_arithmetic_v<T>> {};
template <>
struct IsPlain<bool> : std::false_type {};
template <class T, std::size_t N>
struct IsPlain<std::array<T, N>> : IsPlain<T> {};
template <std::size_t N>
struct IsPlain<ModelData::Key<N>> : std::true_type {};
template <class T>
concept Plain = IsPlain<T>::value;

// Writer and Reader agree because both are driven by the one list of members below.
class Writer {
public:
    template <Plain T>
    void operator()(const T& value) {
        archive.append(reinterpret_cast<const char*>(&value), sizeof(T));
    }
    void operator()(bool value) { (*this)(static_cast<std::uint8_t>(value)); }
    void operator()(const std::string& text) {
        (*this)(static_cast<std::uint64_t>(text.size()));
        archive += text;
    }
    template <class T>
    void operator()(const std::vector<T>& list) {
        (*this)(static_cast<std::uint64_t>(list.size()));
        if constexpr (Plain<T>) {
            archive.append(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(T));
        } else {
            for (const T& item : list) {
                visit(*this, item);
            }
        }
    }

    std::string archive;
};

class Reader {
public:
    explicit Reader(std::span<const std::byte> source) : rest(source) {}

    template <Plain T>
    void operator()(T& value) {
        copyTo(&value, sizeof(T));
    }
    void operator()(bool& value) {
        std::uint8_t byte = 0;
        (*this)(byte);
        require(byte <= 1);
        value = byte != 0;
    }
    void operator()(std::string& text) {
        text.resize(length(1));
        copyTo(text.data(), text.size());
    }
    template <class T>
    void operator()(std::vector<T>& list) {
        list.resize(length(Plain<T> ? sizeof(T) : 1));
        if constexpr (Plain<T>) {
            copyTo(list.data(), list.size() * sizeof(T));
        } else {
            for (T& item : list) {
                visit(*this, item);
            }
        }
    }
    [[nodiscard]] bool isAtEnd() const { return rest.empty(); }

    static void require(bool condition) {
        if (!condition) {
            throw std::runtime_error("the import program gave no whole answer");
        }
    }

private:
    std::size_t length(std::size_t itemSize) {
        std::uint64_t count = 0;
        (*this)(count);
        // A wrong length must not ask for memory that no content could fill.
        require(count <= rest.size() / itemSize);
        return static_cast<std::size_t>(count);
    }
    void copyTo(void* target, std::size_t size) {
        require(size <= rest.size());
        if (size != 0) {
            std::memcpy(target, rest.data(), size);
        }
        rest = rest.subspan(size);
    }

    std::span<const std::byte> rest;
};

template <class Archive, class... Members>
void visitAll(Archive& archive, Members&... members) {
    (archive(members), ...);
}

template <class Archive, class T>
using Item = std::conditional_t<std::is_same_v<Archive, Writer>, const T, T>;

template <class Archive>
void visit(Archive& archive, Item<Archive, std::string>& text) {
    archive(text);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Bone>& bone) {
    visitAll(a, bone.node, bone.toBone, bone.points, bone.weights);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Morph>& morph) {
    visitAll(a, morph.weight, morph.pointOffsets, morph.normalOffsets);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Mesh>& mesh) {
    visitAll(a, mesh.name, mesh.material, mesh.points, mesh.normals, mesh.st, mesh.colors,
             mesh.vertexList, mesh.startIndex, mesh.bones, mesh.morphs);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Material>& material) {
    visitAll(a, material.hasColor, material.color, material.opacity, material.isDoubleSided,
             material.texture, material.embeddedTexture);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Camera>& camera) {
    visitAll(a, camera.matrix, camera.isOrthographic, camera.fov, camera.orthographicWidth,
             camera.nearPlane, camera.farPlane);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Light>& light) {
    auto kind = static_cast<std::uint8_t>(light.kind);
    visitAll(a, light.matrix, kind, light.color, light.coneAngle);
    if constexpr (!std::is_same_v<Archive, Writer>) {
        Reader::require(kind <= static_cast<std::uint8_t>(ModelData::LightKind::Ambient));
        light.kind = static_cast<ModelData::LightKind>(kind);
    }
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Node>& node) {
    visitAll(a, node.name, node.parent, node.matrix, node.meshes, node.camera, node.light);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Channel>& channel) {
    visitAll(a, channel.node, channel.translations, channel.rotations, channel.scales);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::MorphKey>& key) {
    visitAll(a, key.time, key.weights);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::MorphChannel>& channel) {
    visitAll(a, channel.node, channel.keys);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData::Animation>& animation) {
    visitAll(a, animation.name, animation.channels, animation.morphChannels);
}
template <class Archive>
void visit(Archive& a, Item<Archive, ModelData>& model) {
    visitAll(a, model.nodes, model.meshes, model.materials, model.cameras, model.lights,
             model.animations, model.textures, model.warnings);
}

template <class T>
std::string pack(std::uint8_t outcome, const T& content) {
    Writer writer;
    writer(kBegin);
    writer(outcome);
    visit(writer, content);
    writer(kEnd);
    return std::move(writer.archive);
}

void checkMesh(const ModelData& model, const ModelData::Mesh& mesh) {
    const std::size_t points = mesh.points.size() / 3;
    Reader::require(mesh.points.size() % 3 == 0);
    Reader::require(mesh.normals.empty() || mesh.normals.size() == mesh.points.size());
    Reader::require(mesh.st.empty() || mesh.st.size() == points * 2);
    Reader::require(mesh.colors.empty() || mesh.colors.size() == mesh.points.size());
    Reader::require(mesh.vertexList.empty() == mesh.startIndex.empty());
    Reader::require(std::ranges::all_of(mesh.vertexList, [points](std::int32_t index) {
        return index >= 0 && static_cast<std::size_t>(index) < points;
    }));
    if (!mesh.startIndex.empty()) {
        Reader::require(mesh.startIndex.front() == 0 &&
                        static_cast<std::size_t>(mesh.startIndex.back()) ==
                            mesh.vertexList.size() &&
                        std::ranges::is_sorted(mesh.startIndex));
    }
    Reader::require(mesh.material >= ModelData::kNone &&
                    mesh.material < static_cast<std::int64_t>(model.materials.size()));
    for (const ModelData::Bone& bone : mesh.bones) {
        Reader::require(
            bone.node < model.nodes.size() && bone.points.size() == bone.weights.size() &&
            std::ranges::all_of(bone.points, [points](std::uint32_t p) { return p < points; }));
    }
    for (const ModelData::Morph& morph : mesh.morphs) {
        Reader::require(
            morph.pointOffsets.size() == mesh.points.size() &&
            (morph.normalOffsets.empty() || morph.normalOffsets.size() == mesh.normals.size()));
    }
}

void check(const ModelData& model) {
    const auto isIndex = [](std::int32_t index, std::size_t count) {
        return index >= ModelData::kNone && index < static_cast<std::int64_t>(count);
    };
    Reader::require(!model.nodes.empty());
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        const ModelData::Node& node = model.nodes[i];
        Reader::require(i == 0 ? node.parent == ModelData::kNone
                               : node.parent >= 0 && static_cast<std::size_t>(node.parent) < i);
        Reader::require(isIndex(node.camera, model.cameras.size()) &&
                        isIndex(node.light, model.lights.size()));
        for (const std::uint32_t mesh : node.meshes) {
            Reader::require(mesh < model.meshes.size());
        }
    }
    for (const ModelData::Mesh& mesh : model.meshes) {
        checkMesh(model, mesh);
    }
    for (const ModelData::Material& material : model.materials) {
        Reader::require(isIndex(material.embeddedTexture, model.textures.size()));
    }
    for (const ModelData::Animation& animation : model.animations) {
        for (const auto& channel : animation.channels) {
            Reader::require(channel.node < model.nodes.size());
        }
        for (const auto& channel : animation.morphChannels) {
            Reader::require(channel.node < model.nodes.size());
        }
    }
}

} // namespace

std::string packModel(const ModelData& model) {
    return pack(kModel, model);
}

std::string packFailure(const std::string& reason) {
    return pack(kFailure, reason);
}

ModelData unpackModel(std::span<const std::byte> archive) {
    Reader reader(archive);
    std::uint32_t mark = 0;
    std::uint8_t outcome = 0;
    reader(mark);
    Reader::require(mark == kBegin);
    reader(outcome);
    Reader::require(outcome == kModel || outcome == kFailure);
    std::string reason;
    ModelData model;
    if (outcome == kFailure) {
        visit(reader, reason);
    } else {
        visit(reader, model);
    }
    reader(mark);
    Reader::require(mark == kEnd && reader.isAtEnd());
    if (outcome == kFailure) {
        throw std::runtime_error(reason);
    }
    check(model);
    return model;
}
