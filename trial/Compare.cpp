// SPDX-License-Identifier: Apache-2.0
#include "trial/Compare.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include "trial/FrameFile.h"

namespace fs = std::filesystem;

namespace trial {

namespace {

constexpr double kRelative = 1e-6;
constexpr double kAbsolute = 1e-7;
constexpr double kFaintAlpha = 1e-6;  // in float; below it colours aren't compared
constexpr const char* kChannelNames[kChannels] = {"alpha", "red", "green", "blue"};

// The largest difference, relative to the tolerance.
struct Worst {
    double share = 0;  // of the tolerance
    double a = 0;
    double b = 0;
    std::string place;

    bool passes() const { return share <= 1; }
    std::string describe() const {
        char values[64];
        std::snprintf(values, sizeof values, " is %.9g and %.9g", a, b);
        return place + values;
    }
};

// The statistics of all frames with the same number of bits.
struct Tally {
    int frames = 0;
    std::uint64_t values = 0;
    std::uint64_t differing = 0;
    std::uint64_t faintPixels = 0;
    Worst worst;

    void add(const Tally& other) {
        frames += other.frames;
        values += other.values;
        differing += other.differing;
        faintPixels += other.faintPixels;
        if (other.worst.share > worst.share) worst = other.worst;
    }
};

double shareOfAllowed(double a, double b, int bits) {
    if (a == b || (std::isnan(a) && std::isnan(b))) return 0;
    const double apart = std::fabs(a - b);
    if (!std::isfinite(apart)) return std::numeric_limits<double>::infinity();
    if (bits < 32) return apart;
    return apart / (kAbsolute + kRelative * std::max(std::fabs(a), std::fabs(b)));
}

bool faint(const Frame& frame, std::size_t pixel) {
    return frame.value(pixel * kChannels) < (frame.bits == 32 ? kFaintAlpha : 1);
}

std::string placeOf(const std::string& name, const Frame& frame, std::size_t pixel, int channel) {
    const auto width = static_cast<std::size_t>(frame.width);
    return name + ", pixel " + std::to_string(pixel % width) + "," + std::to_string(pixel / width) +
           ": " + kChannelNames[channel];
}

Tally compareFrames(const std::string& name, const Frame& a, const Frame& b) {
    if (a.width != b.width || a.height != b.height || a.bits != b.bits) {
        throw std::runtime_error(name + " differs in size or bits");
    }
    Tally tally;
    tally.frames = 1;
    for (std::size_t pixel = 0; pixel < a.values() / kChannels; ++pixel) {
        const bool alphaAlone = faint(a, pixel) && faint(b, pixel);
        if (alphaAlone) ++tally.faintPixels;
        for (int channel = 0; channel < (alphaAlone ? 1 : kChannels); ++channel) {
            const std::size_t index = pixel * kChannels + static_cast<std::size_t>(channel);
            const double share = shareOfAllowed(a.value(index), b.value(index), a.bits);
            ++tally.values;
            if (share > 0) ++tally.differing;
            if (!(share > tally.worst.share)) continue;
            tally.worst = {share, a.value(index), b.value(index), placeOf(name, a, pixel, channel)};
        }
    }
    return tally;
}

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == kFrameSuffix)
            names.insert(entry.path().filename().string());
    }
    return names;
}

void print(std::ostream& out, int bits, const Tally& tally) {
    char share[64];
    std::snprintf(share, sizeof share, "%.4f %% of %llu values differ",
                  100.0 * static_cast<double>(tally.differing) / static_cast<double>(tally.values),
                  static_cast<unsigned long long>(tally.values));
    out << bits << " bits: " << tally.frames << " frames, " << share << ", " << tally.faintPixels
        << " transparent pixels\n";
    if (tally.differing == 0) return;
    char allowed[64];
    std::snprintf(allowed, sizeof allowed, "%.3g of the tolerance", tally.worst.share);
    out << "    worst: " << allowed << "; " << tally.worst.describe() << '\n';
}

}  // namespace

bool compareFolders(const fs::path& a, const fs::path& b, std::ostream& out) {
    std::set<std::string> names = namesIn(a);
    names.merge(namesIn(b));
    std::map<int, Tally> tallies;
    bool good = !names.empty();
    if (!good) out << "no frames in " << a.string() << " and " << b.string() << '\n';
    for (const std::string& name : names) {
        try {
            const Frame first = readFrame(a / name);
            const Tally tally = compareFrames(name, first, readFrame(b / name));
            tallies[first.bits].add(tally);
            if (tally.worst.passes()) continue;
            out << "differs too much: " << tally.worst.describe() << '\n';
        } catch (const std::runtime_error& error) {
            out << error.what() << '\n';
        }
        good = false;
    }
    for (const auto& [bits, tally] : tallies) print(out, bits, tally);
    return good;
}

}  // namespace trial
