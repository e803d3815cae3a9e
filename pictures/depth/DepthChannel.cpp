// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthChannel.h"

#include <OpenImageIO/strutil.h>

#include <algorithm>

namespace pictures {
namespace {

using OIIO::Strutil::iends_with;
using OIIO::Strutil::iequals;
using OIIO::Strutil::istarts_with;

// What renderers and compositing programs call depth, in the order in which it is taken. The longer
// names come first: in "ViewLayer.Depth.Z" and "ViewLayer.Shadow.Z" the layer decides.
constexpr const char* kDepthNames[] = {"depth.Z", "depth.V", "depth.Y", "depth.R",  "Z",
                                       "depth",   "zdepth",  "Pz",      "distance", "disparity"};

bool endsWith(const std::string& name, const std::string& ending) {
    return iequals(name, ending) || iends_with(name, "." + ending);
}

// The layer of the channel with the dot after it, such as "ViewLayer.Depth."; empty without one.
std::string layerPrefix(const std::string& channel) {
    return channel.substr(0, channel.rfind('.') + 1);  // npos + 1 is 0
}

// Whether the channel's layer also has one called `name`.
bool hasNeighbour(const std::vector<ChannelPlace>& channels, const std::string& channel,
                  const std::string& name) {
    return std::any_of(channels.begin(), channels.end(), [&](const ChannelPlace& other) {
        return iequals(other.name, layerPrefix(channel) + name);
    });
}

bool isSomethingElse(const std::vector<ChannelPlace>& channels, const std::string& channel) {
    const bool vector = endsWith(channel, "Z") && hasNeighbour(channels, channel, "X") &&
                        hasNeighbour(channels, channel, "Y");
    return vector || endsWith(channel, "mist.Z");
}

// The first channel for which `matches(channel, name)` holds, in the order of the list of names.
template <class Matches>
std::optional<std::string> firstMatch(const std::vector<ChannelPlace>& channels, Matches matches) {
    for (const char* name : kDepthNames) {
        for (const ChannelPlace& channel : channels) {
            if (!matches(channel.name, name)) continue;
            if (!isSomethingElse(channels, channel.name)) return channel.name;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> findDepthChannel(const std::vector<ChannelPlace>& channels,
                                            const std::string& layer) {
    const std::string prefix = layer.empty() ? "" : layer + ".";
    const auto isNamed = [&](const std::string& channel, const char* name) {
        return iequals(channel, prefix + name);
    };
    const auto endsInName = [&](const std::string& channel, const char* name) {
        return istarts_with(channel, prefix) && endsWith(channel, name);
    };
    std::optional<std::string> found = firstMatch(channels, isNamed);
    if (!found) found = firstMatch(channels, endsInName);
    return found;
}

bool namesDisparity(const std::string& name) {
    return endsWith(name, "disparity") || iends_with(layerPrefix(name), "disparity.");
}

}  // namespace pictures
