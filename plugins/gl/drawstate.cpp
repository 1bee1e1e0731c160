#include "gl/drawstate.h"

#include "gl/capabilityguard.h"

#include <cstddef>
#include <iterator>

namespace Bundled {

namespace {

constexpr GLenum kCapabilities[] = {GL_DEPTH_TEST, GL_BLEND,       GL_SAMPLE_ALPHA_TO_COVERAGE,
                                    GL_CULL_FACE,  GL_MULTISAMPLE, GL_DITHER};
constexpr GLenum kBlendFactors[] = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA,
                                    GL_BLEND_DST_ALPHA};

} // namespace

DrawState::DrawState(const Wanted& wanted) {
    for (std::size_t i = 0; i < std::size(kCapabilities); ++i) {
        enabled[i] = glIsEnabled(kCapabilities[i]) == GL_TRUE;
    }
    for (std::size_t i = 0; i < std::size(kBlendFactors); ++i) {
        glGetIntegerv(kBlendFactors[i], &blendFactors[i]);
    }
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrite);
    glGetBooleanv(GL_COLOR_WRITEMASK, colorWrite);
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunction);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray);
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);

    const bool on[] = {wanted.depthTest,   wanted.blend, wanted.alphaToCoverage, false,
                       wanted.multisample, wanted.dither};
    for (std::size_t i = 0; i < std::size(kCapabilities); ++i) {
        switchCapability(kCapabilities[i], on[i]);
    }
    glDepthMask(wanted.depthWrite ? GL_TRUE : GL_FALSE);
    const auto& [red, green, blue, alpha] = wanted.colorWrite;
    glColorMask(red, green, blue, alpha);
    glDepthFunc(GL_LEQUAL);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

DrawState::~DrawState() {
    for (std::size_t i = 0; i < std::size(kCapabilities); ++i) {
        switchCapability(kCapabilities[i], enabled[i]);
    }
    glDepthMask(depthWrite);
    glColorMask(colorWrite[0], colorWrite[1], colorWrite[2], colorWrite[3]);
    glDepthFunc(static_cast<GLenum>(depthFunction));
    glBlendFuncSeparate(static_cast<GLenum>(blendFactors[0]), static_cast<GLenum>(blendFactors[1]),
                        static_cast<GLenum>(blendFactors[2]), static_cast<GLenum>(blendFactors[3]));
    glBindVertexArray(static_cast<GLuint>(vertexArray));
    glUseProgram(static_cast<GLuint>(program));
}

} // namespace Bundled
