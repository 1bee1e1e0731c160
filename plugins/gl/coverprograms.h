#pragma once

#include "gl/frame.h"
#include "gl/gputexture.h"
#include "gl/shaderprogram.h"

namespace Bundled {

/// What shows which pixels a surface covers, whatever its colours: a program for surfaces without
/// holes, and its like for those whose picture has holes, as software renderers read pictures even
/// where a branch says not to. [gl-current]
class CoverPrograms {
public:
    struct Sources {
        const char* name;
        const char* vertex;
        const char* whole;
        const char* withHoles;
    };

    explicit CoverPrograms(const Sources& programSources) : sources(programSources) {}

    /// At the beginning of each pass; texture unit 0 is active from then on.
    void begin(const Frame& newFrame);
    /// Puts into use what goes with this picture's holes; null for none.
    void use(const GpuTexture* holes);

private:
    Sources sources;
    const Frame* frame = nullptr;
    const ShaderProgram* used = nullptr;
    ShaderProgram whole;
    ShaderProgram withHoles;
};

} // namespace Bundled
