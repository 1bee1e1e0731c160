#include "optionmethods.h"

#include "attributearguments.h"
#include "optionidgeneratorclient.h"
#include "textargument.h"

namespace ViewerAPI {

using pythoncompat::parseArguments;
using pythoncompat::TextArgument;
using VlAttribute::Attribute;

namespace {

PyObject* set(const PluginOptions& plugin, std::uint64_t optionId, PyObject* value) {
    Attribute attribute;
    if (!optionValueOf(value, attribute)) {
        return nullptr;
    }
    plugin.setOption(plugin.instance, optionId, attribute.getRetainedHandle());
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
    return set(plugin, optionId, value);
}

PyObject* setPluginOptionByName(const PluginOptions& plugin, PyObject* args) {
    TextArgument name;
    PyObject* value = nullptr; // borrowed
    if (!parseArguments(args, "sO", name, &value)) {
        return nullptr;
    }
    return set(plugin, idOf(name), value);
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
