#pragma once

#include "app/CommandLine.h"

namespace lightbox {

/// The pencil test that comes with the program. Its files are found relative to the executable, both in an
/// installation and in a build folder.
class Demo {
public:
    /// Makes the folder `line.demoFolder`, with its own preferences unless the command line sets a
    /// preferences folder, and inserts the demo's script before the other steps. On failure `line.error` says
    /// what to do.
    static void Prepare(CommandLine& line);

private:
    /// The folder of the recordings and the script; empty when it is missing.
    static QString Folder();
};

} // namespace lightbox
