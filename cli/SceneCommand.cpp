#include "cli/SceneCommand.h"

#include <ostream>
#include <system_error>

#include "cli/AtomicFile.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/PictureFormats.h"
#include "cli/PictureWriter.h"
#include "cli/Scene.h"

namespace cli {
namespace {

constexpr int kLargestSide = 16384;

void requireExr(const std::string& file) {
    if (!formatOf(file).windows) {
        throw UsageError(file +
                         " must end in .exr: the lights are brighter than other formats "
                         "hold");
    }
    requireWritable(file);
}

OIIO::ImageSpec exrSpec(const Scene& scene, std::vector<std::string> channels,
                        OIIO::TypeDesc type) {
    OIIO::ImageSpec imageSpec(scene.width, scene.height, static_cast<int>(channels.size()), type);
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
    const Window size = parseSize("--size", m_size, kLargestSide);
    requireExr(m_output);
    if (!m_depth.empty()) {
        requireExr(m_depth);
        if (std::filesystem::weakly_canonical(m_output) ==
            std::filesystem::weakly_canonical(m_depth)) {
            throw UsageError("the picture and its depth need two files; name another with --depth");
        }
    }
    const Scene scene = makeScene(size.width(), size.height());
    writeChannels(m_output, exrSpec(scene, {"R", "G", "B"}, OIIO::TypeDesc::HALF), scene.colours);
    if (!m_depth.empty()) {
        writeChannels(m_depth, exrSpec(scene, {"Z"}, OIIO::TypeDesc::FLOAT), scene.distances);
    }
    return kExitSuccess;
}

}  // namespace cli
