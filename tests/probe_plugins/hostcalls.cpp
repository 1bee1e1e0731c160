#include "hostcalls.h"

#include "probe.h"

#include "support/attributetext.h"

#include "VlAttribute/DoubleAttribute.h"
#include "viewer_api/plugin/HostSuites.h"

#include <sstream>
#include <stdexcept>

namespace probe {

using ViewerPlugin::requireHostSuite;

Arguments::Arguments(std::vector<std::string> theWords) : words(std::move(theWords)) {}

const char* Arguments::text(std::size_t index) const {
    if (index >= words.size()) {
        throw std::runtime_error("Probe: a call lacks argument " + std::to_string(index));
    }
    const std::string& word = words[index];
    return word == "(null)" ? nullptr : word == "\"\"" ? "" : word.c_str();
}

int Arguments::number(std::size_t index) const {
    return std::stoi(text(index));
}

int Arguments::number(std::size_t index, int otherwise) const {
    return index < words.size() ? number(index) : otherwise;
}

double Arguments::real(std::size_t index) const {
    return std::stod(text(index));
}

std::uint64_t Arguments::id(std::size_t index) const {
    return std::stoull(text(index));
}

void* Arguments::address(std::size_t index) const {
    return reinterpret_cast<void*>(std::stoull(words.at(index), nullptr, 16));
}

std::string Arguments::rest(std::size_t index) const {
    std::string result;
    for (std::size_t i = index; i < words.size(); ++i) {
        result += (i == index ? "" : " ") + words[i];
    }
    return result;
}

const char** Arguments::paths(std::size_t first) {
    if (isNoList(first)) {
        return nullptr;
    }
    pointers.clear();
    for (std::size_t i = first; i < words.size(); ++i) {
        pointers.push_back(text(i));
    }
    return pointers.data();
}

bool Arguments::isNoList(std::size_t first) const {
    return words.size() > first && words[first] == "(nolist)";
}

std::uint32_t Arguments::count(std::size_t first) const {
    if (isNoList(first)) {
        return static_cast<std::uint32_t>(number(first + 1));
    }
    return static_cast<std::uint32_t>(words.size() > first ? words.size() - first : 0);
}

std::string textOfResult(VlAttributeStruct* stolen) {
    return ViewerAPI::test::textOf(VlAttribute::Attribute::CreateAndSteal(stolen));
}

std::string textOfResult(const char* text) {
    return text ? text : "null pointer";
}

std::string textOfMatrix(const double* matrix) {
    if (!matrix) {
        return "null pointer";
    }
    return ViewerAPI::test::textOf(
        VlAttribute::DoubleAttribute(std::span<const double>(matrix, 16), 4));
}

namespace {

void* delegateOfViewport(void* viewport) {
    FoundObject found;
    requireHostSuite<ViewportHostSuite>().getViewerDelegate(viewport, &found.host, &found.instance,
                                                            &found.suite);
    return found.host;
}

/// Those that follow answer null when the probe has none.
void* manipulatorOf(const Probe& probe) {
    FoundObject found;
    switch (probe.kind) {
    case Kind::Manipulator:
        return probe.host;
    case Kind::Handle:
        requireHostSuite<ManipulatorHandleHostSuite>().getManipulator(
            probe.host, &found.host, &found.instance, &found.suite);
        return found.host;
    case Kind::Viewport:
        requireHostSuite<ViewportHostSuite>().getActiveManipulatorByIndex(
            probe.host, 0, &found.host, &found.instance, &found.suite);
        return found.host;
    default:
        return nullptr;
    }
}

void* handleOf(const Probe& probe, const std::string& name) {
    if (probe.kind == Kind::Handle) {
        return probe.host;
    }
    FoundObject found;
    void* manipulator = manipulatorOf(probe);
    if (!manipulator) {
        return nullptr;
    }
    const auto& suite = requireHostSuite<ManipulatorHostSuite>();
    if (name.empty()) {
        suite.getManipulatorHandleByIndex(manipulator, 0, &found.host, &found.instance,
                                          &found.suite);
    } else {
        suite.getManipulatorHandle(manipulator, name.c_str(), &found.host, &found.instance,
                                   &found.suite);
    }
    return found.host;
}

void* viewportOf(const Probe& probe) {
    FoundObject found;
    switch (probe.kind) {
    case Kind::Viewport:
        return probe.host;
    case Kind::Layer:
        requireHostSuite<ViewportLayerHostSuite>().getViewport(probe.host, &found.host,
                                                               &found.instance, &found.suite);
        return found.host;
    case Kind::Camera:
        requireHostSuite<ViewportCameraHostSuite>().getViewport(probe.host, &found.host,
                                                                &found.instance, &found.suite);
        return found.host;
    case Kind::Manipulator:
    case Kind::Handle:
        requireHostSuite<ManipulatorHostSuite>().getViewport(manipulatorOf(probe), &found.host,
                                                             &found.instance, &found.suite);
        return found.host;
    default:
        return nullptr;
    }
}

void* delegateOf(const Probe& probe) {
    FoundObject found;
    switch (probe.kind) {
    case Kind::Delegate:
        return probe.host;
    case Kind::Component:
        requireHostSuite<ViewerDelegateComponentHostSuite>().getViewerDelegate(
            probe.host, &found.host, &found.instance, &found.suite);
        return found.host;
    default:
        void* viewport = viewportOf(probe);
        return viewport ? delegateOfViewport(viewport) : nullptr;
    }
}

void* itself(const Probe& probe, Kind kind) {
    return probe.kind == kind ? probe.host : nullptr;
}

} // namespace

std::string callHost(const Probe& probe, const std::string& line) {
    std::istringstream in(line);
    std::string call;
    in >> call;
    std::vector<std::string> words;
    for (std::string word; in >> word;) {
        words.push_back(word);
    }
    const std::size_t dot = call.find('.');
    const std::string where = call.substr(0, dot);
    const std::size_t colon = where.find(':');
    const std::string object = where.substr(0, colon);
    const std::string name = colon == std::string::npos ? "" : where.substr(colon + 1);
    const std::string entry = dot == std::string::npos ? "" : call.substr(dot + 1);

    void* host = nullptr;
    const HostCalls* calls = nullptr;
    if (object == "delegate" || object == "delegate2") {
        host = delegateOf(probe);
        calls = object == "delegate" ? &delegateCalls() : &delegateCalls2();
    } else if (object == "component") {
        host = itself(probe, Kind::Component);
        calls = &componentCalls();
    } else if (object == "viewport") {
        host = viewportOf(probe);
        calls = &viewportCalls();
    } else if (object == "layer") {
        host = itself(probe, Kind::Layer);
        calls = &layerCalls();
    } else if (object == "camera") {
        host = itself(probe, Kind::Camera);
        calls = &cameraCalls();
    } else if (object == "manipulator") {
        host = manipulatorOf(probe);
        calls = &manipulatorCalls();
    } else if (object == "handle") {
        host = handleOf(probe, name);
        calls = &handleCalls();
    }
    if (!host) {
        throw std::runtime_error("Probe: there is no '" + object + "' to call");
    }
    const auto found = calls->find(entry);
    if (found == calls->end()) {
        throw std::runtime_error("Probe: '" + object + "' has no entry '" + entry + "'");
    }
    Arguments arguments(std::move(words));
    return found->second(host, arguments);
}

} // namespace probe
