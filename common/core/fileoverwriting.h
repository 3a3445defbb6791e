// Writes to a target in its place.
#pragma once

#include "core/descriptor.h"
#include "filesaving.h"

namespace Orv::Core {

// For a regular file in a folder that takes no other. The new bytes are gathered elsewhere first.
// While they are copied, a copy of the former ones is in the temporary folder: the file's own blocks
// are there to take these back.
class FileOverwriting final : public FileSaving
{
public:
    bool start(const std::string& path);
    bool write(const char* data, qint64 size) override { return m_content.write(data, size); }
    bool commit() override;
    QString keptCopy() const override;

private:
    bool keepFormer();
    bool fill(const Descriptor& source) const;
    void removeCopy();

    Descriptor m_folder; // the temporary one
    std::string m_folderPath;
    Descriptor m_target;
    Descriptor m_content;
    Descriptor m_former;
    std::string m_copy; // name of the copy of the former bytes; empty while there is none
};

// For a device, or a pipe that somebody reads.
class FileStreaming final : public FileSaving
{
public:
    bool start(const std::string& path);
    bool write(const char* data, qint64 size) override { return m_target.write(data, size); }
    bool commit() override;

private:
    Descriptor m_target;
};

} // namespace Orv::Core
