// The parts of a document format: an importer, version readers and updaters.
#pragma once

#include "core/messagenode.h"
#include "core/version.h"
#include <QIODevice>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Orv::Core::Extensions {

// Called with a fraction from 0 to 1. May be empty.
using ProgressFunction = std::function<void(float)>;

// Builds a document out of the bytes of one file format. One object serves all files, on several
// threads at a time.
class IDataImporter
{
public:
    virtual ~IDataImporter() = default;
    // Returns whether the importer can work for this version of the application.
    virtual bool isCompatible(const Version& applicationVersion) const = 0;

    // Returns whether the URL is for this importer. Only the end of its full text counts,
    // case-sensitively.
    virtual bool accepts(const QUrl& url) const = 0;
    // Returns an unopened device on the file. Returns null for a URL of another scheme than "file".
    virtual std::unique_ptr<QIODevice> createDevice(const QUrl& url) const = 0;
    // Returns the version of the importer.
    virtual Version version() const = 0;

    // Returns the root of a new document, which the caller owns. Returns null on failure, with an
    // error in `log`. `log` may be null. `device` is open for reading. May throw std::exception for
    // a bad value.
    virtual std::unique_ptr<Data::BaseObject> import(QIODevice& device, MessageNode* log,
                                                     const ProgressFunction& progress) const = 0;
};

// Reads one version number of a file without importing it. One object serves all files, on several
// threads at a time.
class IDataVersionReader
{
public:
    virtual ~IDataVersionReader() = default;
    // Returns whether the reader serves files of this importer, by the exact class of the importer.
    virtual bool accepts(const IDataImporter& importer) const = 0;
    // Returns the version of the reader. Older readers are tried first.
    virtual Version version() const = 0;

    // Reads from the position of the device on. Returns false and leaves `version` unchanged if
    // there is none.
    virtual bool read(QIODevice& device, Version& version) const = 0;
};

// Reads the version of the file format.
class IDataFormatVersionReader : public IDataVersionReader
{};

// Reads the version of the last step that updated the file.
class IUpdaterVersionReader : public IDataVersionReader
{};

// One step of the history of a format, which brings older files to its version. One object serves
// all files, on several threads at a time.
class IUpdater
{
public:
    virtual ~IUpdater() = default;
    // Returns the format version of a file after the step.
    virtual Version formatVersion() const = 0;

    // Returns the version by which the step is selected and ordered. Files of a lower one need the
    // step.
    virtual Version updaterVersion() const = 0;
    // Returns the short text for reports.
    virtual QString name() const = 0;
    // Returns the longer text for users.
    virtual QString description() const = 0;
};

// A step on the bytes of a file, before it is imported.
class IDataFormatUpdater : public IUpdater
{
public:
    // Returns whether the step is for files of this importer.
    virtual bool accepts(const IDataImporter& importer) const = 0;

    // Rewrites the content of `device`, which is open for reading and writing and positioned at 0.
    // Returns false on failure, with an error in `log`. `log` may be null.
    virtual bool update(QIODevice& device, MessageNode* log,
                        const ProgressFunction& progress) const = 0;
};

} // namespace Orv::Core::Extensions
