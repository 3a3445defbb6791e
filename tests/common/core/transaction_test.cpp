#include "core/transaction.h"

#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/icommand.h"
#include "core/ilibraryservices.h"

#include <gtest/gtest.h>

using Orv::Core::BeginGroupCommand;
using Orv::Core::CommandManager;
using Orv::Core::EndGroupCommand;
using Orv::Core::ICommand;
using Orv::Core::NotUndoableCommandGroup;
using Orv::Core::UndoableCommandGroup;

namespace {

using Journal = std::vector<std::string>;

// The services of a process with nothing but a command manager.
class ManagerServices final : public Orv::Core::ILibraryServices
{
public:
    void* reserved0() override { return nullptr; }
    const std::shared_ptr<CommandManager>* commandManagerHandle() override { return &m_manager; }
    const std::shared_ptr<CommandManager>& commandManager() override { return m_manager; }
    const std::shared_ptr<void>& spareHandle() override { return m_spare; }
    void* reserved4() override { return nullptr; }

private:
    std::shared_ptr<CommandManager> m_manager = std::make_shared<CommandManager>(2);
    std::shared_ptr<void> m_spare;
};

class TransactionWithManager : public testing::Test
{
protected:
    TransactionWithManager()
    {
        Orv::setLibraryServices(&m_services);
        m_services.commandManager()->executed().connect(
            [this](const std::shared_ptr<ICommand>& command) { commands.push_back(command); });
    }
    ~TransactionWithManager() override { Orv::setLibraryServices(nullptr); }

    const BeginGroupCommand& beginning() const
    {
        return dynamic_cast<const BeginGroupCommand&>(*commands.at(0));
    }

    std::vector<std::shared_ptr<ICommand>> commands;

private:
    ManagerServices m_services;
};

Journal warnings;

void keepWarning(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    warnings.push_back((type == QtWarningMsg ? "" : "no warning: ") + text.toStdString());
}

class TransactionWithoutManager : public testing::Test
{
protected:
    TransactionWithoutManager() : m_former(qInstallMessageHandler(&keepWarning))
    {
        warnings.clear();
    }
    ~TransactionWithoutManager() override { qInstallMessageHandler(m_former); }

private:
    QtMessageHandler m_former;
};

} // namespace

TEST_F(TransactionWithManager, BeginsWithAGroupThatIsNotUndoable)
{
    Orv::Core::beginTransaction();
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_NE(dynamic_cast<NotUndoableCommandGroup*>(beginning().group().get()), nullptr);
}

TEST_F(TransactionWithManager, BeginsWithANamedGroupWhenItIsUndoable)
{
    Orv::Core::beginUndoableTransaction("Rename");
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_NE(dynamic_cast<UndoableCommandGroup*>(beginning().group().get()), nullptr);
    EXPECT_EQ(beginning().group()->getName(), "Rename");
}

TEST_F(TransactionWithManager, EndsWithTheEndOfAGroup)
{
    Orv::Core::commitTransaction();
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_NE(dynamic_cast<EndGroupCommand*>(commands.at(0).get()), nullptr);
}

TEST_F(TransactionWithoutManager, WarnsAtItsBegin)
{
    Orv::Core::beginTransaction();
    EXPECT_EQ(warnings, Journal{"No command manager available for transaction."});
}

TEST_F(TransactionWithoutManager, WarnsAtItsUndoableBegin)
{
    Orv::Core::beginUndoableTransaction("Rename");
    EXPECT_EQ(warnings, Journal{"No command manager available for transaction."});
}

TEST_F(TransactionWithoutManager, WarnsAtItsEnd)
{
    Orv::Core::commitTransaction();
    EXPECT_EQ(warnings, Journal{"No command manager available for commit."});
}

TEST_F(TransactionWithManager, FindsTheManagerOfTheProcess)
{
    EXPECT_NE(Orv::Core::commandManager(), nullptr);
}

TEST_F(TransactionWithoutManager, FindsNoManager)
{
    EXPECT_EQ(Orv::Core::commandManager(), nullptr);
}

TEST_F(TransactionWithoutManager, FindsNoManagerInOtherServices)
{
    Orv::ILibraryServices other;
    Orv::setLibraryServices(&other);
    EXPECT_EQ(Orv::Core::commandManager(), nullptr);
    Orv::setLibraryServices(nullptr);
}

// The group commands by themselves.

TEST(GroupCommands, DoNothingAndSucceed)
{
    EXPECT_TRUE(BeginGroupCommand(nullptr).execute());
    EXPECT_TRUE(EndGroupCommand().execute());
}

TEST(GroupCommands, OfANamedGroupBearItsName)
{
    const BeginGroupCommand command(std::make_shared<UndoableCommandGroup>("Rename"));
    EXPECT_EQ(command.getName(), "BeginGroupCommand (Rename)");
}

TEST(GroupCommands, OfAGroupWithoutNameHaveEmptyParentheses)
{
    const BeginGroupCommand command(std::make_shared<NotUndoableCommandGroup>());
    EXPECT_EQ(command.getName(), "BeginGroupCommand ()");
}

TEST(GroupCommands, WithoutAGroupHaveNoParentheses)
{
    EXPECT_EQ(BeginGroupCommand(nullptr).getName(), "BeginGroupCommand");
}

TEST(GroupCommands, ThatEndAGroupSaySo)
{
    EXPECT_EQ(EndGroupCommand().getName(), "EndGroupCommand");
}

TEST(CommandGroups, ThatAreNotUndoableHaveNoName)
{
    EXPECT_TRUE(NotUndoableCommandGroup().getName().isNull());
}
