#pragma once

#include <stdlib.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// A folder of the fuzz target's own under the temporary folder: made at first use, removed with
/// everything in it when the process exits.
inline const std::filesystem::path& fuzzWorkFolder() {
    // Never destroyed, so that it is still there for the removal at exit.
    static const auto* folder = [] {
        std::string pattern = std::filesystem::temp_directory_path() / "marzipel-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data())) std::abort();
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(fuzzWorkFolder(), ignored);
        });
        return new std::filesystem::path(pattern);
    }();
    return *folder;
}

/// Writes the input to `path`, replacing what was there; the path as text.
inline std::string writeFuzzInput(const std::filesystem::path& path, const std::uint8_t* data,
                                  std::size_t size) {
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    return path.string();
}
