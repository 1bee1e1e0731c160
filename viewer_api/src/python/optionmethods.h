#pragma once

#include "binding.h"

#include <cstdint>

struct VlAttributeStruct;

namespace ViewerAPI {

/// The option entries of a plug-in instance, whatever its kind.
struct PluginOptions {
    void* instance;
    void (*setOption)(void* instance, std::uint64_t optionId, VlAttributeStruct* retainedValue);
    VlAttributeStruct* (*getOption)(void* instance, std::uint64_t optionId);
};

// The four option methods, alike on every type that has them. They reach the plug-in's entries
// directly: no host object stands between.

PyObject* setPluginOption(const PluginOptions& plugin, PyObject* args);
PyObject* setPluginOptionByName(const PluginOptions& plugin, PyObject* args);
PyObject* getPluginOption(const PluginOptions& plugin, PyObject* args);
PyObject* getPluginOptionByName(const PluginOptions& plugin, PyObject* args);

// The same for a record type that tells its plug-in by `PluginOptions pluginOptions() const`.

template <class Record>
PyObject* setOption(Record& self, PyObject* args) {
    return setPluginOption(self.pluginOptions(), args);
}

template <class Record>
PyObject* setOptionByName(Record& self, PyObject* args) {
    return setPluginOptionByName(self.pluginOptions(), args);
}

template <class Record>
PyObject* getOption(Record& self, PyObject* args) {
    return getPluginOption(self.pluginOptions(), args);
}

template <class Record>
PyObject* getOptionByName(Record& self, PyObject* args) {
    return getPluginOptionByName(self.pluginOptions(), args);
}

} // namespace ViewerAPI
