#include "core/commandmanager.h"

#include "core/commandsignals.h"
#include "core/icommand.h"
#include "support/golden.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <thread>

using Orv::Core::Activity;
using Orv::Core::CommandManager;
using Orv::Core::ICommand;

namespace {

using Journal = std::vector<std::string>;

// Runs any function.
class FunctionCommand final : public ICommand
{
public:
    FunctionCommand(const QString& name, std::function<bool()> function)
        : m_name(name), m_function(std::move(function))
    {}
    bool execute() override { return m_function(); }
    QString getName() const override { return m_name; }

private:
    QString m_name;
    std::function<bool()> m_function;
};

using CommandPointer = std::shared_ptr<ICommand>;

CommandPointer makeCommand(const QString& name, std::function<bool()> function)
{
    return std::make_shared<FunctionCommand>(name, std::move(function));
}

// A manager whose signals are written down.
class CommandManagerTest : public testing::Test
{
protected:
    CommandManagerTest() : manager(2)
    {
        const auto note = [this](const char* what) {
            return [this, what](const CommandPointer& command) {
                journal.push_back(what + command->getName().toStdString());
            };
        };
        manager.aboutToExecute().connect(note("about "));
        manager.executed().connect(note("executed "));
        manager.failed().connect(note("failed "));
        manager.removed().connect(note("removed "));
        manager.activityChanged().connect([this](std::uint32_t id, bool begins) {
            activities.push_back((begins ? "begin " : "end ") + std::to_string(id));
        });
    }

    // A command that is written down when it runs.
    CommandPointer noted(const std::string& name, bool isDone = true)
    {
        return makeCommand(QString::fromStdString(name), [=] {
            journal.push_back("run " + name);
            return isDone;
        });
    }
    CommandPointer throwing()
    {
        return makeCommand("throwing",
                           []() -> bool { throw std::runtime_error("out of the command"); });
    }
    void pushMany(int count)
    {
        for (int i = 0; i < count; ++i)
            manager.push(makeCommand("", [this] {
                ++runs;
                return true;
            }));
    }
    // Lets the event loop run until nothing happens any more.
    static void processEvents()
    {
        for (int i = 0; i < 20; ++i)
            QCoreApplication::processEvents();
    }
    static Journal ticks(int count)
    {
        Journal expected;
        for (int i = 0; i < count; ++i)
            expected.insert(expected.end(), {"begin 2", "end 2"});
        return expected;
    }

    CommandManager manager;
    Journal journal;
    Journal activities;
    int runs = 0;
};

// Changes into a directory of its own, where the log is written.
class CommandLog : public CommandManagerTest
{
protected:
    CommandLog() : m_former(QDir::currentPath())
    {
        QDir::setCurrent(m_directory.path());
        manager.setLogging(true);
    }
    ~CommandLog() override { QDir::setCurrent(m_former); }

    static std::string logged() { return TestSupport::readFile("commands.log"); }

private:
    QTemporaryDir m_directory;
    QString m_former;
};

} // namespace

// Running at once.

TEST_F(CommandManagerTest, ExecuteRunsACommandAtOnce)
{
    EXPECT_TRUE(manager.execute(noted("a")));
    EXPECT_EQ(journal, (Journal{"about a", "run a", "executed a"}));
}

TEST_F(CommandManagerTest, ExecuteAnswersFalseForACommandThatFailed)
{
    EXPECT_FALSE(manager.execute(noted("a", false)));
    EXPECT_EQ(journal, (Journal{"about a", "run a", "failed a"}));
}

TEST_F(CommandManagerTest, ExecuteAnswersFalseForNoCommand)
{
    EXPECT_FALSE(manager.execute(nullptr));
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, ExecuteIsAnActivity)
{
    std::uint32_t within = 99;
    manager.execute(makeCommand("a", [&] {
        within = manager.currentActivity();
        return true;
    }));
    EXPECT_EQ(within, Activity::Execute);
    EXPECT_EQ(activities, (Journal{"begin 1", "end 1"}));
}

TEST_F(CommandManagerTest, ExecuteWithinExecuteIsTheSameActivity)
{
    manager.execute(makeCommand("outer", [&] { return manager.execute(noted("inner")); }));
    EXPECT_EQ(journal, (Journal{"about outer", "about inner", "run inner", "executed inner",
                                "executed outer"}));
    EXPECT_EQ(activities, (Journal{"begin 1", "end 1"}));
}

