#include "camera/perspectivecamera.h"

VL_REGISTER_PLUGIN(Bundled::PerspectiveCamera, "PerspectiveCamera");
