// SPDX-License-Identifier: Apache-2.0
#include "cli/shot/ShotSurvey.h"

#include <algorithm>
#include <sstream>

#include "cli/Errors.h"
#include "cli/render/RenderStats.h"
#include "pictures/Interrupt.h"

namespace cli {
namespace {

// The frames on which the slabs of a shot are based, evenly spread.
constexpr std::size_t kMostViews = 8;

class NoProgress : public Progress {
    void begin(double, double) override {}
    void update(double) override {}
};

// The depth maps of some frames of a shot, which the option names by `map`.
class SurveyOfMaps {
public:
    SurveyOfMaps(RenderSession& session, const ShotFiles& files, std::vector<int> frames,
                 std::string map)
        : session_(session), files_(files), frames_(std::move(frames)), map_(std::move(map)) {}

    DepthFindings kindAndRange() {
        const DepthFindings findings = together(std::nullopt);
        // Where one map says what it holds, the others hold the same.
        return differ_ ? together(findings.kind) : findings;
    }

    // Calls `work` with a job that has read the first map, and how that is put on the effect's
    // scale.
    template <class Work>
    void lookAtFirst(const DepthFindings& findings, Work work) {
        lookAt(frames_.front(), findings, work);
    }

    std::vector<float> bounds(const DepthFindings& findings, int slabs) {
        std::vector<occlusion::View> views;
        const std::size_t count = std::min(frames_.size(), kMostViews);
        for (std::size_t i = 0; i < count; ++i) {
            pictures::throwIfInterrupted();
            lookAt(frames_[i * frames_.size() / count], findings,
                   [&](const RenderJob& job, const MapScale&) { views.push_back(job.view()); });
        }
        return occlusion::chooseBounds(views, slabs);
    }

private:
    LayerNames namesIn(int frame) const { return files_.layers({.number = frame}); }

    DepthFindings alone(int frame, const std::string& file,
                        std::optional<pictures::DepthKind> kind) {
        pictures::throwIfInterrupted();
        return session_.options().effect.depthFindings(session_.effect().parameters(), file,
                                                       {frame, 1}, kind, messages_);
    }

    DepthFindings together(std::optional<pictures::DepthKind> kind) {
        std::string last = namesIn(frames_.front())(map_);
        DepthFindings all = alone(frames_.front(), last, kind);
        for (const int frame : frames_) {
            const std::string file = namesIn(frame)(map_);
            if (file == last) continue;
            last = file;
            const DepthFindings one = alone(frame, file, kind);
            differ_ = differ_ || one.kind != all.kind;
            if (one.kind != pictures::DepthKind::kNormalised) all.kind = one.kind;
            all.range.add(one.range);
        }
        return all;
    }

    template <class Work>
    void lookAt(int frame, const DepthFindings& findings, Work work) {
        RenderStats stats;
        NoProgress progress;
        RenderJob job(
            session_,
            {.input = files_.input({.number = frame}),
             .output = nullptr,
             .frame = frame,
             .layers = namesIn(frame),
             .findings = &findings},
            {.messages = messages_, .lines = said_, .progress = progress, .stats = stats});
        job.readMap();
        if (const auto& scale = job.map()) work(job, *scale);
    }

    RenderSession& session_;
    const ShotFiles& files_;
    const std::vector<int> frames_;
    const std::string map_;
    // What each frame says again.
    std::ostringstream said_;
    pictures::Messages messages_{said_, true};
    bool differ_ = false;
};

std::vector<int> framesOf(const ShotFiles& files, const Survey& survey) {
    std::vector<int> frames = files.complete();
    if (frames.empty()) {
        throw Failure("no frame has all of its files; name one to find the depth in with --survey");
    }
    if (!survey.frame) return frames;
    if (files.isSequence() && !std::ranges::binary_search(frames, *survey.frame)) {
        throw Failure("frame " + std::to_string(*survey.frame) +
                      " of --survey isn't there; name one that has all of its files");
    }
    return {*survey.frame};
}

}  // namespace

std::optional<DepthFindings> surveyShot(RenderSession& session, const ShotFiles& files,
                                        const Survey& survey, pictures::Messages& messages,
                                        std::ostream& lines) {
    const std::optional<std::string> map = session.options().effect.depthFile();
    if (survey.each || !map) return std::nullopt;
    SurveyOfMaps maps(session, files, framesOf(files, survey), *map);
    DepthFindings findings = maps.kindAndRange();
    if (findings.kind != pictures::DepthKind::kNormalised && !findings.range.any()) {
        throw Failure(*map + " holds no " + pictures::depthKindName(findings.kind) +
                      " in any frame; use another map or --depth-kind");
    }
    session.options().effect.tellDepth(findings, messages, lines);
    const OcclusionOptions& occlusion = session.options().occlusion;
    occlusion::Options slabs;
    maps.lookAtFirst(findings, [&](const RenderJob&, const MapScale& scale) {
        findings.focus = scale.focus;
        if (occlusion.given()) slabs = occlusion.options(scale);
    });
    if (!occlusion.given()) return findings;
    findings.bounds = slabs.bounds.empty() ? maps.bounds(findings, slabs.slabs) : slabs.bounds;
    maps.lookAtFirst(findings, [&](const RenderJob&, const MapScale& scale) {
        tellBounds(*findings.bounds, scale, messages);
    });
    return findings;
}

}  // namespace cli
