// The token that turns a box's const access into mutable access.
#pragma once

namespace Orv {

namespace Core {
class CommandModification;
} // namespace Core

namespace Data {

// An empty token. Only the command layer can make one, and passes it by reference to the function
// that applies an edit; so a mutable document object can be reached from inside an edit only.
class DataPointerBoxMasterKey
{
public:
    // A copy would outlive the edit.
    DataPointerBoxMasterKey(const DataPointerBoxMasterKey&) = delete;
    DataPointerBoxMasterKey& operator=(const DataPointerBoxMasterKey&) = delete;

private:
    friend class Orv::Core::CommandModification;
    DataPointerBoxMasterKey() {} // not "= default": an aggregate could be made by anyone
};

} // namespace Data
} // namespace Orv
