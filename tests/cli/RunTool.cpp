#include "cli/RunTool.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace cli::test {
namespace {

struct Child {
    pid_t id = -1;
    int out = -1;
    int err = -1;
};

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return ends;
}

Child start(const std::vector<std::string>& arguments) {
    std::vector<char*> argv{const_cast<char*>(ORBEL_TOOL)};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    const auto out = makePipe();
    const auto err = makePipe();
    const pid_t id = fork();
    if (id == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        execv(ORBEL_TOOL, argv.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    return {id, out[0], err[0]};
}

// Takes what has come through one pipe; false at its end.
bool drain(int pipe, std::string& text) {
    char buffer[4096];
    const ssize_t count = read(pipe, buffer, sizeof buffer);
    if (count > 0) text.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
}

ToolRun finish(const Child& child, bool interrupt) {
    ToolRun run;
    std::array<pollfd, 2> pipes{{{child.out, POLLIN, 0}, {child.err, POLLIN, 0}}};
    while (pipes[0].fd >= 0 || pipes[1].fd >= 0) {
        poll(pipes.data(), pipes.size(), -1);
        if (pipes[0].revents != 0 && !drain(child.out, run.out)) pipes[0].fd = -1;
        if (pipes[1].revents != 0 && !drain(child.err, run.err)) pipes[1].fd = -1;
        if (interrupt && !run.out.empty()) {
            kill(child.id, SIGINT);
            interrupt = false;
        }
    }
    close(child.out);
    close(child.err);
    int status = 0;
    waitpid(child.id, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return run;
}

}  // namespace

ToolRun runTool(const std::vector<std::string>& arguments) {
    return finish(start(arguments), false);
}

ToolRun interruptTool(const std::vector<std::string>& arguments) {
    return finish(start(arguments), true);
}

}  // namespace cli::test
