#include "MelFixture.h"
#include "scene/UndoItem.h"
#include "scene/UndoQueue.h"
#include "text/Quoted.h"

#include <QFile>

namespace {

/// Appends a letter to a log; undo takes it away.
class LetterItem : public lightbox::UndoItem {
public:
    LetterItem(std::string& log, const std::string& letter)
        : log_(log)
        , letter_(letter) {
        Redo();
    }
    void Undo() override { log_.resize(log_.size() - letter_.size()); }
    void Redo() override { log_ += letter_; }
    std::string Name() const override { return letter_; }

private:
    std::string& log_;
    std::string letter_;
};

class MelUndoTest : public MelFixture {
protected:
    MelUndoTest() {
        host_.interpreter().Commands().RegisterRaw("letter", 1, 1, [this](lightbox::mel::CommandCall& call) {
            host_.undo().Push(std::make_unique<LetterItem>(log_, call.Object(0).AsString()));
            return lightbox::mel::Value();
        });
    }
    ~MelUndoTest() override { host_.undo().Flush(); }

    /// What is left after each undo, from the present to nothing.
    std::string Steps() {
        std::string steps = log_;
        while (host_.undo().Undo()) {
            steps += "|" + log_;
        }
        return steps;
    }
    std::string Script(const char* name, const char* text) {
        const QString path = prefs_.filePath(QString::fromUtf8(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return lightbox::Quoted(path.toStdString());
    }

    std::string log_;
};

TEST_F(MelUndoTest, EveryOutermostStatementIsOneStep) {
    Run("letter a; letter b; { letter c; letter d; }");
    Run("proc both() { letter e; eval(\"letter f; letter g\"); } both();");
    Run("for ($i = 0; $i < 3; $i++) letter h;");
    Run("int $nothing = 1;");
    EXPECT_EQ(Steps(), "abcdefghhh|abcdefg|abcd|ab|a|");
}

TEST_F(MelUndoTest, StatementsOfASourcedFileAreSteps) {
    const std::string inner = Script("inner.mel", "letter b; letter c;");
    const std::string outer = Script("outer.mel", ("letter a; source " + inner + "; letter d;").c_str());
    Run("source " + outer + ";");
    EXPECT_EQ(Steps(), "abcd|abc|ab|a|");
    Run("if (1) source " + outer + ";");
    EXPECT_EQ(Steps(), "abcd|");
    Run("proc load(string $file) { letter x; source $file; } load(" + outer + ")");
    EXPECT_EQ(Steps(), "xabcd|");
}

TEST_F(MelUndoTest, AFailedStatementCanBeUndone) {
    EXPECT_EQ(ErrorOf("letter a; { letter b; error \"x\"; letter c; } letter d;"), "line 1.23: x");
    EXPECT_EQ(Steps(), "ab|a|");
}

TEST_F(MelUndoTest, UndoInsideAScriptTakesBackWhatWasComplete) {
    Run("letter a; letter b; undo; letter c;");
    EXPECT_EQ(log_, "ac");
    Run("undo; redo;");
    EXPECT_EQ(Steps(), "ac|a|");
}

TEST_F(MelUndoTest, ChunksSpanStatements) {
    Run("undoInfo -openChunk; letter a; letter b; undoInfo -closeChunk; letter c;");
    EXPECT_EQ(Steps(), "abc|ab|");
}

} // namespace
