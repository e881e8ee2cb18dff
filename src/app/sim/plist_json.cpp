#include "app/sim/plist_json.h"

#include <cmath>
#include <ctime>
#include <nlohmann/json.hpp>

#include "app/sim/script_line.h"
#include "base/float_text.h"

namespace marzipel {

namespace {

// As deep as the preferences file may nest.
constexpr int kMaxDepth = 256;

PlistValue fromJson(const nlohmann::json& json, int depth = 0) {
    if (depth > kMaxDepth) throw ScriptError("JSON value nested too deeply");
    switch (json.type()) {
        case nlohmann::json::value_t::object: {
            PlistDictionary dictionary;
            for (const auto& [name, item] : json.items())
                dictionary.emplace(name, fromJson(item, depth + 1));
            return dictionary;
        }
        case nlohmann::json::value_t::array: {
            PlistArray array;
            for (const auto& item : json) array.push_back(fromJson(item, depth + 1));
            return array;
        }
        case nlohmann::json::value_t::string:
            return json.get<std::string>();
        case nlohmann::json::value_t::boolean:
            return json.get<bool>();
        case nlohmann::json::value_t::number_integer:
            return json.get<std::int64_t>();
        case nlohmann::json::value_t::number_unsigned:
            if (json.get<std::uint64_t>() > std::uint64_t(INT64_MAX)) {
                throw ScriptError("integer out of range");
            }
            return json.get<std::int64_t>();
        case nlohmann::json::value_t::number_float:
            return json.get<double>();
        default:
            throw ScriptError("JSON value has no property-list kind");
    }
}

std::string base64(const PlistData& data) {
    static constexpr char kAlphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        std::uint32_t chunk = data[i] << 16;
        if (i + 1 < data.size()) chunk |= data[i + 1] << 8;
        if (i + 2 < data.size()) chunk |= data[i + 2];
        for (std::size_t j = 0; j < 4; ++j) {
            text += i + j <= data.size() ? kAlphabet[(chunk >> (18 - 6 * j)) & 63] : '=';
        }
    }
    return text;
}

std::string isoDate(PlistDate date) {
    constexpr std::time_t kReferenceDate = 978307200;  // 2001-01-01T00:00:00Z
    std::time_t moment = kReferenceDate + static_cast<std::time_t>(date.secondsSinceReferenceDate);
    std::tm parts{};
    gmtime_r(&moment, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

struct JsonWriter {
    std::string& out;

    void operator()(bool value) { out += value ? "true" : "false"; }
    void operator()(std::int64_t value) { out += std::to_string(value); }
    void operator()(double value) {
        const auto narrowed = static_cast<float>(value);
        // A real beyond the float range keeps its own digits; JSON has no infinity.
        out += std::isfinite(narrowed) ? floatText(narrowed) : nlohmann::json(value).dump();
    }
    void operator()(const std::string& value) { out += nlohmann::json(value).dump(); }
    void operator()(const PlistData& value) { out += nlohmann::json(base64(value)).dump(); }
    void operator()(PlistDate value) { out += nlohmann::json(isoDate(value)).dump(); }
    void operator()(const PlistArray& value) {
        out += '[';
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (i) out += ',';
            std::visit(*this, value[i].storage());
        }
        out += ']';
    }
    void operator()(const PlistDictionary& value) {
        out += '{';
        bool first = true;
        for (const auto& [name, item] : value) {
            if (!first) out += ',';
            first = false;
            out += nlohmann::json(name).dump() + ':';
            std::visit(*this, item.storage());
        }
        out += '}';
    }
};

}  // namespace

PlistValue plistFromJson(const std::string& text) {
    nlohmann::json json;
    try {
        json = nlohmann::json::parse(text);
    } catch (const std::exception&) {
        throw ScriptError("malformed JSON '" + text + "'");
    }
    return fromJson(json);
}

std::string plistToJson(const PlistValue& value) {
    std::string out;
    std::visit(JsonWriter{out}, value.storage());
    return out;
}

}  // namespace marzipel
