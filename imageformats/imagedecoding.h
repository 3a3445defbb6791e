// Reading a picture for a program that does not link QtGui.
#pragma once

#include <QtGlobal>
#include <memory>

class QImage;
class QIODevice;
class QSize;

// Exported from the library of the plug-in, to be found by its name. Reads the picture that a file
// or other device holds, by FreeImage or else by whichever reader Qt finds for it. False, with both
// results as they were, if it cannot be read whole.
extern "C" Q_DECL_EXPORT bool ksxDecodeImage(QIODevice& device,
                                             std::shared_ptr<const QImage>& image, QSize& size);
