// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cli {

// The folder of this program; taken from `argv0` where the system doesn't report it.
std::filesystem::path programFolder(const char* argv0);

// Where the bundle is searched, in order: next to the tool, then in its installed place,
// ../lib/orbel unless the build was configured otherwise.
std::vector<std::filesystem::path> bundlePlaces(const std::filesystem::path& programFolder);

// The bundle to load: `named` if it isn't empty, otherwise the first of the places where there is
// one. None if there is no such file.
std::optional<std::filesystem::path> locateBundle(const std::string& named,
                                                  const std::filesystem::path& programFolder);

// The FILE of `--bundle FILE` or `--bundle=FILE` among the arguments, empty without one. The bundle
// declares options of its own, so it has to be known before the arguments can be parsed.
std::string bundleArgument(const std::vector<std::string>& arguments);

}  // namespace cli
