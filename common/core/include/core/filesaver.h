// Saves a file as a whole or not at all.
#pragma once

#include <QIODevice>
#include <memory>

namespace Orv::Core {

class FileSaving;

// A device to write a file to, which is there under its name only after commit(). The bytes go into
// a file of another name in the same folder. That file takes the place of the target when all of it
// is on disk, and gets its owner, permissions and extended attributes as far as the process may give
// them. Where the folder takes no new file, a target that is there is overwritten instead, with a
// copy of its former bytes in the temporary folder meanwhile. Devices, and pipes that have a reader,
// are written to directly. Whatever fails, the former file stays and nothing else is left behind.
class FileSaver final : public QIODevice
{
public:
    // `path` is the target itself: no symbolic link is followed (see realPath()).
    explicit FileSaver(const QString& path);
    ~FileSaver() override; // gives up unless commit() was called

    // Returns whether open() finds a way to write to that path, as far as kinds of files and
    // permissions say. Writes nothing. A full disk is not noticed.
    static bool canSave(const QString& path);

    // Opens for writing, which is all that `mode` may ask for. Returns false where nothing can be
    // written, such as at a folder or at a file without that permission.
    bool open(OpenMode mode) override;
    bool isSequential() const override { return true; }
    // Returns true when the target has the new bytes and they are on disk. To be called once.
    bool commit();
    // Returns the path of a copy of the former bytes, if commit() failed and could not put them
    // back; else a null text.
    QString keptCopy() const;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool flush();

    QString m_path;
    std::unique_ptr<FileSaving> m_saving;
    QByteArray m_buffer;
    bool m_hasFailed = false;
};

} // namespace Orv::Core
