#include "viewportlist.h"

#include "vlviewerdelegatehost.h"
#include "vlviewporthost.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace ViewerAPI {

ViewportList::~ViewportList() {
    clear();
}

void ViewportList::addViewport(VlViewportHostStruct* viewport, const std::string& name) {
    if (!viewport) {
        return;
    }
    const auto found = std::find(viewports.begin(), viewports.end(), viewport);
    viewportIndices[name] = static_cast<std::uint32_t>(found - viewports.begin());
    if (found == viewports.end()) {
        viewports.push_back(viewport);
    }
}

VlViewportHostStruct* ViewportList::getViewport(const std::string& name) const {
    const auto found = viewportIndices.find(name);
    return found == viewportIndices.end() ? nullptr : viewports[found->second];
}

VlViewportHostStruct* ViewportList::getViewportByIndex(std::uint32_t index) const {
    return index < viewports.size() ? viewports[index] : nullptr;
}

const char* ViewportList::getViewportName(std::uint32_t index) const {
    const auto found = std::find_if(viewportIndices.begin(), viewportIndices.end(),
                                    [&](const auto& entry) { return entry.second == index; });
    return found == viewportIndices.end() ? "" : found->first.c_str();
}

std::uint32_t ViewportList::getNumberOfViewports() const {
    return static_cast<std::uint32_t>(viewports.size());
}

bool ViewportList::contains(const VlViewportHostStruct* viewport) const {
    return std::ranges::find(viewports, viewport) != viewports.end();
}

void ViewportList::removeViewport(const std::string& name) {
    const auto found = viewportIndices.find(name);
    if (found != viewportIndices.end()) {
        removeViewportByIndex(found->second);
    }
}

void ViewportList::removeViewportByIndex(std::uint32_t index) {
    if (index >= viewports.size()) {
        return;
    }
    const std::unique_ptr<VlViewportHostStruct, RetireHostObject> viewport(viewports[index]);
    viewports.erase(viewports.begin() + static_cast<std::ptrdiff_t>(index));
    for (auto entry = viewportIndices.begin(); entry != viewportIndices.end();) {
        if (entry->second == index) {
            entry = viewportIndices.erase(entry);
            continue;
        }
        if (entry->second > index) {
            --entry->second;
        }
        ++entry;
    }
    delegate_.lookThrough.forgetViewport(viewport.get());
    viewport->cleanup();
}

void ViewportList::clear() {
    viewportIndices.clear();
    for (VlViewportHostStruct* const viewport : std::exchange(viewports, {})) {
        HostObject::retire(viewport);
    }
}

} // namespace ViewerAPI
