#pragma once

#include "MelFixture.h"
#include "SceneDump.h"
#include "scene/UndoQueue.h"

/// Runs tables of scene commands: checks their results, their effect on the scene, and that undo and redo
/// restore both states exactly.
class SceneCommandFixture : public MelFixture {
protected:
    struct Edit {
        const char* setup;   ///< run before, in an empty scene
        const char* command; ///< one statement
        const char* result;  ///< its typed result
        const char* check;   ///< an expression, run afterwards
        const char* checked; ///< its typed result
    };
    struct Question {
        const char* command;
        const char* result;
    };
    struct Refusal {
        const char* setup;
        const char* command;
        const char* message; ///< without file and line
    };

    /// The typed result, or "error: " and the message without file and line.
    std::string Answer(const std::string& command) {
        try {
            return Typed(command);
        } catch (const lightbox::mel::Error& error) {
            return std::string("error: ") + error.what();
        }
    }

    std::string Begin(const char* setup) {
        Run("file -force -newFile");
        Run(setup);
        Run("flushUndo");
        return DumpScene(host_);
    }

    void UndoAll() {
        while (host_.undo().Undo()) {
        }
    }
    void RedoAll() {
        while (host_.undo().Redo()) {
        }
    }

    template <std::size_t N>
    void ExpectEdits(const Edit (&rows)[N]) {
        for (const Edit& row : rows) {
            SCOPED_TRACE(std::string(row.setup) + "  >>  " + row.command);
            const std::string before = Begin(row.setup);
            EXPECT_EQ(Answer(row.command), row.result);
            EXPECT_EQ(Answer(row.check), row.checked) << row.check;
            const std::string after = DumpScene(host_);
            EXPECT_TRUE(after != before) << "nothing was edited";
            for (int round = 0; round < 2; ++round) {
                UndoAll();
                EXPECT_EQ(DumpScene(host_), before) << "undone";
                RedoAll();
                EXPECT_EQ(DumpScene(host_), after) << "redone";
            }
        }
    }

    template <std::size_t N>
    void ExpectAnswers(const char* setup, const Question (&rows)[N]) {
        const std::string before = Begin(setup);
        for (const Question& row : rows) {
            EXPECT_EQ(Answer(row.command), row.result) << row.command;
        }
        EXPECT_EQ(DumpScene(host_), before) << "a question changed the scene";
    }

    /// Runs rows of several statements, each row in a new scene. Checks the result of the last statement,
    /// then undoes and redoes all of them.
    template <std::size_t N>
    void ExpectSteps(const char* setup, const Question (&rows)[N]) {
        for (const Question& row : rows) {
            SCOPED_TRACE(row.command);
            const std::string before = Begin(setup);
            EXPECT_EQ(Answer(row.command), row.result);
            const std::string after = DumpScene(host_);
            UndoAll();
            EXPECT_EQ(DumpScene(host_), before) << "undone";
            RedoAll();
            EXPECT_EQ(DumpScene(host_), after) << "redone";
        }
    }

    /// Checks that refused commands do not change the scene.
    template <std::size_t N>
    void ExpectRefusals(const Refusal (&rows)[N]) {
        for (const Refusal& row : rows) {
            SCOPED_TRACE(std::string(row.setup) + "  >>  " + row.command);
            const std::string before = Begin(row.setup);
            EXPECT_EQ(Answer(row.command), std::string("error: ") + row.message);
            EXPECT_EQ(DumpScene(host_), before);
        }
    }
};
