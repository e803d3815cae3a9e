// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "pictures/depth/MapPlacement.h"
#include "shot/Frames.h"

namespace cli {

// `orbel check`: whether all frames of a sequence are there and whole; exit code 1 if not.
class CheckCommand : public Command {
public:
    CheckCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    std::optional<pictures::Size> wantedSize() const;
    shot::FilePattern pattern() const;
    std::vector<int> wantedFrames(const shot::FilePattern& pattern) const;

    const Invocation& invocation_;
    std::string files_;
    std::string frames_;
    std::string size_;
    bool quick_ = false;
};

}  // namespace cli
