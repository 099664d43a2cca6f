#include "text/Quoted.h"

namespace lightbox {

std::string Quoted(std::string_view text) {
    std::string literal = "\"";
    literal.reserve(text.size() + 2);
    for (const char letter : text) {
        switch (letter) {
        case '"':
        case '\\':
            literal += '\\';
            literal += letter;
            break;
        case '\n':
            literal += "\\n";
            break;
        case '\r':
            literal += "\\r";
            break;
        case '\t':
            literal += "\\t";
            break;
        default:
            literal += letter;
        }
    }
    return literal + '"';
}

} // namespace lightbox
