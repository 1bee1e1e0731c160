#include "meshreader.h"

#include "convert.h"

#include <assimp/mesh.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace {

constexpr std::uint32_t kUnused = std::numeric_limits<std::uint32_t>::max();

bool isFinite(const aiVector3D& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool areFinite(const aiVector3D* vectors, unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
        if (!isFinite(vectors[i])) {
            return false;
        }
    }
    return true;
}

// The colours of the points; null when there are none, when they are no numbers, and when all are
// white, as some importers fill them in.
const aiColor4D* meaningfulColors(const aiMesh& mesh) {
    const aiColor4D* const colors = mesh.mColors[0];
    bool areWhite = true;
    for (unsigned i = 0; colors && i < mesh.mNumVertices; ++i) {
        const aiColor4D& color = colors[i];
        if (!std::isfinite(color.r) || !std::isfinite(color.g) || !std::isfinite(color.b)) {
            return nullptr;
        }
        areWhite = areWhite && color.r == 1 && color.g == 1 && color.b == 1;
    }
    return areWhite ? nullptr : colors;
}

// Which of the imported points are taken, and as which point of the mesh.
class PointSelection {
public:
    PointSelection(const aiMesh& source, const aiVector3D* normals, const aiVector3D* uv,
                   const aiColor4D* colors, bool mayMerge)
        : mesh(source), sourceNormals(normals), sourceUV(uv), sourceColors(colors),
          merges(mayMerge), places(source.mNumVertices, kUnused) {
        if (merges) {
            // Room for twice as many as there are, so that look-ups stay short.
            std::size_t size = 16;
            while (size < std::size_t{2} * mesh.mNumVertices) {
                size *= 2;
            }
            table.assign(size, kUnused);
        }
    }

    std::uint32_t take(unsigned index) {
        if (places[index] == kUnused) {
            places[index] = merges ? mergedPlace(index) : append(index);
        }
        return places[index];
    }

    [[nodiscard]] const std::vector<unsigned>& getSources() const { return sources; }
    [[nodiscard]] const std::vector<std::uint32_t>& getPlaces() const { return places; }

private:
    std::uint32_t append(unsigned index) {
        sources.push_back(index);
        return static_cast<std::uint32_t>(sources.size() - 1);
    }

    std::uint32_t mergedPlace(unsigned index) {
        for (std::size_t slot = hashOf(index) & (table.size() - 1);;
             slot = (slot + 1) & (table.size() - 1)) {
            if (table[slot] == kUnused) {
                return table[slot] = append(index);
            }
            if (areEqual(sources[table[slot]], index)) {
                return table[slot];
            }
        }
    }

    [[nodiscard]] std::size_t hashOf(unsigned index) const {
        std::uint64_t hash = 0;
        const auto add = [&hash](const aiVector3D& v) {
            for (const float value : {v.x, v.y, v.z}) {
                std::uint32_t bits = 0;
                const float positive = value + 0.0F; // -0 equals 0
                static_assert(sizeof(bits) == sizeof(positive));
                std::memcpy(&bits, &positive, sizeof(bits));
                hash = (hash ^ bits) * 0x9E3779B97F4A7C15ull;
                hash ^= hash >> 29;
            }
        };
        add(mesh.mVertices[index]);
        if (sourceNormals) {
            add(sourceNormals[index]);
        }
        if (sourceUV) {
            add(sourceUV[index]);
        }
        return static_cast<std::size_t>(hash);
    }

    [[nodiscard]] bool areEqual(unsigned a, unsigned b) const {
        return mesh.mVertices[a] == mesh.mVertices[b] &&
               (!sourceNormals || sourceNormals[a] == sourceNormals[b]) &&
               (!sourceUV || sourceUV[a] == sourceUV[b]) &&
               (!sourceColors || sourceColors[a] == sourceColors[b]);
    }

    const aiMesh& mesh;
    const aiVector3D* sourceNormals;
    const aiVector3D* sourceUV;
    const aiColor4D* sourceColors;
    bool merges;
    std::vector<std::uint32_t> places; // by imported point
    std::vector<unsigned> sources;     // by point
    std::vector<std::uint32_t> table;  // open addressing, of points
};

void readFaces(const aiMesh& mesh, PointSelection& selection, ModelData::Mesh& result) {
    std::size_t corners = 0;
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        corners += mesh.mFaces[f].mNumIndices;
    }
    if (corners > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw std::runtime_error("a mesh has too many corners");
    }
    result.vertexList.reserve(corners);
    result.startIndex.reserve(std::size_t{mesh.mNumFaces} + 1);
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        const aiFace& face = mesh.mFaces[f];
        bool isSound = face.mNumIndices > 0;
        for (unsigned i = 0; isSound && i < face.mNumIndices; ++i) {
            isSound =
                face.mIndices[i] < mesh.mNumVertices && isFinite(mesh.mVertices[face.mIndices[i]]);
        }
        if (!isSound) {
            continue;
        }
        result.startIndex.push_back(static_cast<std::int32_t>(result.vertexList.size()));
        for (unsigned i = 0; i < face.mNumIndices; ++i) {
            result.vertexList.push_back(
                static_cast<std::int32_t>(selection.take(face.mIndices[i])));
        }
    }
    if (!result.startIndex.empty()) {
        result.startIndex.push_back(static_cast<std::int32_t>(result.vertexList.size()));
    }
}

