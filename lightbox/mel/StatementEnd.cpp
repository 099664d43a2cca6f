#include "mel/StatementEnd.h"

#include "mel/Lexer.h"

#include <algorithm>
#include <array>
#include <string>

namespace lightbox::mel {

namespace {

constexpr std::string_view BLANKS = " \t\r\n\f\v";

/// Passes over a text piece by piece.
class StatementScan {
public:
    StatementScan(std::string_view text, std::size_t begin)
        : text_(text)
        , position_(begin) {}

    StatementEnd End() {
        StatementEnd end;
        bool endsWithBrace = BeginsBlock();
        while (position_ < text_.size()) {
            const char letter = text_[position_];
            if (letter == '"') {
                if (!SkipText()) {
                    return end;
                }
                continue;
            }
            if (SkipComment()) {
                continue;
            }
            ++position_;
            end.hasVariable = end.hasVariable ||
                              (letter == '$' && position_ < text_.size() && IsNameStart(text_[position_]));
            if (letter != '\0' && std::string_view("({[").find(letter) != std::string_view::npos) {
                open_ += letter;
            } else if (letter == ')' || letter == '}' || letter == ']') {
                if (!Close(letter)) {
                    return end;
                }
            }
            const bool isEnd = letter == ';' || (letter == '}' && endsWithBrace);
            if (!open_.empty() || !isEnd) {
                continue;
            }
            if (!GoesOnWithElse()) {
                end.position = position_;
                return end;
            }
            endsWithBrace = true;
        }
        return end;
    }

private:
    bool Close(char bracket) {
        const char opening = bracket == ')' ? '(' : bracket == '}' ? '{' : '[';
        if (open_.empty() || open_.back() != opening) {
            return false;
        }
        open_.pop_back();
        return true;
    }

    bool SkipText() {
        const std::size_t begin = position_ + 1;
        for (std::size_t at = begin;; ++at) {
            at = text_.find_first_of("\"\\\n", at);
            if (at == std::string_view::npos || text_[at] == '\n') {
                return false;
            }
            if (text_[at] == '"') {
                position_ = at + 1;
                return true;
            }
            ++at; // the escaped character
            if (text_.substr(at, 2) == "\r\n") {
                ++at;
            }
        }
    }

    bool SkipComment() {
        const std::string_view opening = text_.substr(position_, 2);
        if (opening != "//" && opening != "/*") {
            return false;
        }
        const std::string_view closing = opening == "//" ? "\n" : "*/";
        const std::size_t at = text_.find(closing, position_ + 2);
        position_ = at == std::string_view::npos ? text_.size() : at + closing.size();
        return true;
    }

    void SkipSpace() {
        do {
            position_ = std::min(text_.find_first_not_of(BLANKS, position_), text_.size());
        } while (SkipComment());
    }

    std::string_view TakeName() {
        SkipSpace();
        const std::size_t begin = position_;
        while (position_ < text_.size() && IsNameCharacter(text_[position_])) {
            ++position_;
        }
        return text_.substr(begin, position_ - begin);
    }

    /// Whether the statement ends with the brace that closes its block.
    bool BeginsBlock() {
        static constexpr std::array<std::string_view, 5> words{"proc", "if", "for", "while", "switch"};
        std::string_view name = TakeName();
        if (name == "global") {
            name = TakeName();
        }
        const bool isBare = name.empty() && position_ < text_.size() && text_[position_] == '{';
        return isBare || std::find(words.begin(), words.end(), name) != words.end();
    }

    bool GoesOnWithElse() {
        const std::size_t before = position_;
        if (TakeName() == "else") {
            return true;
        }
        position_ = before;
        return false;
    }

    std::string_view text_;
    std::size_t position_;
    std::string open_; ///< the brackets that are open
};

} // namespace

StatementEnd StatementEnd::Of(std::string_view text, std::size_t begin) {
    return StatementScan(text, begin).End();
}

} // namespace lightbox::mel
