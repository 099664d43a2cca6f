#include "formats/QuoteRepair.h"

#include <algorithm>
#include <bitset>

namespace lightbox {
namespace {

constexpr char QUOTE = '"';
constexpr char ESCAPE = '\\';

bool IsBoundary(std::string_view line, std::size_t at) {
    return at >= line.size() || std::string_view(" \t\r;(),").find(line[at]) != std::string_view::npos;
}

/// The place of the quotation mark that closes the string that begins there; npos without one.
std::size_t ClosingQuote(std::string_view line, std::size_t opening) {
    std::size_t at = line.find_first_of("\"\\", opening + 1);
    while (at != std::string_view::npos && line[at] == ESCAPE) {
        at = line.find_first_of("\"\\", at + 2); // behind the escaped character
    }
    return at;
}

/// Whether every string has both its quotation marks, with something between it and its neighbours.
bool IsRegular(std::string_view line) {
    std::size_t opening = line.find(QUOTE);
    while (opening != std::string_view::npos) {
        const std::size_t closing = ClosingQuote(line, opening);
        const bool beginsWord = opening == 0 || IsBoundary(line, opening - 1);
        if (closing == std::string_view::npos || !beginsWord || !IsBoundary(line, closing + 1)) {
            return false;
        }
        opening = line.find(QUOTE, closing + 1);
    }
    return true;
}

bool IsOneBitFrom(char wanted, char letter) {
    return std::bitset<8>(static_cast<unsigned char>(letter ^ wanted)).count() == 1;
}

/// Whether the string with a quotation mark at that place, in a regular line, has a blank in it.
bool HasBlank(std::string_view line, std::size_t at) {
    std::size_t opening = line.find(QUOTE);
    std::size_t closing = ClosingQuote(line, opening);
    while (closing < at) {
        opening = line.find(QUOTE, closing + 1);
        closing = ClosingQuote(line, opening);
    }
    return line.substr(opening, closing - opening).find(' ') != std::string_view::npos;
}

/// Whether a blank stands beside another one, or at the end of the line.
bool IsSpare(std::string_view line, std::size_t at) {
    const auto isBlankOrEnd = [line](std::size_t place) {
        return place >= line.size() || line[place] == ' ' || line[place] == '\r';
    };
    return line[at] == ' ' && (isBlankOrEnd(at + 1) || isBlankOrEnd(at - 1));
}

/// Puts the escape of a quotation mark right, without which the string ends there.
bool RestoreEscape(std::string& line) {
    for (std::size_t i = line.find(QUOTE); i != std::string::npos; i = line.find(QUOTE, i + 1)) {
        if (i == 0 || !IsOneBitFrom(ESCAPE, line[i - 1])) {
            continue;
        }
        const char before = line[i - 1];
        line[i - 1] = ESCAPE;
        if (IsRegular(line)) {
            return true;
        }
        line[i - 1] = before;
    }
    return false;
}

bool Restore(std::string& line) {
    if (RestoreEscape(line)) {
        return true;
    }
    // What was a mark most likely, in this order: a blank too many, a character that makes a string of one
    // word, any other.
    enum class Guess { Spare, Word, Any };
    for (const Guess guess : {Guess::Spare, Guess::Word, Guess::Any}) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            const char before = line[i];
            const bool isAtEdge = i == 0 || IsBoundary(line, i - 1) || IsBoundary(line, i + 1);
            if (!isAtEdge || !IsOneBitFrom(QUOTE, before) || (guess == Guess::Spare && !IsSpare(line, i))) {
                continue;
            }
            line[i] = QUOTE;
            if (IsRegular(line) && (guess != Guess::Word || !HasBlank(line, i))) {
                return true;
            }
            line[i] = before;
        }
    }
    // Otherwise it is one too many, in the middle of something. In a picture it was a digit, most likely;
    // else a blank.
    for (const char likely : {'2', ' '}) {
        for (std::size_t i = line.find(QUOTE); i != std::string::npos; i = line.find(QUOTE, i + 1)) {
            if (i == 0 || IsBoundary(line, i - 1) || IsBoundary(line, i + 1)) {
                continue;
            }
            line[i] = likely;
            if (IsRegular(line)) {
                return true;
            }
            line[i] = QUOTE;
        }
    }
    return false;
}

} // namespace

std::optional<std::string> WithQuoteRestored(std::string_view statement) {
    std::size_t damaged = std::string_view::npos;
    for (std::size_t begin = 0; begin < statement.size();) {
        const std::size_t end = std::min(statement.find('\n', begin), statement.size());
        if (!IsRegular(statement.substr(begin, end - begin))) {
            if (damaged != std::string_view::npos) {
                return std::nullopt;
            }
            damaged = begin;
        }
        begin = end + 1;
    }
    if (damaged == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t end = std::min(statement.find('\n', damaged), statement.size());
    std::string line(statement.substr(damaged, end - damaged));
    if (!Restore(line)) {
        return std::nullopt;
    }
    std::string restored(statement);
    restored.replace(damaged, line.size(), line);
    return restored;
}

} // namespace lightbox
