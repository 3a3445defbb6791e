#include "imageformats/imagewrapping.h"

#include "imageformats/sampleimages.h"
#include <gtest/gtest.h>

using namespace TestSupport;

namespace {

std::shared_ptr<const QImage> wrapped(const std::shared_ptr<const QImage>& pixels, bool isDegraded)
{
    std::shared_ptr<const QImage> image;
    ksxWrapImage(pixels->constBits(), pixels->size(), isDegraded, pixels, image);
    return image;
}

} // namespace

TEST(WrappedImage, ShowsThePixelsWithoutACopy)
{
    const auto pixels = std::make_shared<const QImage>(translucentPicture());
    const auto image = wrapped(pixels, false);
    EXPECT_EQ(*image, translucentPicture());
    EXPECT_EQ(image->constBits(), pixels->constBits());
    EXPECT_TRUE(image->text().isEmpty());
}

TEST(WrappedImage, SaysThatItIsDegraded)
{
    const auto pixels = std::make_shared<const QImage>(translucentPicture());
    const auto image = wrapped(pixels, true);
    EXPECT_EQ(image->text(QStringLiteral("degraded")), QStringLiteral("true"));
    EXPECT_EQ(*image, translucentPicture());
}

TEST(WrappedImage, KeepsItsPixelsWhileACopyLives)
{
    auto pixels = std::make_shared<const QImage>(translucentPicture());
    const std::weak_ptr<const QImage> watched = pixels;
    QImage copy = *wrapped(pixels, false);
    pixels.reset();
    EXPECT_FALSE(watched.expired());
    EXPECT_EQ(copy, translucentPicture());
    copy = QImage();
    EXPECT_TRUE(watched.expired());
}
