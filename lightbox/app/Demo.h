#pragma once

#include "app/CommandLine.h"

namespace lightbox {

/// The pencil test that comes with the program. It is found relative to the executable, in an installation as
/// in a build folder.
class Demo {
public:
    /// Makes the folder `line.demoFolder` with preferences of its own, unless the line names some, and puts
    /// the demo's script before the line's other steps. On a fault says in `line.error` what to do.
    static void Prepare(CommandLine& line);

private:
    /// Where the recordings and the script are; empty when they are not there.
    static QString Folder();
};

} // namespace lightbox
