#include "command/progress.h"

#include "data/filename.h"
#include <cmath>
#include <iostream>
#ifdef __unix__
#include <unistd.h>
#endif

namespace Ksx::Kit {

namespace {

constexpr std::chrono::seconds Delay{1};
constexpr std::chrono::milliseconds Interval{100};

bool isErrorTerminal()
{
#ifdef __unix__
    return isatty(STDERR_FILENO) == 1;
#else
    return false;
#endif
}

} // namespace

QString progressText(std::size_t done, std::size_t total, double seconds)
{
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    QString text = QStringLiteral("%1 of %2 files").arg(done).arg(total);
    if (rate > 0)
        text += QStringLiteral(", %1 a second, %2 s left")
                    .arg(rate, 0, 'f', rate < 10 ? 1 : 0)
                    .arg(std::ceil(static_cast<double>(total - done) / rate), 0, 'f', 0);
    return text;
}

Progress::Progress(std::size_t total)
    : m_total(total), m_isForPeople(isErrorTerminal()), m_nextShow(m_begin + Delay)
{}

void Progress::step()
{
    ++m_done;
    if (!m_isForPeople)
        return;
    const Clock::time_point now = Clock::now();
    if (now < m_nextShow)
        return;
    m_nextShow = now + Interval;
    hide();
    const std::chrono::duration<double> passed = now - m_begin;
    std::cerr << Orv::toBytes(progressText(m_done, m_total, passed.count())) << std::flush;
    m_isShown = true;
}

void Progress::hide()
{
    if (m_isShown)
        std::cerr << "\r\x1B[K" << std::flush; // back to the begin of the line, which is erased
    m_isShown = false;
}

} // namespace Ksx::Kit
