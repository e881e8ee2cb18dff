#include "app/sim/script_line.h"

#include <charconv>
#include <nlohmann/json.hpp>

#include "base/utf8.h"

namespace marzipel {

namespace {
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
}  // namespace

void ScriptLine::skipBlanks() {
    while (position_ < text_.size() && isBlank(text_[position_])) ++position_;
}

bool ScriptLine::atEnd() {
    skipBlanks();
    return position_ >= text_.size();
}

std::string ScriptLine::next(std::string_view what) {
    std::string argument = readArgument(what);
    if (!isValidUtf8(argument)) throw ScriptError(std::string(what) + " is not UTF-8 text");
    return argument;
}

std::string ScriptLine::readArgument(std::string_view what) {
    if (atEnd()) throw ScriptError("missing " + std::string(what));
    if (text_[position_] != '"') {
        std::size_t start = position_;
        while (position_ < text_.size() && !isBlank(text_[position_])) ++position_;
        return std::string(text_.substr(start, position_ - start));
    }
    std::size_t end = position_ + 1;
    while (end < text_.size() && text_[end] != '"') end += text_[end] == '\\' ? 2 : 1;
    if (end >= text_.size()) throw ScriptError("unterminated string for " + std::string(what));
    std::string_view quoted = text_.substr(position_, end + 1 - position_);
    position_ = end + 1;
    if (position_ < text_.size() && !isBlank(text_[position_])) {
        throw ScriptError("text after the string for " + std::string(what));
    }
    try {
        return nlohmann::json::parse(quoted).get<std::string>();
    } catch (const std::exception&) {
        throw ScriptError("malformed string for " + std::string(what));
    }
}

std::string ScriptLine::rest(std::string_view what) {
    if (atEnd()) throw ScriptError("missing " + std::string(what));
    std::string_view remaining = text_.substr(position_);
    while (!remaining.empty() && isBlank(remaining.back())) remaining.remove_suffix(1);
    position_ = text_.size();
    if (!isValidUtf8(remaining)) throw ScriptError(std::string(what) + " is not UTF-8 text");
    return std::string(remaining);
}

void ScriptLine::expectEnd() {
    if (!atEnd()) throw ScriptError("unexpected argument '" + next("argument") + "'");
}

std::pair<int, int> parseTimeOfDay(const std::string& text) {
    auto bad = [&] { return ScriptError("malformed time '" + text + "', expected HH:MM"); };
    auto colon = text.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) throw bad();
    int hour = 0;
    int minute = 0;
    auto [hourEnd, hourError] = std::from_chars(text.data(), text.data() + colon, hour);
    auto [minuteEnd, minuteError] =
        std::from_chars(text.data() + colon + 1, text.data() + text.size(), minute);
    if (hourError != std::errc() || minuteError != std::errc() || hourEnd != text.data() + colon ||
        minuteEnd != text.data() + text.size() || hour < 0 || hour > 23 || minute < 0 ||
        minute > 59) {
        throw bad();
    }
    return {hour, minute};
}

namespace {
template <typename Number>
Number parseNumber(const std::string& text, std::string_view what) {
    Number value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw ScriptError("malformed " + std::string(what) + " '" + text + "'");
    }
    return value;
}
}  // namespace

int parseInt(const std::string& text, std::string_view what) {
    return parseNumber<int>(text, what);
}

float parseFloat(const std::string& text, std::string_view what) {
    return parseNumber<float>(text, what);
}

bool parseOnOff(const std::string& text) {
    if (text == "on") return true;
    if (text == "off") return false;
    throw ScriptError("expected on or off, got '" + text + "'");
}

}  // namespace marzipel
