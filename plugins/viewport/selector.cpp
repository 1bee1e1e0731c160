#include "viewport/selector.h"

#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewport/picks.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Bundled {

namespace {

/// Begins the names of generated locations.
constexpr std::string_view kGeneratedName = "/__VlOst_";

using PathSet = std::unordered_set<std::string>;

/// What a picked path is selected as, each once.
std::vector<std::string> selectable(std::vector<std::string> paths) {
    PathSet seen;
    std::erase_if(paths, [&seen](std::string& path) {
        path.resize(std::min(path.size(), path.find(kGeneratedName)));
        return !seen.insert(path).second;
    });
    return paths;
}

} // namespace

void Selector::select(const ViewerPlugin::PickRegion& region, Mode mode) const {
    const std::vector<std::string> picked = selectable(pickLocations(host, region, false));
    const ViewerPlugin::ViewerDelegateHost delegate(host.getViewerDelegate().host);
    std::vector<std::string> before;
    const VlAttribute::StringAttribute selected = delegate.getSelectedLocations();
    for (const std::string_view path : selected.getNearestSample(0.0f)) {
        before.emplace_back(path);
    }
    std::vector<std::string> after = picked;
    if (mode != Mode::Replace) {
        const PathSet had(before.begin(), before.end());
        const PathSet found(picked.begin(), picked.end());
        after = before;
        if (mode == Mode::Toggle) {
            std::erase_if(after, [&found](const auto& path) { return found.contains(path); });
        }
        std::copy_if(picked.begin(), picked.end(), std::back_inserter(after),
                     [&had](const auto& path) { return !had.contains(path); });
    }
    if (after != before) {
        delegate.selectLocations(after);
    }
}

} // namespace Bundled
