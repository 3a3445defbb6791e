// Reads regular files.
#pragma once

#include <QFile>

namespace Orv::Core {

// A file that is surely a file: a pipe would keep its reader waiting, and a device may have no end.
// The file is opened without waiting, and it is looked at before the first byte is read. It ends
// where it ended when it was opened, whatever is appended meanwhile.
class RegularFile final : public QFile
{
public:
    explicit RegularFile(const QString& path) : m_path(path) {}

    // Opens for reading, which is all that `mode` may ask for. Returns false for anything but a
    // regular file, and for a file that may not be read.
    bool open(OpenMode mode) override;
    QString fileName() const override { return m_path; }
    qint64 size() const override { return m_size; }
    // Returns true behind a failed read as well, so that nobody goes on asking.
    bool atEnd() const override;
    // Returns true once bytes could not be read, or the file has become shorter. Readers of a
    // document may take both for its end, so their caller asks here.
    bool hasFailed() const { return m_hasFailed; }

protected:
    qint64 readData(char* data, qint64 maximumSize) override;

private:
    QString m_path;
    qint64 m_size = 0;
    bool m_hasFailed = false;
};

} // namespace Orv::Core
