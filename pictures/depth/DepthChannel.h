// SPDX-License-Identifier: Apache-2.0
#pragma once
// Finds the depth among the channels of a file.

#include <optional>
#include <string>
#include <vector>

#include "pictures/files/PictureLayers.h"

namespace pictures {

// The full name of the channel that holds depth, by the list of names in the source; letter case
// doesn't matter. First come channels with exactly such a name, then those whose name ends with it
// after a dot. A Z next to X and Y belongs to a vector, and mist isn't depth. With `layer`, only
// channels of that layer and of the layers in it count. None if there is no such channel.
std::optional<std::string> findDepthChannel(const std::vector<ChannelPlace>& channels,
                                            const std::string& layer);

// Whether a channel or layer is called "disparity".
bool namesDisparity(const std::string& name);

}  // namespace pictures
