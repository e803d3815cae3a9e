// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureLayers.h"

#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <iterator>
#include <optional>

#include "pictures/Errors.h"

namespace pictures {
namespace {

struct Layer {
    std::string name;  // empty for channels outside any layer
    int part = 0;
    std::vector<ChannelPlace> channels;
};

std::string layerName(const std::string& channel) {
    const std::size_t dot = channel.rfind('.');
    return dot == std::string::npos ? std::string() : channel.substr(0, dot);
}

std::string shortName(const std::string& channel) {
    return channel.substr(channel.rfind('.') + 1);  // npos + 1 is 0
}

std::vector<Layer> groupIntoLayers(const std::vector<ChannelPlace>& channels) {
    std::vector<Layer> layers;
    for (const ChannelPlace& channel : channels) {
        const std::string name = layerName(channel.name);
        const auto found = std::find_if(layers.begin(), layers.end(), [&](const Layer& layer) {
            return layer.name == name && layer.part == channel.part;
        });
        if (found != layers.end()) {
            found->channels.push_back(channel);
        } else {
            layers.push_back({name, channel.part, {channel}});
        }
    }
    return layers;
}

const ChannelPlace* findShort(const Layer& layer, std::initializer_list<const char*> names) {
    for (const ChannelPlace& channel : layer.channels) {
        for (const char* name : names) {
            if (OIIO::Strutil::iequals(shortName(channel.name), name)) return &channel;
        }
    }
    return nullptr;
}

std::vector<const ChannelPlace*> namedColours(const Layer& layer) {
    const ChannelPlace* red = findShort(layer, {"R", "red"});
    const ChannelPlace* green = findShort(layer, {"G", "green"});
    const ChannelPlace* blue = findShort(layer, {"B", "blue"});
    if (red != nullptr && green != nullptr && blue != nullptr) return {red, green, blue};
    return {};
}

// The colours of a layer: red, green and blue by name, otherwise its first three channels,
// otherwise its only one or its grey.
std::vector<const ChannelPlace*> colours(const Layer& layer, const ChannelPlace* alpha) {
    if (auto named = namedColours(layer); !named.empty()) return named;
    std::vector<const ChannelPlace*> others;
    for (const ChannelPlace& channel : layer.channels) {
        if (&channel != alpha) others.push_back(&channel);
    }
    if (others.size() >= 3) return {others[0], others[1], others[2]};
    const ChannelPlace* grey = findShort(layer, {"Y", "I", "L", "grey", "gray"});
    if (others.size() == 2 && grey != nullptr && findShort(layer, {"X", "Z"}) == nullptr) {
        return {grey};
    }
    return others.size() == 1 ? others : std::vector<const ChannelPlace*>{};
}

std::optional<ChannelChoice> choiceOf(const Layer& layer) {
    const ChannelPlace* alpha = findShort(layer, {"A", "alpha"});
    std::vector<const ChannelPlace*> found = colours(layer, alpha);
    if (found.empty() && layer.channels.size() == 1)
        found = {alpha};  // a single alpha is read as grey
    if (found.empty()) return std::nullopt;

    ChannelChoice choice;
    choice.part = layer.part;
    for (const ChannelPlace* channel : found) choice.colours.push_back(channel->index);
    if (alpha != nullptr && alpha != found.front()) choice.alpha = alpha->index;
    choice.colourName = shortName(found.front()->name);
    return choice;
}

bool hasColour(const Layer& layer) {
    return !namedColours(layer).empty();
}

const Layer* defaultLayer(const std::vector<Layer>& layers) {
    const auto outside = [](const Layer& layer) { return layer.name.empty(); };
    auto found = std::find_if(layers.begin(), layers.end(), [&](const Layer& layer) {
        return outside(layer) && choiceOf(layer).has_value();
    });
    if (found == layers.end()) found = std::find_if(layers.begin(), layers.end(), hasColour);
    if (found == layers.end() && layers.size() == 1) found = layers.begin();
    return found == layers.end() ? nullptr : &*found;
}

bool belongs(const ChannelChoice& choice, const ChannelPlace& channel) {
    return channel.part == choice.part &&
           (channel.index == choice.alpha ||
            std::count(choice.colours.begin(), choice.colours.end(), channel.index) > 0);
}

// The names of layers, and of channels outside any layer.
std::vector<std::string> namesLeftOut(const std::vector<ChannelPlace>& channels,
                                      const ChannelChoice& choice) {
    std::vector<std::string> names;
    for (const ChannelPlace& channel : channels) {
        if (belongs(choice, channel)) continue;
        const std::string layer = layerName(channel.name);
        const std::string& name = layer.empty() ? channel.name : layer;
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    return names;
}

std::string listOfNames(const std::vector<Layer>& layers,
                        const std::vector<ChannelPlace>& channels) {
    std::string layerList;
    for (const Layer& layer : layers) {
        if (!layer.name.empty()) layerList += (layerList.empty() ? "" : ", ") + layer.name;
    }
    std::string channelList;
    for (const ChannelPlace& channel : channels) {
        channelList += (channelList.empty() ? "" : ", ") + channel.name;
    }
    return (layerList.empty() ? "" : "its layers are " + layerList + "; ") + "its channels are " +
           channelList;
}

std::optional<ChannelChoice> singleChannel(const std::vector<ChannelPlace>& channels,
                                           const std::string& wanted) {
    for (const ChannelPlace& channel : channels) {
        if (channel.name != wanted) continue;
        ChannelChoice choice;
        choice.part = channel.part;
        choice.colours = {channel.index};
        choice.colourName = shortName(channel.name);
        return choice;
    }
    return std::nullopt;
}

const Layer* namedLayer(const std::vector<Layer>& layers, const std::string& wanted) {
    const auto found = std::find_if(layers.begin(), layers.end(),
                                    [&](const Layer& layer) { return layer.name == wanted; });
    return found == layers.end() ? nullptr : &*found;
}

}  // namespace

ChannelChoice chooseChannels(const std::vector<ChannelPlace>& channels, const std::string& wanted,
                             const std::string& file) {
    const std::vector<Layer> layers = groupIntoLayers(channels);
    const Layer* layer = wanted.empty() ? defaultLayer(layers) : namedLayer(layers, wanted);
    std::optional<ChannelChoice> choice = layer != nullptr ? choiceOf(*layer) : std::nullopt;
    if (!choice && !wanted.empty()) choice = singleChannel(channels, wanted);
    if (choice) {
        choice->leftOut = namesLeftOut(channels, *choice);
        std::copy_if(channels.begin(), channels.end(), std::back_inserter(choice->others),
                     [&](const ChannelPlace& channel) { return !belongs(*choice, channel); });
        return *choice;
    }
    const std::string names = listOfNames(layers, channels);
    if (wanted.empty()) {
        throw Failure(file + " has no colour image to choose; name a layer with " + file +
                      ":LAYER: " + names);
    }
    if (layer != nullptr) {
        throw Failure("layer " + wanted + " of " + file +
                      " is neither grey nor colour; name one of its channels: " + names);
    }
    throw Failure(file + " has no layer or channel " + wanted + ": " + names);
}

}  // namespace pictures
