// SPDX-License-Identifier: Apache-2.0
#pragma once
// Which frames of a shot are meant, and the names of their files.

#include <optional>
#include <string>
#include <vector>

namespace shot {

// The frames of a list such as "1001-1100", "1001-1100x2" (every second one) or "1,5,-3--1":
// ascending, each once, numbers of at most nine digits. Throws std::invalid_argument, naming the
// part that isn't understood, and for more than a million frames.
std::vector<int> parseFrames(const std::string& text);

// The shortest list of ranges for ascending frames, such as "1001-1003, 1010"; "no frames".
std::string framesText(const std::vector<int>& frames);

// The name of a sequence's files, in which "####" or "%04d" stands for the number of the frame with
// at least as many digits. The sign of a negative number counts as one of them.
class FilePattern {
public:
    // A text without such a place is the name of one file for all frames. Throws
    // std::invalid_argument for two places.
    explicit FilePattern(std::string text);
    // `text` is a name, whatever is in it.
    static FilePattern literal(std::string text);

    const std::string& text() const { return text_; }
    bool hasNumber() const { return digits_.has_value(); }
    std::string name(int frame) const;
    // The frames that there are files of, ascending; none without a number. What follows a colon
    // after the number isn't part of the file's name if there are files without it: a layer.
    std::vector<int> framesOnDisk() const;

private:
    FilePattern() = default;
    std::optional<int> frameOf(const std::string& file) const;

    std::string text_;
    std::string before_;  // the number
    std::string after_;
    std::optional<std::size_t> digits_;
};

}  // namespace shot
