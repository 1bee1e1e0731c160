#include "VlWindowSystem/WindowSystem.h"

#include "eglwindowsystem.h"

namespace {

WindowSystem* systemInUse = nullptr; // null: the EGL one

} // namespace

WindowSystem& windowSystem() {
    return systemInUse ? *systemInUse : EglWindowSystem::get();
}

void setWindowSystem(WindowSystem* system) noexcept {
    systemInUse = system;
}
