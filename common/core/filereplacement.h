// A new file that takes the place of the target.
#pragma once

#include "core/descriptor.h"
#include "filesaving.h"

namespace Orv::Core {

class FileReplacement final : public FileSaving
{
public:
    explicit FileReplacement(const std::string& path);
    ~FileReplacement() override;

    // Makes the new file in the folder of the target. `replaces` says that there is a former file.
    bool start(bool replaces);
    bool write(const char* data, qint64 size) override { return m_file.write(data, size); }
    bool commit() override;
    QString keptCopy() const override { return m_keptCopy; }

private:
    bool takePlace(bool replaces);
    bool exchange();
    bool syncFolder() const;
    bool rename(const std::string& from, const std::string& to) const;
    bool remove(const std::string& name) const;

    std::string m_path;
    std::string m_folderPath;
    std::string m_name; // of the target in its folder
    Descriptor m_folder;
    Descriptor m_file;
    std::string m_temporary; // name of the file to remove at the end; empty for none
    QString m_keptCopy;
};

} // namespace Orv::Core
