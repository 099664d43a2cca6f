// The drawing as .lbx files hold it.
#include "DrawingFuzzer.h"
#include "FuzzHost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Host();
    vellix::BaseNodeLayerData drawing;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    drawing.readBinary(in, static_cast<unsigned>(size));
    fuzz::CheckComesBack(drawing);
    return 0;
}
