#pragma once

#include "viewer_api/VlPlugin.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Fills the registry that PluginManager reads. Whatever is passed over is told in one log line on
/// the channel "VlPluginSystem", and nothing here throws except for want of memory. [any-thread]
namespace VlPluginSystem {

/// Offers a table to plug-ins. A table of the same name and version is replaced; a null table
/// withdraws it. The table must last as long as anyone may have asked for it.
void addHostSuite(const void* suite, std::string_view name, std::uint32_t version);

/// Loads a plug-in library and registers its plug-ins; the number of plug-ins that it brought. Zero
/// when it was skipped: it can't be opened, lacks an entry, or refuses the host. A library that is
/// loaded already isn't asked again: the number is that of the first time. A path without "/" is
/// taken as a file of the working directory.
///
/// Of two plug-ins of the same kind, name and version the first stays, and the other is passed
/// over. So is a plug-in of a kind that the viewer knows, in a version that it doesn't speak.
int loadLibrary(const std::string& path);

/// Loads every file of the directory itself whose name ends in ".so", in the order of their names;
/// the sum of what loadLibrary answers.
int loadDirectory(const std::string& path);

/// Registers a plug-in that is part of the program. Record and texts are copied. False when the
/// record lacks a text or when a plug-in of its kind, name and version is there already, which is
/// logged. Any version is taken.
bool registerPlugin(const VlPluginRecord& record);

/// Takes a plug-in out of the registry: for tests that leave the registry as they found it. Its
/// record is gone afterwards. False when there is none.
bool unregisterPlugin(std::string_view typeName, std::string_view name, std::uint32_t apiVersion);

} // namespace VlPluginSystem
