#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

/// Timing, memory and the form of the output, shared by the benchmarks.
namespace bench {

inline double nowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n == 0 ? 0.0 : n % 2 == 1 ? values[n / 2] : 0.5 * (values[n / 2 - 1] + values[n / 2]);
}

/// A number of kilobytes from /proc/self/status, in bytes: "VmRSS" now, "VmHWM" at its highest.
inline double memoryBytes(const std::string& name) {
    double kilobytes = 0.0;
    if (FILE* file = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, file)) {
            if (std::sscanf(line, (name + ": %lf kB").c_str(), &kilobytes) == 1) {
                break;
            }
        }
        std::fclose(file);
    }
    return kilobytes * 1024.0;
}

inline void print(const std::string& workload, long n, const std::string& metric, double value) {
    std::printf("%s %ld %s %.6g\n", workload.c_str(), n, metric.c_str(), value);
    std::fflush(stdout);
}

/// The figures of one repetition, in order: (workload, metric) and value.
class Sample {
public:
    void set(const std::string& workload, const std::string& metric, double value) {
        values.emplace_back(workload + " " + metric, value);
    }
    std::vector<std::pair<std::string, double>> values;
};

/// Runs `measure` in fresh child processes, so that each finds a cold heap and nothing has to be
/// freed, and prints the median of every figure. No thread may have been started before. Answers
/// whether all went well.
inline bool repeat(long n, int repetitions, const std::function<void(Sample&)>& measure) {
    std::vector<std::string> names;
    std::vector<std::vector<double>> figures;
    for (int i = 0; i < repetitions; ++i) {
        int ends[2];
        if (pipe(ends) != 0) {
            return false;
        }
        std::fflush(stdout);
        const pid_t child = fork();
        if (child == 0) {
            close(ends[0]);
            Sample sample;
            try {
                measure(sample);
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
                _exit(1);
            }
            FILE* out = fdopen(ends[1], "w");
            for (const auto& [name, value] : sample.values) {
                std::fprintf(out, "%s %.17g\n", name.c_str(), value);
            }
            std::fclose(out);
            _exit(0);
        }
        close(ends[1]);
        FILE* in = fdopen(ends[0], "r");
        char workload[128];
        char metric[128];
        double value = 0.0;
        while (std::fscanf(in, "%127s %127s %lf", workload, metric, &value) == 3) {
            const std::string name = std::string(workload) + " " + metric;
            const auto found = std::find(names.begin(), names.end(), name);
            const auto place = static_cast<std::size_t>(found - names.begin());
            if (found == names.end()) {
                names.push_back(name);
                figures.emplace_back();
            }
            figures[place].push_back(value);
        }
        std::fclose(in);
        int status = 0;
        waitpid(child, &status, 0);
        if (status != 0) {
            return false;
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t space = names[i].find(' ');
        print(names[i].substr(0, space), n, names[i].substr(space + 1), median(figures[i]));
    }
    return true;
}

/// Milliseconds that a call takes.
template <class Call>
double timeMs(Call&& call) {
    const double start = nowMs();
    call();
    return nowMs() - start;
}

/// Nanoseconds of one of `count` calls, the median of several rounds.
template <class Call>
double nsPerCall(long count, Call&& call, int rounds = 7) {
    std::vector<double> results;
    for (int round = 0; round < rounds; ++round) {
        results.push_back(timeMs([&] {
                              for (long i = 0; i < count; ++i) {
                                  call(i);
                              }
                          }) *
                          1e6 / static_cast<double>(count));
    }
    return median(results);
}

/// What a command line NAME [leaves...] says, or `defaults`. Prints what is wrong and ends the
/// process with 2.
inline std::vector<long> parseSizes(int argc, char** argv, std::vector<long> defaults,
                                    long multipleOf = 1) {
    std::vector<long> sizes;
    for (int i = 1; i < argc; ++i) {
        char* end = nullptr;
        sizes.push_back(std::strtol(argv[i], &end, 10));
        if (*end != '\0' || sizes.back() < 1 || sizes.back() % multipleOf != 0) {
            std::fprintf(stderr,
                         "\"%s\" is not a number of leaves that %ld divides\n"
                         "usage: %s [leaves...]\n",
                         argv[i], multipleOf, argv[0]);
            std::exit(2);
        }
    }
    return sizes.empty() ? defaults : sizes;
}

/// What the command line of a benchmark says: NAME [workload...] [--leaves N] [--repetitions N].
struct Arguments {
    std::vector<std::string> workloads; ///< in the order in which the program knows them
    long leaves = 1000000;
    int repetitions = 3;

    [[nodiscard]] bool wants(const std::string& workload) const {
        return std::find(workloads.begin(), workloads.end(), workload) != workloads.end();
    }

    [[nodiscard]] bool wantsAny(std::initializer_list<const char*> names) const {
        return std::any_of(names.begin(), names.end(),
                           [this](const char* name) { return wants(name); });
    }

    /// Without a workload all that the program `known` are wanted. Leaves come in thousands. Prints
    /// what is wrong and ends the process with 2.
    static Arguments parse(int argc, char** argv, const std::vector<std::string>& known,
                           int repetitions = 3) {
        Arguments arguments;
        arguments.repetitions = repetitions;
        std::vector<std::string> named;
        const auto fail = [&](const std::string& text) {
            std::string all;
            for (const std::string& workload : known) {
                all += " " + workload;
            }
            std::fprintf(stderr,
                         "%s\nusage: %s [--leaves N] [--repetitions N] [workload...]\n"
                         "workloads:%s\n",
                         text.c_str(), argv[0], all.c_str());
            std::exit(2);
        };
        for (int i = 1; i < argc; ++i) {
            const std::string word = argv[i];
            const bool isLeaves = word == "--leaves";
            if (isLeaves || word == "--repetitions") {
                const char* text = i + 1 < argc ? argv[++i] : "";
                char* end = nullptr;
                const long number = std::strtol(text, &end, 10);
                if (*text == '\0' || *end != '\0' || number < 1 ||
                    (isLeaves && number % 1000 != 0)) {
                    fail("\"" + std::string(text) + "\" is no number for " + word);
                }
                if (isLeaves) {
                    arguments.leaves = number;
                } else {
                    arguments.repetitions = static_cast<int>(number);
                }
            } else if (std::find(known.begin(), known.end(), word) == known.end()) {
                fail("there is no workload \"" + word + "\" here");
            } else {
                named.push_back(word);
            }
        }
        for (const std::string& workload : known) {
            if (named.empty() || std::find(named.begin(), named.end(), workload) != named.end()) {
                arguments.workloads.push_back(workload);
            }
        }
        return arguments;
    }
};

} // namespace bench
