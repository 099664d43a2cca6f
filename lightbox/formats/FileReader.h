#pragma once

#include "formats/SceneBuilder.h"

#include <string>
#include <string_view>

namespace lightbox {

namespace mel {
class Error;
}

/// Reads one scene file, of either format, into the scene. Maya ASCII is a MEL script and runs as one.
class FileReader final : SceneBuilder {
public:
    using SceneBuilder::Mode;
    using SceneBuilder::SceneBuilder;
    using SceneBuilder::Source;

    /// Reads the file's bytes. Everything that can be read is read; each fault is reported as an error.
    /// Throws FileError only when the bytes are no scene at all, and then before anything has changed.
    void Read(std::string bytes);
    /// Throws FileError when the bytes do not begin as a scene file does.
    static void CheckIsScene(const std::string& bytes, const std::string& path);

    using SceneBuilder::FaultCount;
    using SceneBuilder::NewNodes;
    using SceneBuilder::Place;
    using SceneBuilder::source;

private:
    void ReadAscii(std::string text);
    void RunStatement(const std::string& text) override;
    /// Runs MEL with this reader's treatment of unknown statements and errors.
    void Run(std::string text);
    bool BeforeStatement(std::string_view statement, std::string_view before);
    bool OnError(const mel::Error& error);
    void WarnIfCutOff(std::string_view text);
};

} // namespace lightbox