TEST_F(CommandManagerTest, AnExceptionPassesThroughAndLeavesTheActivity)
{
    EXPECT_THROW(manager.execute(throwing()), std::runtime_error);
    EXPECT_EQ(manager.currentActivity(), Activity::Execute);
    EXPECT_EQ(activities, Journal{"begin 1"});
}

TEST_F(CommandManagerTest, KeepsItsMode)
{
    EXPECT_EQ(manager.mode(), 2u);
}

// The queue.

TEST_F(CommandManagerTest, PushLeavesTheCommandInTheQueue)
{
    EXPECT_TRUE(manager.push(noted("a")));
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, WithoutAnEventLoopAPushedCommandIsNeverRun)
{
    auto lonely = std::make_unique<CommandManager>(2);
    lonely->push(noted("a"));
    lonely.reset();
    processEvents();
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, TheEventLoopRunsPushedCommandsInOrder)
{
    manager.push(noted("a"));
    manager.push(noted("b"));
    processEvents();
    EXPECT_EQ(journal,
              (Journal{"about a", "run a", "executed a", "about b", "run b", "executed b"}));
}

TEST_F(CommandManagerTest, TheEventLoopServesLaterPushesToo)
{
    manager.push(noted("a"));
    processEvents();
    journal.clear();
    manager.push(noted("b"));
    processEvents();
    EXPECT_EQ(journal, (Journal{"about b", "run b", "executed b"}));
}

TEST_F(CommandManagerTest, ACommandMayBePushedFromAnotherThread)
{
    std::thread([&] { manager.push(noted("a")); }).join();
    processEvents();
    EXPECT_EQ(journal, (Journal{"about a", "run a", "executed a"}));
}

TEST_F(CommandManagerTest, AFailedCommandDoesNotStopTheQueue)
{
    manager.push(noted("a", false));
    manager.push(noted("b"));
    manager.update();
    EXPECT_EQ(journal, (Journal{"about a", "run a", "failed a", "about b", "run b", "executed b"}));
}

TEST_F(CommandManagerTest, ACommandPushedDuringATickGoesOnTheSameQueue)
{
    manager.push(makeCommand("first", [&] { return manager.push(noted("second")); }));
    manager.update();
    EXPECT_EQ(journal, (Journal{"about first", "executed first", "about second", "run second",
                                "executed second"}));
}

TEST_F(CommandManagerTest, UpdateIsAnActivity)
{
    pushMany(1);
    manager.update();
    EXPECT_EQ(activities, (Journal{"begin 2", "end 2"}));
}

TEST_F(CommandManagerTest, UpdateOfAnEmptyQueueIsNone)
{
    manager.update();
    EXPECT_EQ(activities, Journal{});
}

TEST_F(CommandManagerTest, ExecuteWithinUpdateIsNotToldAsAnActivity)
{
    manager.push(makeCommand("outer", [&] { return manager.execute(noted("inner")); }));
    manager.update();
    EXPECT_EQ(activities, (Journal{"begin 2", "end 2"}));
}

TEST_F(CommandManagerTest, UpdateDuringExecuteDoesNothing)
{
    manager.push(noted("queued"));
    manager.execute(makeCommand("running", [&] {
        manager.update();
        return true;
    }));
    EXPECT_EQ(journal, (Journal{"about running", "executed running"}));
}

TEST_F(CommandManagerTest, UpdateDuringUpdateDoesNothing)
{
    manager.push(makeCommand("running", [&] {
        manager.push(noted("queued"));
        manager.update();
        journal.push_back("back");
        return true;
    }));
    manager.update();
    EXPECT_EQ(journal.at(1), "back");
}

TEST_F(CommandManagerTest, UpdateRunsTwentyCommands)
{
    pushMany(25);
    manager.update();
    EXPECT_EQ(runs, 20);
}

TEST_F(CommandManagerTest, TwentyFiveCommandsTakeTwoTicks)
{
    pushMany(25);
    processEvents();
    EXPECT_EQ(runs, 25);
    EXPECT_EQ(activities, ticks(2));
}

