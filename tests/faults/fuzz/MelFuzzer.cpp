// MEL: the language and its commands that need no scene.
#include "FuzzHost.h"
#include "app/LightboxHost.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    lightbox::LightboxHost& host = fuzz::Host(true);
    const fuzz::Limit limit;
    try {
        host.interpreter().Execute(std::string(reinterpret_cast<const char*>(data), size));
    } catch (const lightbox::mel::Error&) {
        // a damaged script
    }
    return 0;
}
