#include "gl/renderer.h"

#include <GL/glew.h>

#include <string_view>

namespace Bundled {

bool isSoftwareRenderer() {
    // All viewports of the process share one context.
    static const bool answer = [] {
        const auto* text = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
        const std::string_view renderer(text ? text : "");
        return renderer.find("llvmpipe") != std::string_view::npos ||
               renderer.find("softpipe") != std::string_view::npos;
    }();
    return answer;
}

} // namespace Bundled
