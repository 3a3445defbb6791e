// Makes the image plug-in known to Qt without loading it.
#pragma once

namespace Orv::ImageFormats {

// Adds the plug-in to Qt's static plug-ins, so that no plug-in directory is needed for it. Its
// library, which modulePlace() finds, is loaded when Qt first asks for an instance; a library that is
// missing or does not fit leaves Qt with its own formats.
// Wants the application object, and to be called before Qt looks for an image format: Qt reads the
// list of plug-ins once. Does nothing when the plug-in, or another of its name, is there already.
void registerImagePlugin();

} // namespace Orv::ImageFormats
