#pragma once

#include <cstdlib>

namespace ViewerAPI::test {

/// The seeds of a random test: OSTREL_ORACLE_SEED says where to begin instead, to see one again
/// that failed, and OSTREL_ORACLE_COUNT how many to try, to look for longer.
struct OracleSeeds {
    unsigned first;
    unsigned count;

    OracleSeeds(unsigned firstSeed, unsigned numberOfSeeds)
        : first(read("OSTREL_ORACLE_SEED", firstSeed)),
          count(read("OSTREL_ORACLE_COUNT", numberOfSeeds)) {}

private:
    static unsigned read(const char* name, unsigned otherwise) {
        const char* const text = std::getenv(name);
        return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
    }
};

} // namespace ViewerAPI::test
