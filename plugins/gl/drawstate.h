#pragma once

#include <GL/glew.h>

#include <array>

namespace Bundled {

/// The capabilities and masks that a pass of drawing needs; the ones before come back with its end,
/// so that layers don't depend on each other's order. [gl-current]
class DrawState {
public:
    struct Wanted {
        bool depthTest = true;
        bool depthWrite = true;
        /// Red, green, blue, alpha.
        std::array<bool, 4> colorWrite = {true, true, true, true};
        bool blend = false;
        bool alphaToCoverage = false;
        bool dither = true;
        bool multisample = true;
    };

    explicit DrawState(const Wanted& wanted);
    DrawState(const DrawState&) = delete;
    DrawState& operator=(const DrawState&) = delete;
    ~DrawState();

private:
    GLboolean depthWrite = GL_TRUE;
    GLboolean colorWrite[4] = {};
    GLint depthFunction = GL_LESS;
    GLint vertexArray = 0;
    GLint program = 0;
    GLint blendFactors[4] = {};
    bool enabled[6] = {};
};

} // namespace Bundled
