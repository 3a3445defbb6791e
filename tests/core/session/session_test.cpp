#include "ksx/core/session.h"

#include "core/ilibraryservices.h"
#include "core/undostack.h"
#include "data/content/package.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <gtest/gtest.h>

using Ksx::Core::InputController;
using Ksx::Core::Session;
using Orv::Data::Float1;
using TestSupport::aPackage;
using TestSupport::GraphText;
using TestSupport::TemporaryDirectory;

namespace {

// The number that is the default of the first input of the first graph; -1 if there is none.
float firstNumber(const Session& session, const QString& path)
{
    const boost::any value =
        session.graphs(path).at(0)->inputsController()->inputs().at(0)->defaultValue();
    const auto* const number = boost::any_cast<Float1>(&value);
    return number == nullptr ? -1 : (*number)[0];
}

InputController& firstInput(const Session& session, const QString& path)
{
    return *session.graphs(path).at(0)->inputsController()->inputs().at(0);
}

class SessionTest : public testing::Test
{
protected:
    QString at(const char* name) const { return QString::fromStdString(directory.path(name)); }
    // A package with one graph, whose input "strength" is 0.5.
    void writePackage(const char* name) const
    {
        GraphText graph;
        graph.inputs = TestSupport::anInput("strength", 7, Ksx::Data::Desc::ValueType::Float1,
                                            TestSupport::aConstant("Float1", "0.5"));
        directory.write(name, aPackage().named("wood").containing(graph.text()).text());
    }

    TemporaryDirectory directory;
};

TEST_F(SessionTest, OpensPackagesWithAllThatTheyDependOn)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().named("b").text());
    Session session;

    EXPECT_TRUE(session.open({at("a.obl")}));

    ASSERT_EQ(session.packages().size(), 2u);
    EXPECT_EQ(session.path(session.packages()[1]), at("b.obl"));
    EXPECT_TRUE(session.failures().empty());
}

TEST_F(SessionTest, OpensPackagesAlone)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    Session session;

    EXPECT_TRUE(session.openAlone({at("a.obl")}));

    EXPECT_EQ(session.packages().size(), 1u);
}

TEST_F(SessionTest, LeavesAPackageThatIsOpenAlready)
{
    writePackage("a.obl");
    Session session;
    session.open({at("a.obl")});
    const auto opened = session.packages().front();
    firstInput(session, at("a.obl")).setDefaultValue(Float1{{2.0F}});

    EXPECT_TRUE(session.open({at("a.obl"), at("./a.obl")}));

    EXPECT_EQ(session.packages(), std::vector{opened});
    EXPECT_EQ(session.path(opened), at("a.obl"));
    EXPECT_EQ(firstNumber(session, at("a.obl")), 2.0F);
    EXPECT_TRUE(session.undo());
}

TEST_F(SessionTest, OpensTheDependenciesOfAPackageThatIsOpenAlready)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().named("b").text());
    Session session;
    session.openAlone({at("a.obl")});

    EXPECT_TRUE(session.open({at("a.obl")}));

    ASSERT_EQ(session.packages().size(), 2u);
    EXPECT_EQ(session.path(session.packages()[1]), at("b.obl"));
}

TEST_F(SessionTest, ReadsAFileAgainWhosePackageWasClosed)
{
    writePackage("a.obl");
    Session session;
    session.open({at("a.obl")});
    firstInput(session, at("a.obl")).setDefaultValue(Float1{{2.0F}});
    session.close(session.packages().front());

    EXPECT_TRUE(session.open({at("a.obl")}));

    ASSERT_EQ(session.packages().size(), 1u);
    EXPECT_EQ(firstNumber(session, at("a.obl")), 0.5F);
}

TEST_F(SessionTest, SaysWhichFilesFailedAndWhy)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    directory.write("b.obl", "no document");
    Session session;

    EXPECT_FALSE(session.open({at("a.obl"), at("c.obl")}));

    ASSERT_EQ(session.failures().size(), 2u);
    EXPECT_EQ(session.failures()[0].filename, at("c.obl"));
    EXPECT_EQ(session.failures()[0].reason, "there is no such file");
    EXPECT_FALSE(session.failures()[0].isDependency);
    EXPECT_EQ(session.failures()[1].filename, at("b.obl"));
    EXPECT_EQ(session.failures()[1].reason, "it has no format version");
    EXPECT_TRUE(session.failures()[1].isDependency);
    EXPECT_EQ(session.packages().size(), 1u);
}

