#pragma once

#include "gl/glname.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Bundled {

/// A vertex and a fragment shader, linked. [gl-current]
class ShaderProgram {
public:
    ShaderProgram() = default;
    /// GLSL 4.00 without the version line. Throws std::runtime_error with `name` and the compiler's
    /// words.
    ShaderProgram(const std::string& name, const char* vertexSource, const char* fragmentSource);

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(program); }
    void use() const { glUseProgram(program.get()); }

    // Uniforms of the program in use; names that the linker dropped are passed over.
    void set(const char* uniform, int value);
    void set(const char* uniform, float value);
    void set(const char* uniform, const Imath::V2f& value);
    void set(const char* uniform, const Imath::V2i& value);
    void set(const char* uniform, const Imath::V3f& value);
    void set(const char* uniform, const std::array<float, 4>& value);
    /// Imath's row vectors become GLSL's column vectors: write `matrix * vector` there.
    void set(const char* uniform, const Imath::M44f& value);

private:
    GLint location(const char* uniform);

    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept {
            return std::hash<std::string_view>{}(name);
        }
    };

    GLProgram program;
    std::unordered_map<std::string, GLint, NameHash, std::equal_to<>> locations;
};

} // namespace Bundled
