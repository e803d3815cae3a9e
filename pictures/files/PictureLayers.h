// SPDX-License-Identifier: Apache-2.0
#pragma once
// Chooses the channels of a file that make up a picture.

#include <string>
#include <vector>

namespace pictures {

// One channel of one part of a file.
struct ChannelPlace {
    std::string name;  // with its layer, such as "ViewLayer.Combined.R"
    int part = 0;      // subimage
    int index = 0;     // in that part
};

// One or three colour channels of one part, and perhaps alpha.
struct ChannelChoice {
    int part = 0;
    std::vector<int> colours;
    int alpha = -1;                    // -1: none
    std::string colourName;            // short name of the first colour channel
    std::vector<std::string> leftOut;  // layers and single channels that are not in the choice
    std::vector<ChannelPlace> others;  // their channels
};

// The channels of the layer `wanted`, which may also be the full name of a single channel; if it is
// empty, the colours outside any layer, otherwise those of the first layer that has colours. A
// layer's name is what its channel names share before their last dot. Throws Failure, naming `file`
// and listing the names, if there is no such layer or it is neither grey nor colour.
ChannelChoice chooseChannels(const std::vector<ChannelPlace>& channels, const std::string& wanted,
                             const std::string& file);

}  // namespace pictures