TEST_F(SessionTest, EditsUndoesAndRedoes)
{
    writePackage("a.obl");
    Session session;
    session.open({at("a.obl")});

    EXPECT_TRUE(firstInput(session, at("a.obl")).setDefaultValue(Float1{{2.0F}}));
    EXPECT_EQ(firstNumber(session, at("a.obl")), 2.0F);
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(firstNumber(session, at("a.obl")), 0.5F);
    EXPECT_TRUE(session.redo());
    EXPECT_EQ(firstNumber(session, at("a.obl")), 2.0F);
    EXPECT_FALSE(session.redo());
}

TEST_F(SessionTest, UndoesATransactionInOneStep)
{
    writePackage("a.obl");
    Session session;
    session.open({at("a.obl")});
    {
        const Ksx::Core::Transaction transaction("three graphs");
        const auto controller = session.controller(session.package(at("a.obl")));
        controller->addGraphObject("oak");
        controller->addGraphObject("beech");
        controller->addGraphObject("ash");
    }
    EXPECT_EQ(session.graphs(at("a.obl")).size(), 4u);
    EXPECT_EQ(session.steps().undoText(), "three graphs");

    EXPECT_TRUE(session.undo());

    EXPECT_EQ(session.graphs(at("a.obl")).size(), 1u);
}

TEST_F(SessionTest, TakesOpeningForNoStep)
{
    writePackage("a.obl");
    writePackage("b.obl");
    Session session;
    session.open({at("a.obl")});
    firstInput(session, at("a.obl")).setDefaultValue(Float1{{2.0F}});
    session.open({at("b.obl")});

    EXPECT_EQ(session.steps().undoCount(), 1u);
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(session.packages().size(), 2u);
    EXPECT_EQ(firstNumber(session, at("a.obl")), 0.5F);
}

TEST_F(SessionTest, SavesWhatWasEdited)
{
    writePackage("a.obl");
    {
        Session session;
        session.open({at("a.obl")});
        firstInput(session, at("a.obl")).setDefaultValue(Float1{{2.0F}});
        EXPECT_TRUE(session.save(at("a.obl"), at("b.obl")).isSaved);
        EXPECT_EQ(session.path(session.packages().at(0)), at("a.obl"));
    }
    Session another;
    another.open({at("b.obl")});

    EXPECT_EQ(firstNumber(another, at("b.obl")), 2.0F);
}

TEST_F(SessionTest, RefusesToSaveOverAnotherOpenPackage)
{
    writePackage("a.obl");
    writePackage("b.obl");
    const std::string former = directory.read("b.obl");
    Session session;
    session.open({at("a.obl"), at("b.obl")});

    const Session::Saving saving = session.save(at("a.obl"), at("b.obl"));

    EXPECT_FALSE(saving.isSaved);
    EXPECT_EQ(saving.reason,
              "the file belongs to another open package, or this package refers to it");
    EXPECT_EQ(directory.read("b.obl"), former);
}

TEST_F(SessionTest, SaysThatAFileCannotBeWritten)
{
    writePackage("a.obl");
    Session session;
    session.open({at("a.obl")});

    EXPECT_EQ(session.save(at("a.obl"), at("none/b.obl")).reason, "the file cannot be written");
}

TEST_F(SessionTest, AddsAndClosesPackages)
{
    Session session;
    const Session::PackageBox added = session.addPackage("new");

    ASSERT_TRUE(added);
    EXPECT_EQ(session.controller(added)->identifier(), "new");
    EXPECT_EQ(session.path(added), "");
    EXPECT_TRUE(session.save(added, at("new.obl")).isSaved);
    EXPECT_TRUE(session.close(added));
    EXPECT_TRUE(session.packages().empty());
    EXPECT_TRUE(session.undo());
    EXPECT_EQ(session.packages().size(), 1u);
}

TEST_F(SessionTest, HasEmptyAnswersForNoPackage)
{
    const Session session;

    EXPECT_TRUE(session.graphs(at("a.obl")).empty());
    EXPECT_EQ(session.controller({}), nullptr);
    EXPECT_EQ(session.path({}), "");
    EXPECT_EQ(session.save(at("a.obl"), at("b.obl")).reason, "there is no such package");
}

TEST_F(SessionTest, LeavesTheProcessWithoutServicesForTheNextOne)
{
    writePackage("a.obl");
    std::make_unique<Session>()->open({at("a.obl")});
    EXPECT_EQ(Orv::libraryServices(), nullptr);

    Session session;

    EXPECT_NE(Orv::libraryServices(), nullptr);
    EXPECT_TRUE(session.packages().empty());
    EXPECT_TRUE(session.open({at("a.obl")}));
    EXPECT_EQ(session.graphs(at("a.obl")).size(), 1u);
}

} // namespace
