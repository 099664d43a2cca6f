#pragma once

#include <string>

namespace lightbox {
class Host;
}

/// Returns everything that an edit of the scene can change, as text.
std::string DumpScene(lightbox::Host& host);
