#include "cli/SceneCommand.h"

#include <ostream>
#include <system_error>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/AtomicFile.h"
#include "pictures/Interrupt.h"
#include "pictures/Picture.h"
#include "pictures/PictureFormats.h"
#include "pictures/PictureWriter.h"
#include "scene/Scene.h"

namespace cli {
namespace {

constexpr int kLargestSide = 16384;

void requireExr(const std::string& file) {
    if (!pictures::formatOf(file).windows) {
        throw UsageError(file +
                         " must end in .exr: the lights are brighter than other formats "
                         "hold");
    }
    pictures::requireWritable(file);
}

OIIO::ImageSpec exrSpec(const scene::Scene& picture, std::vector<std::string> channels,
                        OIIO::TypeDesc type) {
    OIIO::ImageSpec imageSpec(picture.width, picture.height, static_cast<int>(channels.size()),
                              type);
    imageSpec.channelnames = std::move(channels);
    imageSpec.attribute("compression", "zip");
    // The encoder would write the present time, and two runs would give two files.
    imageSpec.attribute("DateTime", "2000:01:01 00:00:00");
    return imageSpec;
}

}  // namespace

SceneCommand::SceneCommand(CLI::App& parent, const Invocation& invocation)
    : m_invocation(invocation) {
    m_app = parent.add_subcommand("scene", "Write a picture of a street at night, to blur it");
    m_app->allow_extras();
    m_app->add_option("OUTPUT", m_output, "EXR file to write")->type_name("FILE.exr")->required();
    m_app->add_option("--size", m_size, "in pixels; default 1920x1080")->type_name("WxH");
    m_app->add_option("--depth", m_depth, "write its distances too, as channel Z")
        ->type_name("FILE.exr");
}

int SceneCommand::run() {
    const pictures::Window size = parseSize("--size", m_size, kLargestSide);
    requireExr(m_output);
    if (!m_depth.empty()) {
        requireExr(m_depth);
        if (std::filesystem::weakly_canonical(m_output) ==
            std::filesystem::weakly_canonical(m_depth)) {
            throw UsageError("the picture and its depth need two files; name another with --depth");
        }
    }
    const scene::Scene street =
        scene::makeScene(size.width(), size.height(), pictures::interruptFlag());
    pictures::throwIfInterrupted();
    pictures::writeChannels(m_output, exrSpec(street, {"R", "G", "B"}, OIIO::TypeDesc::HALF),
                            street.colours);
    if (!m_depth.empty()) {
        pictures::writeChannels(m_depth, exrSpec(street, {"Z"}, OIIO::TypeDesc::FLOAT),
                                street.distances);
    }
    return kExitSuccess;
}

}  // namespace cli
