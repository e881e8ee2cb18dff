#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace marzipel {

/// A script line or argument the driver cannot accept; the text says why.
class ScriptError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the arguments of one script line: blank-separated words, or JSON strings in double
/// quotes when an argument holds blanks.
class ScriptLine {
public:
    explicit ScriptLine(std::string_view text) : text_(text) {}

    bool atEnd();
    /// The next argument; throws when there is none or it is malformed.
    std::string next(std::string_view what);
    /// Everything after the current position, trimmed; throws when empty.
    std::string rest(std::string_view what);
    /// Throws when arguments are left.
    void expectEnd();

private:
    void skipBlanks();
    std::string readArgument(std::string_view what);

    std::string_view text_;
    std::size_t position_ = 0;
};

/// "HH:MM" with an hour below 24 and a minute below 60.
std::pair<int, int> parseTimeOfDay(const std::string& text);
/// A whole decimal number that fits in 32 bits.
int parseInt(const std::string& text, std::string_view what);
/// A decimal floating-point number.
float parseFloat(const std::string& text, std::string_view what);
/// "on" or "off".
bool parseOnOff(const std::string& text);

}  // namespace marzipel
