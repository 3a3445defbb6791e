#include "core/commandmanager.h"

#include "core/commandqueue.h"
#include "core/commandsignals.h"
#include "core/icommand.h"
#include "data/filename.h"
#include <QCoreApplication>
#include <QTimerEvent>
#include <cstdio>

namespace Orv::Core {

struct CommandManager::Signals
{
    CommandSignal aboutToExecute;
    CommandSignal executed;
    CommandSignal failed;
    CommandSignal removed;
    ActivitySignal activityChanged;
};

CommandManager::CommandManager(std::uint32_t mode, QObject* parent)
    : QObject(parent), m_queue(std::make_unique<CommandQueue>()), m_mode(mode),
      m_signals(std::make_unique<Signals>())
{
    m_queue->queueNotEmpty.connect(
        [this] { QCoreApplication::postEvent(this, new QEventRequestUpdate); });
}

CommandManager::~CommandManager() = default;

CommandSignal& CommandManager::aboutToExecute()
{
    return m_signals->aboutToExecute;
}

CommandSignal& CommandManager::executed()
{
    return m_signals->executed;
}

CommandSignal& CommandManager::failed()
{
    return m_signals->failed;
}

CommandSignal& CommandManager::removed()
{
    return m_signals->removed;
}

ActivitySignal& CommandManager::activityChanged()
{
    return m_signals->activityChanged;
}

bool CommandManager::push(const std::shared_ptr<ICommand>& command)
{
    if (command != nullptr)
        logNamed("(push : %1)\n", *command);
    m_queue->append(command);
    return true;
}

bool CommandManager::execute(const std::shared_ptr<ICommand>& command)
{
    if (command != nullptr)
        logNamed("(execute : %1)\n", *command);
    beginActivity(Activity::Execute);
    const bool isDone = run(command);
    endActivity();
    return isDone;
}

bool CommandManager::run(const std::shared_ptr<ICommand>& command)
{
    if (command == nullptr)
        return false;
    m_signals->aboutToExecute(command);
    logNamed("Execute : %1\n", *command);
    const int depth = m_logging ? 1 : 0; // the command may switch the log
    m_logDepth += depth;
    const bool isDone = command->execute();
    m_logDepth -= depth;
    if (!isDone && m_logging)
        log(QStringLiteral("Command '%1' Failed !\n").arg(command->getName()));
    (isDone ? m_signals->executed : m_signals->failed)(command);
    return isDone;
}

void CommandManager::update()
{
    if (m_isUpdating || currentActivity() != Activity::None)
        return;
    if (m_logging)
        log(QStringLiteral("------ UPDATE START (%1 Commands Left)\n").arg(m_queue->size()));
    m_isUpdating = true;
    if (m_queue->size() != 0)
        drainQueue();
    {
        const std::lock_guard<std::mutex> lock(m_flagMutex);
        m_fullUpdate = false;
    }
    if (m_timerId != 0 && m_queue->size() == 0) {
        killTimer(m_timerId);
        m_timerId = 0;
    }
    m_isUpdating = false;
    if (m_logging)
        log(QStringLiteral("------ UPDATE END (%1 Commands Left)\n\n").arg(m_queue->size()));
}

void CommandManager::drainQueue()
{
    const auto mayGoOn = [this](int count) {
        const std::lock_guard<std::mutex> lock(m_flagMutex);
        return m_fullUpdate || count < MaxCommandsPerUpdate;
    };
    beginActivity(Activity::Update);
    for (int count = 0; m_queue->size() != 0 && mayGoOn(count); ++count)
        run(m_queue->takeFirst());
    endActivity();
}

bool CommandManager::remove(const std::shared_ptr<ICommand>& command)
{
    if (m_queue->remove(command) != 1)
        return false;
    m_signals->removed(command);
    return true;
}

void CommandManager::requestFullUpdate()
{
    const std::lock_guard<std::mutex> lock(m_flagMutex);
    m_fullUpdate = true;
}

bool CommandManager::beginActivity(std::uint32_t id)
{
    if (!m_activities.empty() && m_activities.back().id == id) {
        ++m_activities.back().depth;
        return true;
    }
    const std::uint32_t former = currentActivity();
    m_activities.push_back({id, 1});
    if (former == Activity::None)
        m_signals->activityChanged(id, true);
    return true;
}

bool CommandManager::endActivity()
{
    if (m_activities.back().depth != 1) {
        --m_activities.back().depth;
        return true;
    }
    const std::uint32_t ended = currentActivity();
    m_activities.pop_back();
    if (currentActivity() == Activity::None)
        m_signals->activityChanged(ended, false);
    return true;
}

std::uint32_t CommandManager::currentActivity() const
{
    return m_activities.empty() ? Activity::None : m_activities.back().id;
}

bool CommandManager::event(QEvent* event)
{
    if (event->type() == QEventRequestUpdate::EventType) {
        if (m_timerId == 0)
            m_timerId = startTimer(0);
        return true;
    }
    if (event->type() == QEvent::Timer &&
        static_cast<QTimerEvent*>(event)->timerId() == m_timerId) {
        update();
        return true;
    }
    return QObject::event(event);
}

void CommandManager::logNamed(const char* format, const ICommand& command)
{
    if (m_logging && !command.getName().isEmpty())
        log(QString::fromLatin1(format).arg(command.getName()));
}

void CommandManager::log(const QString& text)
{
    // One file for the process: its first line begins it anew.
    static bool isBegun = false;
    const std::lock_guard<std::mutex> lock(m_logMutex);
    std::FILE* file = std::fopen("commands.log", isBegun ? "at" : "wt");
    isBegun = true;
    if (file == nullptr)
        return;
    const std::string tabs(static_cast<std::size_t>(m_logDepth), '\t');
    std::fprintf(file, "%s%s", tabs.c_str(), toBytes(text).c_str());
    std::fclose(file);
}

} // namespace Orv::Core
