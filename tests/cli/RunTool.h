#pragma once
// Runs the built tool as a process.

#include <string>
#include <vector>

namespace cli::test {

struct ToolRun {
    int exitCode = -1;  // 128 + the signal's number if a signal ended it
    std::string out;
    std::string err;
};

// Runs `orbel` with these arguments and waits for its end.
ToolRun runTool(const std::vector<std::string>& arguments);

// The same, but presses Control-C as soon as the tool has printed anything on standard output.
ToolRun interruptTool(const std::vector<std::string>& arguments);

}  // namespace cli::test
