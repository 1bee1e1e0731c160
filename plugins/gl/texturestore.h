#pragma once

#include "gl/gputexture.h"
#include "scene/material.h"
#include "scene/sharedtable.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace Bundled {

/// The pictures that materials name, each read once. [gl-current]
class TextureStore {
public:
    /// The material's picture, read now when it is new. Null without one, and for one that can't be
    /// read.
    const GpuTexture* load(const Material& material);
    /// The same among those that were read.
    [[nodiscard]] const GpuTexture* find(const Material& material) const;
    void dropUnused(const SharedTable<Material>& materials);

    /// Pictures that could not be read, each told once; empties the list.
    std::vector<std::string> takeErrors();

private:
    std::unordered_map<std::string, GpuTexture> textures;
    std::vector<std::string> errors;
};

} // namespace Bundled
