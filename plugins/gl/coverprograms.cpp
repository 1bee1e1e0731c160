#include "gl/coverprograms.h"

namespace Bundled {

void CoverPrograms::begin(const Frame& newFrame) {
    frame = &newFrame;
    used = nullptr;
    glActiveTexture(GL_TEXTURE0);
}

void CoverPrograms::use(const GpuTexture* holes) {
    ShaderProgram& program = holes ? withHoles : whole;
    if (&program != used) {
        if (!program) {
            program = ShaderProgram(sources.name, sources.vertex,
                                    holes ? sources.withHoles : sources.whole);
        }
        used = &program;
        program.use();
        program.set("worldToView", frame->worldToView);
        program.set("viewToClip", frame->viewToClip);
        program.set("surfaceTexture", 0);
    }
    glBindTexture(GL_TEXTURE_2D, holes ? holes->get() : 0);
}

} // namespace Bundled
