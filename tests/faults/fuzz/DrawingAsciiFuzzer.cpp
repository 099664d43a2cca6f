// The drawing as Maya ASCII files hold it: tokens with blanks between them, texts in quotes.
#include "DrawingFuzzer.h"
#include "FuzzHost.h"

#include <maya/MArgList.h>
#include <maya/MString.h>

namespace {

MArgList Tokens(const std::uint8_t* data, std::size_t size) {
    MArgList tokens;
    std::string token;
    bool isQuoted = false;
    bool isToken = false;
    const auto end = [&] {
        if (isToken) {
            tokens.addArg(MString(token.c_str()));
        }
        token.clear();
        isToken = false;
    };
    for (std::size_t i = 0; i < size; ++i) {
        const char letter = static_cast<char>(data[i]);
        if (letter == '"') {
            isQuoted = !isQuoted;
            isToken = true;
        } else if (!isQuoted && (letter == ' ' || letter == '\n' || letter == '\t')) {
            end();
        } else if (letter != '\0') {
            token += letter;
            isToken = true;
        }
    }
    end();
    return tokens;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Host();
    vellix::BaseNodeLayerData drawing;
    unsigned element = 0;
    drawing.readASCII(Tokens(data, size), element);
    fuzz::CheckComesBack(drawing);
    return 0;
}
