// How far a command has come, for people at a terminal.
#pragma once

#include <QString>
#include <chrono>
#include <cstddef>

namespace Ksx::Kit {

// Returns the line, such as "1200 of 10000 files, 600 a second, 15 s left".
QString progressText(std::size_t done, std::size_t total, double seconds);

// Shows the line on standard error while files are worked on, if that is a terminal. Shows nothing
// in the first second. The line is gone when the progress ends, and while others print.
class Progress
{
public:
    explicit Progress(std::size_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { hide(); }

    // Counts a file.
    void step();
    // Takes the line away, to print something else.
    void hide();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t m_total;
    std::size_t m_done = 0;
    bool m_isForPeople;
    bool m_isShown = false;
    Clock::time_point m_begin = Clock::now();
    Clock::time_point m_nextShow;
};

} // namespace Ksx::Kit
