#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// What a model file holds, as the import program hands it to the engine. Plain data in the scene's
/// own conventions: Y up, row vectors, linear colours, texture coordinates from the bottom left.
struct ModelData {
    /// Row-vector order, as everywhere in the scene.
    using Matrix = std::array<double, 16>;
    static constexpr Matrix kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    static constexpr std::int32_t kNone = -1;

    /// Points that follow a node. `toBone` leads from the mesh's space to the node's at rest.
    struct Bone {
        std::uint32_t node = 0;
        Matrix toBone = kIdentity;
        std::vector<std::uint32_t> points;
        std::vector<float> weights; ///< as many as points
    };

    /// A shape that is added in some proportion.
    struct Morph {
        float weight = 0;                 ///< at rest
        std::vector<float> pointOffsets;  ///< as long as the mesh's points
        std::vector<float> normalOffsets; ///< as long as the mesh's normals, or empty
    };

    struct Mesh {
        std::string name;
        std::int32_t material = kNone;
        std::vector<float> points;  ///< 3 each, finite
        std::vector<float> normals; ///< as many, or none
        std::vector<float> st;      ///< 2 for each point, or none
        std::vector<float> colors;  ///< 3 for each point, linear, or none
        /// Both empty for a cloud of points.
        std::vector<std::int32_t> vertexList;
        std::vector<std::int32_t> startIndex; ///< one more than faces
        std::vector<Bone> bones;
        std::vector<Morph> morphs;
    };

    struct Material {
        bool hasColor = false;
        std::array<float, 3> color = {}; ///< linear
        float opacity = 1;
        bool isDoubleSided = true;
        std::string texture; ///< a file that is there, or empty
        std::int32_t embeddedTexture = kNone;
    };

    struct Camera {
        Matrix matrix = kIdentity; ///< in its node; it looks down -Z
        bool isOrthographic = false;
        double fov = 45; ///< vertical, degrees
        double orthographicWidth = 0;
        double nearPlane = 0;
        double farPlane = 0;
    };

    enum class LightKind : std::uint8_t { Point, Directional, Spot, Area, Ambient };
    struct Light {
        Matrix matrix = kIdentity; ///< in its node; it shines down -Z
        LightKind kind = LightKind::Point;
        std::array<float, 3> color = {1, 1, 1};
        double coneAngle = 0; ///< of a spot, from edge to edge, degrees
    };

    struct Node {
        std::string name;
        std::int32_t parent = kNone; ///< stands before its children; kNone for the first alone
        Matrix matrix = kIdentity;
        std::vector<std::uint32_t> meshes;
        std::int32_t camera = kNone;
        std::int32_t light = kNone;
    };

    template <std::size_t N>
    struct Key {
        double time = 0; ///< in seconds
        std::array<float, N> value = {};
    };
    /// How a node moves. A list without keys leaves that part as the node's matrix has it. Times
    /// rise.
    struct Channel {
        std::uint32_t node = 0;
        std::vector<Key<3>> translations;
        std::vector<Key<4>> rotations; ///< quaternions: w, x, y, z
        std::vector<Key<3>> scales;
    };
    struct MorphKey {
        double time = 0;
        std::vector<float> weights; ///< by morph
    };
    /// How the shapes of a node's meshes change.
    struct MorphChannel {
        std::uint32_t node = 0;
        std::vector<MorphKey> keys;
    };
    struct Animation {
        std::string name;
        std::vector<Channel> channels;
        std::vector<MorphChannel> morphChannels;
    };

    std::vector<Node> nodes; ///< at least one
    std::vector<Mesh> meshes;
    std::vector<Material> materials;
    std::vector<Camera> cameras;
    std::vector<Light> lights;
    std::vector<Animation> animations;
    std::vector<std::string> textures; ///< picture files
    std::vector<std::string> warnings; ///< one line each
};
