#include "ksx/core/packagesaver.h"

#include "core/fileplace.h"
#include "data/filename.h"
#include "package/packagefile.h"
#include <algorithm>
#include <filesystem>
#include <system_error>

namespace Ksx::Core {

namespace {

namespace fs = std::filesystem;

constexpr unsigned ThreadsPerWorker =
    2; // a thread that writes waits for the disk for half its time
constexpr std::size_t JobsPerWorker = 8; // so that a long one does not keep the others waiting

// Returns true for what may be the file of other paths as well: a file of several names, a device or
// a pipe, and a place that cannot be found.
bool isSharedPlace(const QString& place)
{
    std::error_code error;
    const fs::path path = Orv::toBytes(place);
    const fs::file_status status = fs::symlink_status(path, error);
    if (place.isEmpty() || status.type() == fs::file_type::none)
        return true;
    if (status.type() == fs::file_type::not_found)
        return false;
    const bool isOnlyName = fs::hard_link_count(path, error) == 1; // a large number for an error
    return status.type() != fs::file_type::regular || !isOnlyName;
}

} // namespace

PackageSaver::PackageSaver(const QDir& presetsDir, unsigned workers)
    : m_presetsDir(presetsDir), m_workers(workers),
      m_tasks(workers > 1 ? ThreadsPerWorker * workers : workers)
{}

void PackageSaver::add(const Data::Content::Package& package, const QString& path)
{
    m_jobs.push_back({package, path});
}

PackageSaver::Result PackageSaver::next()
{
    Q_ASSERT(!m_jobs.empty());
    begin();
    m_tasks.finish();
    Result result = std::move(m_jobs.front().result);
    m_jobs.pop_front();
    return result;
}

// Begins jobs in their order, as far as none of them gets into the way of another one. A device may
// be the one to which the caller writes about results, so that it waits for next().
void PackageSaver::begin()
{
    const std::size_t most = std::max<std::size_t>(JobsPerWorker * m_workers, 1);
    while (m_tasks.size() < std::min(most, m_jobs.size())) {
        Job& job = m_jobs[m_tasks.size()];
        job.place = Orv::Core::realPath(job.path);
        job.isShared = isSharedPlace(job.place);
        if (!canBegin(job))
            return;
        stampPackage(job.package, job.path);
        m_tasks.add([this, &job] {
            job.result.isSaved =
                writePackage(job.package, job.place, m_presetsDir, &job.result.keptCopy);
        });
    }
}

bool PackageSaver::canBegin(const Job& job) const
{
    const auto begun = m_jobs.begin();
    return std::none_of(begun, begun + static_cast<std::ptrdiff_t>(m_tasks.size()),
                        [&job](const Job& other) {
                            return job.isShared || other.isShared || other.place == job.place;
                        });
}

} // namespace Ksx::Core
