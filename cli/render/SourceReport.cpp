// SPDX-License-Identifier: Apache-2.0
#include "cli/render/SourceReport.h"

#include <algorithm>

#include "pictures/Text.h"

namespace cli {
namespace {

std::string firstFew(const std::vector<std::string>& names) {
    constexpr std::size_t kShown = 8;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kShown); ++i) {
        list += (i == 0 ? "" : ", ") + names[i];
    }
    if (names.size() > kShown) list += " and " + std::to_string(names.size() - kShown) + " more";
    return list;
}

}  // namespace

void tellOrientation(const pictures::Picture& picture, pictures::Messages& messages) {
    if (!picture.turned) return;
    messages.note(picture.name + " is turned as its file says: upright it has " +
                  std::to_string(picture.display.width()) + "x" +
                  std::to_string(picture.display.height()) + " pixels");
}

void tellLeftOut(const std::string& image, const std::vector<std::string>& names,
                 pictures::Messages& messages) {
    if (!names.empty()) messages.note("not carried over from " + image + ": " + firstFew(names));
}

void tellFindings(const pictures::Picture& picture, const pictures::SourceFindings& findings,
                  int bits, pictures::Messages& messages) {
    const pictures::Repairs& repairs = findings.repairs;
    if (findings.takenAsStraight) {
        messages.note(picture.name +
                      " has colours above alpha, so its alpha is taken as straight; --alpha "
                      "associated overrides this");
    }
    if (repairs.notFinite > 0) {
        messages.warn(picture.name + ": replaced " +
                      pictures::counted(repairs.notFinite, "non-finite value") +
                      ", NaN by 0 and infinity by 65504");
    }
    if (repairs.lightWithoutAlpha > 0) {
        messages.warn(picture.name + ": " + pictures::counted(repairs.lightWithoutAlpha, "pixel") +
                      " with colour but alpha 0; the blur drops that light");
    }
    // Integer worlds hold straight colours up to 1.
    if (bits != 32 && findings.tooBright > 0) {
        messages.warn(picture.name + ": " + pictures::counted(findings.tooBright, "pixel") +
                      " too bright for " + std::to_string(bits) +
                      " bits, clipped; use --bits 32 to keep the highlights");
    }
}

}  // namespace cli
