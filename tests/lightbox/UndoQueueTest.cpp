#include "scene/UndoQueue.h"

#include "scene/EventBus.h"

#include <gtest/gtest.h>
#include <new>

using namespace lightbox;

namespace {

/// Writes what happens to it into a log.
class LoggedItem : public UndoItem {
public:
    LoggedItem(std::string& log, char name)
        : log_(log)
        , name_(name) {}
    ~LoggedItem() override { log_ += std::string("~") + name_ + ' '; }
    void Undo() override { Run('-'); }
    void Redo() override { Run('+'); }
    std::string Name() const override { return std::string(1, name_); }

    /// Throws when the step that is written like this runs, such as "-a".
    static std::string refused;

protected:
    std::string& log_;

private:
    void Run(char step) {
        const std::string run{step, name_};
        if (run == refused) {
            throw std::bad_alloc();
        }
        log_ += run + ' ';
    }

    char name_;
};

std::string LoggedItem::refused;

class UndoQueueTest : public ::testing::Test {
protected:
    ~UndoQueueTest() override { LoggedItem::refused.clear(); }
    void Push(char name) { queue_.Push(std::make_unique<LoggedItem>(log_, name)); }
    std::string Log() { return std::exchange(log_, std::string()); }

    std::string log_;
    EventBus events_;
    UndoQueue queue_{events_};
};

} // namespace

TEST_F(UndoQueueTest, ChunksAreUndoneBackwardAndRedoneForward) {
    Push('a');
    queue_.OpenChunk("outer");
    Push('b');
    queue_.OpenChunk("inner");
    Push('c');
    queue_.CloseChunk();
    queue_.CloseChunk();
    queue_.OpenChunk("empty");
    queue_.CloseChunk();
    EXPECT_EQ(queue_.Names(), (std::vector<std::string>{"a", "outer"}));
    EXPECT_TRUE(queue_.Undo());
    EXPECT_EQ(Log(), "-c -b ");
    EXPECT_TRUE(queue_.Redo());
    EXPECT_EQ(Log(), "+b +c ");
    EXPECT_TRUE(queue_.Undo());
    EXPECT_TRUE(queue_.Undo());
    EXPECT_FALSE(queue_.Undo());
    Log();
    Push('d');
    EXPECT_FALSE(queue_.Redo());
    std::string dropped = Log();
    for (const char* name : {"~a ", "~b ", "~c "}) {
        EXPECT_NE(dropped.find(name), std::string::npos) << name;
    }
}

TEST_F(UndoQueueTest, UndoInsideAStatementClosesItsImplicitChunkFirst) {
    Push('a');
    queue_.OpenChunk("", true);
    EXPECT_TRUE(queue_.Undo());
    EXPECT_EQ(Log(), "-a ");
    Push('b');
    Push('c');
    EXPECT_TRUE(queue_.Undo());
    EXPECT_EQ(Log(), "~a -c -b ");
    queue_.CloseChunk(true);
    EXPECT_EQ(queue_.OpenChunks(), 0);
    EXPECT_TRUE(queue_.Redo());
}

TEST_F(UndoQueueTest, AnExplicitChunkSpansStatements) {
    queue_.OpenChunk("", true);
    queue_.OpenChunk("mine");
    queue_.CloseChunk(true);
    Push('a');
    queue_.OpenChunk("", true);
    Push('b');
    EXPECT_FALSE(queue_.Undo()) << "the chunk is still open";
    queue_.CloseChunk();
    queue_.CloseChunk(true);
    EXPECT_EQ(queue_.Names(), std::vector<std::string>{"mine"});
    queue_.CloseChunk();
    EXPECT_TRUE(queue_.Undo());
    EXPECT_EQ(Log(), "-b -a ");
}

TEST_F(UndoQueueTest, NothingIsKeptWhilePausedOffOrUndoing) {
    {
        UndoQueue::Pause pause(queue_);
        Push('a');
        EXPECT_EQ(Log(), "~a ");
    }
    Push('b');
    queue_.SetEnabled(false);
    EXPECT_EQ(Log(), "~b ");
    Push('c');
    EXPECT_EQ(Log(), "~c ");
    queue_.SetEnabled(true);
    class Nested : public UndoItem {
    public:
        Nested(UndoQueueTest& test, std::string& log, UndoQueue& queue)
            : log_(log)
            , queue_(queue) {
            (void)test;
        }
        void Undo() override {
            queue_.Push(std::make_unique<LoggedItem>(log_, 'n'));
            EXPECT_FALSE(queue_.Undo());
            EXPECT_TRUE(queue_.IsUndoing());
        }
        void Redo() override {}
        std::string Name() const override { return "nested"; }

    private:
        std::string& log_;
        UndoQueue& queue_;
    };
    queue_.Push(std::make_unique<Nested>(*this, log_, queue_));
    EXPECT_TRUE(queue_.Undo());
    EXPECT_EQ(Log(), "~n ");
    EXPECT_TRUE(queue_.CanRedo());
}

TEST_F(UndoQueueTest, DropsTheOldestBeyondItsLimitAndEverythingOnFlush) {
    queue_.SetLimit(2);
    for (const char name : {'a', 'b', 'c'}) {
        Push(name);
    }
    EXPECT_EQ(Log(), "~a ");
    queue_.OpenChunk("open");
    Push('d');
    queue_.Flush();
    EXPECT_EQ(Log(), "~d ~c ~b ");
    EXPECT_FALSE(queue_.CanUndo());
    queue_.CloseChunk();
    EXPECT_FALSE(queue_.Undo());
}

