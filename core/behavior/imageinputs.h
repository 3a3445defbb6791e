// The image inputs among the inputs of a graph, kept in step with them.
#pragma once

#include "data/content/paraminput.h"
#include "editing/itemindex.h"
#include "ksx/core/uidsource.h"
#include <cstddef>
#include <unordered_map>

namespace Ksx::Core::Behavior {

struct ImageInputRecord
{
    Uid uid;
    bool isImage;
};
bool operator==(const ImageInputRecord& a, const ImageInputRecord& b);

class ImageInputs final : public ItemIndex<ImageInputs, Data::Content::ParamInput, ImageInputRecord>
{
public:
    explicit ImageInputs(const List& list) { refill(list); }

    // Has an image input that uid?
    bool contains(Uid uid) const { return m_uids.count(uid) != 0; }
    // Returns the uid of the first image input that has one, 0 without any. Takes a walk from where
    // the last call ended.
    Uid first(const List& list);

    void deliver(const Orv::Data::DataMessage& message) override;
    static ImageInputRecord read(const Data::Content::ParamInput& input);
    void enter(const Data::Content::ParamInput& input, const ImageInputRecord& record);
    void leave(const Data::Content::ParamInput* input, const ImageInputRecord& record);

private:
    std::size_t followPlace(const Orv::Data::DataMessage& message);

    std::unordered_map<Uid, std::size_t> m_uids; // of the image inputs, with their numbers
    std::size_t m_place = 0;                     // before it stands no image input with a uid
    std::size_t m_entered = 0;                   // image inputs, by the present message
};

} // namespace Ksx::Core::Behavior
