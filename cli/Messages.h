#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace cli {

// `text` with line ends and runs of blanks as single blanks, so that a message is one line.
std::string oneLine(std::string_view text);

// `count` and the noun in the fitting number: "1 pixel", "2 pixels".
std::string counted(std::size_t count, std::string_view noun);

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

}  // namespace cli
