#include "scene/lightcone.h"

#include "scene/number.h"

namespace Bundled {

double lightConeAngle(const VlAttribute::GroupAttribute& light) {
    return number(light, "coneAngle").value_or(60.0);
}

} // namespace Bundled
