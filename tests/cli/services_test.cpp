#include "services.h"

#include "core/commanddatamodification.h"
#include "core/commandhistory.h"
#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/manipulatorcontext.h"
#include "data/content/graphmanipulators.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/packageslistmanager.h"
#include "packageloading.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::TemporaryDirectory;

namespace {

// Services that leave neither their packages nor the process-wide pointer behind.
class ServicesTest : public testing::Test
{
protected:
    ServicesTest() : services(std::make_unique<Services>()) {}
    ~ServicesTest() override { delete services->packagesListManager(); }
    void TearDown() override { Orv::setLibraryServices(nullptr); }

    Orv::Core::ILibraryServices& framework() { return *services; }
    Ksx::Core::ILibraryServices& library() { return *services; }

    std::unique_ptr<Services> services;
};

TEST_F(ServicesTest, AreFoundByTheLibraryFromTheirConstructionOn)
{
    EXPECT_EQ(dynamic_cast<Services*>(Orv::libraryServices()), services.get());
    EXPECT_EQ(dynamic_cast<Orv::Core::ILibraryServices*>(Orv::libraryServices()), &framework());
    EXPECT_EQ(dynamic_cast<Ksx::Core::ILibraryServices*>(Orv::libraryServices()), &library());
}

TEST_F(ServicesTest, HaveOneBaseForBothInterfaces)
{
    EXPECT_EQ(static_cast<Orv::ILibraryServices*>(&framework()),
              static_cast<Orv::ILibraryServices*>(&library()));
}

TEST_F(ServicesTest, HoldOneCommandManagerInTwoHandles)
{
    ASSERT_NE(framework().commandManager(), nullptr);
    ASSERT_NE(framework().commandManagerHandle(), nullptr);
    EXPECT_EQ(*framework().commandManagerHandle(), framework().commandManager());
    EXPECT_NE(framework().commandManagerHandle(), &framework().commandManager());
    EXPECT_EQ(Orv::Core::commandManager(), framework().commandManager());
}

TEST_F(ServicesTest, GiveOutTheSameObjectsAtEachCall)
{
    EXPECT_EQ(&framework().commandManager(), &framework().commandManager());
    EXPECT_EQ(framework().commandManagerHandle(), framework().commandManagerHandle());
    EXPECT_EQ(&framework().spareHandle(), &framework().spareHandle());
    EXPECT_EQ(library().behaviors(), library().behaviors());
    EXPECT_EQ(library().packagesListManager(), library().packagesListManager());
    EXPECT_EQ(&library().extensions(), &library().extensions());
}

TEST_F(ServicesTest, LeaveTheSpareHandleEmpty)
{
    EXPECT_EQ(framework().spareHandle(), nullptr);
}

TEST_F(ServicesTest, AnswerNullInTheReservedSlots)
{
    EXPECT_EQ(framework().reserved0(), nullptr);
    EXPECT_EQ(framework().reserved4(), nullptr);
    EXPECT_EQ(library().reserved2(), nullptr);
}

TEST_F(ServicesTest, HaveNoExtensionsAtFirst)
{
    EXPECT_TRUE(library().extensions().isEmpty());
}

TEST_F(ServicesTest, KeepWhatClientsPutIntoTheExtensions)
{
    library().extensions().insert("name", 3);

    EXPECT_EQ(library().extensions().value("name"), QVariant(3));
}

TEST_F(ServicesTest, HaveBehavioursAndAnEmptyListOfPackages)
{
    EXPECT_NE(library().behaviors(), nullptr);
    ASSERT_NE(library().packagesListManager(), nullptr);
    EXPECT_TRUE(library().packagesListManager()->openPackages().empty());
}

TEST_F(ServicesTest, AnswerQtForTheirInterfaces)
{
    QObject& object = *services;

    EXPECT_EQ(object.qt_metacast("Services"), services.get());
    EXPECT_EQ(object.qt_metacast("Orv::Core::ILibraryServices"), &framework());
    EXPECT_EQ(object.qt_metacast("Ksx::Core::ILibraryServices"), &library());
    EXPECT_EQ(object.qt_metacast("QObject"), &object);
    EXPECT_EQ(object.qt_metacast("Orv::ILibraryServices"), nullptr);
    EXPECT_EQ(object.qt_metacast("Folly"), nullptr);
    EXPECT_EQ(object.qt_metacast(nullptr), nullptr);
    EXPECT_STREQ(object.metaObject()->className(), "Services");
    EXPECT_EQ(object.parent(), nullptr);
}

TEST_F(ServicesTest, LeaveThePackagesAloneAtTheirEnd)
{
    Ksx::Core::PackagesListManager* manager = services->packagesListManager();
    services.reset();

    EXPECT_TRUE(manager->openPackages().empty());

    // The process-wide packages of a run stay; those of a test do not.
    services = std::make_unique<Services>();
    static auto& leftOver = *new std::vector<Ksx::Core::PackagesListManager*>;
    leftOver.push_back(manager);
}

TEST_F(ServicesTest, LetTheAdditionOfPackagesBeUndone)
{
    auto& manager = *services->packagesListManager();
    std::shared_ptr<Orv::Core::ICommand> executed;
    framework().commandManager()->executed().connect(
        [&](const std::shared_ptr<Orv::Core::ICommand>& command) { executed = command; });
    std::vector<std::unique_ptr<Ksx::Data::Content::Package>> packages;
    packages.push_back(TestSupport::packageFrom(aPackage()));
    ASSERT_TRUE(manager.addPackages(std::move(packages)));
    ASSERT_EQ(manager.openPackages().size(), 1u);

    const auto command = std::dynamic_pointer_cast<Orv::Core::CommandHistory>(executed);
    ASSERT_NE(command, nullptr);
    EXPECT_TRUE(command->undo());

    EXPECT_TRUE(manager.openPackages().empty());
}

TEST_F(ServicesTest, GiveBehavioursThePackagesThatAreLoadedBeforeTheFirstEdit)
{
    class Counter final : public Ksx::Core::DataNotifier::Functor
    {
    public:
        explicit Counter(int& count) : m_count(count) {}
        void operator()(const Orv::Data::BaseObject& object,
                        const Ksx::Core::DataNotifier::Arrival& /*arrival*/) override
        {
            if (dynamic_cast<const Ksx::Data::Content::Package*>(&object) != nullptr)
                ++m_count;
        }

    private:
        int& m_count;
    };
    int count = 0;
    library().behaviors()->add(std::make_unique<Counter>(count));
    const TemporaryDirectory directory;
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().text());

