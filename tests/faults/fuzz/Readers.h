#pragma once

#include <cstddef>
#include <cstdint>

namespace lightbox {
class Host;
}

/// What reads files from outside. Each function hands one input to a reader and aborts the program when the
/// answer contradicts itself; an input that is refused is no fault. Fuzzers and a test call them.
namespace readers {

using Feed = void(const std::uint8_t* data, std::size_t size);

Feed Png;        ///< the pictures of a drawing, as scene files hold them
Feed Recording;  ///< recordings of pen strokes
Feed OpenRaster; ///< layered pictures of other programs
Feed Pclx;       ///< animations of another program

// These need a running host.
Feed DrawingAscii;  ///< the drawing as Maya ASCII files hold it: tokens with blanks between them
Feed DrawingBinary; ///< the drawing as .lbx files hold it
Feed Settings;      ///< the plug-in's settings file, in the host's preferences
Feed Mel;           ///< the language and its commands that need no scene; `language` of Confine()
Feed Ma;            ///< scene files, Maya ASCII
Feed Lbx;           ///< scene files, the binary container

/// Refuses commands that reach beyond the scene, since inputs run them. With `language` refuses every command
/// that is not of the language.
void Confine(lightbox::Host& host, bool language);

} // namespace readers
