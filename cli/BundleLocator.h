#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cli {

// The folder that this program lies in; `argv0` helps where the system can't tell.
std::filesystem::path programFolder(const char* argv0);

// Where the bundle is looked for, in order: beside the tool, then where it is installed to,
// ../lib/orbel unless the build was told otherwise.
std::vector<std::filesystem::path> bundlePlaces(const std::filesystem::path& programFolder);

// The bundle to load: `named` if it isn't empty, else the first of the places that exists.
// None if there is no such file.
std::optional<std::filesystem::path> locateBundle(const std::string& named,
                                                  const std::filesystem::path& programFolder);

// The FILE of `--bundle FILE` or `--bundle=FILE` among the arguments, empty without one. The bundle
// declares options itself, so that it has to be known before the arguments can be parsed.
std::string bundleArgument(const std::vector<std::string>& arguments);

}  // namespace cli
