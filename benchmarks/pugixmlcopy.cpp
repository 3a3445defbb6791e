// Loads a file into a document of pugixml and saves it without indentation.
#include <pugixml.hpp>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("Error! Usage: pugixmlcopy INPUT OUTPUT\n", stderr);
        return 1;
    }
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_file(argv[1], pugi::parse_default | pugi::parse_declaration);
    if (!result) {
        std::fprintf(stderr, "Error! %s: %s\n", argv[1], result.description());
        return 1;
    }
    if (!document.save_file(argv[2], "", pugi::format_raw)) {
        std::fprintf(stderr, "Error! cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
