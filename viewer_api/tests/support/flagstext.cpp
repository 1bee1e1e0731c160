#include "support/flagstext.h"

#include "viewer_api/ViewerLocationEvent.h"

#include <utility>

namespace ViewerAPI::test {

std::string textOfFlags(std::uint32_t flags) {
    static const std::pair<std::uint32_t, const char*> kNames[] = {
        {kVlLocationEventXformAbsolute, "absolute"},
        {kVlLocationEventHidden, "hidden"},
        {kVlLocationEventLeaf, "leaf"},
        {kVlLocationEventProxy, "proxy"},
        {kVlLocationEventRemoved, "removed"},
        {kVlLocationEventAttributesChanged, "attributesChanged"},
        {kVlLocationEventXformChanged, "xformChanged"},
        {kVlLocationEventHiddenChanged, "hiddenChanged"},
        {kVlLocationEventLeafChanged, "leafChanged"}};
    std::string text;
    for (const auto& [bit, name] : kNames) {
        if ((flags & bit) != 0) {
            text += (text.empty() ? "" : " ") + std::string(name);
            flags &= ~bit;
        }
    }
    return flags == 0 ? text : text + " unknown bits " + std::to_string(flags);
}

} // namespace ViewerAPI::test
