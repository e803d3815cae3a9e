// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include "cli/App.h"
#include "cli/BundleLocator.h"
#include "cli/Progress.h"
#include "pictures/Interrupt.h"

int main(int argc, char** argv) {
    const bool terminal = cli::errorStreamIsTerminal();
    const pictures::InterruptGuard interrupt(terminal ? "\norbel: cancelled\n"
                                                      : "orbel: cancelled\n");
    return cli::runTool({.arguments = {argv + 1, argv + argc},
                         .programFolder = cli::programFolder(argv[0]),
                         .out = std::cout,
                         .err = std::cerr,
                         .terminal = terminal});
}
