#pragma once

#include "modeldata.h"

#include <string>

struct aiScene;

/// Makes a model of an imported scene. `path` is the file that it was read from; textures are
/// looked for beside it. `isGltf`: the file is of glTF, which has conventions of its own. Throws
/// std::runtime_error when there is nothing in the scene.
[[nodiscard]] ModelData readScene(const aiScene& scene, const std::string& path, bool isGltf);

/// Reads a model file. Throws std::runtime_error with the reason, one line without the path, when
/// it can't be read. A damaged file may crash the import library or keep it busy for ever: call
/// this in a process that may be lost.
[[nodiscard]] ModelData readModelFile(const std::string& path);
