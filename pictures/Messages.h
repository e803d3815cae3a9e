#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace pictures {

// What the tool has to say beside its result, one line each on `stream` (standard error).
// A quiet one says nothing; errors don't come through here.
class Messages {
public:
    Messages(std::ostream& stream, bool quiet) : stream_(stream), quiet_(quiet) {}

    // Something that is different from what might be expected, but in order.
    void note(std::string_view text);
    // Something that probably spoils the result.
    void warn(std::string_view text);
    bool quiet() const { return quiet_; }

private:
    std::ostream& stream_;
    bool quiet_;
};

}  // namespace pictures
