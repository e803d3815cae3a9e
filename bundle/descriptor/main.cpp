// SPDX-License-Identifier: Apache-2.0
// orbel-descriptor FORM OUTPUT [DESCRIPTION]
//
// Writes the host's descriptor of the plug-in, or of the plug-in that a text file describes, in one
// of its binary forms. Runs on the build machine.

#include <fstream>
#include <iostream>
#include <string_view>

#include "bundle/descriptor/PluginProperties.h"

namespace {

constexpr std::string_view kUsage =
    "usage: orbel-descriptor windows|macos|macos-resource-file OUTPUT [DESCRIPTION]\n";

using Form = descriptor::Bytes (*)(const descriptor::Description&);

Form formOf(std::string_view name) {
    if (name == "windows") return descriptor::windowsPropertyList;
    if (name == "macos") return descriptor::macPropertyList;
    if (name == "macos-resource-file") return descriptor::macResourceFile;
    return nullptr;
}

descriptor::Description readFile(const char* path) {
    std::ifstream file(path);
    if (!file) throw descriptor::DescriptionError("can't be read");
    return descriptor::read(file);
}

bool writeFile(const char* path, const descriptor::Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file.good();
}

}  // namespace

int main(int argc, char** argv) {
    const Form form = argc == 3 || argc == 4 ? formOf(argv[1]) : nullptr;
    if (!form) {
        std::cerr << kUsage;
        return 2;
    }
    try {
        const auto description = argc == 4 ? readFile(argv[3]) : descriptor::orbelDescription();
        if (writeFile(argv[2], form(description))) return 0;
        std::cerr << "orbel-descriptor: " << argv[2] << ": can't be written\n";
    } catch (const descriptor::DescriptionError& error) {
        std::cerr << "orbel-descriptor: " << (argc == 4 ? argv[3] : "built-in description") << ": "
                  << error.what() << '\n';
    }
    return 1;
}
