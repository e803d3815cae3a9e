// SPDX-License-Identifier: Apache-2.0
#pragma once
// Runs the built tool as a process.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace test {

struct ToolRun {
    int exitCode = -1;  // 128 + the signal's number if a signal ended it
    std::string out;
    std::string err;
};

// Reads up to one buffer from `file` and appends it to `text`; false at the end of the file.
inline bool drain(int file, std::string& text) {
    char buffer[4096];
    const ssize_t count = read(file, buffer, sizeof buffer);
    if (count > 0) text.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
}

// Runs `orbel` with these arguments and waits for it. With `interrupt`, sends Control-C as soon as
// the tool has printed anything on standard output.
inline ToolRun runTool(const std::vector<std::string>& arguments, bool interrupt = false) {
    std::vector<char*> argv{const_cast<char*>(ORBEL_TOOL)};
    for (const std::string& each : arguments) argv.push_back(const_cast<char*>(each.c_str()));
    argv.push_back(nullptr);
    std::array<int, 2> out{};
    EXPECT_EQ(pipe(out.data()), 0);
    std::FILE* const errors = std::tmpfile();
    const pid_t child = fork();
    if (child == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(fileno(errors), STDERR_FILENO);
        close(out[0]);
        close(out[1]);
        execv(ORBEL_TOOL, argv.data());
        _exit(127);
    }
    close(out[1]);
    ToolRun run;
    while (drain(out[0], run.out)) {
        if (interrupt) kill(child, SIGINT);
        interrupt = false;
    }
    close(out[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    lseek(fileno(errors), 0, SEEK_SET);
    while (drain(fileno(errors), run.err)) continue;
    std::fclose(errors);
    return run;
}

}  // namespace test
