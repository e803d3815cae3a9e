// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace pictures {

// Notes and warnings, one line each on `stream` (standard error). Prints nothing if quiet. If
// strict, a warning is an error. Errors are not reported here.
class Messages {
public:
    Messages(std::ostream& stream, bool quiet, bool strict = false)
        : stream_(stream), quiet_(quiet), strict_(strict) {}
    virtual ~Messages() = default;
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    // For a result that is correct, but may differ from what the user expects.
    virtual void note(std::string_view text);
    // For something that probably spoils the result. Throws Failure with the text if strict.
    virtual void warn(std::string_view text);
    bool quiet() const { return quiet_; }

private:
    std::ostream& stream_;
    bool quiet_;
    bool strict_;
};

}  // namespace pictures
