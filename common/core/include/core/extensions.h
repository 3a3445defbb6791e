// What a document format brings along: an importer, version readers and updaters.
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

// Called with a fraction from 0 to 1; may be empty.
using ProgressFunction = std::function<void(float)>;

// Builds a document out of the bytes of one file format.
class IDataImporter
{
public:
    virtual ~IDataImporter() = default;
    // Can the importer work for this version of the application?
    virtual bool isCompatible(const Version& applicationVersion) const = 0;
    // Is the URL for this importer? Goes by the end of its full text, case-sensitively.
    virtual bool accepts(const QUrl& url) const = 0;
    // An unopened device on the file; null for a URL of another scheme than "file".
    virtual std::unique_ptr<QIODevice> createDevice(const QUrl& url) const = 0;
    virtual Version version() const = 0;
    // The root of a new document, null on failure, which is then reported in `log` (may be null).
    virtual std::unique_ptr<Data::BaseObject> import(QIODevice& device, MessageNode* log,
                                                     const ProgressFunction& progress) const = 0;
};

// Reads one version number of a file without importing it.
class IDataVersionReader
{
public:
    virtual ~IDataVersionReader() = default;
    // Does the reader serve files of this importer? Answered by the importer's exact class.
    virtual bool accepts(const IDataImporter& importer) const = 0;
    virtual Version version() const = 0;
    // Reads from the device's position on. False, and `version` unchanged, if there is none.
    virtual bool read(QIODevice& device, Version& version) const = 0;
};

class IDataFormatVersionReader : public IDataVersionReader
{};

class IUpdaterVersionReader : public IDataVersionReader
{};

// One step of a format's history.
class IUpdater
{
public:
    virtual ~IUpdater() = default;
    // What the file carries after the step.
    virtual Version formatVersion() const = 0;
    // By which the step is selected and ordered.
    virtual Version updaterVersion() const = 0;
    virtual QString name() const = 0;
    virtual QString description() const = 0;
};

// A step on the bytes of a file.
class IDataFormatUpdater : public IUpdater
{
public:
    virtual bool accepts(const IDataImporter& importer) const = 0;
    // Rewrites what stands behind `device`, which is open for reading and writing and positioned
    // at 0. False on failure; `log` may be null.
    virtual bool update(QIODevice& device, MessageNode* log,
                        const ProgressFunction& progress) const = 0;
};

} // namespace Orv::Core::Extensions
