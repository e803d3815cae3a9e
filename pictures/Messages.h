#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace pictures {

// What the tool has to say beside its result, one line each on `stream` (standard error).
// A quiet one says nothing; errors don't come through here.
class Messages {
public:
    Messages(std::ostream& stream, bool quiet) : m_stream(stream), m_quiet(quiet) {}

    // Something that is different from what might be expected, but in order.
    void note(std::string_view text);
    // Something that probably spoils the result.
    void warn(std::string_view text);
    bool quiet() const { return m_quiet; }

private:
    std::ostream& m_stream;
    bool m_quiet;
};

}  // namespace pictures
