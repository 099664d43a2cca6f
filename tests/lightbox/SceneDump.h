#pragma once

#include <string>

namespace lightbox {
class Host;
}

/// Everything that an edit of the scene can change, as text.
std::string DumpScene(lightbox::Host& host);
