#pragma once

#include "formats/SceneBuilder.h"

#include <string>
#include <string_view>
#include <vector>

namespace lightbox {

namespace mel {
class Error;
}

/// Reads one scene file of either format into the scene. Maya ASCII is MEL, but of a file only the statements
/// of a scene run (SceneStatements), and only with arguments that are written out. All other code is kept as
/// text: to open a file must not run what its author wrote.
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
    /// Keeps the comments at the beginning, except for those that saving writes anew.
    void KeepHeadComments(std::string_view text);
    void RunStatement(const std::string& text) override;
    void RefuseStatement() override;
    std::string RunConfiguration(const std::string& script) override;
    /// Runs the statements of a scene. Counts errors instead of stopping.
    void Run(std::string text);
    bool BeforeStatement(std::string_view statement, int line);
    /// Keeps a statement that is not run.
    void OnRefused(std::string_view statement, int line);
    /// Keeps the current statement with its node, or with the file. What follows one that makes a node or
    /// selects one is kept with it.
    void Keep(const std::string& word);
    void ShowRefused() const;
    bool OnError(const mel::Error& error);
    /// Runs a statement with a damaged quotation mark put right, or with a damaged letter of its first word.
    /// False if neither can be.
    bool RunRestored(std::string_view statement, int line);
    bool RunWithWordRestored(std::string_view statement, int line);
    void AfterUnreadable(std::string_view readable, std::string_view skipped, int line);
    void CheckEnd(std::string_view text);

    bool keepsBlock_ = false;       ///< the node that the statements are about was not made
    std::vector<int> refusedLines_; ///< of statements that were not run
    int depth_ = 0;                 ///< of running texts; the file's own text is the first
    int syntaxErrors_ = 0;          ///< in the file's own text
};

} // namespace lightbox
