#pragma once
// What a trial found: a line for each case and a summary.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace trial {

class Report {
public:
    explicit Report(std::ostream& stream) : out_(stream) {}

    // Runs `body`, which throws nothing, as the case `name` and prints how it went.
    void run(const std::string& name, const std::function<void()>& body);
    // Fails the case at hand unless `holds`; `what` says what is wrong.
    void check(bool holds, const std::string& what);
    // Adds to the line of the case at hand.
    void note(const std::string& text) { remark_ = text; }

    // Whether every case so far went well.
    bool good() const { return failed_ == 0; }
    void printSummary() const;

private:
    std::ostream& out_;
    int cases_ = 0;
    int failed_ = 0;
    std::vector<std::string> complaints_;  // of the case at hand
    std::string remark_;
};

}  // namespace trial
