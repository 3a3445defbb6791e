#include "data/diagnosticlog.h"

#include <gtest/gtest.h>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using Orv::DiagnosticLog;
using Orv::LogLevel;
using Orv::LogRecord;

// A sink for as long as it lives.
class RecordingSink
{
public:
    RecordingSink() : m_number(DiagnosticLog::addSink([this](const LogRecord& r) { take(r); })) {}
    RecordingSink(const RecordingSink&) = delete;
    RecordingSink& operator=(const RecordingSink&) = delete;
    ~RecordingSink() { DiagnosticLog::removeSink(m_number); }

    int number() const { return m_number; }
    const std::vector<LogRecord>& records() const { return m_records; }

private:
    void take(const LogRecord& record) { m_records.push_back(record); }

    std::vector<LogRecord> m_records;
    int m_number;
};

void writeOne()
{
    DiagnosticLog::write(LogLevel::Assertion, "core\\coreconnectorcontroller", 34, "odd");
}

void writeFromThreads(int threads, int texts)
{
    std::vector<std::thread> writers;
    writers.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i)
        writers.emplace_back([texts] {
            for (int k = 0; k < texts; ++k)
                writeOne();
        });
    for (std::thread& writer : writers)
        writer.join();
}

TEST(DiagnosticLog, WithoutASinkHasNoEffect)
{
    EXPECT_NO_THROW(writeOne());
}

TEST(DiagnosticLog, GivesTheText)
{
    const RecordingSink sink;
    writeOne();
    EXPECT_EQ(sink.records().at(0).text, "odd");
}

TEST(DiagnosticLog, GivesTheLevel)
{
    const RecordingSink sink;
    writeOne();
    EXPECT_EQ(sink.records().at(0).level, LogLevel::Assertion);
}

TEST(DiagnosticLog, GivesTheSource)
{
    const RecordingSink sink;
    writeOne();
    EXPECT_STREQ(sink.records().at(0).source, "core\\coreconnectorcontroller");
}

TEST(DiagnosticLog, GivesTheLine)
{
    const RecordingSink sink;
    writeOne();
    EXPECT_EQ(sink.records().at(0).line, 34);
}

TEST(DiagnosticLog, WritesToEverySink)
{
    const RecordingSink first;
    const RecordingSink second;
    writeOne();
    EXPECT_EQ(first.records().size() + second.records().size(), 2u);
}

TEST(DiagnosticLog, WritesNoMoreToARemovedSink)
{
    const RecordingSink sink;
    DiagnosticLog::removeSink(sink.number());
    writeOne();
    EXPECT_TRUE(sink.records().empty());
}

TEST(DiagnosticLog, KeepsTheOthersWhenASinkIsRemoved)
{
    const RecordingSink removed;
    const RecordingSink kept;
    DiagnosticLog::removeSink(removed.number());
    writeOne();
    EXPECT_EQ(kept.records().size(), 1u);
}

TEST(DiagnosticLog, GivesEverySinkItsOwnNumber)
{
    const RecordingSink first;
    const RecordingSink second;
    EXPECT_NE(first.number(), second.number());
}

TEST(DiagnosticLog, IgnoresTheRemovalOfAnUnknownSink)
{
    EXPECT_NO_THROW(DiagnosticLog::removeSink(-1));
}

// Does something in the place of a sink, while it is served.
class ReactingSink
{
public:
    explicit ReactingSink(std::function<void(const ReactingSink&)> reaction)
        : m_number(DiagnosticLog::addSink([this, reaction = std::move(reaction)](const LogRecord&) {
              ++m_calls;
              reaction(*this);
          }))
    {}
    ReactingSink(const ReactingSink&) = delete;
    ReactingSink& operator=(const ReactingSink&) = delete;
    ~ReactingSink() { DiagnosticLog::removeSink(m_number); }

    int number() const { return m_number; }
    int calls() const { return m_calls; }

private:
    int m_calls = 0;
    int m_number;
};

TEST(DiagnosticLog, LetsASinkWriteAndSparesItItsOwnText)
{
    const ReactingSink writing([](const ReactingSink&) { writeOne(); });
    const RecordingSink other;
    writeOne();
    EXPECT_EQ(writing.calls(), 1);
    EXPECT_EQ(other.records().size(), 2u);
}

TEST(DiagnosticLog, LetsASinkRemoveItself)
{
    const ReactingSink leaving(
        [](const ReactingSink& sink) { DiagnosticLog::removeSink(sink.number()); });
    writeOne();
    writeOne();
    EXPECT_EQ(leaving.calls(), 1);
}

TEST(DiagnosticLog, SparesASinkThatAnotherOneRemoves)
{
    int next = 0;
    const ReactingSink removing([&](const ReactingSink&) { DiagnosticLog::removeSink(next); });
    const RecordingSink removed;
    next = removed.number();
    writeOne();
    EXPECT_TRUE(removed.records().empty());
}

TEST(DiagnosticLog, LosesNoTextOfSeveralThreads)
{
    const RecordingSink sink;
    writeFromThreads(4, 500);
    EXPECT_EQ(sink.records().size(), 2000u);
}

} // namespace
