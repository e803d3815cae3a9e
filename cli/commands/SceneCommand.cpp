// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/SceneCommand.h"

#include <ostream>
#include <system_error>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/Progress.h"
#include "pictures/Interrupt.h"
#include "pictures/Picture.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureWriter.h"
#include "scene/Scene.h"

namespace cli {
namespace {

constexpr int kLargestSide = 16384;

void requireExr(const std::string& file) {
    if (!pictures::formatOf(file).windows) {
        throw UsageError(file +
                         " must end in .exr: the lights are brighter than other formats can hold");
    }
    pictures::requireWritable(file);
}

OIIO::ImageSpec exrSpec(const scene::Scene& picture, std::vector<std::string> channels,
                        OIIO::TypeDesc type) {
    OIIO::ImageSpec imageSpec(picture.width, picture.height, static_cast<int>(channels.size()),
                              type);
    imageSpec.channelnames = std::move(channels);
    imageSpec.attribute("compression", "zip");
    // Otherwise the encoder writes the current time, and no two runs produce the same file.
    imageSpec.attribute("DateTime", "2000:01:01 00:00:00");
    return imageSpec;
}

}  // namespace

SceneCommand::SceneCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("scene", "Write a test image: a street at night");
    app_->allow_extras();
    app_->add_option("OUTPUT", output_, "image to write")->type_name("FILE.exr")->required();
    app_->add_option("--size", size_,
                     "width and height in pixels, each 1 to " + std::to_string(kLargestSide) +
                         "; default 1920x1080")
        ->type_name("WxH");
    app_->add_option("--depth", depth_,
                     "also write a depth map with distances in metres, channel Z")
        ->type_name("FILE.exr");
}

int SceneCommand::run() {
    const pictures::Window size = parseSize("--size", size_, kLargestSide);
    requireExr(output_);
    if (!depth_.empty()) {
        requireExr(depth_);
        if (std::filesystem::weakly_canonical(output_) ==
            std::filesystem::weakly_canonical(depth_)) {
            throw UsageError(
                "the image and its depth map need two files; name another with --depth");
        }
    }
    ProgressBar bar(invocation_.err, invocation_.terminal);
    bar.begin(0.0, 1.0);
    const scene::Scene street =
        scene::makeScene(size.width(), size.height(), pictures::interruptFlag(),
                         [&](double share) { bar.update(share); });
    bar.finish();
    pictures::throwIfInterrupted();
    pictures::writeChannels(output_, exrSpec(street, {"R", "G", "B"}, OIIO::TypeDesc::HALF),
                            street.colours);
    if (!depth_.empty()) {
        pictures::writeChannels(depth_, exrSpec(street, {"Z"}, OIIO::TypeDesc::FLOAT),
                                street.distances);
    }
    return kExitSuccess;
}

}  // namespace cli
