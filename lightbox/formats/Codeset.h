#pragma once

#include <string>
#include <string_view>

namespace lightbox {

/// The encoding of a Maya ASCII file, which its head names: "//Codeset: 932".
class Codeset {
public:
    enum class Result { AsItWas, Decoded, Unknown, Invalid };

    /// Turns the file's text into UTF-8. Leaves it as it was if it is that already or names no codeset, if
    /// the codeset is unknown, and if the text is not valid in it. `name` receives the codeset.
    static Result Decode(std::string& text, std::string& name);
    /// The value that a line of the head gives, of "//Codeset: 932" for "//Codeset:"; empty when there is
    /// none.
    static std::string_view HeadValue(std::string_view text, std::string_view key);
};

} // namespace lightbox
