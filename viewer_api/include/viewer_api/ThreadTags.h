/* The thread tags that close every comment of a suite entry.
 *
 * [ui-thread]   Called on the one thread that runs the user interface: the thread that holds the
 *               Python interpreter and owns the windows. The host has no lock, so an entry with
 *               this tag must never be called from another thread. Whether an OpenGL context is
 *               current is not known.
 * [gl-current]  Called on the user-interface thread with the shared OpenGL context current and
 *               bound to the viewport's window, and glViewport set to the whole window. It is so
 *               whenever the binding worked; after a failed one no context may be current, and a
 *               plug-in that creates GL objects checks before it does.
 * [any-thread]  May be called from every thread at every time.
 *
 * An entry of a host suite bears the tag of what it asks of its caller; an entry of a plug-in
 * suite the tag of what the host promises to it.
 */
#pragma once
