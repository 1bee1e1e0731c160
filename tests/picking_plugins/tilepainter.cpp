#include "tilepainter.h"

#include <GL/glew.h>

#include <stdexcept>
#include <string>

namespace {

constexpr const char* kVertexShader = R"(#version 400 compatibility
void main() { gl_Position = gl_Vertex; }
)";

constexpr const char* kFragmentShader = R"(#version 400 compatibility
uniform uint id;
out vec4 color;
void main() {
    color = vec4(id >> 24, id >> 16 & 0xFFu, id >> 8 & 0xFFu, id & 0xFFu) / 255.0;
}
)";

unsigned compile(unsigned type, const char* source) {
    const unsigned shader = glCreateShader(type);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    int isCompiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &isCompiled);
    if (!isCompiled) {
        char log[1024] = {};
        glGetShaderInfoLog(shader, sizeof log, nullptr, log);
        throw std::runtime_error(std::string("TilePainter: ") + log);
    }
    return shader;
}

} // namespace

TilePainter& TilePainter::instance() {
    static TilePainter painter;
    return painter;
}

bool TilePainter::prepare() {
    if (!glGetString(GL_VERSION)) {
        return false;
    }
    if (program == 0) {
        program = glCreateProgram();
        glAttachShader(program, compile(GL_VERTEX_SHADER, kVertexShader));
        glAttachShader(program, compile(GL_FRAGMENT_SHADER, kFragmentShader));
        glLinkProgram(program);
        colorUniform = glGetUniformLocation(program, "id");
    }
    return true;
}

void TilePainter::fill(int x, int y, int width, int height, float depth, std::uint32_t color,
                       int viewportWidth, int viewportHeight) {
    if (viewportWidth <= 0 || viewportHeight <= 0 || !prepare()) {
        return;
    }
    const auto toClip = [](int pixel, int size) {
        return 2.0F * static_cast<float>(pixel) / static_cast<float>(size) - 1.0F;
    };
    const float left = toClip(x, viewportWidth);
    const float right = toClip(x + width, viewportWidth);
    const float top = -toClip(y, viewportHeight);
    const float bottom = -toClip(y + height, viewportHeight);
    const float z = 2.0F * depth - 1.0F;
    glEnable(GL_DEPTH_TEST);
    glUseProgram(program);
    glUniform1ui(colorUniform, color);
    glBegin(GL_QUADS);
    glVertex3f(left, bottom, z);
    glVertex3f(right, bottom, z);
    glVertex3f(right, top, z);
    glVertex3f(left, top, z);
    glEnd();
    glUseProgram(0);
    glDisable(GL_DEPTH_TEST);
}
