#pragma once
// Holds the frames of two builds against each other.

#include <filesystem>
#include <ostream>

namespace trial {

// Compares the frames of two folders, pair by pair. 8 and 16 bits may differ by one step, since
// results are truncated; float by 1e-6 of the value and 1e-7 on top. A pixel without alpha has no
// colour, only a quotient of two roundings: there alpha alone counts.
//
// Prints what passes with the share of differing values and the worst difference, by bits, and a
// line for each frame that doesn't pass or has no counterpart. False if there is such a frame, or
// no frame at all.
bool compareFolders(const std::filesystem::path& a, const std::filesystem::path& b,
                    std::ostream& out);

}  // namespace trial
