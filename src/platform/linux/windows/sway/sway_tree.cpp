#include "platform/linux/windows/sway/sway_tree.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace marzipel {

namespace {

using nlohmann::json;

json parsed(std::string_view text) {
    return json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
}

const json* member(const json& object, const char* name) {
    if (!object.is_object()) return nullptr;
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

std::string text(const json& object, const char* name) {
    const json* value = member(object, name);
    return value && value->is_string() ? value->get<std::string>() : std::string();
}

std::int64_t integer(const json& object, const char* name) {
    const json* value = member(object, name);
    return value && value->is_number_integer() ? value->get<std::int64_t>() : 0;
}

/// A container that shows a client's window: it has the client's process.
std::optional<SwayWindow> clientWindow(const json& node) {
    const std::string type = text(node, "type");
    if (type != "con" && type != "floating_con") return std::nullopt;
    const std::int64_t processId = integer(node, "pid");
    if (processId <= 0 || processId > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    SwayWindow window;
    window.id = integer(node, "id");
    window.identity.processId = static_cast<std::int32_t>(processId);
    if (std::string appId = text(node, "app_id"); !appId.empty()) {
        window.identity.instance = appId;
        window.identity.className = std::move(appId);
    } else if (const json* x11 = member(node, "window_properties")) {
        window.identity.instance = text(*x11, "instance");
        window.identity.className = text(*x11, "class");
    }
    window.fullScreen = integer(node, "fullscreen_mode") != 0;
    const json* focused = member(node, "focused");
    window.focused = focused && focused->is_boolean() && focused->get<bool>();
    return window;
}

}  // namespace

std::optional<SwayTree> parseSwayTree(std::string_view jsonText) {
    const json root = parsed(jsonText);
    if (!root.is_object()) return std::nullopt;
    SwayTree tree;
    bool focusSeen = false;
    // Depth first without recursion: the tree comes from outside and may be deep.
    std::vector<const json*> stack{&root};
    while (!stack.empty()) {
        const json& node = *stack.back();
        stack.pop_back();
        if (!node.is_object()) continue;
        const std::optional<SwayWindow> window = clientWindow(node);
        if (window) tree.windows.push_back(window->identity);
        const json* focused = member(node, "focused");
        if (!focusSeen && focused && focused->is_boolean() && focused->get<bool>()) {
            focusSeen = true;
            tree.focused = window;
        }
        for (const char* children : {"floating_nodes", "nodes"}) {
            const json* list = member(node, children);
            if (!list || !list->is_array()) continue;
            for (auto child = list->crbegin(); child != list->crend(); ++child)
                stack.push_back(&*child);
        }
    }
    return tree;
}

std::optional<SwayWindowEvent> parseSwayWindowEvent(std::string_view jsonText) {
    const json event = parsed(jsonText);
    const json* change = member(event, "change");
    if (!change || !change->is_string()) return std::nullopt;
    SwayWindowEvent result{change->get<std::string>(), std::nullopt};
    if (const json* container = member(event, "container"))
        result.container = clientWindow(*container);
    return result;
}

std::optional<std::string> parseSwayWorkspaceChange(std::string_view jsonText) {
    const json event = parsed(jsonText);
    const json* change = member(event, "change");
    if (!change || !change->is_string()) return std::nullopt;
    return change->get<std::string>();
}

bool parseSwaySuccess(std::string_view jsonText) {
    const json reply = parsed(jsonText);
    const json* success = member(reply, "success");
    return success && success->is_boolean() && success->get<bool>();
}

}  // namespace marzipel