    loadPackages(*library().packagesListManager(),
                 {QString::fromStdString(directory.path("a.obl"))}, {}, true);

    EXPECT_EQ(count, 0); // many runs load packages and save them

    Orv::Core::commandManager()->execute(std::make_shared<Orv::Core::CommandDataModification>(
        [&](Orv::Core::ManipulatorContext&) {
            EXPECT_EQ(count, 2);
            return true;
        },
        "edit"));
}

TEST_F(ServicesTest, HaveTheBehavioursOfDocuments)
{
    const TemporaryDirectory directory;
    directory.write("a.obl", aPackage()
                                 .containing("<graph><identifier v=\"g\"/><uid v=\"4\"/>"
                                             "<graphOutputs/><compNodes/><baseParameters/>"
                                             "<content/><root/></graph>")
                                 .text());
    auto& manager = *library().packagesListManager();
    loadPackages(manager, {QString::fromStdString(directory.path("a.obl"))}, {}, true);
    const auto& graph =
        dynamic_cast<const Ksx::Data::Content::Graph&>(manager.openPackages()[0]->content().at(0));

    Orv::Core::commandManager()->execute(std::make_shared<Orv::Core::CommandDataModification>(
        [&](Orv::Core::ManipulatorContext& context) {
            auto input = std::make_unique<Ksx::Data::Content::ParamInput>();
            input->uid().assign(7);
            input->type().value().assign(1);
            Orv::Core::ManipulatorStruct<Ksx::Data::Content::Graph>(graph, context)
                .paraminputs()
                .pushBack(std::move(input));
            return true;
        },
        "edit"));

    EXPECT_EQ(graph.primaryInput().value().get(), 7u);
}

// Loading.

class LoadPackages : public ServicesTest
{
protected:
    int load(const QStringList& names, bool followDependencies = true)
    {
        QStringList paths;
        for (const QString& name : names)
            paths.append(QString::fromStdString(directory.path()) + "/" + name);
        return loadPackages(manager, paths, presetsPaths, followDependencies);
    }
    QStringList open() const
    {
        QStringList names;
        for (const auto& package : manager.openPackages())
            names.append(QString::fromLatin1(package->identifier().get().c_str()));
        return names;
    }
    QString at(const char* name) const { return QString::fromStdString(directory.path(name)); }

    TemporaryDirectory directory;
    Ksx::Core::PackagesListManager& manager = *services->packagesListManager();
    QStringList presetsPaths;
};

TEST_F(LoadPackages, DoesNotFollowDependenciesUnlessAsked)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("missing.obl", 7).text());

    EXPECT_EQ(load({"a.obl"}, false), 0);

    EXPECT_EQ(open(), QStringList({"a"}));
}

TEST_F(LoadPackages, AttachesNothingAfterAFailure)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("missing.obl", 7).text());

    testing::internal::CaptureStderr();
    EXPECT_EQ(load({"a.obl"}), 1);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot load dependency: " + directory.path("missing.obl") + "\n");
    EXPECT_EQ(open(), QStringList());
}

TEST_F(LoadPackages, NoPathIsSuccess)
{
    EXPECT_EQ(load({}), 0);
    EXPECT_EQ(open(), QStringList());
}

TEST_F(LoadPackages, OnlyTheFirstPresetsDirectoryIsRead)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("obl://lib.obl", 7).text());
    directory.write("two/lib.obl", aPackage().named("lib").text());
    directory.makeDirectory("one");
    presetsPaths = QStringList{at("one"), at("two")};

    testing::internal::CaptureStderr();
    EXPECT_EQ(load({"a.obl"}), 1);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot load dependency: " + directory.path("one/lib.obl") + "\n");
}

TEST_F(LoadPackages, ASecondCallFindsThePackagesOfTheFirst)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().named("b").text());
    directory.write("c.obl", aPackage().named("c").dependingOn("b.obl", 9).text());
    ASSERT_EQ(load({"a.obl"}), 0);

    EXPECT_EQ(load({"c.obl"}), 0);

    EXPECT_EQ(open(), QStringList({"a", "b", "c"}));
    EXPECT_EQ(manager.openPackages()[2]->dependencies().at(0).uid().get(), 7u);
}

TEST_F(LoadPackages, ADependencyWithoutANameIsFoundByTheUidOfAnOpenPackage)
{
    directory.write("a.obl", aPackage().named("a").dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().named("b").text());
    directory.write("c.obl", aPackage().named("c").dependingOn("", 7).text());
    ASSERT_EQ(load({"a.obl"}), 0);

    EXPECT_EQ(load({"c.obl"}), 0);

    EXPECT_EQ(open(), QStringList({"a", "b", "c"}));
}

} // namespace
