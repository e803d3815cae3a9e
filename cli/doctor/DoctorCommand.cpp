// SPDX-License-Identifier: Apache-2.0
#include "cli/doctor/DoctorCommand.h"

#include <OpenImageIO/imageio.h>

#include <cstdio>
#include <optional>
#include <ostream>
#include <thread>

#include "cli/EffectSession.h"
#include "cli/Errors.h"
#include "cli/doctor/Machine.h"
#include "cli/doctor/ProbeFrame.h"
#include "headless/Executor.h"
#include "pictures/Text.h"
#include "shot/Parallel.h"

namespace cli {
namespace {

std::string imageLibrary() {
    const int version = OIIO::openimageio_version();  // 20407 is 2.4.7
    return "OpenImageIO " + std::to_string(version / 10000) + "." +
           std::to_string(version / 100 % 100) + "." + std::to_string(version % 100);
}

std::string memoryText() {
    const std::optional<std::uint64_t> bytes = shot::availableMemory();
    if (!bytes) return "unknown memory";
    char text[60];
    std::snprintf(text, sizeof text, "%.1f GiB of memory free",
                  static_cast<double>(*bytes) / (1024.0 * 1024.0 * 1024.0));
    return text;
}

// The first line of the effect's own description: its name and version.
std::string firstLine(const std::string& text) {
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

DoctorCommand::DoctorCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("doctor", "Check that everything that is needed is installed");
    app_->allow_extras();
    app_->add_option("--bundle", bundle_, "effect bundle to check")->type_name("FILE");
}

void DoctorCommand::say(bool ok, const std::string& text) {
    invocation_.out << (ok ? "ok   " : "bad  ") << pictures::oneLine(text) << std::endl;
    healthy_ = healthy_ && ok;
}

void DoctorCommand::tellMachine() {
    say(true, "orbel " ORBEL_VERSION " in " + invocation_.programFolder.string());
    say(true, "processor: " + processorText());
    say(true,
        pictures::counted(std::thread::hardware_concurrency(), "processor") + ", " + memoryText());
    say(true, "libraries: " + imageLibrary() + ", " + headless::executorVersion());
}

void DoctorCommand::checkBundle() {
    const auto bundle = requireBundle(bundle_, invocation_.programFolder);
    say(true, "bundle: " + bundle.string());
    EffectSession session(bundle);
    say(true, "the effect loads: " + firstLine(session.effect().about()));
    const std::string wrong = probeFrames(session.effect());
    say(wrong.empty(),
        wrong.empty() ? "small frames have the right values" : "a small frame is wrong: " + wrong);
    session.effect().setDown();
    const bool clean = session.host().accounts().clean();
    say(clean, clean ? "the effect returned everything that it was lent"
                     : "the effect kept what it was lent");
}

int DoctorCommand::run() {
    tellMachine();
    try {
        checkBundle();
    } catch (const Failure& failure) {
        say(false, failure.what());
    }
    invocation_.out << "To report a fault, send these lines, the command line, all that it printed "
                       "and, if possible, the images.\n";
    return healthy_ ? kExitSuccess : kExitFailure;
}

}  // namespace cli
