#include "VlAttribute/VlAttribute.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace VlAttribute;

/// What a builder should hold, in the plainest form: a list of children, each a number or a list.
struct Model {
    struct Child {
        std::string name;
        bool isInherit = true;
        std::optional<int> number;
        std::shared_ptr<Model> group;
    };
    std::vector<Child> children;

    Child* find(const std::string& name) {
        const auto found = std::ranges::find(children, name, &Child::name);
        return found == children.end() ? nullptr : &*found;
    }
    std::shared_ptr<Model> copy() const {
        auto result = std::make_shared<Model>(*this);
        for (Child& child : result->children) {
            if (child.group) {
                child.group = child.group->copy();
            }
        }
        return result;
    }
    void put(Child child) {
        if (child.group) {
            child.group = child.group->copy();
        }
        if (Child* mine = find(child.name)) {
            *mine = child;
        } else {
            children.push_back(child);
        }
    }
    void set(const std::string& dotted, Child child) {
        const std::size_t dot = dotted.find('.');
        if (dot == std::string::npos) {
            child.name = dotted;
            put(child);
            return;
        }
        const std::string name = dotted.substr(0, dot);
        if (!find(name) || !find(name)->group) {
            put(Child{name, true, {}, std::make_shared<Model>()});
        }
        find(name)->group->set(dotted.substr(dot + 1), child);
    }
    void del(const std::string& dotted) {
        const std::size_t dot = dotted.find('.');
        if (dot == std::string::npos) {
            std::erase_if(children, [&](const Child& child) { return child.name == dotted; });
        } else if (Child* child = find(dotted.substr(0, dot)); child && child->group) {
            child->group->del(dotted.substr(dot + 1));
        }
    }
    void deepUpdate(const Model& other) {
        for (const Child& child : other.children) {
            Child* mine = find(child.name);
            if (mine && mine->group && child.group) {
                mine->isInherit = child.isInherit;
                mine->group->deepUpdate(*child.group);
            } else {
                put(child);
            }
        }
    }
    std::string text() const {
        std::string result = "{";
        for (const Child& child : children) {
            result += child.name + (child.isInherit ? "=" : "!") +
                      (child.group ? child.group->text() : std::to_string(*child.number)) + " ";
        }
        return result + "}";
    }
};

std::string textOf(const GroupAttribute& group) {
    std::string result = "{";
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        const GroupAttribute child(group.getChildByIndex(i));
        result += std::string(group.getChildName(i)) + (group.isGroupInherit(i) ? "=" : "!") +
                  (child ? textOf(child)
                         : std::to_string(IntAttribute(group.getChildByIndex(i)).getValue())) +
                  " ";
    }
    return result + "}";
}

/// Every child must be found by its name, through the index or without.
bool findsItsChildren(const GroupAttribute& group) {
    for (std::int64_t i = 0; i < group.getNumberOfChildren(); ++i) {
        const GroupAttribute child(group.getChildByIndex(i));
        if (group.findChild(group.getChildName(i)) != i || (child && !findsItsChildren(child))) {
            return false;
        }
    }
    return true;
}

TEST(GroupBuilder, agreesWithAPlainModelOverRandomSequences) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        // Few names give many collisions, many names exercise the index.
        const unsigned nameCount = seed % 2 == 0 ? 4 : 60;
        const auto dotted = [&] {
            std::string name = "n" + std::to_string(random() % nameCount);
            for (auto depth = random() % 3; depth > 0; --depth) {
                name += ".n" + std::to_string(random() % nameCount);
            }
            return name;
        };
        GroupBuilder builder;
        Model model;
        std::vector<std::pair<GroupAttribute, std::shared_ptr<Model>>> built{
            {GroupAttribute::Empty(), std::make_shared<Model>()}};
        for (int step = 0; step < 1500; ++step) {
            const auto& [group, groupModel] = built[random() % built.size()];
            const bool isInherit = random() % 4 != 0;
            switch (random() % 12) {
            default: {
                const std::string name = dotted();
                const int number = static_cast<int>(random() % 100);
                builder.set(name, IntAttribute(number), isInherit);
                model.set(name, {{}, isInherit, number, nullptr});
                break;
            }
            case 0: {
                const std::string name = dotted();
                builder.set(name, group, isInherit);
                model.set(name, {{}, isInherit, {}, groupModel});
                break;
            }
            case 1:
            case 2:
            case 3: {
                const std::string name = dotted();
                step % 2 == 0 ? builder.del(name) : builder.set(name, Attribute());
                model.del(name);
                break;
            }
            case 4:
                builder.update(group);
                for (const Model::Child& child : groupModel->children) {
                    model.put(child);
                }
                break;
            case 5:
                builder.deepUpdate(group);
                model.deepUpdate(*groupModel);
                break;
            case 6: {
                const bool isKept = random() % 3 != 0;
                EXPECT_EQ(builder.isValid(), !model.children.empty());
                const GroupAttribute result =
                    builder.build(isKept ? BuildMode::KeepBuilder : BuildMode::Normal);
                ASSERT_EQ(textOf(result), model.text()) << "step " << step;
                ASSERT_TRUE(findsItsChildren(result)) << "step " << step;
                // Groups of groups of groups grow fast: small ones go on as arguments.
                if (model.text().size() < 2000) {
                    built.emplace_back(result, model.copy());
                }
                if (!isKept || model.text().size() > 20'000) {
                    builder = isKept ? GroupBuilder() : std::move(builder);
                    model = Model();
                }
                break;
            }
            }
        }
        EXPECT_EQ(textOf(builder.build()), model.text());
        // What was built earlier is as it was.
        for (const auto& [group, groupModel] : built) {
            ASSERT_EQ(textOf(group), groupModel->text());
        }
    }
}

} // namespace
