// SPDX-License-Identifier: Apache-2.0
#include "cli/render/RenderFiles.h"

#include "cli/Errors.h"
#include "pictures/files/PictureFormats.h"

namespace cli {

InputFile::InputFile(const std::string& text, std::istream& in) : text_(text), name_(text) {
    if (text != pictures::kStandardStream) return;
    spooled_.emplace("");
    pictures::spool(in, spooled_->path());
    text_ = spooled_->path().string();
    name_ = "standard input";
}

OutputFile::OutputFile(const std::string& text, const std::string& format) : path_(text) {
    if (text != pictures::kStandardStream) {
        if (!format.empty())
            throw UsageError("--output-format is only for -o -; the suffix selects the format of " +
                             text);
        return;
    }
    const std::string suffix = "." + (format.empty() ? "png" : format);
    pictures::formatOf("standard output" + suffix);
    spooled_.emplace(suffix);
    path_ = spooled_->path();
}

void OutputFile::finish(std::ostream& out) const {
    if (spooled_) pictures::unspool(spooled_->path(), out);
}

}  // namespace cli
