// SPDX-License-Identifier: Apache-2.0
#include "shot/Frames.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace shot {
namespace {

constexpr std::size_t kMostFrames = 1'000'000;

struct Range {
    int first;
    int last;
    int step;
};

[[noreturn]] void refuse(const std::string& part) {
    throw std::invalid_argument("\"" + part +
                                "\" is no range of frames; write 1001, 1001-1100 or 1001-1100x2, "
                                "with numbers of at most nine digits");
}

Range parseRange(const std::string& part) {
    static const std::regex kForm(R"((-?\d{1,9})(?:-(-?\d{1,9})(?:x(\d{1,9}))?)?)");
    std::smatch match;
    if (!std::regex_match(part, match, kForm)) refuse(part);
    const int first = std::stoi(match[1]);
    const Range range{first, match[2].matched ? std::stoi(match[2]) : first,
                      match[3].matched ? std::stoi(match[3]) : 1};
    if (range.last < range.first) {
        throw std::invalid_argument("the range of frames \"" + part +
                                    "\" ends before it begins; write the smaller number first");
    }
    if (range.step == 0) refuse(part);
    return range;
}

// "####" or "%04d", and the number of digits in it.
const std::regex& placeForm() {
    static const std::regex kForm("#+|%(?:0([1-9]))?d");
    return kForm;
}

}  // namespace

std::vector<int> parseFrames(const std::string& text) {
    std::set<int> frames;
    std::istringstream parts(text + ",");  // getline leaves out an empty last part
    for (std::string part; std::getline(parts, part, ',');) {
        const Range range = parseRange(part);
        if (static_cast<std::size_t>((range.last - range.first) / range.step) >= kMostFrames) {
            throw std::invalid_argument("\"" + part + "\" has more than a million frames");
        }
        for (int frame = range.first; frame <= range.last; frame += range.step) {
            frames.insert(frame);
        }
    }
    return {frames.begin(), frames.end()};
}

std::string framesText(const std::vector<int>& frames) {
    if (frames.empty()) return "no frames";
    std::string text;
    for (auto first = frames.begin(); first != frames.end();) {
        auto last = first;
        while (last + 1 != frames.end() && *(last + 1) == *last + 1) ++last;
        if (!text.empty()) text += ", ";
        text += std::to_string(*first);
        if (last != first) text.append("-").append(std::to_string(*last));
        first = last + 1;
    }
    return text;
}

FilePattern::FilePattern(std::string text) : text_(std::move(text)) {
    std::smatch place;
    if (!std::regex_search(text_, place, placeForm())) return;
    before_ = place.prefix();
    after_ = place.suffix();
    if (std::regex_search(after_, placeForm())) {
        throw std::invalid_argument(text_ +
                                    " has two places for the number of the frame; leave one");
    }
    const bool hashes = place.str().front() == '#';
    digits_ =
        hashes ? static_cast<int>(place.length()) : (place[1].matched ? std::stoi(place[1]) : 1);
}

FilePattern FilePattern::literal(std::string text) {
    FilePattern pattern;
    pattern.text_ = std::move(text);
    return pattern;
}

std::string FilePattern::name(int frame) const {
    if (!digits_) return text_;
    const std::string number = std::to_string(std::abs(frame));
    std::string name = before_;
    if (frame < 0) name += '-';
    const std::size_t filled = number.size() + (frame < 0 ? 1 : 0);
    if (filled < *digits_) name.append(*digits_ - filled, '0');
    return name + number + after_;
}

// `file` begins like the pattern, in which "after" may be followed by a layer.
std::optional<int> FilePattern::frameOf(const std::string& file) const {
    int frame = 0;
    const char* const begin = file.data() + before_.size();
    const char* const end = file.data() + file.size();
    const auto [rest, error] = std::from_chars(begin, end, frame);
    if (error != std::errc() || rest - begin > 10) return std::nullopt;
    const std::string name = this->name(frame);
    if (name == file || name.starts_with(file + ":")) return frame;
    return std::nullopt;
}

std::vector<int> FilePattern::framesOnDisk() const {
    if (!digits_) return {};
    std::vector<int> frames;
    const fs::path folder = fs::path(before_).parent_path();
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string file = (folder / entry->path().filename()).string();
        if (!file.starts_with(before_)) continue;
        if (const auto frame = frameOf(file)) frames.push_back(*frame);
    }
    std::ranges::sort(frames);
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    return frames;
}

}  // namespace shot
