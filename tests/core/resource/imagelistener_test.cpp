#include "ksx/core/imagelistener.h"

#include "data/content/resource.h"
#include "data/content/resourcemanipulators.h"
#include "ksx/core/edit.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <QFile>
#include <QSize>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Resource;

const std::string Picture = sourcePath("examples/effects/steel_plate.png"); // 300 x 200

bool applyPath(Orv::Core::ManipulatorStruct<Resource> resource,
               const Orv::Data::DataPointerBoxMasterKey&, const std::string& path)
{
    resource.filepath().set(path);
    return true;
}

class Image : public testing::Test
{
protected:
    ImageListener& of(const std::string& path)
    {
        const auto& package = workspace.open(aPackage().containing(aResource("picture", path)));
        resource = dynamic_cast<const Resource*>(&package.content().at(0));
        return ImageListener::of(*resource);
    }
    std::string copyOf(qint64 size)
    {
        QFile file(QString::fromStdString(Picture));
        file.open(QIODevice::ReadOnly);
        QFile copy(QString::fromStdString(directory.path() + "/copy.png"));
        copy.open(QIODevice::WriteOnly);
        copy.write(file.read(size));
        return directory.path() + "/copy.png";
    }

    TemporaryDirectory directory;
    Workspace workspace;
    const Resource* resource = nullptr;
};

TEST_F(Image, IsDecodedWithItsSize)
{
    ImageListener& image = of(Picture);
    EXPECT_EQ(image.state(), ImageState::Decoded);
    EXPECT_EQ(image.size(), QSize(300, 200));
    EXPECT_NE(image.image(), nullptr);
}

TEST_F(Image, IsDecodedOnceAndAgainAfterItsMemoryWasGivenBack)
{
    ImageListener& image = of(Picture);
    const std::weak_ptr<const QImage> first = image.image();
    EXPECT_EQ(first.lock(), image.image());
    image.release();
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(image.size(), QSize(300, 200));
    EXPECT_NE(image.image(), nullptr);
}

TEST_F(Image, OfAMissingFileOrADirectoryCannotBeReached)
{
    EXPECT_EQ(of("/nowhere/picture.png").state(), ImageState::Unreachable);
    EXPECT_EQ(of(directory.path()).state(), ImageState::Unreachable);
}

TEST_F(Image, OfACutFileCannotBeDecoded)
{
    ImageListener& image = of(copyOf(20000));
    EXPECT_EQ(image.state(), ImageState::Undecodable);
    EXPECT_FALSE(image.size().isValid());
    EXPECT_EQ(image.image(), nullptr);
}

TEST_F(Image, OfAResourceThatIsGivenAnotherFileIsDecodedAnew)
{
    ImageListener& image = of("/nowhere/picture.png");
    EXPECT_EQ(image.state(), ImageState::Unreachable);
    runEdit(Orv::Data::DataPointerBox<Resource>(resource), Picture, &applyPath, QString());
    EXPECT_EQ(image.state(), ImageState::Decoded);
}

} // namespace
