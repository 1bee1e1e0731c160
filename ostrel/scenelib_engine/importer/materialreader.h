#pragma once

#include "modeldata.h"

#include <assimp/material.h>

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>

struct aiScene;

/// Reads the materials of one imported scene.
class MaterialReader {
public:
    /// Textures are looked for beside `file`. `isGltfFile`: the format's colours are linear
    /// already, and its materials have one side unless they say so; all others give colours as they
    /// show on a screen, and don't mean it where they tell of sides.
    MaterialReader(const aiScene& scene, const std::filesystem::path& file, bool isGltfFile);

    /// Textures that are embedded are added to the model.
    [[nodiscard]] ModelData::Material read(const aiMaterial& material, ModelData& model);

    /// The textures that weren't there, in one line; empty when all were.
    [[nodiscard]] std::string getWarning() const;

    /// Which texture coordinates the material's texture is laid out by.
    [[nodiscard]] unsigned getUVChannel(const aiMaterial& material) const;

private:
    [[nodiscard]] aiTextureType textureTypeOf(const aiMaterial& material) const;
    void readTexture(const std::string& name, ModelData::Material& result, ModelData& model);
    [[nodiscard]] std::optional<std::string> findTexture(std::string name) const;

    const aiScene& source;
    std::filesystem::path folder;
    bool isGltf;
    std::map<const void*, std::int32_t> embedded; // by imported texture, the model's
    std::set<std::string> missing;
};
