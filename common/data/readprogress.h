// Reports about twenty times how far a document has been read.
#pragma once

#include "data/xmldatareader.h"
#include <algorithm>

namespace Orv::Data {

// Tells the progress of one read. The function outlives the object, and may be empty.
class ReadProgress
{
public:
    ReadProgress(const ProgressFunction& progress, qint64 totalSize)
        : m_progress(progress), m_totalSize(totalSize)
    {
        if (progress)
            m_step = totalSize >= LargeDocument ? totalSize / Steps : totalSize;
    }

    // Tells the fraction that `offset` is of the whole if enough has been read since the last time.
    void report(qint64 offset)
    {
        if (m_step <= 0 || offset < m_next)
            return;
        while (m_next <= offset)
            m_next += m_step;
        const double fraction = static_cast<double>(offset) / static_cast<double>(m_totalSize);
        m_progress(static_cast<float>(std::min(1.0, fraction)));
    }

private:
    // Above this size a document reports its progress in twentieths, below it once or twice.
    static constexpr qint64 LargeDocument = 1048577;
    static constexpr qint64 Steps = 20;

    const ProgressFunction& m_progress;
    qint64 m_totalSize;
    qint64 m_step = 0;
    qint64 m_next = 0;
};

} // namespace Orv::Data
