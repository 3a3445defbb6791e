#include "ksx/core/session.h"

#include "core/commandmanager.h"
#include "core/fileplace.h"
#include "core/messagenode.h"
#include "core/undostack.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/collectgraphs.h"
#include "ksx/core/dependencyopener.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/libraryservices.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packagelistener.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/packagewriter.h"
#include "ksx/core/savetarget.h"
#include <QCoreApplication>

namespace Ksx::Core {

namespace {

// The application object that the library needs for its modules, if the program has none.
class Application
{
public:
    Application()
    {
        if (QCoreApplication::instance() != nullptr)
            return;
        // The library behind Qt's other event loop ends the process when it has no memory.
        qputenv("QT_NO_GLIB", "1");
        Orv::installFileNameCodec();
        m_application = std::make_unique<QCoreApplication>(m_argumentCount, m_arguments);
    }

private:
    char m_name[8] = "kestrix";
    char* m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1; // the object keeps references to these
    std::unique_ptr<QCoreApplication> m_application;
};

} // namespace

struct Session::Parts
{
    Application application;
    LibraryServices services{ServiceParts::Packages::EndWithServices};
    Orv::Core::UndoStack steps{*services.commandManager()};
    QStringList presetsPaths;
};

Session::Session(const QStringList& presetsPaths) : m_parts(std::make_unique<Parts>())
{
    m_parts->presetsPaths = presetsPaths;
}

Session::~Session() = default;

bool Session::open(const QStringList& paths)
{
    return open(paths, true);
}

bool Session::openAlone(const QStringList& paths)
{
    return open(paths, false);
}

bool Session::open(const QStringList& paths, bool followsDependencies)
{
    DependencyOpener opener(manager(), m_parts->presetsPaths, DependencyOpener::OnFailure::GoOn);
    opener.setFollowsDependencies(followsDependencies);
    opener.setTakesOpen(true);
    Orv::Core::MessageNode report;
    m_parts->steps.setRecording(false);
    const bool isOpen = opener.open(paths, &report);
    m_parts->steps.setRecording(true);
    m_failures.clear();
    for (const DependencyOpener::Failure& failure : opener.failures())
        m_failures.push_back({failure.filename, failure.isDependency,
                              failureReason(failure.filename, failure.error)});
    return isOpen;
}

const std::vector<Session::Failure>& Session::failures() const
{
    return m_failures;
}

std::vector<Session::PackageBox> Session::packages() const
{
    return manager().openPackages();
}

Session::PackageBox Session::package(const QString& path) const
{
    return manager().packageForPath(path);
}

QString Session::path(const PackageBox& package) const
{
    return package ? manager().filePath(*package) : QString();
}

Session::PackageBox Session::addPackage(const QString& identifier)
{
    std::vector<std::unique_ptr<Data::Content::Package>> added;
    added.push_back(PackagesListManager::newPackage(identifier));
    const PackageBox box(added.front().get());
    return manager().addPackages(std::move(added)) ? box : PackageBox();
}

bool Session::close(const PackageBox& package)
{
    return package && manager().removePackages({package});
}

QSharedPointer<PackageController> Session::controller(const PackageBox& package) const
{
    return package ? PackageListener::of(*package).controller()
                   : QSharedPointer<PackageController>();
}

std::vector<CompGraphController*> Session::graphs(const PackageBox& package) const
{
    std::vector<CompGraphController*> controllers;
    if (package)
        for (const auto& graph : collectGraphs(*package))
            controllers.push_back(graphController(graph));
    return controllers;
}

std::vector<CompGraphController*> Session::graphs(const QString& path) const
{
    return graphs(package(path));
}

Session::Saving Session::save(const PackageBox& package, const QString& path) const
{
    if (!package)
        return {false, QStringLiteral("there is no such package")};
    if (!isSafeTarget(path, *package, manager()))
        return {false, QStringLiteral("the file belongs to another open package, or this package "
                                      "refers to it")};
    const QString presets =
        m_parts->presetsPaths.isEmpty() ? QStringLiteral(".") : m_parts->presetsPaths.front();
    Saving saving;
    saving.isSaved =
        savePackage(*package, path, QDir(Orv::Core::absolutePath(presets)), &saving.keptCopy);
    if (!saving.isSaved)
        saving.reason = QStringLiteral("the file cannot be written");
    return saving;
}

Session::Saving Session::save(const QString& from, const QString& path) const
{
    return save(package(from), path);
}

Orv::Core::UndoStack& Session::steps() const
{
    return m_parts->steps;
}

bool Session::undo()
{
    return m_parts->steps.undo();
}

bool Session::redo()
{
    return m_parts->steps.redo();
}

PackagesListManager& Session::manager() const
{
    return *m_parts->services.packagesListManager();
}

} // namespace Ksx::Core
