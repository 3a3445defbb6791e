#include "console.h"

#include "data/filename.h"
#include <iostream>

void printLine(const QString& text)
{
    std::cout << Orv::toBytes(text) << std::endl;
}

void printError(const QString& text)
{
    std::cerr << Orv::toBytes(text) << std::endl;
}
