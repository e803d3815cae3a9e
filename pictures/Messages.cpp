// SPDX-License-Identifier: Apache-2.0
#include "pictures/Messages.h"

#include <ostream>

#include "pictures/Errors.h"
#include "pictures/Text.h"

namespace pictures {

void Messages::note(std::string_view text) {
    if (!quiet_) stream_ << "orbel: " << oneLine(text) << '\n';
}

void Messages::warn(std::string_view text) {
    if (strict_) throw Failure(std::string(text) + " (an error because of --strict)");
    if (!quiet_) stream_ << "orbel: warning: " << oneLine(text) << '\n';
}

}  // namespace pictures
