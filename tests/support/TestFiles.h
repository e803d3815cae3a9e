// SPDX-License-Identifier: Apache-2.0
#pragma once
// Folders and image files for tests.

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/TestFolder.h"

namespace test {

// A folder of its own for each test, removed afterwards.
class FolderTest : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return (folder_.path / name).string(); }
    // The names in the folder, including hidden ones.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path)) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

private:
    TestFolder folder_;
};

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The message of the exception that `action` throws; empty if it throws none.
template <class Action>
std::string refusalOf(Action action) {
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

// An image header with these channel names; one named A is alpha.
inline OIIO::ImageSpec imageSpec(int width, int height, const std::vector<std::string>& channels,
                                 const OIIO::TypeDesc& type) {
    OIIO::ImageSpec made(width, height, static_cast<int>(channels.size()), type);
    made.channelnames = channels;
    for (std::size_t c = 0; c < channels.size(); ++c) {
        if (channels[c] == "A") made.alpha_channel = static_cast<int>(c);
    }
    return made;
}

// Writes values unchanged: integers of the file's own type, or floats.
template <class Value>
void writeValues(const std::string& path, const OIIO::ImageSpec& made,
                 const std::vector<Value>& values) {
    auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output && output->open(path, made)) << OIIO::geterror();
    ASSERT_TRUE(output->write_image(OIIO::BaseTypeFromC<Value>::value, values.data()));
    ASSERT_TRUE(output->close());
}

// Reads integers as stored if `Stored` is the file's own type.
template <class Stored>
std::vector<Stored> readValues(const std::string& path, OIIO::ImageSpec* found = nullptr) {
    OIIO::ImageSpec wishes;
    wishes.attribute("oiio:UnassociatedAlpha", 1);
    auto input = OIIO::ImageInput::open(path, &wishes);
    EXPECT_TRUE(input) << OIIO::geterror();
    if (!input) return {};
    if (found != nullptr) *found = input->spec();
    std::vector<Stored> values(input->spec().image_pixels() *
                               static_cast<std::size_t>(input->spec().nchannels));
    EXPECT_TRUE(input->read_image(0, 0, 0, input->spec().nchannels,
                                  OIIO::BaseTypeFromC<Stored>::value, values.data()));
    return values;
}

}  // namespace test