TEST_F(CommandManagerTest, TwentyFiveCommandsTakeOneTickWhenAFullUpdateIsRequested)
{
    pushMany(25);
    manager.requestFullUpdate();
    processEvents();
    EXPECT_EQ(runs, 25);
    EXPECT_EQ(activities, ticks(1));
}

TEST_F(CommandManagerTest, AFullUpdateIsRequestedForOneUpdate)
{
    manager.requestFullUpdate();
    manager.update();
    pushMany(25);
    manager.update();
    EXPECT_EQ(runs, 20);
}

TEST_F(CommandManagerTest, AnExceptionInTheQueueEndsAllUpdates)
{
    manager.push(throwing());
    manager.push(noted("a"));
    EXPECT_THROW(manager.update(), std::runtime_error);
    manager.update();
    EXPECT_EQ(journal, Journal{"about throwing"});
    EXPECT_EQ(manager.currentActivity(), Activity::Update);
}

// Taking commands off the queue.

TEST_F(CommandManagerTest, RemoveTakesACommandOffTheQueue)
{
    const auto command = noted("a");
    manager.push(command);
    manager.push(noted("b"));
    EXPECT_TRUE(manager.remove(command));
    EXPECT_EQ(journal, Journal{"removed a"});
}

TEST_F(CommandManagerTest, ARemovedCommandIsNotRun)
{
    const auto command = noted("a");
    manager.push(command);
    manager.remove(command);
    journal.clear();
    manager.update();
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, RemoveOfACommandQueuedTwiceRemovesBothAndAnswersFalse)
{
    const auto command = noted("a");
    manager.push(command);
    manager.push(command);
    EXPECT_FALSE(manager.remove(command));
    manager.update();
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, RemoveOfACommandThatIsNotQueuedAnswersFalse)
{
    EXPECT_FALSE(manager.remove(noted("a")));
    EXPECT_EQ(journal, Journal{});
}

TEST_F(CommandManagerTest, CommandsLeftInTheQueueAreDroppedWithoutASignal)
{
    auto lonely = std::make_unique<CommandManager>(2);
    const auto command = noted("a");
    lonely->removed().connect([&](const CommandPointer&) { journal.push_back("removed"); });
    lonely->push(command);
    lonely.reset();
    EXPECT_EQ(command.use_count(), 1);
    EXPECT_EQ(journal, Journal{});
}

// Activities.

TEST_F(CommandManagerTest, ThereIsNoActivityAtFirst)
{
    EXPECT_EQ(manager.currentActivity(), Activity::None);
}

TEST_F(CommandManagerTest, NestedActivitiesOfOneIdCountAsOne)
{
    manager.beginActivity(7);
    manager.beginActivity(7);
    manager.endActivity();
    EXPECT_EQ(manager.currentActivity(), 7u);
    EXPECT_EQ(activities, Journal{"begin 7"});
}

TEST_F(CommandManagerTest, OnlyTheOutermostActivityIsTold)
{
    manager.beginActivity(7);
    manager.beginActivity(8);
    manager.endActivity();
    manager.endActivity();
    EXPECT_EQ(activities, (Journal{"begin 7", "end 7"}));
}

TEST_F(CommandManagerTest, TheInnermostActivityIsTheCurrentOne)
{
    manager.beginActivity(7);
    manager.beginActivity(8);
    EXPECT_EQ(manager.currentActivity(), 8u);
}

TEST_F(CommandManagerTest, BeginAndEndOfAnActivitySucceed)
{
    EXPECT_TRUE(manager.beginActivity(7));
    EXPECT_TRUE(manager.endActivity());
}

TEST(QEventRequestUpdate, IsTheFirstUserEvent)
{
    EXPECT_EQ(Orv::Core::QEventRequestUpdate().type(), 1000);
}

// The log.

TEST_F(CommandLog, IsOffAtFirst)
{
    manager.setLogging(false);
    manager.execute(noted("a"));
    EXPECT_FALSE(QFile::exists("commands.log"));
}

TEST_F(CommandLog, TellsOfAnExecutedCommand)
{
    manager.execute(noted("a"));
    EXPECT_EQ(logged(), "(execute : a)\nExecute : a\n");
}

