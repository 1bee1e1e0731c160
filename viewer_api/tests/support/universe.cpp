#include "support/universe.h"

namespace ViewerAPI::test {

std::vector<Universe> Universe::shapes(bool withProxies) {
    const Place root{"/root", -1, false};

    Universe chain{"chain", {root}};
    for (int i = 0; i < 11; ++i) {
        chain.add(i, "n");
    }

    Universe siblings{"siblings", {root}};
    for (int i = 0; i < 24; ++i) {
        siblings.add(0, "n" + std::to_string(i));
    }

    Universe binary{"binary", {root}};
    for (int i = 0; i < 15; ++i) {
        binary.add(i, "left");
        binary.add(i, "right");
    }

    Universe mixture{"mixture", {root}};
    const int a = mixture.add(0, "a");
    const int b = mixture.add(0, "b");
    mixture.add(0, "ab"); // its path begins like another's
    const int c = mixture.add(a, "c");
    mixture.add(a, "d");
    const int e = mixture.add(c, "e");
    mixture.add(b, "f");
    mixture.add(e, "g");
    if (withProxies) {
        for (const int owner : {0, a, b, c, e}) {
            const int box = mixture.add(owner, "box", true);
            if (owner != b) {
                const int part = mixture.add(box, "part", true);
                mixture.add(part, "deep", true);
                mixture.add(box, "part2", true);
            }
            mixture.add(owner, "box2", true);
        }
    }
    return {chain, siblings, binary, mixture};
}

} // namespace ViewerAPI::test
