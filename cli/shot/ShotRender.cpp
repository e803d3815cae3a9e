// SPDX-License-Identifier: Apache-2.0
#include "cli/shot/ShotRender.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <new>
#include <ostream>
#include <system_error>
#include <thread>

#include "cli/Errors.h"
#include "cli/render/RenderStats.h"
#include "cli/shot/ShotReport.h"
#include "cli/shot/ShotSurvey.h"
#include "pictures/Interrupt.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFile.h"
#include "shot/Parallel.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

// Of the memory that there is, for the frames under way.
constexpr double kShareOfMemory = 0.75;

class ShotRender {
public:
    ShotRender(const ShotRequest& request, const Invocation& invocation)
        : request_(request),
          invocation_(invocation),
          jobs_(request.shot.jobs()),
          survey_(request.shot.survey()),
          frames_(request.files.frames(request.frames, request.shot.missing())),
          messages_(invocation.err, request.plan.quiet, request.plan.strict) {
        for (const ShotFrame& frame : frames_) checkOutput(frame);
    }

    int run() {
        shot::shareFreeMemory();
        RenderSession session(request_.plan, request_.render, invocation_, messages_);
        findings_ = surveyShot(session, request_.files, survey_, messages_, invocation_.out);
        ShotReport report(invocation_, frames_.size(), request_.plan.quiet, request_.plan.strict);
        session_ = &session;
        report_ = &report;
        renderAll();
        session.checkBooks(messages_);
        const bool whole = report.finish();
        if (request_.plan.stats) stats_.print(invocation_.out, session.host());
        return whole ? kExitSuccess : kExitFailure;
    }

private:
    // An output must be no input, and a file that can be written.
    void checkOutput(const ShotFrame& frame) const {
        const std::string output = request_.files.output(frame);
        std::vector<std::string> inputs = request_.render.effect.files();
        const LayerNames names = request_.files.layers(frame);
        std::ranges::transform(inputs, inputs.begin(), names);
        inputs.push_back(request_.files.input(frame));
        for (const std::string& input : inputs) {
            std::error_code ignored;
            if (fs::equivalent(pictures::parseSourceName(input).file, output, ignored)) {
                throw UsageError(output +
                                 " is an input and can't be the output; name another "
                                 "with -o");
            }
        }
        pictures::requireWritable(output);
    }

    // The first frame to be rendered is alone, so that it tells how much memory one takes.
    void renderAll() {
        std::size_t first = 0;
        while (first < frames_.size() && isThere(frames_[first])) ++first;
        const std::size_t alone = std::min(first + 1, frames_.size());
        const auto work = [&](std::size_t offset) {
            return
                [this, offset](std::size_t index) { return renderOrSkip(frames_[offset + index]); };
        };
        bool going = true;
        shot::inParallel(alone, 1, [&](std::size_t index) {
            going = renderOrSkip(frames_[index]);
            return going;
        });
        if (going) shot::inParallel(frames_.size() - alone, jobs(), work(alone));
    }

    int jobs() const {
        if (jobs_) return *jobs_;
        auto most = static_cast<double>(std::max(std::thread::hardware_concurrency(), 1U));
        const auto fit = [&](double memory, std::uint64_t need) {
            if (need > 0) most = std::min(most, memory / static_cast<double>(need));
        };
        if (const auto memory = shot::availableMemory()) {
            fit(kShareOfMemory * static_cast<double>(*memory), peakProcessMemory());
        }
        const std::uint64_t limit = request_.plan.host.memoryLimit;
        if (limit != headless::kNoMemoryLimit) {
            fit(static_cast<double>(limit), session_->host().memory().peak);
        }
        return std::max(static_cast<int>(most), 1);
    }

    bool isThere(const ShotFrame& frame) const {
        std::error_code ignored;
        return request_.shot.skipsExisting() && fs::exists(request_.files.output(frame), ignored);
    }

    // Returns whether the next frames may begin.
    bool renderOrSkip(const ShotFrame& frame) {
        if (isThere(frame)) {
            report_->skipped(frame.number, request_.files.output(frame));
            return true;
        }
        try {
            render(frame);
            return true;
        } catch (const std::bad_alloc&) {
            report_->failed(frame.number, "out of memory; try --jobs 1, or --downsample 1/2");
        } catch (const std::exception& error) {
            // Frames under way end with Control-C, and so does the shot.
            pictures::throwIfInterrupted();
            report_->failed(frame.number, error.what());
        }
        return request_.shot.keepsGoing();
    }

    void render(const ShotFrame& frame) {
        const auto start = std::chrono::steady_clock::now();
        const OutputFile output(request_.files.output(frame), "");
        FrameMessages messages(*report_, frame.number, invocation_.err);
        FrameProgress progress(*report_, frame.number);
        RenderStats stats;
        RenderJob job(
            *session_,
            {.input = request_.files.input(frame),
             .output = &output,
             .frame = frame.number,
             .layers = request_.files.layers(frame),
             .findings = findings_ ? &*findings_ : nullptr,
             .black = frame.black},
            {.messages = messages, .lines = invocation_.err, .progress = progress, .stats = stats});
        job.run();
        tellSize(job.size(), messages);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        report_->done(frame.number, seconds.count(), output.path().string());
        const std::lock_guard lock(mutex_);
        stats_.add(stats);
    }

    void tellSize(const pictures::Size& size, FrameMessages& messages) {
        const std::lock_guard lock(mutex_);
        if (!size_) size_ = size;
        if (size == *size_) return;
        messages.warn("the frames are of different sizes, " + pictures::sizeText(*size_) + " and " +
                      pictures::sizeText(size) + "; each is rendered at its own");
    }

    const ShotRequest& request_;
    const Invocation& invocation_;
    const std::optional<int> jobs_;
    const Survey survey_;
    const std::vector<ShotFrame> frames_;
    pictures::Messages messages_;
    RenderSession* session_ = nullptr;
    ShotReport* report_ = nullptr;
    std::optional<DepthFindings> findings_;
    std::mutex mutex_;  // of what follows
    RenderStats stats_;
    std::optional<pictures::Size> size_;
};

}  // namespace

int renderShot(const ShotRequest& request, const Invocation& invocation) {
    return ShotRender(request, invocation).run();
}

}  // namespace cli
