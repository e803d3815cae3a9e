// SPDX-License-Identifier: Apache-2.0
#include "headless/loader/Bundle.h"

#include <fstream>
#include <string>

#include "headless/loader/BundleFile.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace headless {

namespace {

constexpr const char* kEntryPointName = "EntryPointFunc";

#ifdef _WIN32

// The system's message for an error number, in one line.
std::string systemText(DWORD code) {
    constexpr DWORD kFlags =
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
    char text[512];
    const DWORD length = FormatMessageA(kFlags, nullptr, code, 0, text, sizeof text, nullptr);
    return std::string(text, length) + "(system error " + std::to_string(code) + ")";
}

std::string lastError() {
    const DWORD code = GetLastError();
    // The system's messages for these two read as if the file itself didn't exist or were no
    // library.
    if (code == ERROR_MOD_NOT_FOUND) return "a library that it needs is missing";
    if (code == ERROR_BAD_EXE_FORMAT) return "it is damaged, or a library that it needs is";
    return systemText(code);
}

void* openLibrary(const std::filesystem::path& file) {
    // Otherwise a damaged file opens a dialog that waits for a click.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    return LoadLibraryW(file.c_str());
}

void* findFunction(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void closeLibrary(void* library) {
    FreeLibrary(static_cast<HMODULE>(library));
}

#else

std::string lastError() {
    const char* text = dlerror();
    return text ? text : "unknown reason";
}

void* openLibrary(const std::filesystem::path& file) {
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* findFunction(void* library, const char* name) {
    return dlsym(library, name);
}

void closeLibrary(void* library) {
    dlclose(library);
}

#endif

// The loader's error as a sentence about `file`.
std::string sentence(const std::string& file, std::string reason) {
    // The dynamic loader checks the processor level that the linker recorded in the file.
    if (reason.find("CPU ISA level is lower than required") != std::string::npos) {
        return file + " needs a processor with AVX2 (x86-64-v3), which this one doesn't have";
    }
    if (reason.starts_with(file + ": ")) reason.erase(0, file.size() + 2);
    return file + " can't be loaded: " + reason;
}

// Throws unless the file was built for this system and processor, and is complete.
void checkFile(const std::filesystem::path& file) {
    if (!std::ifstream(file)) throw BundleError(file.string() + " can't be read");
    const auto target = bundleTarget(file);
    if (!target) throw BundleError(file.string() + " is not a loadable file");
    if (target->fitsThisProgram()) {
        if (endsEarly(file)) throw BundleError(file.string() + " is truncated");
        return;
    }
    throw BundleError(file.string() + " was built for " + target->describe() + ", and this is " +
                      thisProgram().describe());
}

}  // namespace

Bundle::Bundle(const std::filesystem::path& file) {
    const std::filesystem::path whole = std::filesystem::absolute(file);
    std::error_code error;
    if (!std::filesystem::exists(whole, error)) {
        throw BundleError(whole.string() + " does not exist");
    }
    if (!std::filesystem::is_regular_file(whole, error)) {
        throw BundleError(whole.string() + " is not a file");
    }
    checkFile(whole);
    library_ = openLibrary(whole);
    if (!library_) throw BundleError(sentence(whole.string(), lastError()));
    entry_ = reinterpret_cast<PF_EntryPoint>(findFunction(library_, kEntryPointName));
    if (!entry_) {
        closeLibrary(library_);
        throw BundleError(whole.string() + " has no function " + kEntryPointName +
                          ", so it is not an effect");
    }
}

Bundle::~Bundle() {
    closeLibrary(library_);
}

}  // namespace headless
