#include "testops.h"

#include "VlScenelibEngine/OpType.h"

#include "VlAttribute/GroupBuilder.h"

#include <algorithm>
#include <stdexcept>

using namespace VlScenelibEngine;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::StringAttribute;

namespace {

class Stamp final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        GroupBuilder attrs;
        attrs.update(input.getAttrs());
        attrs.set("stamp", context.getArg("stamp"));
        if (context.getName() == "a") {
            attrs.set("mark", context.getArg("mark"));
        }
        return {attrs.build(), input.getChildren()};
    }
};

class Filter final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        if (!input.getChildren()) {
            return {input.getAttrs()};
        }
        const std::string hidden = StringAttribute(context.getArg("hide")).getValue();
        std::vector<std::string> names;
        for (std::size_t i = 0; i < input.getChildren()->size(); ++i) {
            if (input.getChildren()->getName(i) != hidden) {
                names.emplace_back(input.getChildren()->getName(i));
            }
        }
        return {input.getAttrs(), ChildList::create(StringAttribute(names))};
    }
};

class Far final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (!context.isRoot()) {
            return CookResult::sameAsInput(0);
        }
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        const std::string path = StringAttribute(context.getArg("path")).getValue();
        GroupBuilder attrs;
        attrs.update(input.getAttrs());
        attrs.set("far", context.getInput(0, path).getAttrs());
        return {attrs.build(), input.getChildren()};
    }
};

class Throw final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (context.getName() == StringAttribute(context.getArg("name")).getValue()) {
            throw std::runtime_error("thrown at " + context.getPath());
        }
        const InputLocation input = context.getInput(0);
        if (!input.exists()) {
            return CookResult::nothing();
        }
        return {input.getAttrs(), input.getChildren()};
    }
};

class Swap final : public OpType {
    [[nodiscard]] CookResult cook(CookContext& context) const override {
        if (!context.isRoot() && context.getName() < "b" && context.getInput(0).exists()) {
            return CookResult::sameAsInput(0);
        }
        std::vector<std::string> names;
        GroupAttribute attrs = GroupAttribute::Empty();
        for (std::size_t i = 0; i < 2; ++i) {
            const InputLocation input = context.getInput(i);
            if (input.exists()) {
                attrs = input.getAttrs();
            }
            for (std::size_t j = 0; input.getChildren() && j < input.getChildren()->size(); ++j) {
                const std::string name(input.getChildren()->getName(j));
                if (std::find(names.begin(), names.end(), name) == names.end()) {
                    names.push_back(name);
                }
            }
        }
        return {attrs, ChildList::create(StringAttribute(names))};
    }
};

} // namespace

void registerTestOps() {
    registerOpType("Test.Stamp", std::make_shared<Stamp>());
    registerOpType("Test.Filter", std::make_shared<Filter>());
    registerOpType("Test.Far", std::make_shared<Far>());
    registerOpType("Test.Throw", std::make_shared<Throw>());
    registerOpType("Test.Swap", std::make_shared<Swap>());
}