TEST_F(CommandLog, TellsOfAFailedCommand)
{
    manager.execute(noted("a", false));
    EXPECT_EQ(logged(), "(execute : a)\nExecute : a\nCommand 'a' Failed !\n");
}

TEST_F(CommandLog, DoesNotTellOfACommandWithoutName)
{
    manager.push(noted(""));
    manager.execute(noted(""));
    EXPECT_FALSE(QFile::exists("commands.log"));
}

TEST_F(CommandLog, TellsOfTheFailureOfACommandWithoutName)
{
    manager.execute(noted("", false));
    EXPECT_EQ(logged(), "Command '' Failed !\n");
}

TEST_F(CommandLog, IndentsCommandsWithinCommands)
{
    manager.execute(makeCommand("outer", [&] { return manager.execute(noted("inner", false)); }));
    EXPECT_EQ(logged(), "(execute : outer)\n"
                        "Execute : outer\n"
                        "\t(execute : inner)\n"
                        "\tExecute : inner\n"
                        "\tCommand 'inner' Failed !\n"
                        "Command 'outer' Failed !\n");
}

TEST_F(CommandLog, ACommandMaySwitchItOn)
{
    manager.setLogging(false);
    manager.execute(makeCommand("on", [&] {
        manager.setLogging(true);
        return true;
    }));
    manager.execute(noted("a"));
    EXPECT_EQ(logged(), "(execute : a)\nExecute : a\n");
}

TEST_F(CommandLog, ACommandMaySwitchItOff)
{
    manager.execute(makeCommand("off", [&] {
        manager.setLogging(false);
        return true;
    }));
    manager.setLogging(true);
    manager.execute(noted("a"));
    EXPECT_EQ(logged(), "(execute : off)\nExecute : off\n(execute : a)\nExecute : a\n");
}

TEST_F(CommandLog, TellsNothingOfNoCommand)
{
    EXPECT_TRUE(manager.push(nullptr));
    EXPECT_FALSE(QFile::exists("commands.log"));
}

TEST_F(CommandManagerTest, NoCommandIsPushedAndPassedOver)
{
    manager.push(nullptr);
    manager.push(noted("a"));
    manager.update();
    EXPECT_EQ(journal, (Journal{"about a", "run a", "executed a"}));
}

TEST_F(CommandLog, TellsOfPushesAndUpdates)
{
    manager.push(noted("a"));
    manager.push(noted("b"));
    manager.update();
    EXPECT_EQ(logged(), "(push : a)\n"
                        "(push : b)\n"
                        "------ UPDATE START (2 Commands Left)\n"
                        "Execute : a\n"
                        "Execute : b\n"
                        "------ UPDATE END (0 Commands Left)\n\n");
}

TEST_F(CommandLog, TellsOfCommandsLeftAfterAnUpdate)
{
    pushMany(25);
    manager.update();
    EXPECT_EQ(logged(), "------ UPDATE START (25 Commands Left)\n"
                        "------ UPDATE END (5 Commands Left)\n\n");
}

TEST_F(CommandLog, WritesNamesInUtf8)
{
    manager.push(noted("caf\xC3\xA9 100%s"));
    EXPECT_EQ(logged(), "(push : caf\xC3\xA9 100%s)\n");
}

TEST_F(CommandLog, ThatCannotBeOpenedIsNoObstacle)
{
    QDir().mkdir("commands.log");
    EXPECT_TRUE(manager.execute(noted("a")));
}

namespace {

std::string loggedIntoAnOldFile()
{
    const QTemporaryDir directory;
    QDir::setCurrent(directory.path());
    std::ofstream("commands.log") << "of another process\n";
    CommandManager manager(2);
    manager.setLogging(true);
    manager.push(makeCommand("a", [] { return true; }));
    return TestSupport::readFile("commands.log");
}

// Ends the process: 0 if the log holds nothing but the line of this push.
[[noreturn]] void logIntoAnOldFile()
{
    std::quick_exit(loggedIntoAnOldFile() == "(push : a)\n" ? 0 : 1);
}

} // namespace

TEST(CommandLogDeathTest, BeginsItsFileAnewInEachProcess)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // in a process that has logged nothing
    EXPECT_EXIT(logIntoAnOldFile(), testing::ExitedWithCode(0), "");
}
