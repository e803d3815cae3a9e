#pragma once
// Which channels of a file make up the picture that is asked for.

#include <string>
#include <vector>

namespace pictures {

// One channel of one part of a file.
struct ChannelPlace {
    std::string name;  // whole, such as "ViewLayer.Combined.R"
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
};

// The channels for layer `wanted`, which may also be the whole name of a single channel; without a
// name the colours that stand in no layer, else those of the first layer that has colours. A layer
// is what the channel names share before their last dot. Throws Failure, naming `file`, with the
// list of names if there is no such layer or it is neither grey nor colour.
ChannelChoice chooseChannels(const std::vector<ChannelPlace>& channels, const std::string& wanted,
                             const std::string& file);

}  // namespace pictures
