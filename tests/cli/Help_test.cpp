// SPDX-License-Identifier: Apache-2.0
// What the help says, and the suggestions for what is misspelt.
#include <gmock/gmock.h>

#include <algorithm>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::HasSubstr;

// A help text in one line, with single spaces.
std::string joinedHelp(const std::string& command) {
    std::istringstream words(runTool({command, "--help"}).out);
    std::string text;
    for (std::string word; words >> word;) text += word + " ";
    return text;
}

// The part of the help that begins with this option and its placeholder.
std::string partOf(const std::string& help, const std::string& option) {
    const std::size_t begin = help.find(option + " ");
    if (begin == std::string::npos) return "";
    const std::size_t end = help.find(" --", begin + 1);
    return help.substr(begin, end - begin);
}

TEST(Help, ExplainsEachControlWithItsRangeAndDefault) {
    const std::string help = joinedHelp("render");
    const auto controls = nlohmann::json::parse(runTool({"params", "--json"}).out);
    int seen = 0;
    for (const auto& control : controls) {
        if (!control.contains("option")) continue;
        const std::string part = partOf(help, control["option"].get<std::string>());
        EXPECT_THAT(part, HasSubstr("; default ")) << control["label"];
        if (control.contains("range")) {
            std::ostringstream least;
            least << std::fixed << std::setprecision(control["decimals"].get<int>())
                  << control["range"][0].get<double>();
            EXPECT_THAT(part, HasSubstr(" number from " + least.str() + " to "));
        }
        // Meaning, accepted values and default are parts of their own.
        EXPECT_GE(std::count(part.begin(), part.end(), ';'), 2) << part;
        ++seen;
    }
    EXPECT_GT(seen, 20);
    EXPECT_LT(help.find(" Effect: "), help.find(" Effect: Depth Map: "));
}

TEST(Help, FitsIntoAHundredColumnsAndHasTwoExamples) {
    for (const char* command :
         {"render", "params", "aperture", "scene", "compare", "about", "doctor"}) {
        std::istringstream lines(runTool({"help", command}).out);
        int examples = 0;
        bool options = true;
        for (std::string line; std::getline(lines, line);) {
            if (line == "Examples:") options = false;
            EXPECT_TRUE(!options || line.size() <= 100U) << line;
            if (line.starts_with(std::string("  orbel ") + command)) ++examples;
        }
        EXPECT_GE(examples, 2) << command;
    }
}

// The commands of the examples name their options as the parser does.
TEST(Help, ExamplesHaveOnlyKnownOptions) {
    for (const char* command : {"render", "params", "aperture", "scene", "compare", "doctor"}) {
        const std::string help = runTool({command, "--help"}).out;
        const std::size_t start = help.find("Examples:");
        ASSERT_NE(start, std::string::npos);
        std::istringstream words(help.substr(start));
        for (std::string word; words >> word && word != "Exit";) {
            if (!word.starts_with("--") || word == "--") continue;
            EXPECT_THAT(help.substr(0, start), HasSubstr("  " + word)) << command;
        }
    }
}

class Misspelt : public FolderTest {};

TEST_F(Misspelt, ChoicesAndFilesGetASuggestion) {
    writeText(path("photo.png"), "no picture");
    writeText(path("shot.0001.exr"), "no picture");
    const std::string out = path("out.png");
    const auto render = [&](const std::string& input, const std::vector<std::string>& more) {
        std::vector<std::string> arguments{"render", path(input), "-o", out};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runTool(arguments).err;
    };
    EXPECT_THAT(render("photo.png", {"--alpha", "asociated"}),
                HasSubstr("did you mean associated?"));
    EXPECT_THAT(render("photo.png", {"--composite-mode", "spilt"}),
                HasSubstr("did you mean split?"));
    EXPECT_THAT(runTool({"aperture", "haert", "-o", out}).err, HasSubstr("did you mean heart?"));
    EXPECT_THAT(render("phtoo.png", {}), HasSubstr("did you mean " + path("photo.png") + "?"));
    EXPECT_THAT(render("photo.png", {"--preset", path("phto.png.json")}),
                Not(HasSubstr("did you mean shot")));
    // Another frame, and nothing that is near.
    EXPECT_THAT(render("shot.0002.exr", {}), Not(HasSubstr("did you mean")));
    EXPECT_THAT(render("landscape.tif", {}), Not(HasSubstr("did you mean")));
    EXPECT_THAT(render("photo.png", {"--scene-unit", "x", "--camera", "f-stop=2"}),
                Not(HasSubstr("did you mean")));
}

}  // namespace
}  // namespace test
