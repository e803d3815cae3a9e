// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace cli {

// The layout of --help: long texts broken into lines, and examples before the footer.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter();
    std::string make_option(const CLI::Option* option, bool positional) const override;
    std::string make_footer(const CLI::App* app) const override;
};

}  // namespace cli
