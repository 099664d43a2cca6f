#pragma once

#include "formats/SceneBuilder.h"

#include <string>
#include <string_view>

namespace lightbox {

namespace mel {
class Error;
}

/// Reads one scene file of either format into the scene. Maya ASCII is a MEL script and runs as one.
class FileReader final : SceneBuilder {
public:
    using SceneBuilder::Mode;
    using SceneBuilder::SceneBuilder;
    using SceneBuilder::Source;

    /// Reads the file's bytes. Reads on after a fault, also after one of memory; each fault is reported as an
    /// error. Throws FileError only when the bytes are not a scene, before it changes anything.
    void Read(std::string bytes);
    /// Throws FileError when the bytes do not begin like a scene file.
    static void CheckIsScene(const std::string& bytes, const std::string& path);

    using SceneBuilder::HiddenFaultCount;
    using SceneBuilder::NewNodes;
    using SceneBuilder::Place;
    using SceneBuilder::source;

private:
    void ReadContent(std::string bytes);
    void ReadAscii(std::string text);
    void RunStatement(const std::string& text) override;
    /// Runs MEL. Keeps statements of unknown commands and counts errors instead of stopping.
    void Run(std::string text);
    bool BeforeStatement(std::string_view statement, int line);
    bool IsWanted(const std::string& word);
    bool OnError(const mel::Error& error);
    /// Runs a statement that is not MEL with a damaged quotation mark put right. False if none can be.
    bool RunRestored(std::string_view statement, int line);
    void AfterUnreadable(std::string_view readable, std::string_view skipped, int line);
    void CheckEnd(std::string_view text);

    int depth_ = 0;        ///< of running texts; the file's own text is the first
    int syntaxErrors_ = 0; ///< in the file's own text
};

} // namespace lightbox
