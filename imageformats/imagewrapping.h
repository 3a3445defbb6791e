// An image over pixels that are somewhere already, for a program that does not link QtGui.
#pragma once

#include <QtGlobal>
#include <memory>

class QImage;
class QSize;

// Exported from the library of the plug-in, to be found by its name. Returns an image of
// Format_ARGB32 over the pixels, which `owner` keeps alive; it carries the text "degraded" with the
// value "true" if it is so.
extern "C" Q_DECL_EXPORT void ksxWrapImage(const uchar* pixels, const QSize& size, bool isDegraded,
                                           const std::shared_ptr<const void>& owner,
                                           std::shared_ptr<const QImage>& image);
