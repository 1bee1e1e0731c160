#pragma once

#include "VlScenelibEngine/Awaited.h"
#include "VlScenelibEngine/ChildList.h"

#include "VlAttribute/GroupAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace VlScenelibEngine {

class Cooker;
class CookNode;
class CookRun;

/// A location of an input, as a cook reads it. Valid during that cook.
class InputLocation {
public:
    InputLocation() noexcept = default;
    explicit InputLocation(const CookNode* cookedNode) noexcept : node(cookedNode) {}

    [[nodiscard]] bool exists() const noexcept { return node != nullptr; }
    /// Null when the location does not exist.
    [[nodiscard]] const VlAttribute::GroupAttribute& getAttrs() const noexcept;
    /// Null when it has no children.
    [[nodiscard]] const ChildList::Ptr& getChildren() const noexcept;

private:
    const CookNode* node = nullptr;
};

/// A location of an input and all that is below it, as a cook reads it. Valid during that cook.
class InputTree : public InputLocation {
public:
    InputTree(Cooker& treeCooker, CookNode* cookedNode) noexcept;

    /// The child at a place of getChildren(). What has not been cooked is cooked here and now.
    [[nodiscard]] InputTree getChild(std::size_t index) const;

private:
    Cooker& cooker;
    CookNode* node;
};

/// What one cook may read, and by which the engine records what it did read: arguments, inputs, and
/// what its parent's cook handed down. A later commit runs the cook again exactly when one of these
/// has changed, so a cook must depend on nothing else, except on immutable data that it finds
/// through them (a file, by its path in the arguments).
///
/// Belongs to one call of `OpType::cook`.
class CookContext {
public:
    explicit CookContext(CookRun& cookRun) noexcept : run(cookRun) {}
    CookContext(const CookContext&) = delete;
    CookContext& operator=(const CookContext&) = delete;

    // ---- the location

    [[nodiscard]] bool isRoot() const noexcept;
    /// The location's name; "root" for the root.
    [[nodiscard]] std::string_view getName() const noexcept;
    /// "/root/...". Built on each call.
    [[nodiscard]] std::string getPath() const;

    // ---- what the parent's cook handed down

    /// The contexts that came with the child list in which this location stands. Null at the root,
    /// and when the parent gave none.
    [[nodiscard]] const ChildContexts* getContexts() const noexcept;
    /// The place of this location in that list: the index of its share of the contexts. Not to be
    /// used for anything else, as a location can move without being cooked again.
    [[nodiscard]] std::size_t getChildIndex() const noexcept;
    /// The contexts as the kind that this op's cooks give.
    template <typename Contexts>
    [[nodiscard]] const Contexts& getContextsAs() const {
        return static_cast<const Contexts&>(*getContexts());
    }

    // ---- arguments

    /// An argument by its dotted name; null when it is not there.
    [[nodiscard]] VlAttribute::Attribute getArg(std::string_view dotted);
    /// All of them. The cook then runs again when anything among them changes.
    [[nodiscard]] const VlAttribute::GroupAttribute& getArgs();
    /// The time in frames: the argument `system.timeSlice.currentTime`, 0 without one.
    [[nodiscard]] float getCurrentTime();

    // ---- inputs

    [[nodiscard]] std::size_t getNumberOfInputs();
    /// This location in an input. It does not exist in an input that is not connected.
    [[nodiscard]] InputLocation getInput(std::size_t inputIndex);
    /// This location in an input with all that is below it. The cook then runs again when anything
    /// there changes. It keeps one thread busy until all that it asks for is cooked, and commits
    /// wait for it: for small scenes.
    [[nodiscard]] InputTree getInputTree(std::size_t inputIndex);
    /// Any location of an input.
    [[nodiscard]] InputLocation getInput(std::size_t inputIndex, std::string_view path);

    // ---- what takes long

    /// Returns when that is there; ends this cook when it isn't, by an exception that cooks must
    /// let pass, and has it run again when it is. Until then, clients are not told of this location
    /// and of those whose cooks read it, or keep what they have been told; others are cooked.
    void await(const std::shared_ptr<Awaited>& awaited);

private:
    CookRun& run;
};

} // namespace VlScenelibEngine
