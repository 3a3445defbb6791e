// Pictures, as far as this program looks into them itself: before a decoder of others sees a file, its
// format, its announced size and its runs have been looked at.
#include "fuzztargets.h"
#include "imageformats/freeimagedevice.h"
#include "imageformats/picturesize.h"
#include "imageformats/runcheck.h"
#include "support/hostilepictures.h"
#include "support/paths.h"
#include "support/sampleimages.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <algorithm>

namespace TestSupport {

namespace {

using namespace Orv::ImageFormats;

// Looks at the file as if it were of that format. The position has to stay.
std::string faultInFormat(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    const qint64 begin = device.pos();
    announcedSize(format, device);
    if (isMadeOfRuns(format, device))
        hasAllRuns(format, device);
    return device.pos() == begin ? "" : "the position of the device has changed";
}

std::string faultOfPicture(const std::string& picture)
{
    QByteArray bytes(picture.data(), static_cast<int>(picture.size()));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    std::string fault = faultInFormat(formatOfContent(&buffer), buffer);
    // A name may lead to any format where the content shows none.
    for (int format = 0; format < FreeImage_GetFIFCount() && fault.empty(); ++format)
        fault = faultInFormat(static_cast<FREE_IMAGE_FORMAT>(format), buffer);
    return fault;
}

std::vector<std::string> pictures()
{
    std::vector<std::string> seeds;
    QDirIterator files(QString::fromStdString(sourcePath("tests/data/pictures")), QDir::Files);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            seeds.push_back(file.readAll().toStdString());
    }
    std::sort(seeds.begin(), seeds.end());
    for (const ImageFormat& format : imageFormats())
        seeds.push_back(format.bytes({4, 3}));
    for (const HostilePicture& picture : hostilePictures())
        seeds.push_back(picture.bytes());
    return seeds;
}

} // namespace

std::vector<FuzzTarget> pictureTargets()
{
    return {{"pictures", &faultOfPicture, &pictures, nullptr}};
}

} // namespace TestSupport
