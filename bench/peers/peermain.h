#pragma once

#include "pictureworkloads.h"
#include "sceneworkloads.h"

#include <cstdio>
#include <exception>

namespace bench {

/// The main function of a library's program: NAME [W1 ... W6] [--leaves N] [--repetitions N]. W1 to
/// W4 are SceneWorkloads of `Scene`, in so many processes of their own; `measurePicks` and
/// `measurePictures` are W5 and W6.
template <class Scene>
int peerMain(int argc, char** argv, void (*measurePicks)(), void (*measurePictures)()) {
    const Arguments arguments = Arguments::parse(argc, argv, {"W1", "W2", "W3", "W4", "W5", "W6"});
    const bool isGood = !arguments.wantsAny({"W1", "W2", "W3", "W4"}) ||
                        repeat(arguments.leaves, arguments.repetitions, [&](Sample& sample) {
                            // The process ends without it: freeing is not measured.
                            auto* workloads = new SceneWorkloads<Scene>(arguments, sample);
                            workloads->run();
                        });
    try {
        if (arguments.wants("W5")) {
            measurePicks();
        }
        if (arguments.wants("W6")) {
            measurePictures();
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
    return isGood ? 0 : 1;
}

} // namespace bench
