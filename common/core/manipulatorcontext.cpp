#include "core/manipulatorcontext.h"

#include "core/historyscratch.h"
#include <utility>

namespace Orv::Core {

ManipulatorContext::ManipulatorContext(std::shared_ptr<HistoryScratch> scratch)
    : m_scratch(std::move(scratch))
{}

ManipulatorContext::~ManipulatorContext()
{
    if (!m_isClosed)
        close();
}

std::size_t ManipulatorContext::historySize() const
{
    return m_scratch->size();
}

ManipulatorContext* ManipulatorContext::innermost()
{
    return static_cast<ManipulatorContext*>(ManipulatorContextBase::innermost());
}

ManipulatorContext* ManipulatorContext::enclosing() const
{
    return static_cast<ManipulatorContext*>(ManipulatorContextBase::enclosing());
}

void ManipulatorContext::close()
{
    m_isClosed = true;
    try {
        if (m_rollback) {
            m_scratch->rollback(*this);
        } else if (enclosing() != nullptr) {
            enclosing()->scratch().append(*m_scratch);
            join();
        } else {
            dispatch();
            m_scratch->settleAll(*this);
        }
    } catch (...) {
        finish(); // a message left pending would keep its listeners from all later ones
        throw;
    }
    finish();
}

} // namespace Orv::Core
