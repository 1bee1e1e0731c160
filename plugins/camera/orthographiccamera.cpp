#include "camera/orthographiccamera.h"

VL_REGISTER_PLUGIN(Bundled::OrthographicCamera, "OrthographicCamera");
