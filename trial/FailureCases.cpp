// SPDX-License-Identifier: Apache-2.0
// Frames that have to fail: cancelled ones, and ones without enough memory.

#include <algorithm>
#include <atomic>

#include "trial/Cases.h"
#include "trial/FrameCases.h"

namespace trial {

namespace {

using headless::FrameResult;
using headless::Operation;

void checkCancelled(Trial& trial, const FrameResult& result) {
    trial.check(result.status == PF_Interrupt_CANCEL, "code " + std::to_string(result.status));
    trial.check(result.message.empty(), "a message: " + result.message);
}

// Cancels at progress report `k`; true if there was such a report.
bool cancelAtReport(Trial& trial, FrameCase frame, int k) {
    std::atomic<bool> cancel{false};
    int reports = 0;
    frame.request.cancel = &cancel;
    frame.request.progress = [&](int, int) {
        if (++reports == k) cancel = true;
    };
    const FrameResult result = frame.render(trial.effect());
    if (reports < k) return false;
    checkCancelled(trial, result);
    trial.check(reports == k, "the frame continued after the cancel");
    return true;
}

// Cancels in the k-th iteration; true if there was such an iteration.
bool cancelInIteration(Trial& trial, const FrameCase& frame, int k) {
    headless::Failures& failures = trial.host().failures();
    failures.clear();
    failures.failAt(Operation::kIterateGeneric, k, PF_Interrupt_CANCEL);
    const FrameResult result = frame.render(trial.effect());
    const bool reached = failures.count(Operation::kIterateGeneric) >= k;
    failures.clear();
    if (reached) checkCancelled(trial, result);
    return reached;
}

void tryCancels(Trial& trial, const FrameCase& frame) {
    trial.run("cancel at each progress report", [&] {
        int k = 1;
        while (cancelAtReport(trial, frame, k)) ++k;
        trial.report().note(std::to_string(k - 1) + " reports");
        trial.check(k > 2, "too few reports");
    });
    trial.run("cancel in each iteration", [&] {
        int k = 1;
        while (cancelInIteration(trial, frame, k)) ++k;
        trial.report().note(std::to_string(k - 1) + " iterations");
        trial.check(k > 10, "too few iterations");
    });
    trial.run("cancel before the first iteration", [&] {
        const std::atomic<bool> cancel{true};
        FrameCase cancelled = frame;
        cancelled.request.cancel = &cancel;
        checkCancelled(trial, cancelled.render(trial.effect()));
    });
}

// The host memory in use after each request of a frame without a limit.
std::vector<std::uint64_t> requestsOf(Trial& trial, const FrameCase& frame) {
    headless::Host& host = trial.host();
    host.startCallLog();
    trial.check(frame.render(trial.effect()).status == PF_Err_NONE, "fails with enough memory");
    host.takeCallLog();
    return host.memory().afterEachRequest;
}

void checkShortage(Trial& trial, const FrameResult& result) {
    trial.check(result.status == PF_Err_OUT_OF_MEMORY, "code " + std::to_string(result.status));
    if (!result.rendered) return;  // there was no memory for the pre-render record
    trial.check(result.message.find("Memory is insufficient") != std::string::npos,
                "no message about memory");
    trial.check(result.outputUntouched, "pixels were written");
}

// Limits the memory so that each of a frame's requests fails in turn, and last so that it is just
// enough.
void tryShortages(Trial& trial, const FrameCase& frame) {
    headless::Host& host = trial.host();
    const std::vector<std::uint64_t> requests = requestsOf(trial, frame);
    for (const std::uint64_t given : requests) {
        host.setMemoryLimit(given - 1);
        checkShortage(trial, frame.render(trial.effect()));
    }
    host.setMemoryLimit(*std::max_element(requests.begin(), requests.end()));
    trial.check(frame.render(trial.effect()).status == PF_Err_NONE, "fails with just enough");
    host.setMemoryLimit(headless::kNoMemoryLimit);
    trial.check(requests.size() > 3, "too few requests");
    trial.report().note(std::to_string(requests.size()) + " requests");
}

}  // namespace

void tryFailures(Trial& trial) {
    const FrameCase frame = nightFrame(trial, "", 32, usualLayers(trial.settings()));
    const FrameResult before = frame.render(trial.effect());
    tryCancels(trial, frame);
    for (const int layers : trial.settings().layers) {
        trial.run("memory for " + std::to_string(layers) + " layers",
                  [&] { tryShortages(trial, nightFrame(trial, "", 32, layers)); });
    }
    trial.run("a frame after the failures", [&] {
        const FrameResult after = frame.render(trial.effect());
        trial.check(before.output && after.output, "nothing was rendered");
        if (!before.output || !after.output) return;
        trial.check(frameOf(*before.output).pixels == frameOf(*after.output).pixels,
                    "differs from the same frame before them");
    });
}

}  // namespace trial
