#include <iostream>

#include "cli/App.h"
#include "cli/BundleLocator.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"

int main(int argc, char** argv) {
    const cli::InterruptGuard interrupt;
    return cli::runTool({.arguments = {argv + 1, argv + argc},
                         .programFolder = cli::programFolder(argv[0]),
                         .out = std::cout,
                         .err = std::cerr,
                         .terminal = cli::errorStreamIsTerminal()});
}
