// SPDX-License-Identifier: Apache-2.0
#include "cli/options/PresetOptions.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <utility>

#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFile.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureSettings.h"
#include "shot/PresetText.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

// Where the first option is on the command line, the second of a preset isn't meant any more.
struct Rival {
    const char* given;
    const char* dropped;
};
constexpr Rival kRivals[] = {{"focus", "focal-distance"},   {"focus", "focus-at"},
                             {"focus", "use-focus-point"},  {"focus-at", "focal-distance"},
                             {"focus-at", "focus"},         {"focus-at", "use-focus-point"},
                             {"focal-distance", "focus"},   {"focal-distance", "focus-at"},
                             {"use-focus-point", "focus"},  {"use-focus-point", "focus-at"},
                             {"depth-near", "depth-auto"},  {"depth-far", "depth-auto"},
                             {"depth-auto", "depth-near"},  {"depth-auto", "depth-far"},
                             {"camera", "scene-unit"},      {"camera", "blur-radius"},
                             {"camera", "focal-distance"},  {"camera", "profile"},
                             {"camera", "use-focus-point"}, {"camera", "depth-near"},
                             {"camera", "depth-far"},       {"camera", "depth-auto"},
                             {"camera", "depth-inverse"},   {"raw", "linear"},
                             {"raw", "colour-out"},         {"linear", "raw"},
                             {"colour-out", "raw"},         {"occlusion", "bits"}};

bool isExcluded(const CLI::App& app, const std::string& option) {
    return std::ranges::any_of(kRivals, [&](const Rival& rival) {
        return option == rival.dropped && isGiven(app, rival.given);
    });
}

// Whether a message is about an option.
bool mentions(const std::string& message, const std::string& option) {
    const std::string name = "--" + option;
    for (auto at = message.find(name); at != std::string::npos; at = message.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if (end == message.size()) return true;
        const auto next = static_cast<unsigned char>(message[end]);
        if (next != '-' && std::isalnum(next) == 0) return true;
    }
    return false;
}

std::string readText(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text(shot::kMostPresetBytes + 1, '\0');
    std::error_code ignored;
    if (!stream || fs::is_directory(file, ignored)) {
        throw pictures::MissingFile("cannot read the preset " + file + "; check the name", file);
    }
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

bool isSameFile(const std::string& a, const std::string& b) {
    if (fs::path(a).lexically_normal() == fs::path(b).lexically_normal()) return true;
    std::error_code ignored;
    return fs::equivalent(a, b, ignored);
}

}  // namespace

void PresetOptions::addTo(CLI::App& app) {
    app_ = &app;
    const std::string group = "Presets";
    app.add_option("--preset", preset_,
                   "settings to start from, as --save-preset writes them, or an image that holds "
                   "those that it was made with; other options override them")
        ->type_name("FILE")
        ->group(group);
    app.add_option("--save-preset", saved_,
                   "write the settings to this file, with paths relative to it. Controls take keys "
                   "over frames, too: --focal-distance 1001:0.2,1024:0.8:smooth,1048:0.3")
        ->type_name("FILE")
        ->group(group);
}

void PresetOptions::load() {
    if (preset_.empty()) return;
    if (!pictures::titleBySuffix(preset_).empty()) return loadFrom(preset_);
    take({shot::parsePreset(readText(preset_), preset_, ORBEL_VERSION),
          fs::path(preset_).parent_path(), preset_});
}

void PresetOptions::loadFrom(const std::string& picture) {
    const pictures::PictureFile file(picture);
    const std::string text = pictures::settingsIn(file.picture().imageSpec);
    if (text.empty()) {
        throw Failure(picture + " holds no settings; only pictures that orbel has written do");
    }
    take({shot::parsePreset(text, picture, ORBEL_VERSION), file.file().parent_path(), picture});
}

void PresetOptions::take(PlacedPreset placed) {
    loaded_ = std::move(placed);
    // A focus that is given beside the camera takes the place of the camera's own.
    auto& camera = loaded_.preset.inputs.camera;
    if (camera && (isGiven(*app_, "focus") || isGiven(*app_, "focus-at"))) camera->focus.reset();
    const std::vector<PresetValue> values = valuesOf(loaded_, controls_);
    std::ranges::copy_if(values, std::back_inserter(used_), [&](const PresetValue& value) {
        return !isGiven(*app_, value.option) && !isExcluded(*app_, value.option) &&
               app_->get_option_no_throw("--" + value.option) != nullptr;
    });
    fill(used_);
}

void PresetOptions::fill(const std::vector<PresetValue>& values) {
    for (const PresetValue& value : values) {
        CLI::Option* option = app_->get_option_no_throw("--" + value.option);
        option->add_result(value.text);
        option->run_callback();
    }
}

shot::Preset PresetOptions::settings(const fs::path& folder) const {
    return presetOf(*app_, effect_, controls_, loaded_, folder, ORBEL_VERSION);
}

void PresetOptions::checkSaved(const std::vector<std::string>& inputs,
                               const std::string& output) const {
    if (!saves()) return;
    if (isSameFile(saved_, output)) {
        throw UsageError(saved_ +
                         " is the output and can't be the preset, too; name another with "
                         "--save-preset");
    }
    for (const std::string& input : inputs) {
        if (!isSameFile(saved_, pictures::parseSourceName(input).file.string())) continue;
        throw UsageError(saved_ +
                         " is an input and can't be the preset to write; name another "
                         "with --save-preset");
    }
    pictures::requireWritable(saved_);
}

void PresetOptions::save() const {
    if (!saves()) return;
    const std::string text =
        shot::presetText(settings(fs::path(saved_).parent_path()), shot::Layout::kIndented);
    pictures::AtomicFile file(saved_);
    std::fwrite(text.data(), 1, text.size(), file.stream());
    file.flush();
    file.commit();
}

void PresetOptions::rethrow(const UsageError& error) const {
    const std::string message = error.what();
    std::string places;
    for (const PresetValue& value : used_) {
        if (!mentions(message, value.option)) continue;
        places += (places.empty() ? "" : ", ") + ("--" + value.option) + " is from " + value.place;
    }
    if (places.empty()) throw error;
    const bool alsoGiven = std::ranges::any_of(app_->get_options(), [&](const CLI::Option* option) {
        const std::string& name = option->get_single_name();
        return option->count() > 0 && mentions(message, name) &&
               std::ranges::find(used_, name, &PresetValue::option) == used_.end();
    });
    const std::string text = message + " (" + places + ")";
    if (alsoGiven) throw UsageError(text);
    throw Failure(text);
}

}  // namespace cli
