#include "cookrun.h"

#include "cooker.h"
#include "locationpath.h"

#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/StringAttribute.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace VlScenelibEngine {

namespace {

using VlAttribute::GroupAttribute;
using VlAttribute::StringAttribute;

CookResult errorLocation(const std::string& message) {
    static const StringAttribute type("error");
    return {GroupAttribute{{"type", type}, {"errorMessage", StringAttribute(message)}}};
}

} // namespace

CookNode* InputPlaces::get(std::size_t input) {
    if (input >= found.size()) {
        found.resize(std::max(op.inputs.size(), input + 1));
    }
    std::optional<CookNode*>& place = found[input];
    if (!place) {
        GraphOp* inputOp = op.getInput(input);
        if (!inputOp) {
            place = nullptr;
        } else if (!parent.parent) {
            place = inputOp->top.get();
        } else {
            place = cooker.locate(*inputOp, parent.getLocationNames()).node;
        }
    }
    return *place;
}

CookOutcome CookRun::run() {
    outcome.result = cookChecked();
    if (outcome.result.kind == CookResult::Kind::SameAsInput) {
        findTarget();
        const bool isNothing = !outcome.target || !outcome.target->resolve();
        if (isNothing && node.parent->parent) {
            outcome.result = errorLocation("Op type \"" + op.typeName +
                                           "\" passes on a location that its input does not have");
        }
    } else if (outcome.result.kind == CookResult::Kind::Nothing && node.parent->parent) {
        outcome.result =
            errorLocation("Op type \"" + op.typeName + "\" cooked nothing below the root");
    }
    if (outcome.result.kind == CookResult::Kind::Location && !outcome.result.attrs) {
        outcome.result.attrs = GroupAttribute::Empty();
    }
    return std::move(outcome);
}

void CookRun::findTarget() {
    // Once there is a target, the alias says by itself what it depends on.
    const std::uint8_t inputsRead = outcome.inputsRead;
    outcome.inputsRead =
        static_cast<std::uint8_t>(inputsRead | CookNode::inputBit(outcome.result.input));
    outcome.target = findInput(outcome.result.input);
    outcome.inputsRead = inputsRead;
}

CookResult CookRun::cookChecked() {
    try {
        if (!op.type) {
            throw std::runtime_error("Unknown op type \"" + op.typeName + "\"");
        }
        CookContext context(*this);
        return op.type->cook(context);
    } catch (const CookWaits&) {
        throw;
    } catch (const std::exception& error) {
        return errorLocation(error.what());
    } catch (...) {
        return errorLocation("Unknown C++ exception");
    }
}

const VlAttribute::Attribute& CookRun::readArg(std::string_view dotted) {
    outcome.argNames.emplace_back(dotted);
    return op.args.borrowChildByName(dotted);
}

const GroupAttribute& CookRun::readAllArgs() {
    outcome.allArgs = true;
    return op.args;
}

std::size_t CookRun::readNumberOfInputs() {
    outcome.inputCount = true;
    return op.inputs.size();
}

CookNode* CookRun::findInput(std::size_t input) {
    CookNode* place = places.get(input);
    return place ? cooker.cookedChild(*place, node.getName(), node.index) : nullptr;
}

const CookNode* CookRun::readInput(std::size_t input) {
    outcome.inputsRead = static_cast<std::uint8_t>(outcome.inputsRead | CookNode::inputBit(input));
    const CookNode* found = findInput(input);
    return found ? found->resolve() : nullptr;
}

const CookNode* CookRun::readInput(std::size_t input, std::string_view path) {
    GraphOp* inputOp = op.getInput(input);
    if (!inputOp) {
        // Connecting it later changes the input; which is what this read depends on.
        outcome.inputsRead =
            static_cast<std::uint8_t>(outcome.inputsRead | CookNode::inputBit(input));
        return nullptr;
    }
    outcome.inputsRead = static_cast<std::uint8_t>(outcome.inputsRead | CookNode::inputBit(input));
    const std::optional<LocationNames> names = splitPath(path);
    if (!names) {
        return nullptr;
    }
    outcome.farReads.push_back({inputOp, std::string(path)});
    const Cooker::Place place = cooker.locate(*inputOp, *names);
    if (!place.node && place.depth > 0) {
        // It comes into being when the list of the last ancestor that exists changes.
        outcome.farReads.push_back({inputOp, joinPath(*names, place.depth)});
    } else if (!place.node) {
        outcome.farReads.push_back({inputOp, "/root"});
    }
    return place.node;
}

CookNode* CookRun::readInputTree(std::size_t input) {
    outcome.inputsRead = static_cast<std::uint8_t>(outcome.inputsRead | CookNode::inputBit(input));
    if (GraphOp* inputOp = op.getInput(input)) {
        outcome.farReads.push_back({inputOp, joinPath(node.getLocationNames()), true});
    }
    CookNode* found = findInput(input);
    return found ? found->resolve() : nullptr;
}

void CookRun::await(const std::shared_ptr<Awaited>& awaited) const {
    if (awaited->notifyWhenThere(cooker.getArrivalNotice())) {
        throw CookWaits{awaited};
    }
}

// ---- the context's face

const GroupAttribute& InputLocation::getAttrs() const noexcept {
    static const GroupAttribute none;
    return node ? node->attrs : none;
}

const ChildList::Ptr& InputLocation::getChildren() const noexcept {
    static const ChildList::Ptr none;
    return node ? node->children : none;
}

InputTree::InputTree(Cooker& treeCooker, CookNode* cookedNode) noexcept
    : InputLocation(cookedNode), cooker(treeCooker), node(cookedNode) {}

InputTree InputTree::getChild(std::size_t index) const {
    CookNode* child = cooker.cookedChild(*node, node->children->getName(index), index);
    return {cooker, child->resolve()};
}

bool CookContext::isRoot() const noexcept {
    return !run.node.parent->parent;
}

std::string_view CookContext::getName() const noexcept {
    return run.node.getName();
}

std::string CookContext::getPath() const {
    return joinPath(run.node.getLocationNames());
}

const ChildContexts* CookContext::getContexts() const noexcept {
    return run.node.parent->children->getContexts().get();
}

std::size_t CookContext::getChildIndex() const noexcept {
    return run.node.index;
}

VlAttribute::Attribute CookContext::getArg(std::string_view dotted) {
    return run.readArg(dotted);
}

const GroupAttribute& CookContext::getArgs() {
    return run.readAllArgs();
}

float CookContext::getCurrentTime() {
    return VlAttribute::FloatAttribute(getArg("system.timeSlice.currentTime")).getValue(0.0F);
}

std::size_t CookContext::getNumberOfInputs() {
    return run.readNumberOfInputs();
}

InputLocation CookContext::getInput(std::size_t inputIndex) {
    return InputLocation(run.readInput(inputIndex));
}

InputTree CookContext::getInputTree(std::size_t inputIndex) {
    return {run.cooker, run.readInputTree(inputIndex)};
}

InputLocation CookContext::getInput(std::size_t inputIndex, std::string_view path) {
    return InputLocation(run.readInput(inputIndex, path));
}

void CookContext::await(const std::shared_ptr<Awaited>& awaited) {
    run.await(awaited);
}

} // namespace VlScenelibEngine
