// SPDX-License-Identifier: Apache-2.0
#include "cli/BundleLocator.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

#ifdef _WIN32
constexpr const char* kBundleName = "Orbel.aex";
#else
constexpr const char* kBundleName = "Orbel.so";
#endif

}  // namespace

fs::path programFolder(const char* argv0) {
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error) return self.parent_path();
    return fs::absolute(fs::path(argv0), error).parent_path();
}

std::vector<fs::path> bundlePlaces(const fs::path& programFolder) {
    return {programFolder / kBundleName,
            (programFolder / ORBEL_BUNDLE_FOLDER / kBundleName).lexically_normal()};
}

std::optional<fs::path> locateBundle(const std::string& named, const fs::path& programFolder) {
    std::error_code ignored;
    if (!named.empty()) {
        if (!fs::is_regular_file(named, ignored)) return std::nullopt;
        return fs::absolute(named);
    }
    for (const fs::path& place : bundlePlaces(programFolder)) {
        if (fs::is_regular_file(place, ignored)) return place;
    }
    return std::nullopt;
}

std::string bundleArgument(const std::vector<std::string>& arguments) {
    const std::string option = "--bundle";
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        if (arguments[i] == option && i + 1 < arguments.size()) return arguments[i + 1];
        if (arguments[i].starts_with(option + "=")) return arguments[i].substr(option.size() + 1);
    }
    return {};
}

}  // namespace cli
