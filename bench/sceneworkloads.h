#pragma once

#include "measure.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

/// The scene that every program here is measured with, and what is done with it: the same for this
/// project and for the libraries that it is compared with.
namespace bench {

/// A rotation about z and a translation.
struct Placement {
    double radians = 0.0;
    double cosine = 1.0;
    double sine = 0.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// Sets of 10 groups of 100 leaves under a root, as the op type "Scene.Generate" makes them. Every
/// set, group and leaf has a placement inside what it stands in; every leaf is a box of edge 1.
class SceneLayout {
public:
    static constexpr long kGroupsInSet = 10;
    static constexpr long kLeavesInGroup = 100;
    static constexpr long kLeavesInSet = kGroupsInSet * kLeavesInGroup;

    static Placement set(long index) {
        static const std::vector<Placement> turns = turned(5, 0.05);
        return moved(turns[index % 5], 170.0 * static_cast<double>(index % 32),
                     18.0 * static_cast<double>(index / 32), static_cast<double>(index % 3));
    }
    /// By its index in its set.
    static Placement group(long index) {
        static const std::vector<Placement> turns = turned(3, 0.1);
        return moved(turns[index % 3], 16.0 * static_cast<double>(index), 0.0,
                     0.5 * static_cast<double>(index & 1));
    }
    /// By its index in its group; `height` is where an edit puts it.
    static Placement leaf(long index, double height = 0.0) {
        static const std::vector<Placement> turns = turned(7, 0.2);
        return moved(turns[index % 7], 1.5 * static_cast<double>(index % 10),
                     1.5 * static_cast<double>(index / 10), height);
    }

private:
    static std::vector<Placement> turned(int count, double step) {
        std::vector<Placement> turns;
        for (int i = 0; i < count; ++i) {
            turns.push_back({i * step, std::cos(i * step), std::sin(i * step)});
        }
        return turns;
    }
    static Placement moved(Placement placement, double x, double y, double z) {
        placement.x = x;
        placement.y = y;
        placement.z = z;
        return placement;
    }
};

/// What a consumer makes of the world matrices that it is given: a sum over their translations, so
/// that programs that show the same scene print the same.
struct Consumer {
    long leaves = 0;
    double checksum = 0.0;

    void take(double x, double y, double z) {
        ++leaves;
        checksum += x + 3.0 * y + 7.0 * z;
    }
};

/// The same sequence in every program.
class RandomNumbers {
public:
    long below(long limit) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<long>((state_ >> 33) % static_cast<std::uint64_t>(limit));
    }

private:
    std::uint64_t state_ = 88172645463325252ULL;
};

/// How long each of a row of changes takes, in milliseconds: their median. As many as half a second
/// has room for, but at least 7.
template <class Change>
double medianMs(Change&& change) {
    std::vector<double> times;
    const double start = nowMs();
    for (int i = 0; times.size() < 7 || (nowMs() - start < 500.0 && times.size() < 2000); ++i) {
        times.push_back(change(i));
    }
    return median(times);
}

/// Runs those of W1 to W4 that are wanted. A `Subject` has
///
///     explicit Subject(long leaves)       gets ready; not timed
///     void build()                        makes the scene
///     void update()                       the library's normal update: until the consumer knows
///                                         everything, or what has changed
///     Consumer getConsumer()              after an update
///     void place(long leaf, Placement)    moves a leaf
///     void setHidden(long set, bool)      of 1,000 leaves
///     std::array<double, 6> box()         around everything that shows: minima, then maxima
///     void listen(leaves)                 where the library tells of changes by itself: from
///                                         now on the consumer knows that one of these leaves was
///                                         moved, and, with a true `static constexpr bool
///                                         kIsToldOfHiding`, what was hidden, without an update;
///                                         not there elsewhere
///     static constexpr long kIndexBytes   what the program remembers of a leaf for its own use
template <class Subject>
class SceneWorkloads {
public:
    SceneWorkloads(const Arguments& arguments, Sample& sample)
        : arguments_(arguments), leaves_(arguments.leaves), sample_(sample), subject_(leaves_) {
        RandomNumbers random;
        for (int i = 0; i < 100; ++i) {
            editedLeaves_.push_back(random.below(leaves_));
        }
    }

    void run() {
        populate();
        if (wants("W4")) {
            extent();
        }
        if (wants("W2")) {
            sample_.set("W2", "edit_us", 1000.0 * medianMs([this](int i) {
                                             return timeMs([&] {
                                                 placeOne(i);
                                                 subject_.update();
                                             });
                                         }));
        }
        if (wants("W3")) {
            sample_.set("W3", "hide_ms", medianMs([this](int i) { return hide(i, true); }));
        }
        if constexpr (requires { subject_.listen(editedLeaves_); }) {
            runListening();
        }
    }

    Subject& getSubject() { return subject_; }

private:
    [[nodiscard]] bool wants(const char* workload) const { return arguments_.wants(workload); }

    void populate() {
        const double before = memoryBytes("VmRSS");
        const double total = timeMs([this] {
            subject_.build();
            subject_.update();
        });
        const double after = memoryBytes("VmRSS");
        const Consumer consumer = subject_.getConsumer();
        if (consumer.leaves != leaves_) {
            throw std::runtime_error("the consumer was given " + std::to_string(consumer.leaves) +
                                     " leaves");
        }
        if (wants("W1")) {
            const auto count = static_cast<double>(leaves_);
            sample_.set("W1", "total_ms", total);
            sample_.set("W1", "rss_bytes_per_leaf",
                        (after - before) / count - Subject::kIndexBytes);
            sample_.set("W1", "checksum", consumer.checksum);
        }
    }

    void extent() {
        std::array<double, 6> box{};
        sample_.set("W4", "box_first_ms", timeMs([&] { box = subject_.box(); }));
        sample_.set("W4", "box_checksum",
                    box[0] + 3.0 * box[1] + 5.0 * box[2] + 7.0 * box[3] + 11.0 * box[4] +
                        13.0 * box[5]);
        sample_.set("W4", "box_after_edit_ms", medianMs([&](int i) {
                        return timeMs([&] {
                            placeOne(i);
                            box = subject_.box();
                        });
                    }));
        subject_.update();
    }

    void runListening() {
        subject_.listen(editedLeaves_);
        if (wants("W2")) {
            sample_.set("W2", "edit_told_us",
                        1000.0 * medianMs([this](int i) { return timeMs([&] { placeOne(i); }); }));
        }
        if (Subject::kIsToldOfHiding && wants("W3")) {
            sample_.set("W3", "hide_told_ms", medianMs([this](int i) { return hide(i, false); }));
        }
    }

    /// Hides one of the sets, and shows it again untimed.
    double hide(int i, bool withUpdate) {
        const long set = i * 7 % (leaves_ / SceneLayout::kLeavesInSet);
        const double time = timeMs([&] {
            subject_.setHidden(set, true);
            if (withUpdate) {
                subject_.update();
            }
        });
        subject_.setHidden(set, false);
        if (withUpdate) {
            subject_.update();
        }
        return time;
    }

    /// To a height where it was not before.
    void placeOne(int i) {
        const long leaf = editedLeaves_[static_cast<std::size_t>(i) % editedLeaves_.size()];
        subject_.place(leaf, SceneLayout::leaf(5, height_ += 0.001));
    }

    const Arguments& arguments_;
    const long leaves_;
    Sample& sample_;
    Subject subject_;
    std::vector<long> editedLeaves_;
    double height_ = 0.0;
};

} // namespace bench
