// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/options/DepthOptions.h"
#include "cli/shot/ShotOptions.h"
#include "shot/Frames.h"

namespace cli {

// A frame to render.
struct ShotFrame {
    int number = 0;
    bool black = false;  // instead of a picture that is missing
};

// The files of a shot, frame by frame.
class ShotFiles {
public:
    // `input`, `output` and `layers` are names of files, with or without a place for the number of
    // the frame; an input that there is a file of is a name, whatever is in it. Throws UsageError
    // for names that can't be of a sequence.
    ShotFiles(const std::string& input, const std::string& output,
              const std::vector<std::string>& layers);

    // Whether any input is a sequence.
    bool isSequence() const;
    // The frames to render: those asked for, or all of the input. Throws UsageError if none are
    // known or an output has no number; Failure for an input without files, and for missing frames
    // if that is an error.
    std::vector<ShotFrame> frames(const std::optional<std::vector<int>>& wanted,
                                  MissingRule rule) const;
    // All frames that all inputs have files of, ascending; 0 alone if no input is a sequence.
    std::vector<int> complete() const;

    std::string input(const ShotFrame& frame) const;
    std::string output(const ShotFrame& frame) const;
    // The file of a frame for the text of an option that names a layer.
    LayerNames layers(const ShotFrame& frame) const;
    const shot::FilePattern& inputPattern() const { return input_.pattern; }
    const shot::FilePattern& outputPattern() const { return output_; }

private:
    struct Source {
        shot::FilePattern pattern;
        std::vector<int> there{};  // frames that it has files of

        bool has(int frame) const;
        // The frame whose file stands for `frame`, which has none: the last one before it, or else
        // the first one.
        int held(int frame) const;
        std::string name(int frame) const;
    };
    static Source source(const std::string& text);
    bool hasAll(int frame) const;
    std::string missingText(const std::vector<int>& frames) const;
    std::vector<int> defaultFrames() const;

    Source input_;
    shot::FilePattern output_;
    std::map<std::string, Source> layers_;  // by the option's text
};

}  // namespace cli
