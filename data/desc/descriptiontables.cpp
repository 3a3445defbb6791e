#include "data/desc/descriptiontables.h"

#include "data/desc/filtertable.h"
#include "data/desc/functiontable.h"
#include <atomic>
#include <cstdlib>
#include <mutex>

namespace Ksx::Data::Desc {

namespace {

// Both are there before any thread and behind the last exit handler.
std::mutex buildLock;
std::atomic<DescriptionTables*> tables{nullptr};
std::once_flag exitHandler;

} // namespace

DescriptionTables& DescriptionTables::instance()
{
    if (DescriptionTables* const built = tables.load(std::memory_order_acquire))
        return *built;
    const std::lock_guard lock(buildLock);
    if (DescriptionTables* const built = tables.load(std::memory_order_acquire))
        return *built;
    std::call_once(exitHandler, [] { std::atexit(&DescriptionTables::destroy); });
    auto* const built = new DescriptionTables;
    tables.store(built, std::memory_order_release);
    return *built;
}

// The pointer is null before the destruction begins, so that only one caller does the work.
void DescriptionTables::destroy()
{
    delete tables.exchange(nullptr);
}

bool DescriptionTables::exists()
{
    return tables.load(std::memory_order_acquire) != nullptr;
}

DescriptionTables::DescriptionTables()
    : m_common(makeCommonParameters()), m_input(makeInputParameters()),
      m_filters(std::make_unique<FilterTable>(m_common, m_input)),
      m_functions(std::make_unique<FunctionTable>())
{}

DescriptionTables::~DescriptionTables() = default;

} // namespace Ksx::Data::Desc
