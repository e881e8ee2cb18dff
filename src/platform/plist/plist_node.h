#pragma once

#include <plist/plist.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

namespace marzipel {

/// Frees a libplist node tree.
struct PlistNodeDeleter {
    void operator()(void* node) const { plist_free(static_cast<plist_t>(node)); }
};

/// Owns the root of a libplist node tree; children belong to their root and are never held here.
using PlistNode = std::unique_ptr<std::remove_pointer_t<plist_t>, PlistNodeDeleter>;

/// Frees a buffer that libplist allocated with malloc (keys, XML and binary output).
struct PlistBufferDeleter {
    void operator()(char* buffer) const { std::free(buffer); }
};

/// Owns a buffer handed out by libplist.
using PlistBuffer = std::unique_ptr<char, PlistBufferDeleter>;

}  // namespace marzipel
