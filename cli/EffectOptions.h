#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "cli/ParameterOptions.h"
#include "pictures/DepthMapReader.h"
#include "pictures/Messages.h"

namespace cli {

// Everything on a command line that sets controls of the effect: an option for each, and how the
// values of a depth map are meant.
class EffectOptions {
public:
    explicit EffectOptions(std::vector<headless::ParameterInfo> controls);

    void addTo(CLI::App& app);
    // Whether any of them was given.
    bool any() const;
    // The files that the options name, for comparing with the output.
    std::vector<std::string> files() const;
    // Sets the controls and reads the layers. `out` gets the range that --depth-auto finds. Throws
    // UsageError for a value that a control can't have, and as the readers do.
    void apply(headless::ParameterSet& parameters, pictures::Messages& messages,
               std::ostream& out) const;

private:
    pictures::DepthMapping mapping() const;
    void applyLayer(headless::ParameterSet& parameters, const Setting& setting,
                    pictures::Messages& messages, std::ostream& out) const;

    ParameterOptions m_controls;
    std::string m_near;
    std::string m_far;
    bool m_automatic = false;
    bool m_inverse = false;
};

}  // namespace cli
