#include "manipulator/liveedits.h"

#include "viewer_api/plugin/ViewerDelegateHost.h"
#include "viewer_api/plugin/ViewportHost.h"

#include <exception>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace Bundled {

namespace {

using ViewerPlugin::ManipulatorHost;
using ViewerPlugin::ViewerDelegateHost;
using VlAttribute::Attribute;
using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

ViewerDelegateHost delegateOf(const ManipulatorHost& manipulator) {
    return ViewerDelegateHost(
        ViewerPlugin::ViewportHost(manipulator.getViewport().host).getViewerDelegate().host);
}

/// What is there of an attribute, by name: itself, or the innermost group around its place. Where
/// there is nothing at all, any attribute of the location: only a final value ends a drag, and one
/// that changes nothing has nothing kept.
std::pair<std::string, Attribute> whatIsThere(const GroupAttribute& location, std::string name) {
    for (;;) {
        if (Attribute found = location.getChildByName(name)) {
            return {std::move(name), std::move(found)};
        }
        const std::size_t dot = name.rfind('.');
        if (dot == std::string::npos) {
            break;
        }
        name.resize(dot);
    }
    return location.getNumberOfChildren() > 0
               ? std::pair(std::string(location.getChildName(0)), location.getChildByIndex(0))
               : std::pair<std::string, Attribute>();
}

/// Calls for each, and raises what the first that failed has raised.
template <typename Elements, typename Call>
void each(Elements& elements, Call call) {
    std::exception_ptr first;
    for (auto& element : elements) {
        try {
            call(element);
        } catch (...) {
            if (!first) {
                first = std::current_exception();
            }
        }
    }
    if (first) {
        std::rethrow_exception(first);
    }
}

} // namespace

LiveEdits::LiveEdits(ManipulatorHost manipulator, const std::vector<Target>& targets)
    : host(manipulator) {
    const ViewerDelegateHost delegate = delegateOf(host);
    for (const Target& target : targets) {
        auto [name, original] =
            whatIsThere(delegate.getAttributes(target.path), target.attributeName);
        edits.push_back({target, std::move(name), std::move(original), target.atRest});
    }
    open(targets);
}

LiveEdits::~LiveEdits() {
    try {
        close([this] { takeBack(); });
    } catch (...) {
        // The application, which is told of the end, may fail; there is nobody to tell it to.
    }
}

void LiveEdits::open(const std::vector<Target>& targets) {
    std::unordered_set<std::string_view> known;
    paths.reserve(targets.size());
    try {
        for (const Target& target : targets) {
            if (known.insert(target.path).second) {
                host.openManipulationGroup(target.path);
                paths.push_back(target.path);
            }
        }
    } catch (...) {
        const std::exception_ptr failure = std::current_exception();
        try {
            closeGroups();
        } catch (...) {
            // What failed first is what is told.
        }
        std::rethrow_exception(failure);
    }
}

void LiveEdits::closeGroups() {
    each(paths, [this](const std::string& path) { host.closeManipulationGroup(path); });
}

bool LiveEdits::lookForLost() {
    const StringAttribute locations = host.getLocationPaths();
    std::unordered_set<std::string_view> active;
    for (const std::string_view path : locations.getNearestSample(0.0f)) {
        active.insert(path);
    }
    const ViewerDelegateHost delegate = delegateOf(host);
    bool isAnyLeft = false;
    for (Edit& edit : edits) {
        const std::string& path = edit.target.path;
        edit.isLost = edit.isLost || !active.contains(path) || !delegate.getAttributes(path);
        isAnyLeft = isAnyLeft || !edit.isLost;
    }
    return isAnyLeft;
}

bool LiveEdits::show(const std::vector<Attribute>& values) {
    const bool isAnyLeft = lookForLost();
    std::size_t next = 0;
    each(edits, [&](Edit& edit) {
        const Attribute& value = values[next++];
        if (!edit.isLost && value) {
            isChanged = true;
            edit.shown = value;
            host.setValue(edit.target.path, edit.target.attributeName, value, false);
        }
    });
    return isAnyLeft;
}

void LiveEdits::finish() {
    close([this] {
        if (!lookForLost()) {
            takeBack();
            return;
        }
        each(edits, [this](const Edit& edit) {
            if (!edit.isLost) {
                host.setValue(edit.target.path, edit.target.attributeName, edit.shown, true);
            }
        });
    });
}

void LiveEdits::takeBack() {
    each(edits, [this](const Edit& edit) {
        const auto& [path, name, atRest] = edit.target;
        if (edit.originalName != name) {
            host.setValue(path, name, atRest, false);
        }
        host.setValue(path, edit.originalName, edit.original, true);
    });
}

void LiveEdits::close(const std::function<void()>& last) {
    if (!std::exchange(isOpen, false)) {
        return;
    }
    std::exception_ptr failure;
    try {
        if (isChanged) {
            last();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    closeGroups();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace Bundled
