#include "pictures/Messages.h"

#include <ostream>

#include "pictures/Text.h"

namespace pictures {

void Messages::note(std::string_view text) {
    if (!m_quiet) m_stream << "orbel: " << oneLine(text) << '\n';
}

void Messages::warn(std::string_view text) {
    if (!m_quiet) m_stream << "orbel: warning: " << oneLine(text) << '\n';
}

}  // namespace pictures
