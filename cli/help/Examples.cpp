// SPDX-License-Identifier: Apache-2.0
#include "cli/help/Examples.h"

namespace cli {
namespace {

constexpr Example kTool[] = {
    {"orbel render photo.png -o out.png --blur-radius 40", "blur a photo"},
    {"orbel render shot.exr -o out.exr --depth-map-layer shot.exr --focus-at 50%,50%",
     "blur a rendered image by its depth, with the middle in focus"},
};
constexpr Example kRender[] = {
    {"orbel render photo.png -o out.png --blur-radius 40 --vertices 5 --roundness 0.3",
     "a photo through an aperture with five blades"},
    {"orbel render 'shot.####.exr' -o 'out.####.exr' --depth-map-layer 'shot.####.exr' --focus 3.2",
     "a shot, with the focus at the distance 3.2"},
};
constexpr Example kParams[] = {
    {"orbel params", "list the controls with their ranges and defaults"},
    {"orbel params --from out.exr > look.json", "the settings that an image was made with"},
};
constexpr Example kAperture[] = {
    {"orbel aperture ring --obstruction 0.5 -o ring.png", "the aperture of a mirror lens"},
    {"orbel aperture --list -o sheet.png", "all kinds on one sheet"},
};
constexpr Example kScene[] = {
    {"orbel scene night.exr --depth night-depth.exr", "a scene with its depth map"},
    {"orbel scene small.exr --size 480x270", "a small one"},
};
constexpr Example kCompare[] = {
    {"orbel compare a.exr b.exr", "print the largest difference"},
    {"orbel compare a.png b.png --tolerance 0.004 && echo equal",
     "whether 8-bit images differ by one step at most"},
};
constexpr Example kInspect[] = {
    {"orbel inspect shot.exr --depth-map-layer shot.exr --focus 3.2 -o sheet.png",
     "the aperture, the spots by distance and the radius at each pixel on one sheet"},
    {"orbel inspect shot.exr --depth-map-layer shot.exr --at 640,360",
     "the depth and the radius at a pixel, and what would put it into focus"},
};
constexpr Example kCheck[] = {
    {"orbel check 'out.####.exr' --frames 1001-1100", "whether all frames are there and whole"},
    {"orbel check 'out.####.exr'", "the same between the first and the last frame on disk"},
};
constexpr Example kAbout[] = {
    {"orbel about", "print the effect's version and which bundle it is loaded from"},
    {"orbel about --bundle ./Orbel.so", "that of another bundle"},
};
constexpr Example kDoctor[] = {
    {"orbel doctor", "check what is installed"},
    {"orbel doctor --bundle ./Orbel.so", "check another bundle"},
};

struct Examples {
    const char* command;
    std::span<const Example> examples;
};

constexpr Examples kAll[] = {
    {"orbel", kTool},        {"render", kRender}, {"inspect", kInspect}, {"params", kParams},
    {"aperture", kAperture}, {"scene", kScene},   {"compare", kCompare}, {"check", kCheck},
    {"about", kAbout},       {"doctor", kDoctor},
};

}  // namespace

std::span<const Example> examplesOf(const std::string& command) {
    for (const Examples& each : kAll) {
        if (command == each.command) return each.examples;
    }
    return {};
}

}  // namespace cli
