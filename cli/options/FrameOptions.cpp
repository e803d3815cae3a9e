// SPDX-License-Identifier: Apache-2.0
#include "cli/options/FrameOptions.h"

#include <system_error>

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFile.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr int kMostThreads = 1024;

// A ratio N/D or a decimal number.
double parseAspect(const std::string& text) {
    if (text.find('/') == std::string::npos) {
        const double aspect = parseNumber("--pixel-aspect", text);
        if (aspect > 0.0) return aspect;
        throw UsageError("--pixel-aspect takes a ratio above 0, not \"" + text + "\"");
    }
    const PF_RationalScale ratio = parseRatio("--pixel-aspect", text);
    return static_cast<double>(ratio.num) / ratio.den;
}

pictures::AlphaRule parseAlpha(const std::string& text) {
    if (text.empty()) return pictures::AlphaRule::kByFile;
    constexpr Choice<pictures::AlphaRule> kRules[] = {
        {"straight", pictures::AlphaRule::kStraight},
        {"associated", pictures::AlphaRule::kAssociated},
        {"ignore", pictures::AlphaRule::kIgnore}};
    return parseChoice("--alpha", text, kRules);
}

// The output must not be a file that is being read.
void requireOtherFile(const std::string& output, const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
        std::error_code ignored;
        if (fs::equivalent(pictures::parseSourceName(input).file, output, ignored)) {
            throw UsageError(output + " is an input and can't be the output; name another with -o");
        }
    }
}

}  // namespace

void FrameOptions::addTo(CLI::App& app, const std::string& inputHelp) {
    app.add_option("INPUT", input_, inputHelp)->required();
    app.add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
    effect_.addTo(app);
    occlusion_.addTo(app);
    camera_.addTo(app);
    presets_.addTo(app);
}

void FrameOptions::addImageTo(CLI::App& app) {
    colour_.addTo(app);
    app.option_defaults()->group("Pixels");
    app.add_option("--alpha", alpha_,
                   "how the input's colours relate to alpha: straight, associated (multiplied "
                   "by it) or ignore; default: as the file says")
        ->type_name("straight|associated|ignore");
    app.add_option(
           "--pixel-aspect", pixelAspect_,
           "pixel width relative to height, or one number above 0; default: that of the input")
        ->type_name("N/D");
    addProcessOptions(app);
}

void FrameOptions::addProcessOptions(CLI::App& app) {
    app.option_defaults()->group("Process");
    app.add_option("--threads", threads_,
                   "threads to render with, 1 to " + std::to_string(kMostThreads) +
                       "; default: one per processor")
        ->type_name("N");
    app.add_option("--memory-limit", memoryLimit_,
                   "bytes of host memory that the effect may use, k, M and G standing for powers "
                   "of 1024, such as 900M; default: no limit")
        ->type_name("BYTES");
    app.add_flag("--quiet", quiet_, "print only errors");
    app.add_flag("--strict", strict_, "treat every warning as an error, and write no image");
}

headless::HostOptions FrameOptions::hostOptions() const {
    headless::HostOptions options;
    if (!threads_.empty()) options.threads = parseWhole("--threads", threads_, 1, kMostThreads);
    if (!memoryLimit_.empty()) options.memoryLimit = parseBytes("--memory-limit", memoryLimit_);
    return options;
}

RenderPlan FrameOptions::plan() const {
    RenderPlan plan{.input = input_, .bundle = bundle_};
    plan.alpha = parseAlpha(alpha_);
    if (!pixelAspect_.empty()) plan.pixelAspect = parseAspect(pixelAspect_);
    plan.host = hostOptions();
    plan.quiet = quiet_;
    plan.strict = strict_;
    return plan;
}

void FrameOptions::checkOutput(const fs::path& output) const {
    std::vector<std::string> inputs = effect_.files();
    inputs.push_back(input_);
    presets_.checkSaved(inputs, output.string());
    if (!presets_.file().empty()) inputs.push_back(presets_.file());
    requireOtherFile(output.string(), inputs);
    pictures::requireWritable(output);
}

}  // namespace cli
