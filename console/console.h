// Lines on the two streams of the terminal.
#pragma once

#include <QString>

// Progress and results go to standard output, errors to standard error. File names are written byte
// for byte as the file system has them. Each line is flushed.
void printLine(const QString& text);
void printError(const QString& text);
