// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/App.hpp>
#include <string>

#include "pictures/Messages.h"
#include "pictures/colour/ColourPlan.h"

namespace cli {

// The options that say what the numbers of input and output mean.
class ColourOptions {
public:
    // This object must outlive the app.
    void addTo(CLI::App& app);
    // The names that can be used: those of --ocio, or of the variable OCIO, and the tool's own.
    // Warns if the variable's file can't be read. Throws Failure if that of --ocio can't, and
    // UsageError for options that exclude each other and for unknown names.
    pictures::ColourConfig config(pictures::Messages& messages) const;
    const pictures::ColourWishes& wishes() const { return wishes_; }

private:
    pictures::ColourWishes wishes_;
    std::string ocio_;
};

}  // namespace cli
