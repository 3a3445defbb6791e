#include "behavior/imageinputs.h"

#include "data/desc/valuetype.h"
#include <algorithm>

namespace Ksx::Core::Behavior {

using Data::Content::ParamInput;
using Orv::Data::ChangeRun;
using Orv::Data::RunKind;

namespace {

bool isCandidate(const ImageInputRecord& record)
{
    return record.isImage && record.uid != 0;
}

} // namespace

bool operator==(const ImageInputRecord& a, const ImageInputRecord& b)
{
    return a.uid == b.uid && a.isImage == b.isImage;
}

ImageInputRecord ImageInputs::read(const ParamInput& input)
{
    return {input.uid().get(), Data::Desc::ValueType::isImage(input.type().value().get())};
}

void ImageInputs::enter(const ParamInput&, const ImageInputRecord& record)
{
    if (!record.isImage)
        return;
    ++m_uids[record.uid];
    m_entered += isCandidate(record) ? 1 : 0;
}

void ImageInputs::leave(const ParamInput*, const ImageInputRecord& record)
{
    const auto found = record.isImage ? m_uids.find(record.uid) : m_uids.end();
    if (found != m_uids.end() && --found->second == 0)
        m_uids.erase(found);
}

void ImageInputs::deliver(const Orv::Data::DataMessage& message)
{
    m_entered = 0;
    const std::size_t arrived = followPlace(message);
    ItemIndex::deliver(message);
    // An input that has become an image where it was may stand anywhere.
    if (m_entered != arrived || (message.type & Orv::Data::ChangeType::Moved) != 0)
        m_place = 0;
}

// Moves the place along with what comes and goes before it. Returns the number of the candidates
// that have come.
std::size_t ImageInputs::followPlace(const Orv::Data::DataMessage& message)
{
    const auto* const list = static_cast<const List*>(message.object.get());
    std::size_t arrived = 0;
    std::size_t place = 0;
    for (const ChangeRun& run : message.runs.runs()) {
        if (run.kind == RunKind::Erased && place < m_place)
            m_place -= std::min(run.count, m_place - place);
        if (run.kind == RunKind::Inserted && list != nullptr) {
            m_place += place < m_place ? run.count : 0;
            for (std::size_t i = 0; i < run.count && place + i < list->size(); ++i) {
                if (!isCandidate(read(list->at(place + i))))
                    continue;
                ++arrived;
                m_place = std::min(m_place, place + i);
            }
        }
        place += run.inNewList() ? run.count : 0;
    }
    return arrived;
}

Uid ImageInputs::first(const List& list)
{
    if (m_uids.empty())
        return 0;
    while (m_place < list.size() && !isCandidate(read(list.at(m_place))))
        ++m_place;
    return m_place < list.size() ? list.at(m_place).uid().get() : 0;
}

} // namespace Ksx::Core::Behavior
