#include "VlScenelibEngine/ChildList.h"

#include <stdexcept>
#include <string>

namespace VlScenelibEngine {

namespace {

/// Up to here comparing one name after the other is quicker than hashing.
constexpr std::size_t kSearchedLength = 16;

void refuse(std::string_view name, const char* reason) {
    throw std::runtime_error("Child name \"" + std::string(name) + "\" " + reason);
}

} // namespace

std::vector<std::size_t> ChildContexts::findChanged(const ChildContexts& other,
                                                    std::size_t count) const {
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < count; ++i) {
        if (!isSame(i, other, i)) {
            changed.push_back(i);
        }
    }
    return changed;
}

bool AttributeContexts::isSame(std::size_t index, const ChildContexts& other,
                               std::size_t otherIndex) const {
    return get(index) == static_cast<const AttributeContexts&>(other).get(otherIndex);
}

ChildList::Ptr ChildList::create(VlAttribute::StringAttribute names,
                                 std::shared_ptr<const ChildContexts> contexts) {
    if (names.getNumberOfValues() == 0) {
        return nullptr;
    }
    std::shared_ptr<const Places> places = makePlaces(names.getNearestSample(0));
    return Ptr(new ChildList(std::move(names), std::move(contexts), std::move(places)));
}

ChildList::Ptr ChildList::withContexts(std::shared_ptr<const ChildContexts> otherContexts) const {
    return Ptr(new ChildList(attribute, std::move(otherContexts), places));
}

ChildList::ChildList(VlAttribute::StringAttribute childNames,
                     std::shared_ptr<const ChildContexts> childContexts,
                     std::shared_ptr<const Places> namePlaces)
    : attribute(std::move(childNames)), names(attribute.getNearestSample(0)),
      contexts(std::move(childContexts)), places(std::move(namePlaces)) {}

std::shared_ptr<const ChildList::Places>
ChildList::makePlaces(const VlAttribute::StringSample& names) {
    std::shared_ptr<Places> places;
    if (names.size() > kSearchedLength) {
        places = std::make_shared<Places>();
        places->reserve(names.size());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string_view name = names[i];
        if (name.empty()) {
            refuse(name, "is empty");
        }
        if (name.find('/') != std::string_view::npos) {
            refuse(name, "contains \"/\"");
        }
        bool isNew = true;
        if (places) {
            isNew = places->emplace(name, i).second;
        } else {
            for (std::size_t j = 0; j < i && isNew; ++j) {
                isNew = std::string_view(names[j]) != name;
            }
        }
        if (!isNew) {
            refuse(name, "stands twice");
        }
    }
    return places;
}

std::size_t ChildList::find(std::string_view name, std::size_t hint) const {
    if (hint < names.size() && names[hint] == name) {
        return hint;
    }
    if (places) {
        const auto found = places->find(name);
        return found == places->end() ? kNone : found->second;
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == name) {
            return i;
        }
    }
    return kNone;
}

} // namespace VlScenelibEngine
