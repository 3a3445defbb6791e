#include "core/undostack.h"

#include "core/commandmanager.h"
#include "core/icommand.h"
#include <gtest/gtest.h>
#include <string>

using Orv::Core::BeginGroupCommand;
using Orv::Core::CommandManager;
using Orv::Core::EndGroupCommand;
using Orv::Core::ICommand;
using Orv::Core::UndoStack;

namespace {

// Appends a letter to a text. Cannot be undone while the text does not end with it.
class Letter final : public Orv::Core::UndoableCommand
{
public:
    Letter(std::string& text, char letter) : m_text(text), m_letter(letter) {}

    bool execute() override
    {
        m_text += m_letter;
        return true;
    }
    bool undo() override
    {
        if (m_text.empty() || m_text.back() != m_letter)
            return false;
        m_text.pop_back();
        return true;
    }
    bool redo() override { return execute(); }
    QString getName() const override { return QString(QLatin1Char(m_letter)); }
    bool canMerge(const std::shared_ptr<ICommand>&) const override { return false; }
    bool merge(const std::shared_ptr<ICommand>&) override { return false; }

private:
    std::string& m_text;
    char m_letter;
};

class UndoStackTest : public testing::Test
{
protected:
    void write(char letter) { manager.execute(std::make_shared<Letter>(text, letter)); }
    void begin(const char* name)
    {
        manager.execute(std::make_shared<BeginGroupCommand>(
            std::make_shared<Orv::Core::UndoableCommandGroup>(name)));
    }
    void beginHidden()
    {
        manager.execute(std::make_shared<BeginGroupCommand>(
            std::make_shared<Orv::Core::NotUndoableCommandGroup>()));
    }
    void end() { manager.execute(std::make_shared<EndGroupCommand>()); }

    std::string text;
    CommandManager manager{2};
    UndoStack steps{manager};
};

TEST_F(UndoStackTest, IsEmptyAtFirst)
{
    EXPECT_FALSE(steps.canUndo());
    EXPECT_FALSE(steps.canRedo());
    EXPECT_FALSE(steps.undo());
    EXPECT_FALSE(steps.redo());
    EXPECT_EQ(steps.undoText(), "");
    EXPECT_EQ(steps.redoText(), "");
}

TEST_F(UndoStackTest, UndoesTheLastCommandFirst)
{
    write('a');
    write('b');

    EXPECT_EQ(steps.undoText(), "b");
    EXPECT_TRUE(steps.undo());
    EXPECT_EQ(text, "a");
    EXPECT_EQ(steps.undoText(), "a");
    EXPECT_EQ(steps.redoText(), "b");
    EXPECT_EQ(steps.undoCount(), 1u);
    EXPECT_EQ(steps.redoCount(), 1u);
}

TEST_F(UndoStackTest, RedoesWhatWasUndone)
{
    write('a');
    write('b');
    steps.undo();
    steps.undo();

    EXPECT_TRUE(steps.redo());
    EXPECT_EQ(text, "a");
    EXPECT_TRUE(steps.redo());
    EXPECT_EQ(text, "ab");
    EXPECT_FALSE(steps.redo());
}

TEST_F(UndoStackTest, DropsUndoneStepsAtANewOne)
{
    write('a');
    steps.undo();
    write('b');

    EXPECT_FALSE(steps.canRedo());
    EXPECT_EQ(text, "b");
}

TEST_F(UndoStackTest, TakesATransactionForOneStep)
{
    write('a');
    begin("letters");
    write('b');
    begin("inner");
    write('c');
    end();
    write('d');
    end();

    EXPECT_EQ(steps.undoCount(), 2u);
    EXPECT_EQ(steps.undoText(), "letters");
    EXPECT_TRUE(steps.undo());
    EXPECT_EQ(text, "a");
    EXPECT_TRUE(steps.redo());
    EXPECT_EQ(text, "abcd");
}

TEST_F(UndoStackTest, MakesNoStepOfAnEmptyTransaction)
{
    write('a');
    steps.undo();
    begin("nothing");
    end();

    EXPECT_FALSE(steps.canUndo());
    EXPECT_TRUE(steps.canRedo());
}

TEST_F(UndoStackTest, RefusesToUndoInsideATransaction)
{
    write('a');
    begin("letters");

    EXPECT_FALSE(steps.undo());
    EXPECT_EQ(text, "a");
    end();
    EXPECT_TRUE(steps.undo());
}

TEST_F(UndoStackTest, UndoesAGroupThatIsNotOfferedWithTheStepBefore)
{
    write('a');
    beginHidden();
    write('b');
    end();

    EXPECT_EQ(steps.undoCount(), 1u);
    EXPECT_TRUE(steps.undo());
    EXPECT_EQ(text, "");
}

TEST_F(UndoStackTest, LeavesATransactionAsItWasIfOneOfItsCommandsCannotBeUndone)
{
    begin("letters");
    write('a');
    text += '?';
    write('b');
    end();

    EXPECT_FALSE(steps.undo());
    EXPECT_EQ(text, "a?b");
    EXPECT_EQ(steps.undoCount(), 1u);
}

TEST_F(UndoStackTest, RecordsNothingWhileItIsTold)
{
    write('a');
    steps.setRecording(false);
    write('b');
    steps.setRecording(true);

    EXPECT_EQ(steps.undoCount(), 1u);
    EXPECT_EQ(steps.undoText(), "a");
}

TEST_F(UndoStackTest, TakesBackTheLastCommandsOfAnOpenTransaction)
{
    begin("outer");
    write('a');
    const std::size_t count = steps.openCount();
    begin("inner");
    write('b');
    write('c');

    EXPECT_TRUE(steps.takeBack(count));
    end();
    end();

    EXPECT_EQ(text, "a");
    EXPECT_TRUE(steps.undo());
    EXPECT_EQ(text, "");
}

TEST_F(UndoStackTest, KeepsTheStepsToRedoBehindATransactionThatWasTakenBack)
{
    write('a');
    steps.undo();
    begin("outer");
    write('b');
    steps.takeBack(0);
    end();

    EXPECT_EQ(steps.undoCount(), 0u);
    EXPECT_TRUE(steps.redo());
    EXPECT_EQ(text, "a");
}

TEST_F(UndoStackTest, TakesNothingBackIfACommandCannotBeReversed)
{
    begin("outer");
    write('a');
    write('b');
    text += 'x';

    EXPECT_FALSE(steps.takeBack(0));
    EXPECT_EQ(text, "abx");
    EXPECT_EQ(steps.openCount(), 2u);
}

TEST_F(UndoStackTest, TakesNothingBackOutsideOfATransaction)
{
    write('a');

    EXPECT_EQ(steps.openCount(), 0u);
    EXPECT_TRUE(steps.takeBack(0));
    EXPECT_EQ(text, "a");
}

TEST_F(UndoStackTest, ForgetsAllSteps)
{
    write('a');
    write('b');
    steps.undo();
    steps.clear();

    EXPECT_FALSE(steps.canUndo());
    EXPECT_FALSE(steps.canRedo());
}

} // namespace
