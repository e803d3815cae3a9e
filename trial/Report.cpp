#include "trial/Report.h"

#include <sstream>

namespace trial {

namespace {

// Each line of a text under the line of its case.
void printIndented(std::ostream& out, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) out << "      " << line << '\n';
}

}  // namespace

void Report::run(const std::string& name, const std::function<void()>& body) {
    complaints.clear();
    remark.clear();
    body();
    ++cases;
    if (!complaints.empty()) ++failed;
    out << (complaints.empty() ? "ok    " : "FAIL  ") << name;
    if (!remark.empty()) out << ": " << remark;
    out << '\n';
    for (const std::string& complaint : complaints) printIndented(out, complaint);
    out.flush();
}

void Report::check(bool holds, const std::string& what) {
    if (!holds) complaints.push_back(what);
}

void Report::printSummary() const {
    out << cases << " cases, " << failed << " failed\n";
}

}  // namespace trial
