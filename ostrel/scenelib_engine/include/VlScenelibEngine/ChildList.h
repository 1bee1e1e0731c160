#pragma once

#include "VlAttribute/Attribute.h"
#include "VlAttribute/StringAttribute.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <cstddef>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace VlScenelibEngine {

/// What the cook of a location hands to the cooks of its children: one object for the whole list,
/// in which each child finds its own share by its index. An op type derives its own kind.
///
/// Immutable and read by many threads at once.
class ChildContexts {
public:
    ChildContexts() = default;
    virtual ~ChildContexts() = default;
    ChildContexts(const ChildContexts&) = delete;
    ChildContexts& operator=(const ChildContexts&) = delete;

    /// Whether the share of child `index` here equals that of child `otherIndex` in `other`, which
    /// has the same dynamic type. When their parent is cooked again, children that keep their name
    /// and their share are not.
    [[nodiscard]] virtual bool isSame(std::size_t index, const ChildContexts& other,
                                      std::size_t otherIndex) const = 0;

    /// The same question for a whole list that has kept its `count` names: the indices at which the
    /// shares differ, in any order, and perhaps more than once. Asks isSame() for each, which a
    /// kind that has shares for a few of many children can better.
    [[nodiscard]] virtual std::vector<std::size_t> findChanged(const ChildContexts& other,
                                                               std::size_t count) const;
};

/// Contexts that are one attribute per child.
class AttributeContexts final : public ChildContexts {
public:
    explicit AttributeContexts(std::vector<VlAttribute::Attribute> perChild)
        : attributes(std::move(perChild)) {}

    [[nodiscard]] const VlAttribute::Attribute& get(std::size_t index) const {
        return attributes.at(index);
    }
    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override;

private:
    std::vector<VlAttribute::Attribute> attributes;
};

/// The children of a location: their names in order, and what their cooks are given. Shared: alike
/// locations, in one op or in several, best share one list.
///
/// Immutable and read by many threads at once.
class ChildList : public boost::intrusive_ref_counter<ChildList, boost::thread_safe_counter> {
public:
    using Ptr = boost::intrusive_ptr<const ChildList>;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// Null when there are no names. Throws std::runtime_error when a name is empty, contains "/",
    /// or stands twice.
    [[nodiscard]] static Ptr create(VlAttribute::StringAttribute names,
                                    std::shared_ptr<const ChildContexts> contexts = nullptr);
    /// The same names with other contexts: for an op that keeps the children of its input. Shares
    /// the names, so that it takes no longer where there are many.
    [[nodiscard]] Ptr withContexts(std::shared_ptr<const ChildContexts> contexts) const;

    [[nodiscard]] std::size_t size() const noexcept { return names.size(); }
    [[nodiscard]] std::string_view getName(std::size_t index) const noexcept {
        return names[index];
    }
    /// The place of a name, or kNone. Constant time in long lists. A `hint` that is right saves
    /// the look-up.
    [[nodiscard]] std::size_t find(std::string_view name, std::size_t hint = kNone) const;
    [[nodiscard]] const VlAttribute::StringAttribute& getNames() const noexcept {
        return attribute;
    }
    [[nodiscard]] const std::shared_ptr<const ChildContexts>& getContexts() const noexcept {
        return contexts;
    }

private:
    using Places = std::unordered_map<std::string_view, std::size_t>;

    ChildList(VlAttribute::StringAttribute childNames,
              std::shared_ptr<const ChildContexts> childContexts,
              std::shared_ptr<const Places> namePlaces);

    /// Throws as create() does. Null for lists that are short enough to be searched.
    static std::shared_ptr<const Places> makePlaces(const VlAttribute::StringSample& names);

    VlAttribute::StringAttribute attribute;
    VlAttribute::StringSample names;
    std::shared_ptr<const ChildContexts> contexts;
    std::shared_ptr<const Places> places;
};

} // namespace VlScenelibEngine
