#include "data/desc/outputusage.h"

#include <iterator>

namespace Ksx::Data::Desc {

OutputUsage::OutputUsage() : m_entries(std::begin(BuiltIn), std::end(BuiltIn)) {}

void OutputUsage::addEntry(const std::string& usage)
{
    m_entries.push_back(usage);
    Q_EMIT entryAdded(usage);
}

const std::vector<std::string>& OutputUsage::components() const
{
    static const std::vector<std::string> words{"RGBA", "RGB", "R", "G", "B", "A"};
    return words;
}

} // namespace Ksx::Data::Desc
