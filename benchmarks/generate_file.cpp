// usage: files-pdf-generate form|text PAGES FILE
// Writes a document of so many pages to measure with.

#include "generate.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

int main(int count, char** arguments) {
    const std::string kind = count == 4 ? arguments[1] : "";
    const std::size_t pages = count == 4 ? std::strtoul(arguments[2], nullptr, 10) : 0;
    if ((kind != "form" && kind != "text") || pages == 0) {
        std::fprintf(stderr, "usage: files-pdf-generate form|text PAGES FILE\n");
        return 2;
    }
    try {
        std::ofstream file(arguments[3], std::ios::binary);
        file << (kind == "form" ? Benchmarks::generateFormPages(pages)
                                : Benchmarks::generate(Benchmarks::Kind::Text, 2 * pages + 2))
                    .bytes;
        file.close();
        return file ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return EXIT_FAILURE;
    }
}
