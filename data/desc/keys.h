// How the keys of translations are made from identifiers.
#pragma once

#include <string>

namespace Ksx::Data::Desc {

// Of the letters a to z only, whatever the locale: keys are plain ASCII.
inline std::string capitals(std::string text)
{
    for (char& letter : text)
        if (letter >= 'a' && letter <= 'z')
            letter = static_cast<char>(letter - 'a' + 'A');
    return text;
}

} // namespace Ksx::Data::Desc
