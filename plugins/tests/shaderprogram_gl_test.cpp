#include "gl/shaderprogram.h"

#include "gl/shaders.h"
#include "support/gltest.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using Bundled::ShaderProgram;
using testing::StartsWith;
using testing::ThrowsMessage;

constexpr const char* kWhite = "out vec4 color; void main() { color = vec4(1.0); }";

class ShaderProgramGL : public GLTest {
protected:
    ShaderProgramGL() : GLTest(16, 16) {}
};

TEST_F(ShaderProgramGL, failuresNameTheProgramAndHaveTheDriversWords) {
    const auto compile = [] { ShaderProgram("glow", Bundled::kFullscreenVertexShader, "vec4"); };
    EXPECT_THAT(compile,
                ThrowsMessage<std::runtime_error>(StartsWith("Shader \"glow\" did not compile: ")));
    const auto link = [] {
        ShaderProgram("glow", Bundled::kFullscreenVertexShader, "out vec4 color; // no main");
    };
    EXPECT_THAT(link,
                ThrowsMessage<std::runtime_error>(StartsWith("Shader \"glow\" did not link: ")));
}

TEST_F(ShaderProgramGL, uniformsThatTheLinkerDroppedArePassedOver) {
    ShaderProgram program("white", Bundled::kFullscreenVertexShader, kWhite);
    program.use();
    program.set("dropped", 1);
    program.set("dropped", Imath::V3f(1.0f));
    glUseProgram(0);
}

} // namespace
