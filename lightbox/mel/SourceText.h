#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lightbox::mel {

/// A text to run and its origin. Parsed programs refer to it, so everything defined in it shares it.
class SourceText {
public:
    /// `name` is the file's path; empty for typed text. Throws Error for a text of 4 GB or more.
    SourceText(std::string text, std::string name);
    /// Reads a file; throws Error on failure.
    static std::string ReadFile(const std::string& path);

    const std::string& Name() const { return name_; }
    std::string_view Text() const { return text_; }
    std::string_view Piece(std::uint32_t begin, std::uint32_t end) const {
        return std::string_view(text_).substr(begin, end - begin);
    }
    /// Line and column, from 1, of a byte offset. The text is searched for line breaks once, so that many
    /// places of a long text are found fast.
    void Place(std::uint32_t offset, int& line, int& column) const;

private:
    std::string name_;
    std::string text_;
    /// The beginnings of the lines found so far. The text before `searched_` is known.
    mutable std::vector<std::uint32_t> lineBegins_{0};
    mutable std::uint32_t searched_ = 0;
};

/// The text of a string literal; `literal` is the part between its quotes.
std::string Unescaped(std::string_view literal);

} // namespace lightbox::mel
