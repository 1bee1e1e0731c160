#pragma once

#include "viewer_api/Handles.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// How the calls that a test writes as text reach the tables of the host.
namespace probe {

/// The words of a call behind its entry. `(null)` is a null pointer and `""` the empty text, also
/// in a list of paths; `(nolist) 3` is a null pointer in place of a list of three.
class Arguments {
public:
    explicit Arguments(std::vector<std::string> words);

    /// Throws std::runtime_error when there are fewer words. May be null.
    [[nodiscard]] const char* text(std::size_t index) const;
    [[nodiscard]] int number(std::size_t index) const;
    /// The number there, or another when there are fewer words.
    [[nodiscard]] int number(std::size_t index, int otherwise) const;
    [[nodiscard]] double real(std::size_t index) const;
    [[nodiscard]] std::uint64_t id(std::size_t index) const;
    /// An address, as "%p" prints one.
    [[nodiscard]] void* address(std::size_t index) const;
    /// All words from that one on, with spaces between.
    [[nodiscard]] std::string rest(std::size_t index) const;

    /// The words from that one on as a list of paths.
    [[nodiscard]] const char** paths(std::size_t first = 0);
    [[nodiscard]] std::uint32_t count(std::size_t first = 0) const;

private:
    [[nodiscard]] bool isNoList(std::size_t first) const;

    std::vector<std::string> words;
    std::vector<const char*> pointers;
};

using HostCall = std::function<std::string(void* host, Arguments&)>;
using HostCalls = std::map<std::string, HostCall>;

const HostCalls& delegateCalls();
/// Those of version 2 of the suite, where they differ; the others through the table of version 2.
const HostCalls& delegateCalls2();
const HostCalls& componentCalls();
const HostCalls& viewportCalls();
const HostCalls& layerCalls();
const HostCalls& cameraCalls();
const HostCalls& manipulatorCalls();
const HostCalls& handleCalls();

/// Takes over the handle.
std::string textOfResult(VlAttributeStruct* stolen);
std::string textOfResult(const char* text);
std::string textOfMatrix(const double* matrix);

/// The three values that name an object; `take` is called with places for them.
struct FoundObject {
    void* host = &host; // whoever finds nothing must overwrite it
    void* instance = &instance;
    const void* suite = &suite;

    /// "found", "null", or "partly" when the three don't agree.
    [[nodiscard]] std::string text() const {
        const int parts = (host ? 1 : 0) + (instance ? 1 : 0) + (suite ? 1 : 0);
        return parts == 3 ? "found" : parts == 0 ? "null" : "partly";
    }
};

} // namespace probe
