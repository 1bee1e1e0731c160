#pragma once

#include "vlviewerdelegatehost.h"

#include <functional>
#include <memory>

/// The viewer without an interpreter, as benchmarks have it.
namespace bench {

using Delegate = ViewerAPI::VlViewerDelegateHostStruct;

/// Host suites, the engine, and an application that lets everything be edited and takes nothing up.
/// Comes first.
void registerViewer();

/// Loads a plug-in library, or all of a folder, and makes a delegate of one. Its bounding boxes are
/// switched off: the locations are those of the scene alone. Throws when there is no plug-in.
[[nodiscard]] std::unique_ptr<Delegate> makeDelegate(const char* plugins, const char* plugin);

/// Calls `pump`, once at least, until `isDone`, and lets the engine work between. Throws after five
/// minutes.
void pumpUntil(const std::function<bool()>& isDone, const std::function<void()>& pump);

/// Pumps until everything is shown. Throws after five minutes.
void settle(Delegate& delegate);

} // namespace bench
