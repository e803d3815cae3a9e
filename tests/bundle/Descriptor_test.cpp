// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "bundle/descriptor/PluginProperties.h"
#include "effect/Identity.h"

namespace descriptor {
namespace {

using namespace std::string_literals;

// A description short enough to write its bytes down by hand.
constexpr const char* kText = R"(
# comment
name = Nm
category = Cat1
match_name = X Y
entry_point = Go
interface_version = 13.28
effect_version = 0xA0001
out_flags = 0x6000001
out_flags2 = 134222976
)";

Description sample() {
    std::istringstream text(kText);
    return read(text);
}

std::string asString(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

const std::string kMacList =
    "\0\0\0\0"
    "\0\0\0\x0D"s
    "8BIMkind\0\0\0\0\0\0\0\4eFKT"s
    "8BIMname\0\0\0\0\0\0\0\3\2Nm\0"s
    "8BIMcatg\0\0\0\0\0\0\0\5\4Cat1\0\0\0"s
    "8BIMmi64\0\0\0\0\0\0\0\3\2Go\0"s
    "8BIMma64\0\0\0\0\0\0\0\3\2Go\0"s
    "8BIMePVR\0\0\0\0\0\0\0\4\0\2\0\0"s
    "8BIMeSVR\0\0\0\0\0\0\0\4\0\x0D\0\x1C"s
    "8BIMeVER\0\0\0\0\0\0\0\4\0\x0A\0\1"s
    "8BIMeINF\0\0\0\0\0\0\0\2\0\0\0\0"s
    "8BIMeGLO\0\0\0\0\0\0\0\4\6\0\0\1"s
    "8BIMeGL2\0\0\0\0\0\0\0\4\x08\0\x14\x80"s
    "8BIMeMNA\0\0\0\0\0\0\0\4\3X Y"s
    "8BIMaeFL\0\0\0\0\0\0\0\4\0\0\0\0"s;

const std::string kWindowsList =
    "\1\0"
    "\0\0\0\0"
    "\x0C\0\0\0"s
    "MIB8dnik\0\0\0\0\4\0\0\0TKFe"s
    "MIB8eman\0\0\0\0\4\0\0\0\2Nm\0"s
    "MIB8gtac\0\0\0\0\x08\0\0\0\4Cat1\0\0\0"s
    "MIB84668\0\0\0\0\4\0\0\0Go\0\0"s
    "MIB8RVPe\0\0\0\0\4\0\0\0\2\0\0\0"s
    "MIB8RVSe\0\0\0\0\4\0\0\0\x0D\0\x1C\0"s
    "MIB8REVe\0\0\0\0\4\0\0\0\1\0\x0A\0"s
    "MIB8FNIe\0\0\0\0\4\0\0\0\0\0\0\0"s
    "MIB8OLGe\0\0\0\0\4\0\0\0\1\0\0\6"s
    "MIB82LGe\0\0\0\0\4\0\0\0\x80\x14\0\x08"s
    "MIB8ANMe\0\0\0\0\4\0\0\0\3X Y"s
    "MIB8LFea\0\0\0\0\4\0\0\0\0\0\0\0"s;

TEST(Descriptor, BothFormsByteForByte) {
    EXPECT_EQ(asString(macPropertyList(sample())), kMacList);
    EXPECT_EQ(asString(windowsPropertyList(sample())), kWindowsList);
}

TEST(Descriptor, ResourceFileHoldsTheListAsItsOnlyResource) {
    const auto size = static_cast<char>(kMacList.size() - 256);
    const auto dataSize = static_cast<char>(kMacList.size() + 4 - 256);
    ASSERT_EQ(kMacList.size() / 256, 1U);
    const std::string head = "\0\0\1\0\0\0\2"s + dataSize + "\0\0\1"s + dataSize + "\0\0\0\x32"s;
    const std::string map = head + std::string(8, '\0') +
                            "\0\x1C\0\x32\0\0PiPL\0\0\0\x0A\x3E\x80\xFF\xFF"s +
                            std::string(8, '\0');
    const std::string expected = head + std::string(240, '\0') + "\0\0\1"s + size + kMacList + map;
    EXPECT_EQ(asString(macResourceFile(sample())), expected);
}

TEST(Descriptor, OwnDescriptionAgreesWithTheCode) {
    const Description own = orbelDescription();
    EXPECT_EQ(own.name, "Orbel");
    EXPECT_EQ(own.category, "TARNWICK");
    EXPECT_EQ(own.matchName, "TARNWICK Orbel");
    EXPECT_EQ(own.entryPoint, "EntryPointFunc");
    EXPECT_EQ(own.interfaceMajor, 13);
    EXPECT_EQ(own.interfaceMinor, 28);
    EXPECT_EQ(own.effectVersion, 0xA0001U);
    EXPECT_EQ(own.outFlags, 0x6000001U);
    EXPECT_EQ(own.outFlags2, 0x8001480U);
}

// The version in the names of packages and in the macOS bundle's information.
TEST(Descriptor, EffectVersionIsTheProjects) {
    EXPECT_EQ(std::to_string(identity::kVersion) + "." + std::to_string(identity::kSubversion) +
                  "." + std::to_string(identity::kBugFix),
              ORBEL_VERSION);
}

std::string errorOf(const std::string& text) {
    std::istringstream stream(text);
    try {
        read(stream);
    } catch (const DescriptionError& error) {
        return error.what();
    }
    return "";
}

std::string replaced(std::string_view from, const std::string& to) {
    std::string text = kText;
    return text.replace(text.find(from), from.size(), to);
}

TEST(Descriptor, FaultyDescriptionsAreRefusedWithTheFieldNamed) {
    EXPECT_EQ(errorOf(kText), "");
    EXPECT_EQ(errorOf(replaced("name = Nm", "name = " + std::string(47, 'n'))), "");
    EXPECT_EQ(errorOf(replaced("name = Nm", "name = " + std::string(48, 'n'))),
              "field 'name' has 48 bytes, at most 47 fit");
    EXPECT_EQ(errorOf(replaced("X Y", std::string(256, 'm'))),
              "field 'match_name' has 256 bytes, at most 255 fit");
    EXPECT_EQ(errorOf(replaced("category = Cat1", "")), "field 'category' is missing");
    EXPECT_EQ(errorOf(replaced("category", "name")), "field 'name' stands twice");
}

}  // namespace
}  // namespace descriptor