// `vectors` at the points that were taken, less those of `base` if given.
std::vector<float> pick(const std::vector<unsigned>& sources, const aiVector3D* vectors,
                        const aiVector3D* base = nullptr) {
    std::vector<float> result;
    result.reserve(sources.size() * 3);
    for (const unsigned source : sources) {
        aiVector3D v = base ? vectors[source] - base[source] : vectors[source];
        if (base && !isFinite(v)) {
            v = aiVector3D();
        }
        result.insert(result.end(), {v.x, v.y, v.z});
    }
    return result;
}

void readBones(const aiMesh& mesh, const PointSelection& selection, const NodeIndices& nodes,
               ModelData::Mesh& result) {
    for (unsigned b = 0; b < mesh.mNumBones; ++b) {
        const aiBone& source = *mesh.mBones[b];
        const auto node = nodes.find(toString(source.mName));
        if (node == nodes.end()) {
            continue;
        }
        ModelData::Bone bone{node->second, toMatrix(source.mOffsetMatrix), {}, {}};
        for (unsigned w = 0; w < source.mNumWeights; ++w) {
            const aiVertexWeight& weight = source.mWeights[w];
            if (weight.mVertexId >= mesh.mNumVertices || !std::isfinite(weight.mWeight) ||
                weight.mWeight == 0) {
                continue;
            }
            if (const auto place = selection.getPlaces()[weight.mVertexId]; place != kUnused) {
                bone.points.push_back(place);
                bone.weights.push_back(weight.mWeight);
            }
        }
        if (!bone.points.empty()) {
            result.bones.push_back(std::move(bone));
        }
    }
}

void readMorphs(const aiMesh& mesh, const PointSelection& selection, ModelData::Mesh& result) {
    for (unsigned m = 0; m < mesh.mNumAnimMeshes; ++m) {
        const aiAnimMesh& source = *mesh.mAnimMeshes[m];
        ModelData::Morph morph;
        morph.weight = std::isfinite(source.mWeight) ? source.mWeight : 0;
        const bool fits = source.mNumVertices == mesh.mNumVertices;
        if (fits && source.mVertices) {
            morph.pointOffsets = pick(selection.getSources(), source.mVertices, mesh.mVertices);
        } else {
            // Kept without effect: weights are counted by place.
            morph.pointOffsets.resize(result.points.size());
        }
        if (fits && source.mNormals && !result.normals.empty()) {
            morph.normalOffsets = pick(selection.getSources(), source.mNormals, mesh.mNormals);
        }
        result.morphs.push_back(std::move(morph));
    }
}

} // namespace

ModelData::Mesh readMesh(const aiMesh& mesh, unsigned uvChannel, bool hasLinearColors,
                         const NodeIndices& nodes) {
    ModelData::Mesh result;
    result.name = toString(mesh.mName);
    result.material = static_cast<std::int32_t>(mesh.mMaterialIndex);
    if (!mesh.mVertices || mesh.mNumVertices == 0) {
        return result;
    }
    if (mesh.mNumVertices > static_cast<unsigned>(std::numeric_limits<std::int32_t>::max())) {
        throw std::runtime_error("a mesh has too many points");
    }
    if (!mesh.HasTextureCoords(uvChannel)) {
        uvChannel = 0;
    }
    const aiVector3D* const normals =
        mesh.mNormals && areFinite(mesh.mNormals, mesh.mNumVertices) ? mesh.mNormals : nullptr;
    const aiVector3D* const uv =
        mesh.HasTextureCoords(uvChannel) &&
                areFinite(mesh.mTextureCoords[uvChannel], mesh.mNumVertices)
            ? mesh.mTextureCoords[uvChannel]
            : nullptr;
    const bool deforms = mesh.mNumBones > 0 || mesh.mNumAnimMeshes > 0;
    const bool isCloud = mesh.mNumFaces == 0 || mesh.mPrimitiveTypes == aiPrimitiveType_POINT;
    const aiColor4D* const colors = meaningfulColors(mesh);
    PointSelection selection(mesh, normals, uv, colors, !deforms && !isCloud);
    if (isCloud) {
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            if (isFinite(mesh.mVertices[i])) {
                selection.take(i);
            }
        }
    } else {
        readFaces(mesh, selection, result);
    }
    const std::vector<unsigned>& sources = selection.getSources();
    result.points = pick(sources, mesh.mVertices);
    if (normals) {
        result.normals = pick(sources, normals);
    }
    if (uv) {
        result.st.reserve(sources.size() * 2);
        for (const unsigned source : sources) {
            result.st.insert(result.st.end(), {uv[source].x, uv[source].y});
        }
    }
    if (colors) {
        result.colors.reserve(sources.size() * 3);
        for (const unsigned source : sources) {
            for (const float channel : {colors[source].r, colors[source].g, colors[source].b}) {
                result.colors.push_back(hasLinearColors ? channel : linearFromScreen(channel));
            }
        }
    }
    readBones(mesh, selection, nodes, result);
    readMorphs(mesh, selection, result);
    return result;
}
