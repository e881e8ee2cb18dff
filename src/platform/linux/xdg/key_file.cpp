#include "platform/linux/xdg/key_file.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

namespace marzipel {
namespace {

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorHolder = std::unique_ptr<GError, ErrorFree>;

struct CharFree {
    void operator()(gchar* text) const { g_free(text); }
};
using CharHolder = std::unique_ptr<gchar, CharFree>;

std::optional<std::string> taken(gchar* value, GError* error) {
    ErrorHolder errorHolder(error);
    CharHolder holder(value);
    if (!holder) return std::nullopt;
    return std::string(holder.get());
}

struct Descriptor {
    int value = -1;
    ~Descriptor() {
        if (value >= 0) close(value);
    }
};

}  // namespace

KeyFile::KeyFile() : file_(g_key_file_new()) {}

KeyFile::~KeyFile() { g_key_file_free(file_); }

Status KeyFile::loadFile(const std::string& path, std::size_t maxBytes) {
    if (path.find('\0') != std::string::npos) {
        return Status::failure("a path cannot hold a NUL character");
    }
    // Non-blocking, so that a FIFO under a desktop-entry name cannot stall the caller.
    Descriptor file{open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (file.value < 0) return Status::failure(path + ": " + std::strerror(errno));
    struct stat status {};
    if (fstat(file.value, &status) != 0) return Status::failure(path + ": " + std::strerror(errno));
    if (!S_ISREG(status.st_mode)) return Status::failure(path + ": not a regular file");
    if (static_cast<std::uint64_t>(status.st_size) > maxBytes) {
        return Status::failure(path + ": larger than " + std::to_string(maxBytes) + " bytes");
    }
    std::string data(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t done = 0;
    while (done < data.size()) {
        ssize_t count = read(file.value, data.data() + done, data.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return Status::failure(path + ": " + std::strerror(errno));
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    data.resize(done);
    Status parsed = loadData(data);
    return parsed.ok() ? parsed : Status::failure(path + ": " + parsed.message());
}

Status KeyFile::loadData(std::string_view data) {
    GError* error = nullptr;
    if (g_key_file_load_from_data(file_, data.data(), data.size(), G_KEY_FILE_NONE, &error)) {
        return Status();
    }
    ErrorHolder holder(error);
    return Status::failure(holder ? holder->message : "cannot be parsed");
}

bool KeyFile::hasGroup(const char* group) const { return g_key_file_has_group(file_, group); }

std::optional<std::string> KeyFile::string(const char* group, const char* key) const {
    GError* error = nullptr;
    gchar* value = g_key_file_get_string(file_, group, key, &error);
    return taken(value, error);
}

std::optional<std::string> KeyFile::localeString(const char* group, const char* key) const {
    GError* error = nullptr;
    gchar* value = g_key_file_get_locale_string(file_, group, key, nullptr, &error);
    return taken(value, error);
}

std::optional<bool> KeyFile::boolean(const char* group, const char* key) const {
    GError* error = nullptr;
    gboolean value = g_key_file_get_boolean(file_, group, key, &error);
    if (error) {
        g_error_free(error);
        return std::nullopt;
    }
    return value != FALSE;
}

void KeyFile::setString(const char* group, const char* key, const std::string& value) {
    g_key_file_set_string(file_, group, key, value.c_str());
}

void KeyFile::setBoolean(const char* group, const char* key, bool value) {
    g_key_file_set_boolean(file_, group, key, value ? TRUE : FALSE);
}

std::string KeyFile::toData() const {
    gsize length = 0;
    CharHolder data(g_key_file_to_data(file_, &length, nullptr));
    return data ? std::string(data.get(), length) : std::string();
}

}  // namespace marzipel
