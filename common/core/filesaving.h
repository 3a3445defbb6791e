// How the bytes of a FileSaver reach the disk.
#pragma once

#include <QString>
#include <memory>
#include <string>

namespace Orv::Core {

// Serves one save. Destroyed without a successful commit() it leaves the former file.
class FileSaving
{
public:
    FileSaving() = default;
    FileSaving(const FileSaving&) = delete;
    FileSaving& operator=(const FileSaving&) = delete;
    virtual ~FileSaving() = default;

    // Returns the way for that path, which no link is, after the first step on it. Returns null
    // where nothing can be written.
    static std::unique_ptr<FileSaving> at(const std::string& path);

    // Returns whether at() would return a way, without a step on it.
    static bool canBeAt(const std::string& path);

    virtual bool write(const char* data, qint64 size) = 0;
    // Returns true when all bytes are on disk under the name of the target.
    virtual bool commit() = 0;
    // Returns where the former bytes are if commit() could not put them back; else a null text.
    virtual QString keptCopy() const { return {}; }
};

} // namespace Orv::Core
