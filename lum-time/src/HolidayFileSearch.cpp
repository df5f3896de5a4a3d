#include "HolidayFileSearch.hpp"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>

namespace zep::detail {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFileName = "Holidays.txt";
constexpr const char* kRelativeDirectories[] = {"../control", "../data", "../../control",
                                                "../../data", "../../../config"};

struct SearchSettings {
    std::mutex mutex;
    std::string base;      // empty: the directory of the binary holding the library
    std::string packaged;  // empty: none
};

SearchSettings& Settings() {
    static SearchSettings settings;
    return settings;
}

// The directory of the executable or shared object this code was linked into, so that a
// deployment can keep its control files next to the binary whatever the working directory.
std::string BinaryDirectory() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&BinaryDirectory), &info) != 0 && info.dli_fname != nullptr &&
        *info.dli_fname != '\0') {
        std::error_code error;
        const fs::path binary = fs::weakly_canonical(fs::absolute(info.dli_fname), error);
        if (!error) return binary.parent_path().string();
    }
    std::error_code error;
    return fs::current_path(error).string();
}

bool IsFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

}  // namespace

void SetHolidaySearchBase(const std::string& directory) {
    const std::lock_guard lock(Settings().mutex);
    Settings().base = directory;
}

std::string HolidaySearchBase() {
    {
        const std::lock_guard lock(Settings().mutex);
        if (!Settings().base.empty()) return Settings().base;
    }
    return BinaryDirectory();
}

void SetPackagedHolidayFile(const std::string& path) {
    const std::lock_guard lock(Settings().mutex);
    Settings().packaged = path;
}

std::string PackagedHolidayFile() {
    const std::lock_guard lock(Settings().mutex);
    return Settings().packaged;
}

HolidayFileSearch FindHolidayFile() {
    HolidayFileSearch search;
    search.base = HolidaySearchBase();
    auto tryPath = [&](const fs::path& path) {
        search.tried.push_back(path.string());
        if (!search.found && IsFile(path)) search.found = path.string();
    };

    // An empty variable counts as unset. When set it is the only place looked at.
    if (const char* configured = std::getenv("ZEP_HOLIDAYS_PATH"); configured && *configured) {
        std::error_code error;
        const fs::path location(configured);
        tryPath(fs::is_directory(location, error) ? location / kFileName : location);
        return search;
    }
    for (const char* directory : kRelativeDirectories) {
        tryPath((fs::path(search.base) / directory / kFileName).lexically_normal());
        if (search.found) return search;
    }
    if (const std::string packaged = PackagedHolidayFile(); !packaged.empty()) tryPath(packaged);
    return search;
}

}  // namespace zep::detail