TEST_F(UndoQueueTest, TheStateTellsWhetherTheSceneIsTheSame) {
    const auto clean = queue_.State();
    Push('a');
    const auto afterA = queue_.State();
    EXPECT_NE(afterA, clean);
    Push('b');
    queue_.Undo();
    EXPECT_EQ(queue_.State(), afterA);
    queue_.Undo();
    EXPECT_EQ(queue_.State(), clean);
    Push('c');
    EXPECT_NE(queue_.State(), afterA);
    const auto afterC = queue_.State();
    queue_.Flush();
    EXPECT_EQ(queue_.State(), afterC) << "dropping the queue changes nothing in the scene";
    queue_.SetEnabled(false);
    Push('d');
    EXPECT_NE(queue_.State(), afterC);
}

TEST_F(UndoQueueTest, FiresItsEventsWhenItIsReadyForMore) {
    std::string order;
    events_.AddCallback("Undo",
                        [&] { order += queue_.CanRedo() && !queue_.IsUndoing() ? "undo " : "early "; });
    events_.AddCallback("Redo",
                        [&] { order += queue_.CanUndo() && !queue_.IsRedoing() ? "redo " : "early "; });
    Push('a');
    queue_.Undo();
    queue_.Redo();
    EXPECT_FALSE(queue_.Redo());
    EXPECT_EQ(order, "undo redo ");
}

TEST_F(UndoQueueTest, AStepThatThrowsStaysWhereItWas) {
    Push('z');
    queue_.OpenChunk("three");
    for (const char name : {'a', 'b', 'c'}) {
        Push(name);
    }
    queue_.CloseChunk();
    const auto done = queue_.State();
    LoggedItem::refused = "-a";
    EXPECT_THROW(queue_.Undo(), std::bad_alloc);
    EXPECT_EQ(Log(), "-c -b +b +c ");
    EXPECT_EQ(queue_.State(), done);
    EXPECT_EQ(queue_.UndoName(), "three");
    EXPECT_FALSE(queue_.CanRedo());
    LoggedItem::refused.clear();
    EXPECT_TRUE(queue_.Undo());
    EXPECT_TRUE(queue_.Undo());
    Log();
    EXPECT_TRUE(queue_.Redo());
    LoggedItem::refused = "+c";
    EXPECT_THROW(queue_.Redo(), std::bad_alloc);
    EXPECT_EQ(Log(), "+z +a +b -b -a ");
    EXPECT_EQ(queue_.UndoName(), "z");
    EXPECT_EQ(queue_.RedoName(), "three");
    {
        UndoQueue::Transaction transaction(queue_);
        Push('d');
        Push('e');
        LoggedItem::refused = "-e";
    }
    EXPECT_EQ(Log(), "~e -d ~d ") << "what can be taken back is, though one edit cannot";
}

TEST_F(UndoQueueTest, ATransactionThatIsNotCommittedTakesItsEditsBack) {
    Push('r');
    queue_.Undo();
    Log();
    {
        UndoQueue::Transaction transaction(queue_);
        Push('a');
        {
            UndoQueue::Transaction inner(queue_);
            Push('b');
            inner.Commit();
        }
        {
            UndoQueue::Transaction inner(queue_);
            Push('c');
        }
        EXPECT_EQ(Log(), "-c ~c ");
        Push('d');
    }
    EXPECT_EQ(Log(), "-d ~d -b ~b -a ~a ");
    EXPECT_FALSE(queue_.CanUndo());
    EXPECT_TRUE(queue_.CanRedo()) << "what could be redone before still can";
    {
        UndoQueue::Transaction transaction(queue_);
        const UndoQueue::Pause pause(queue_);
        Push('e');
    }
    EXPECT_EQ(Log(), "-e ~e ") << "edits that are not recorded are taken back, too";
}

TEST_F(UndoQueueTest, AnEditThatIsCalledBackAmidACommitIsRecorded) {
    class CallsBack : public LoggedItem {
    public:
        CallsBack(std::string& log, UndoQueue& queue)
            : LoggedItem(log, 'r')
            , queue_(queue) {}
        ~CallsBack() override { queue_.Push(std::make_unique<LoggedItem>(log_, 'n')); }

    private:
        UndoQueue& queue_;
    };
    queue_.Push(std::make_unique<CallsBack>(log_, queue_));
    queue_.Undo();
    {
        UndoQueue::Transaction transaction(queue_);
        Push('a');
        Push('b');
        transaction.Commit();
    }
    Log();
    while (queue_.Undo()) {
    }
    EXPECT_EQ(Log(), "-b -n -a ");
}

TEST_F(UndoQueueTest, ACommittedTransactionPassesItsEditsOn) {
    queue_.OpenChunk("both");
    {
        UndoQueue::Transaction transaction(queue_);
        Push('a');
        {
            const UndoQueue::Pause pause(queue_);
            Push('x');
        }
        Push('b');
        transaction.Commit();
    }
    queue_.CloseChunk();
    EXPECT_EQ(Log(), "~x ");
    EXPECT_EQ(queue_.Names(), (std::vector<std::string>{"both"}));
    queue_.Undo();
    EXPECT_EQ(Log(), "-b -a ");
    {
        // What settles while an transaction runs is no longer its own.
        UndoQueue::Transaction transaction(queue_);
        Push('c');
        EXPECT_TRUE(queue_.Undo());
        Push('d');
        queue_.Flush();
        Push('e');
    }
    const std::string log = Log();
    EXPECT_NE(log.find("-c "), std::string::npos) << log;
    EXPECT_EQ(log.find("-d "), std::string::npos) << log;
    EXPECT_NE(log.find("-e "), std::string::npos) << log;
}
