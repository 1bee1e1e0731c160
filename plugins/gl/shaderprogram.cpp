#include "gl/shaderprogram.h"

#include <stdexcept>

namespace Bundled {

namespace {

/// Deletes a shader at the end of linking, whether or not it succeeded.
class Shader {
public:
    Shader(const std::string& programName, GLenum stage, const char* source)
        : name(glCreateShader(stage)) {
        const char* parts[] = {"#version 400\n", source};
        glShaderSource(name, 2, parts, nullptr);
        glCompileShader(name);
        GLint compiled = 0;
        glGetShaderiv(name, GL_COMPILE_STATUS, &compiled);
        if (!compiled) {
            std::string log(4096, '\0');
            GLsizei length = 0;
            glGetShaderInfoLog(name, static_cast<GLsizei>(log.size()), &length, log.data());
            log.resize(static_cast<std::size_t>(length));
            glDeleteShader(name);
            throw std::runtime_error("Shader \"" + programName + "\" did not compile: " + log);
        }
    }
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;
    ~Shader() { glDeleteShader(name); }

    const GLuint name;
};

} // namespace

ShaderProgram::ShaderProgram(const std::string& name, const char* vertexSource,
                             const char* fragmentSource) {
    const Shader vertex(name, GL_VERTEX_SHADER, vertexSource);
    const Shader fragment(name, GL_FRAGMENT_SHADER, fragmentSource);
    program.create();
    glAttachShader(program.get(), vertex.name);
    glAttachShader(program.get(), fragment.name);
    glLinkProgram(program.get());
    GLint linked = 0;
    glGetProgramiv(program.get(), GL_LINK_STATUS, &linked);
    if (!linked) {
        std::string log(4096, '\0');
        GLsizei length = 0;
        glGetProgramInfoLog(program.get(), static_cast<GLsizei>(log.size()), &length, log.data());
        log.resize(static_cast<std::size_t>(length));
        throw std::runtime_error("Shader \"" + name + "\" did not link: " + log);
    }
}

void ShaderProgram::set(const char* uniform, int value) {
    glUniform1i(location(uniform), value);
}

void ShaderProgram::set(const char* uniform, float value) {
    glUniform1f(location(uniform), value);
}

void ShaderProgram::set(const char* uniform, const Imath::V2f& value) {
    glUniform2f(location(uniform), value.x, value.y);
}

void ShaderProgram::set(const char* uniform, const Imath::V2i& value) {
    glUniform2i(location(uniform), value.x, value.y);
}

void ShaderProgram::set(const char* uniform, const Imath::V3f& value) {
    glUniform3f(location(uniform), value.x, value.y, value.z);
}

void ShaderProgram::set(const char* uniform, const std::array<float, 4>& value) {
    glUniform4fv(location(uniform), 1, value.data());
}

void ShaderProgram::set(const char* uniform, const Imath::M44f& value) {
    glUniformMatrix4fv(location(uniform), 1, GL_FALSE, value.getValue());
}

GLint ShaderProgram::location(const char* uniform) {
    const auto found = locations.find(std::string_view(uniform));
    if (found != locations.end()) {
        return found->second;
    }
    return locations[uniform] = glGetUniformLocation(program.get(), uniform);
}

} // namespace Bundled
