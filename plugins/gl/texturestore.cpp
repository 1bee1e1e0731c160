#include "gl/texturestore.h"

#include "gl/picturefile.h"

#include <string_view>
#include <unordered_set>
#include <utility>

namespace Bundled {

const GpuTexture* TextureStore::load(const Material& material) {
    const std::string& name = material.texture;
    if (name.empty()) {
        return nullptr;
    }
    auto found = textures.find(name);
    if (found == textures.end()) {
        const auto content = material.textureData.getSample(0);
        found =
            textures
                .emplace(name, content.empty() ? GpuTexture(name)
                                               : GpuTexture(readPictureContent(content[0], name)))
                .first;
        if (!found->second) {
            errors.push_back(found->second.getError());
        }
    }
    return found->second ? &found->second : nullptr;
}

const GpuTexture* TextureStore::find(const Material& material) const {
    const auto found = textures.find(material.texture);
    return found != textures.end() && found->second ? &found->second : nullptr;
}

void TextureStore::dropUnused(const SharedTable<Material>& materials) {
    std::unordered_set<std::string_view> used;
    materials.forEach(
        [&used](std::uint64_t, const Material& material) { used.insert(material.texture); });
    std::erase_if(textures, [&used](const auto& entry) { return !used.contains(entry.first); });
}

std::vector<std::string> TextureStore::takeErrors() {
    return std::exchange(errors, {});
}

} // namespace Bundled
