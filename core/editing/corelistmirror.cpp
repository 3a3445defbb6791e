#include "editing/listmirror.h"

namespace Ksx::Core {

using Orv::Data::ChangeRun;
using Orv::Data::RunKind;

std::optional<MirrorSteps> stepsOf(const Orv::Data::ChangeRuns& runs, std::size_t former,
                                   std::size_t present)
{
    MirrorSteps steps;
    std::size_t before = 0;
    std::size_t now = 0;
    for (const ChangeRun& run : runs.runs()) {
        if (run.link != 0)
            return std::nullopt;
        for (std::size_t i = 0; run.kind == RunKind::Erased && i < run.count; ++i)
            steps.gone.push_back(before + i);
        for (std::size_t i = 0; run.kind == RunKind::Inserted && i < run.count; ++i)
            steps.fresh.push_back(now + i);
        before += run.inOldList() ? run.count : 0;
        now += run.inNewList() ? run.count : 0;
    }
    if (former + steps.fresh.size() != present + steps.gone.size())
        return std::nullopt;
    return steps;
}

} // namespace Ksx::Core
