#include "optionmethods.h"

#include "attributearguments.h"
#include "optionidgeneratorclient.h"
#include "textargument.h"

namespace ViewerAPI {

using pythoncompat::parseArguments;
using pythoncompat::TextArgument;
using VlAttribute::Attribute;

namespace {

PyObject* set(const PluginOptions& plugin, std::uint64_t optionId, const Attribute& value) {
    plugin.setOption(plugin.instance, optionId, value.getRetainedHandle());
    return pythoncompat::returnNone();
}

PyObject* get(const PluginOptions& plugin, std::uint64_t optionId) {
    return newPyAttribute(Attribute::CreateAndSteal(plugin.getOption(plugin.instance, optionId)));
}

// Goes the way of plug-ins, so that the name is remembered for LookUpOptionId.
std::uint64_t idOf(const TextArgument& name) {
    return OptionIdGeneratorClient::module().generate(name.get());
}

} // namespace

PyObject* setPluginOption(const PluginOptions& plugin, PyObject* args) {
    unsigned long long optionId = 0;
    PyObject* value = nullptr; // borrowed
    if (!PyArg_ParseTuple(args, "KO", &optionId, &value)) {
        return nullptr;
    }
    Attribute attribute;
    return optionValueOf(value, attribute) ? set(plugin, optionId, attribute) : nullptr;
}

PyObject* setPluginOptionByName(const PluginOptions& plugin, PyObject* args) {
    TextArgument name;
    PyObject* value = nullptr; // borrowed
    if (!parseArguments(args, "sO", name, &value)) {
        return nullptr;
    }
    // The name of an option that is not set after all is not remembered.
    Attribute attribute;
    return optionValueOf(value, attribute) ? set(plugin, idOf(name), attribute) : nullptr;
}

PyObject* getPluginOption(const PluginOptions& plugin, PyObject* args) {
    unsigned long long optionId = 0;
    if (!PyArg_ParseTuple(args, "K", &optionId)) {
        return nullptr;
    }
    return get(plugin, optionId);
}

PyObject* getPluginOptionByName(const PluginOptions& plugin, PyObject* args) {
    TextArgument name;
    if (!parseArguments(args, "s", name)) {
        return nullptr;
    }
    return get(plugin, idOf(name));
}

} // namespace ViewerAPI
