// SPDX-License-Identifier: Apache-2.0
#pragma once
// The results of a trial: a line for each case and a summary.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace trial {

class Report {
public:
    explicit Report(std::ostream& stream) : out_(stream) {}

    // Runs `body`, which must not throw, as the case `name` and prints the result.
    void run(const std::string& name, const std::function<void()>& body);
    // Fails the current case unless `holds`; `what` describes the failure.
    void check(bool holds, const std::string& what);
    // The remark at the end of the current case's line.
    void note(const std::string& text) { remark_ = text; }

    // Whether every case so far passed.
    bool good() const { return failed_ == 0; }
    void printSummary() const;

private:
    std::ostream& out_;
    int cases_ = 0;
    int failed_ = 0;
    std::vector<std::string> complaints_;  // of the current case
    std::string remark_;
};

}  // namespace trial
