// SPDX-License-Identifier: Apache-2.0
#include "cli/shot/ShotFiles.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "cli/Errors.h"
#include "pictures/files/PictureFile.h"
#include "pictures/files/StandardStreams.h"

namespace cli {
namespace {

shot::FilePattern patternOf(const std::string& text) {
    try {
        return shot::FilePattern(text);
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
}

bool isFile(const std::string& text) {
    std::error_code ignored;
    return std::filesystem::exists(pictures::parseSourceName(text).file, ignored);
}

}  // namespace

bool ShotFiles::Source::has(int frame) const {
    return !pattern.hasNumber() || std::ranges::binary_search(there, frame);
}

int ShotFiles::Source::held(int frame) const {
    const auto after = std::ranges::upper_bound(there, frame);
    return after == there.begin() ? there.front() : *std::prev(after);
}

std::string ShotFiles::Source::name(int frame) const {
    return pattern.name(has(frame) || there.empty() ? frame : held(frame));
}

ShotFiles::Source ShotFiles::source(const std::string& text) {
    if (isFile(text)) return {shot::FilePattern::literal(text)};
    shot::FilePattern pattern = patternOf(text);
    std::vector<int> there = pattern.framesOnDisk();
    return {std::move(pattern), std::move(there)};
}

ShotFiles::ShotFiles(const std::string& input, const std::string& output,
                     const std::vector<std::string>& layers)
    : input_(source(input)), output_(shot::FilePattern::literal(output)) {
    for (const std::string& layer : layers) layers_.emplace(layer, source(layer));
    output_ = patternOf(output);
}

bool ShotFiles::isSequence() const {
    return input_.pattern.hasNumber() || std::ranges::any_of(layers_, [](const auto& layer) {
               return layer.second.pattern.hasNumber();
           });
}

bool ShotFiles::hasAll(int frame) const {
    return input_.has(frame) &&
           std::ranges::all_of(layers_, [&](const auto& layer) { return layer.second.has(frame); });
}

std::string ShotFiles::missingText(const std::vector<int>& frames) const {
    std::string text;
    const auto add = [&](const Source& source) {
        std::vector<int> missing;
        std::ranges::copy_if(frames, std::back_inserter(missing),
                             [&](int frame) { return !source.has(frame); });
        if (missing.empty()) return;
        text += (text.empty() ? "" : "; ") + source.pattern.text() + " has no file for " +
                shot::framesText(missing);
    };
    add(input_);
    for (const auto& [name, source] : layers_) add(source);
    return text;
}

std::vector<int> ShotFiles::defaultFrames() const {
    if (input_.pattern.hasNumber()) return input_.there;
    for (const auto& [name, source] : layers_) {
        if (source.pattern.hasNumber()) return source.there;
    }
    throw UsageError("no input is a sequence; say which frames to render with --frames");
}

std::vector<ShotFrame> ShotFiles::frames(const std::optional<std::vector<int>>& wanted,
                                         MissingRule rule) const {
    const auto requireFiles = [](const Source& source) {
        if (!source.pattern.hasNumber() || !source.there.empty()) return;
        throw Failure("there are no files " + source.pattern.text() +
                      "; check the name, and the digits that # or %04d stand for");
    };
    requireFiles(input_);
    for (const auto& [name, source] : layers_) requireFiles(source);
    const std::vector<int> numbers = wanted ? *wanted : defaultFrames();
    if (numbers.size() > 1 && !output_.hasNumber()) {
        throw UsageError(output_.text() + " would be written " + std::to_string(numbers.size()) +
                         " times; put #### where the number of the frame belongs");
    }
    const std::string missing = missingText(numbers);
    if (!missing.empty() && rule == MissingRule::kError) {
        throw Failure(missing + "; render other --frames, or add --missing skip, hold or black");
    }
    std::vector<ShotFrame> frames;
    for (const int number : numbers) {
        const bool whole = hasAll(number);
        if (!whole && rule == MissingRule::kSkip) continue;
        frames.push_back({number, !whole && rule == MissingRule::kBlack});
    }
    return frames;
}

std::vector<int> ShotFiles::complete() const {
    if (!isSequence()) return {0};
    std::vector<int> frames = defaultFrames();
    std::erase_if(frames, [&](int frame) { return !hasAll(frame); });
    return frames;
}

std::string ShotFiles::input(const ShotFrame& frame) const {
    return input_.name(frame.number);
}

std::string ShotFiles::output(const ShotFrame& frame) const {
    return output_.name(frame.number);
}

LayerNames ShotFiles::layers(const ShotFrame& frame) const {
    return [this, number = frame.number](const std::string& text) {
        const auto layer = layers_.find(text);
        return layer == layers_.end() ? text : layer->second.name(number);
    };
}

}  // namespace cli
