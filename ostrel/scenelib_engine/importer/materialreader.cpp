#include "materialreader.h"

#include "convert.h"

#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <utility>

namespace {

namespace fs = std::filesystem;

// A picture file's bytes: the embedded file itself, or the pixels as an uncompressed TGA file.
std::string pictureFile(const aiTexture& texture) {
    if (texture.mHeight == 0) {
        return {reinterpret_cast<const char*>(texture.pcData), texture.mWidth};
    }
    const unsigned width = std::min(texture.mWidth, 0xFFFFu);
    const unsigned height = std::min(texture.mHeight, 0xFFFFu);
    const auto low = [](unsigned value) { return static_cast<char>(value & 0xFF); };
    const auto high = [](unsigned value) { return static_cast<char>(value >> 8 & 0xFF); };
    // True colour without palette, 32 bits in the order of aiTexel, rows from the top.
    const std::array<char, 18> header = {
        0,  0,   2, 0, 0, 0, 0, 0, 0, 0, 0, 0, low(width), high(width), low(height), high(height),
        32, 0x28};
    std::string file(header.data(), header.size());
    for (unsigned y = 0; y < height; ++y) {
        const aiTexel* const row = texture.pcData + std::size_t{y} * texture.mWidth;
        file.append(reinterpret_cast<const char*>(row), std::size_t{width} * sizeof(aiTexel));
    }
    return file;
}

std::string withoutPercentSigns(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto isHex = [&](std::size_t at) {
            return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at]));
        };
        if (text[i] == '%' && isHex(i + 1) && isHex(i + 2)) {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The file of the folder whose name differs at most in case: models come from systems that don't
// tell the difference.
std::optional<fs::path> findIgnoringCase(const fs::path& folder, const std::string& name) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder.empty() ? "." : folder, error)) {
        if (lowerCase(entry.path().filename().string()) == lowerCase(name)) {
            return folder / entry.path().filename();
        }
    }
    return std::nullopt;
}

} // namespace

MaterialReader::MaterialReader(const aiScene& scene, const std::filesystem::path& file,
                               bool isGltfFile)
    : source(scene), folder(file.parent_path()), isGltf(isGltfFile) {}

aiTextureType MaterialReader::textureTypeOf(const aiMaterial& material) const {
    // A glTF material of the older kind has its colours under "diffuse" only, a newer one has them
    // under both names; elsewhere a base colour is the better of the two.
    constexpr std::array kDiffuseFirst = {aiTextureType_DIFFUSE, aiTextureType_BASE_COLOR};
    constexpr std::array kBaseFirst = {aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE};
    for (const aiTextureType type : isGltf ? kDiffuseFirst : kBaseFirst) {
        if (material.GetTextureCount(type) > 0) {
            return type;
        }
    }
    return aiTextureType_NONE;
}

unsigned MaterialReader::getUVChannel(const aiMaterial& material) const {
    int channel = 0;
    const aiTextureType type = textureTypeOf(material);
    if (type != aiTextureType_NONE) {
        material.Get(AI_MATKEY_UVWSRC(type, 0), channel);
    }
    return channel > 0 && channel < AI_MAX_NUMBER_OF_TEXTURECOORDS ? static_cast<unsigned>(channel)
                                                                   : 0;
}

ModelData::Material MaterialReader::read(const aiMaterial& material, ModelData& model) {
    ModelData::Material result;
    if (const aiTextureType type = textureTypeOf(material); type != aiTextureType_NONE) {
        aiString name;
        if (material.GetTexture(type, 0, &name) == aiReturn_SUCCESS) {
            readTexture(toString(name), result, model);
        }
    }
    const bool hasTexture = !result.texture.empty() || result.embeddedTexture != ModelData::kNone;

    aiColor4D color;
    bool isLinear = isGltf;
    bool hasColor = !isLinear && material.Get(AI_MATKEY_BASE_COLOR, color) == aiReturn_SUCCESS;
    isLinear = isLinear || hasColor;
    hasColor = hasColor || material.Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS;
    // What files without materials get is no one's choice of colour.
    const bool isDefault = toString(material.GetName()) == AI_DEFAULT_MATERIAL_NAME;
    // In older formats the diffuse colour beside a texture means nothing: often it is black.
    if (hasColor && !isDefault && (isLinear || !hasTexture)) {
        result.hasColor = true;
        const std::array<float, 3> channels = {color.r, color.g, color.b};
        for (std::size_t i = 0; i < channels.size(); ++i) {
            const float value = std::isfinite(channels[i]) ? std::max(channels[i], 0.0F) : 0.0F;
            result.color[i] = isLinear ? value : linearFromScreen(value);
        }
    }

    float opacity = 1;
    aiString alphaMode;
    const bool isOpaque =
        material.Get("$mat.gltf.alphaMode", 0, 0, alphaMode) == aiReturn_SUCCESS &&
        toString(alphaMode) == "OPAQUE";
    // Nobody wants a material that can't be seen: where it says so, transparency was written for
    // opacity.
    if (!isOpaque && material.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS && opacity > 0 &&
        opacity < 1) {
        result.opacity = opacity;
    }
    // Only where the format has a word for it does the author's silence mean one side.
    if (bool isDoubleSided = true;
        isGltf && material.Get(AI_MATKEY_TWOSIDED, isDoubleSided) == aiReturn_SUCCESS) {
        result.isDoubleSided = isDoubleSided;
    }
    return result;
}

void MaterialReader::readTexture(const std::string& name, ModelData::Material& result,
                                 ModelData& model) {
    if (name.empty()) {
        return;
    }
    if (const aiTexture* const texture = source.GetEmbeddedTexture(name.c_str())) {
        const auto [entry, isNew] =
            embedded.try_emplace(texture, static_cast<std::int32_t>(model.textures.size()));
        if (isNew) {
            model.textures.push_back(texture->pcData ? pictureFile(*texture) : std::string());
        }
        result.embeddedTexture = entry->second;
    } else if (auto found = findTexture(name)) {
        result.texture = std::move(*found);
    } else {
        missing.insert(name);
    }
}

std::string MaterialReader::getWarning() const {
    std::string names;
    for (const std::string& name : missing) {
        names += (names.empty() ? "'" : ", '") + name + "'";
    }
    return names.empty() ? names : "textures that aren't there: " + names;
}

std::optional<std::string> MaterialReader::findTexture(std::string name) const {
    std::ranges::replace(name, '\\', '/');
    for (const std::string prefix : {"file://", "./"}) {
        if (name.starts_with(prefix)) {
            name.erase(0, prefix.size());
        }
    }
    for (const std::string& spelling : {name, withoutPercentSigns(name)}) {
        const fs::path path(spelling);
        // As it stands, then beside the model: a path from its author's machine leads nowhere.
        for (const fs::path& candidate :
             {folder / path, folder / path.filename(), folder / "textures" / path.filename()}) {
            if (isFile(candidate)) {
                return candidate.string();
            }
        }
        if (path.has_filename()) {
            auto found = findIgnoringCase(folder, path.filename().string());
            if (found && isFile(*found)) {
                return found->string();
            }
        }
    }
    return std::nullopt;
}
