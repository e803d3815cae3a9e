// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <vector>

namespace cli {

// What becomes of a frame that an input has no file for.
enum class MissingRule { kError, kSkip, kHold, kBlack };

// For which frames the depth that is found in the pictures holds.
struct Survey {
    bool each = false;         // found in each frame anew
    std::optional<int> frame;  // the only one that is looked at; none: all that there are
};

// The options for more than one frame.
class ShotOptions {
public:
    void addTo(CLI::App& app);

    // Throw UsageError for texts that aren't understood.
    std::optional<std::vector<int>> frames() const;
    std::optional<int> jobs() const;
    MissingRule missing() const;
    Survey survey() const;
    // Whether frames are named.
    bool given() const { return !frames_.empty(); }
    bool skipsExisting() const { return skipExisting_; }
    bool keepsGoing() const { return keepGoing_; }
    // Throws UsageError if an option is given that one picture has no use for. A preset may hold
    // --survey.
    void requireNone() const;

private:
    std::string frames_;
    std::string jobs_;
    std::string missing_;
    std::string survey_;
    bool skipExisting_ = false;
    bool keepGoing_ = false;
};

}  // namespace cli
