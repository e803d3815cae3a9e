// SPDX-License-Identifier: Apache-2.0
#pragma once
// The image files of a render, where "-" stands for standard input or output.

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

#include "pictures/files/StandardStreams.h"

namespace cli {

// An image to read.
class InputFile {
public:
    // `text` is FILE, FILE:LAYER or "-", which reads all of `in`. Throws Failure.
    InputFile(const std::string& text, std::istream& in);

    // For opening, and for messages.
    const std::string& text() const { return text_; }
    const std::string& name() const { return name_; }

private:
    std::optional<pictures::TemporaryFile> spooled_;
    std::string text_;
    std::string name_;
};

// An image to write.
class OutputFile {
public:
    // `format` is a suffix without its dot, for "-" only. Throws UsageError for other texts with a
    // format, and for an unknown one.
    OutputFile(const std::string& text, const std::string& format);

    bool isStandardOutput() const { return spooled_.has_value(); }
    // Where to write the image.
    const std::filesystem::path& path() const { return path_; }
    // Passes the written image on to `out`, if it is meant for standard output.
    void finish(std::ostream& out) const;

private:
    std::optional<pictures::TemporaryFile> spooled_;
    std::filesystem::path path_;
};

}  // namespace cli
