// SPDX-License-Identifier: Apache-2.0
#include "trial/Report.h"

#include <sstream>

namespace trial {

namespace {

// Prints each line of a text, indented below the line of its case.
void printIndented(std::ostream& out, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) out << "      " << line << '\n';
}

}  // namespace

void Report::run(const std::string& name, const std::function<void()>& body) {
    complaints_.clear();
    remark_.clear();
    body();
    ++cases_;
    if (!complaints_.empty()) ++failed_;
    out_ << (complaints_.empty() ? "ok    " : "FAIL  ") << name;
    if (!remark_.empty()) out_ << ": " << remark_;
    out_ << '\n';
    for (const std::string& complaint : complaints_) printIndented(out_, complaint);
    out_.flush();
}

void Report::check(bool holds, const std::string& what) {
    if (!holds) complaints_.push_back(what);
}

void Report::printSummary() const {
    out_ << cases_ << " cases, " << failed_ << " failed\n";
}

}  // namespace trial
