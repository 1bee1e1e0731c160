#pragma once

#include "VlScenelibEngine/Awaited.h"
#include "VlScenelibEngine/CookResult.h"

#include "cooknode.h"
#include "graphop.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

class Cooker;

/// Thrown where a cook ends because it waits.
struct CookWaits {
    std::shared_ptr<Awaited> awaited;
};

/// Where the inputs of an op stand at one path, found once for all cooks of siblings there.
class InputPlaces {
public:
    InputPlaces(Cooker& inputCooker, const GraphOp& reader, const CookNode& place)
        : cooker(inputCooker), op(reader), parent(place) {}

    /// The input's location at the path of `parent`, resolved; null when there is none.
    [[nodiscard]] CookNode* get(std::size_t input);

private:
    Cooker& cooker;
    const GraphOp& op;
    const CookNode& parent;
    std::vector<std::optional<CookNode*>> found;
};

/// What a cook made and what it read to make it.
struct CookOutcome {
    CookResult result = CookResult::nothing();
    /// For an alias; null when the input has nothing there.
    CookNode* target = nullptr;
    std::vector<std::string> argNames;
    std::vector<FarRead> farReads;
    bool allArgs = false;
    bool inputCount = false;
    std::uint8_t inputsRead = 0;
};

/// One call of OpType::cook: what stands behind its context.
class CookRun {
public:
    CookRun(Cooker& inputCooker, GraphOp& cookedOp, CookNode& cookedNode, InputPlaces& inputPlaces)
        : cooker(inputCooker), op(cookedOp), node(cookedNode), places(inputPlaces) {}

    /// Runs the cook. Exceptions become an "error" location, except CookWaits.
    [[nodiscard]] CookOutcome run();
    /// After run() has thrown CookWaits: what the cook has read until then, without a result.
    [[nodiscard]] CookOutcome takeReads() noexcept { return std::move(outcome); }

    [[nodiscard]] const VlAttribute::Attribute& readArg(std::string_view dotted);
    [[nodiscard]] const VlAttribute::GroupAttribute& readAllArgs();
    [[nodiscard]] std::size_t readNumberOfInputs();
    /// Resolved; null when there is none.
    [[nodiscard]] const CookNode* readInput(std::size_t input);
    [[nodiscard]] const CookNode* readInput(std::size_t input, std::string_view path);
    /// As the first, but with all that is below.
    [[nodiscard]] CookNode* readInputTree(std::size_t input);
    void await(const std::shared_ptr<Awaited>& awaited) const;

    Cooker& cooker;
    GraphOp& op;
    CookNode& node;

private:
    [[nodiscard]] CookNode* findInput(std::size_t input);
    [[nodiscard]] CookResult cookChecked();
    void findTarget();

    InputPlaces& places;
    CookOutcome outcome;
};

} // namespace VlScenelibEngine
