#pragma once

#include "measure.h"
#include "picturescenes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What W5 and W6 do with their scenes: the same for this project and for the libraries that it is
/// compared with. A `Picture` has
///
///     void lookFrom(const Viewpoint&)
///     void frame()                         draws until the renderer has finished
///     void move(double height)             puts the scene's middle cube so high over its place;
///                                          the next frame shows it. Not there in other scenes
///     std::vector<std::uint8_t> readRgb()  of what frame() drew, row after row from the lowest
///
/// Where a library has several ways to do the same, metrics bear the way's name behind an "@".
namespace bench {

/// So many frames and picks a figure is the median of.
constexpr int kFrames = 15;
constexpr int kPicks = 31;

/// The two kinds of picture: one sample a pixel, as here while something moves, and as many as the
/// driver has, up to eight, as here when nothing does.
struct Quality {
    std::string name;
    int samples = 1;
};
inline const Quality kDraft = {"draft", 1};
inline const Quality kFine = {"fine", 8};

inline std::string metricOf(const std::string& name, const std::string& way) {
    return way.empty() ? name : name + "@" + way;
}

/// One frame's time in milliseconds, the median of several; `prepare(i)` is not part of it.
template <class Frame, class Prepare>
double medianFrameMs(int frames, Frame&& frame, Prepare&& prepare) {
    std::vector<double> times;
    for (int i = 0; i < frames; ++i) {
        prepare(i);
        times.push_back(timeMs(frame));
    }
    return median(times);
}

template <class Frame>
double medianFrameMs(int frames, Frame&& frame) {
    return medianFrameMs(frames, frame, [](int) {});
}

/// Frames of a picture that stays as it is: the first one, and the others.
template <class Picture>
void measureFrames(const std::string& name, const std::string& way, long n, Picture& picture,
                   int frames = kFrames) {
    print("W6", n, metricOf(name + "_first_frame_ms", way), timeMs([&] { picture.frame(); }));
    for (int i = 0; i < 2; ++i) { // some libraries prepare more in the frames that follow
        picture.frame();
    }
    print("W6", n, metricOf(name + "_frame_ms", way),
          medianFrameMs(frames, [&] { picture.frame(); }));
}

/// Frames that show the middle cube where it has just been put. It is back in its place then.
template <class Picture>
void measureFramesOfEdits(const std::string& name, const std::string& way, Picture& picture,
                          int frames = kFrames) {
    const double time = medianFrameMs(
        frames, [&] { picture.frame(); }, [&](int i) { picture.move(0.1 * (i + 1)); });
    print("W6", CubesScene::kCubes, metricOf(name + "_frame_after_edit_ms", way), time);
    picture.move(0.0);
    picture.frame();
}

/// How many pixels the scene covers, and where their middle is: programs that show the same scene
/// print the same. Looks from the viewpoint in the end.
template <class Picture>
void printCoverage(const std::string& name, const std::string& way, long n, Picture& picture,
                   const Viewpoint& viewpoint) {
    picture.lookFrom(viewpoint.turnedAway());
    picture.frame();
    const std::vector<std::uint8_t> background = picture.readRgb();
    picture.lookFrom(viewpoint);
    picture.frame();
    const std::vector<std::uint8_t> rgb = picture.readRgb();
    double covered = 0;
    double sumX = 0;
    double sumY = 0;
    for (std::size_t i = 0; i < rgb.size(); i += 3) {
        if (!std::equal(&rgb[i], &rgb[i] + 3, &background[i])) {
            covered += 1;
            sumX += static_cast<double>(i / 3 % kPictureWidth);
            sumY += static_cast<double>(i / 3 / kPictureWidth);
        }
    }
    print("W6", n, metricOf(name + "_covered_pixels", way), covered);
    print("W6", n, metricOf(name + "_covered_x", way), sumX / covered);
    print("W6", n, metricOf(name + "_covered_y", way), sumY / covered);
}

/// Everything that W6 does with the cubes. One of them moves in drafts.
template <class Picture>
void measureCubes(const Quality& quality, const std::string& way, Picture& picture,
                  int frames = kFrames) {
    const std::string name = "cubes_" + quality.name;
    picture.lookFrom(CubesScene::kViewpoint);
    measureFrames(name, way, CubesScene::kCubes, picture, frames);
    if (quality.samples == kDraft.samples) {
        measureFramesOfEdits(name, way, picture, frames);
    }
    printCoverage(name, way, CubesScene::kCubes, picture, CubesScene::kViewpoint);
}

/// Everything that W6 does with the torus.
template <class Picture>
void measureTorus(const Quality& quality, const std::string& way, Picture& picture,
                  int frames = kFrames) {
    const std::string name = "mesh_" + quality.name;
    picture.lookFrom(TorusScene::kViewpoint);
    measureFrames(name, way, TorusScene::kTriangles, picture, frames);
    printCoverage(name, way, TorusScene::kTriangles, picture, TorusScene::kViewpoint);
}

/// A square of pixels, in pixels from the left and from the lower edge of the picture.
struct PickSquare {
    int left = 0;
    int bottom = 0;
    int size = 1;

    [[nodiscard]] int right() const { return left + size; } ///< the first that is not in it
    [[nodiscard]] int top() const { return bottom + size; } ///< likewise
};

/// A place of the cubes' picture that they fill but for gaps.
inline PickSquare pickSquare(int i, int size) {
    return {400 + i * 7919 % 480, kPictureHeight - (260 + i * 104729 % 240) - size, size};
}

/// Picks in the cubes' picture; `pick` takes a PickSquare and answers how many cubes it finds.
template <class Pick>
void measurePicks(const std::string& name, const std::string& way, int size, Pick&& pick) {
    std::vector<double> times;
    long found = 0;
    for (int i = 0; i < kPicks; ++i) {
        const PickSquare square = pickSquare(i, size);
        times.push_back(timeMs([&] { found += pick(square); }));
    }
    print("W5", CubesScene::kCubes, metricOf(name + "_ms", way), median(times));
    print("W5", CubesScene::kCubes, metricOf(name + "_found", way),
          static_cast<double>(found) / kPicks);
}

/// Picks of one pixel from ids that are kept with a picture, and the frames that keep them: `frame`
/// draws the picture, with its ids.
template <class Frame, class Pick>
void measureKeptPicks(const std::string& way, Frame&& frame, Pick&& pick) {
    print("W5", CubesScene::kCubes, metricOf("kept_frame_ms", way), medianFrameMs(kFrames, [&] {
              frame();
              pick(pickSquare(0, 1)); // the ids are there
          }));
    measurePicks("kept_pixel", way, 1, pick);
}

} // namespace bench
