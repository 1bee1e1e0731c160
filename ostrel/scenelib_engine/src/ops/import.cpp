#include "ops/import.h"

#include "ops/import/modelfile.h"
#include "ops/import/safename.h"

#include "VlAttribute/DoubleAttribute.h"
#include "VlAttribute/FloatAttribute.h"
#include "VlAttribute/GroupBuilder.h"
#include "VlAttribute/IntAttribute.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace VlScenelibEngine {

namespace {

using VlAttribute::Attribute;
using VlAttribute::DoubleAttribute;
using VlAttribute::FloatAttribute;
using VlAttribute::GroupAttribute;
using VlAttribute::GroupBuilder;
using VlAttribute::IntAttribute;
using VlAttribute::StringAttribute;

constexpr double kFramesPerSecond = 24;

// How frames become moments of the model.
struct Timing {
    int animation = 0;
    double framesPerSecond = kFramesPerSecond;

    friend bool operator==(const Timing&, const Timing&) = default;
};

class ImportContexts final : public ChildContexts {
public:
    ImportContexts(std::shared_ptr<const Model> shownModel, Timing shownTiming,
                   std::size_t parentLocation)
        : model(std::move(shownModel)), timing(shownTiming), parent(parentLocation) {}

    [[nodiscard]] bool isSame(std::size_t index, const ChildContexts& other,
                              std::size_t otherIndex) const override {
        const auto& contexts = static_cast<const ImportContexts&>(other);
        return model == contexts.model && timing == contexts.timing &&
               locationOf(index) == contexts.locationOf(otherIndex);
    }
    [[nodiscard]] std::size_t locationOf(std::size_t index) const {
        return model->getChild(parent, index);
    }

    const std::shared_ptr<const Model> model;
    const Timing timing;

private:
    const std::size_t parent;
};

double number(const Attribute& attribute, double defaultValue) {
    if (const FloatAttribute value(attribute); value) {
        return value.getValue();
    }
    if (const IntAttribute value(attribute); value) {
        return value.getValue();
    }
    return DoubleAttribute(attribute).getValue(defaultValue);
}

std::string readPath(CookContext& context) {
    return StringAttribute(context.getArg("filePath")).getValue();
}

CookResult cookLocation(CookContext& context, const std::shared_ptr<const Model>& model,
                        const Timing& timing, std::size_t location) {
    Model::Moment moment{timing.animation, 0};
    if (model->isAnimated(location)) {
        moment.seconds = context.getCurrentTime() / timing.framesPerSecond;
    }
    GroupAttribute attrs = model->getAttrs(location, moment);
    if (const StringAttribute editor(context.getArg("exclusiveTo")); editor) {
        attrs = GroupBuilder().update(attrs).set("attributeEditor.exclusiveTo", editor).build();
    }
    const StringAttribute& names = model->getChildNames(location);
    if (!names) {
        return {std::move(attrs)};
    }
    return {std::move(attrs),
            ChildList::create(names, std::make_shared<ImportContexts>(model, timing, location))};
}

CookResult cookRoot(CookContext& context) {
    const Attribute argument = context.getArg("filePath");
    if (!argument) {
        return CookResult::nothing();
    }
    const std::string path = StringAttribute(argument).getValue();
    if (path.empty()) {
        throw std::runtime_error("Geometry.Import: filePath is empty");
    }
    const StringAttribute told(context.getArg("name"));
    const std::string name = told ? told.getValue() : path.substr(path.find_last_of('/') + 1);
    return {GroupAttribute{{"type", StringAttribute("group")}},
            ChildList::create(StringAttribute({safeName(name, "model")}))};
}

CookResult cookModel(CookContext& context) {
    const auto file = ModelFile::request(readPath(context));
    context.await(file);
    const std::shared_ptr<const Model> model(file, &file->getModel());
    Timing timing;
    if (model->getNumberOfAnimations() > 0) {
        timing.animation = static_cast<int>(number(context.getArg("animation"), 0));
        const double rate = number(context.getArg("framesPerSecond"), kFramesPerSecond);
        timing.framesPerSecond = rate > 0 ? rate : kFramesPerSecond;
    }
    CookResult result = cookLocation(context, model, timing, 0);
    if (const GroupAttribute proxies(context.getArg("proxies")); proxies) {
        result.attrs = GroupBuilder().update(result.attrs).set("proxies", proxies).build();
    }
    return result;
}

} // namespace

CookResult Import::cook(CookContext& context) const {
    if (context.isRoot()) {
        return cookRoot(context);
    }
    if (!context.getContexts()) {
        return cookModel(context);
    }
    const auto& contexts = context.getContextsAs<ImportContexts>();
    return cookLocation(context, contexts.model, contexts.timing,
                        contexts.locationOf(context.getChildIndex()));
}

} // namespace VlScenelibEngine
