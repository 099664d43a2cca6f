#include "formats/FaceText.h"

#include "scene/SceneError.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace lightbox {
namespace {

[[noreturn]] void Fail() {
    throw SceneError("A face of a mesh could not be read.");
}

/// Reads words and numbers one after another.
class Tokens {
public:
    explicit Tokens(std::string_view text)
        : rest_(text) {
        SkipBlanks();
    }

    bool AtEnd() const { return rest_.empty(); }
    bool AtWord() const { return !AtEnd() && std::isalpha(static_cast<unsigned char>(rest_.front())); }
    std::string_view Next() {
        const std::size_t length = std::min(rest_.find_first_of(" \t\r\n"), rest_.size());
        const std::string_view token = rest_.substr(0, length);
        rest_.remove_prefix(length);
        SkipBlanks();
        return token;
    }
    int Number() {
        const std::string_view token = Next();
        int number = 0;
        const auto result = std::from_chars(token.data(), token.data() + token.size(), number);
        if (token.empty() || result.ec != std::errc() || result.ptr != token.data() + token.size()) {
            Fail();
        }
        return number;
    }
    /// Reads a count and that many numbers.
    std::vector<int> Numbers() {
        const int count = Number();
        std::vector<int> numbers;
        // No reserve(): a damaged count may be huge.
        for (int i = 0; i < count; ++i) {
            numbers.push_back(Number()); // NOLINT(performance-inefficient-vector-operation)
        }
        return numbers;
    }

private:
    void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

    std::string_view rest_;
};

} // namespace

std::string FaceText::Uvs::Text() const {
    return Run("mu " + std::to_string(set), ids.begin(), ids.end());
}

FaceText::FaceText(std::string_view text) {
    Tokens tokens(text);
    if (tokens.Next() != "f") {
        Fail();
    }
    edges_ = tokens.Numbers();
    while (!tokens.AtEnd()) {
        const std::string word(tokens.Next());
        if (word == "h") {
            holes_.push_back(tokens.Numbers());
        } else if (word == "mu") {
            const int set = tokens.Number();
            uvSets_.push_back({set, tokens.Numbers()});
        } else if (std::isalpha(static_cast<unsigned char>(word[0]))) {
            std::string kept = word;
            while (!tokens.AtEnd() && !tokens.AtWord()) {
                kept.append(" ").append(tokens.Next());
            }
            otherParts_.push_back(std::move(kept));
        } else {
            Fail();
        }
    }
}

} // namespace lightbox
