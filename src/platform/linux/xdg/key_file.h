#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/status.h"

typedef struct _GKeyFile GKeyFile;

namespace marzipel {

/// A GLib key file (the format of desktop entries), owned. Values that are not valid UTF-8 read
/// as absent. Not copyable.
class KeyFile {
public:
    KeyFile();
    ~KeyFile();
    KeyFile(const KeyFile&) = delete;
    KeyFile& operator=(const KeyFile&) = delete;

    /// Parses the regular file at `path`, at most `maxBytes` long, keeping only the translations
    /// of the user's languages. A failure says why it could not be read.
    Status loadFile(const std::string& path, std::size_t maxBytes);

    bool hasGroup(const char* group) const;
    std::optional<std::string> string(const char* group, const char* key) const;
    /// The value for the first of the user's languages that has one, else the plain value.
    std::optional<std::string> localeString(const char* group, const char* key) const;
    /// Absent when the key is missing or not "true" or "false".
    std::optional<bool> boolean(const char* group, const char* key) const;

    /// `value` must be valid UTF-8.
    void setString(const char* group, const char* key, const std::string& value);
    void setBoolean(const char* group, const char* key, bool value);
    /// The file's text, with values escaped as the format requires.
    std::string toData() const;

private:
    /// Parses `data`; a failure carries the parser's message.
    Status loadData(std::string_view data);

    GKeyFile* file_;
};

}  // namespace marzipel
