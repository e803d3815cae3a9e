#include "headless/Bundle.h"

#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace headless {

namespace {

constexpr const char* kEntryPointName = "EntryPointFunc";

#ifdef _WIN32

std::string lastError() {
    return "system error " + std::to_string(GetLastError());
}

void* openLibrary(const std::filesystem::path& file) {
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

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

// The loader's reason as a sentence about `file`. The loader begins its text with the file's name.
std::string sentence(const std::string& file, std::string reason) {
    // The dynamic loader reads the processor level that the linker noted in the file.
    if (contains(reason, "CPU ISA level is lower than required")) {
        return file + " needs a processor with AVX2 (x86-64-v3), and this one has none";
    }
    if (contains(reason, "invalid ELF header") || contains(reason, "file too short")) {
        return file + " is not a loadable file for this system";
    }
    // The loader passes over a file for another machine as if it were not there. A missing library
    // that the file itself needs reads the same, but with that library's name.
    const bool passedOver =
        reason == file + ": cannot open shared object file: No such file or directory";
    if (contains(reason, "wrong ELF class") || passedOver) {
        return file + " was built for another processor";
    }
    if (reason.rfind(file + ": ", 0) == 0) reason.erase(0, file.size() + 2);
    return file + " can't be loaded: " + reason;
}

}  // namespace

Bundle::Bundle(const std::filesystem::path& file) {
    const std::filesystem::path whole = std::filesystem::absolute(file);
    std::error_code error;
    if (!std::filesystem::exists(whole, error)) {
        throw BundleError(whole.string() + " is not there");
    }
    if (!std::filesystem::is_regular_file(whole, error)) {
        throw BundleError(whole.string() + " is not a file");
    }
    library = openLibrary(whole);
    if (!library) throw BundleError(sentence(whole.string(), lastError()));
    entry = reinterpret_cast<PF_EntryPoint>(findFunction(library, kEntryPointName));
    if (!entry) {
        closeLibrary(library);
        throw BundleError(whole.string() + " has no function " + kEntryPointName +
                          ", so it is no effect");
    }
}

Bundle::~Bundle() {
    closeLibrary(library);
}

}  // namespace headless
