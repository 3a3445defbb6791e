// The report of a batch: how far it is, and the findings of a check of its results.
#pragma once

#include "ksx/kit/batchrun.h"
#include "ksx/kit/finding.h"
#include <QByteArray>
#include <array>
#include <cstddef>
#include <map>
#include <vector>

namespace Ksx::Kit {

// All states, in the order of reports.
constexpr std::array<BatchState, 5> BatchStates = {BatchState::Done, BatchState::Staged,
                                                   BatchState::Changed, BatchState::Failed,
                                                   BatchState::Pending};

// The number of packages in each state.
using BatchCounts = std::map<BatchState, std::size_t>;

// Returns the number of a state, which is 0 for a state that is not there.
std::size_t countOf(const BatchCounts& counts, BatchState state);

// Returns the states that people are told of. Results wait in few batches, so the state Staged is
// not among them where no package has it.
std::vector<BatchState> toldStates(const BatchCounts& counts);

// The findings of one kind.
struct FindingCount
{
    std::size_t findings = 0;
    // The packages that have one.
    std::size_t packages = 0;
};

// Counts the packages of a batch and their findings, and makes a page of HTML of it. Holds the
// findings of a bounded number of packages.
class BatchReport
{
public:
    // Keeps references to both. `states` are those of the packages of the plan, in their order.
    BatchReport(const BatchPlan& plan, const std::vector<BatchStatus>& states);

    // Adds the findings of the result of a package. Each result is added once, with or without
    // findings.
    void addFindings(std::size_t package, const std::vector<Finding>& findings);

    // The number of results that were added.
    std::size_t checked() const { return m_checked; }
    // The packages of the plan by their states.
    const BatchCounts& counts() const { return m_counts; }
    // By the kind. A kind without findings is not there.
    const std::map<FindingCode, FindingCount>& findings() const { return m_findings; }
    std::size_t findingsOf(Severity severity) const;

    // Returns a page that a browser shows without any other file. `unread` are the results that no
    // check could read.
    QByteArray page(const std::vector<Failure>& unread) const;

private:
    // The cells of a row in the table of packages.
    using Row = std::vector<QByteArray>;

    struct Rows
    {
        std::vector<Row> rows;
        std::size_t leftOut = 0;
    };

    Row rowOf(std::size_t package, const QByteArray& text) const;
    QByteArray packagesText() const;

    const BatchPlan& m_plan;
    const std::vector<BatchStatus>& m_states;
    BatchCounts m_counts;
    std::map<FindingCode, FindingCount> m_findings;
    std::map<Severity, Rows> m_rows; // by the worst finding
    std::size_t m_checked = 0;
};

} // namespace Ksx::Kit
