#pragma once

#include <cstdint>
#include <string>

namespace ViewerAPI::test {

/// The names of the set bits of a ViewerLocationEvent, such as "hidden leaf removed".
std::string textOfFlags(std::uint32_t locationEventFlags);

} // namespace ViewerAPI::test
