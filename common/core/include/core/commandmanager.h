// Runs commands, logs them and signals that they ran.
#pragma once

#include "core/icommandmanager.h"
#include <QEvent>
#include <QObject>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>

namespace Orv::Core {

class CommandQueue;

// The activity of the manager, as activityChanged reports it.
struct Activity
{
    static constexpr std::uint32_t None = 0;
    static constexpr std::uint32_t Execute = 1; // a command is being run by execute()
    static constexpr std::uint32_t Update = 2;  // update() is draining the queue
};

// Asks the manager, from any thread, to start draining its queue.
class QEventRequestUpdate final : public QEvent
{
public:
    static constexpr QEvent::Type EventType = static_cast<QEvent::Type>(QEvent::User); // 1000
    QEventRequestUpdate() : QEvent(EventType) {}
};

// Two ways in: execute() runs a command at once; push() queues it, and a timer of interval 0 drains
// the queue in slices. Keeps no undo stack: that is the business of a listener on its signals.
// All but push(), remove() and requestFullUpdate() belongs to the thread of the documents.
class CommandManager : public QObject, public ICommandManager
{
public:
    static constexpr int MaxCommandsPerUpdate = 20;

    // `mode` is kept for clients of the library; nothing here reads it.
    explicit CommandManager(std::uint32_t mode, QObject* parent = nullptr);
    ~CommandManager() override;

    bool push(const std::shared_ptr<ICommand>& command) override;
    bool execute(const std::shared_ptr<ICommand>& command) override;
    void update() override;
    bool remove(const std::shared_ptr<ICommand>& command) override;
    CommandSignal& aboutToExecute() override;
    CommandSignal& executed() override;
    CommandSignal& failed() override;
    CommandSignal& removed() override;
    ActivitySignal& activityChanged() override;
    void requestFullUpdate() override;

    // Nested activities of one id count as one.
    virtual bool beginActivity(std::uint32_t id);
    virtual bool endActivity();
    virtual std::uint32_t currentActivity() const;

    std::uint32_t mode() const { return m_mode; }
    // Writes each command to "commands.log" in the current directory. Off at first.
    void setLogging(bool isOn) { m_logging = isOn; }

    bool event(QEvent* event) override;

private:
    struct Signals;
    struct RunningActivity
    {
        std::uint32_t id;
        std::uint32_t depth;
    };

    bool run(const std::shared_ptr<ICommand>& command);
    void drainQueue();
    void log(const QString& text);
    void logNamed(const char* format, const ICommand& command);

    int m_timerId = 0;
    std::unique_ptr<CommandQueue> m_queue;
    std::list<RunningActivity> m_activities;
    std::uint32_t m_mode;
    bool m_isUpdating = false;
    bool m_logging = false;
    int m_logDepth = 0;     // tabs at the head of a line
    std::mutex m_flagMutex; // guards m_fullUpdate
    bool m_fullUpdate = false;
    std::mutex m_logMutex;
    std::unique_ptr<Signals> m_signals;
};

} // namespace Orv::Core
