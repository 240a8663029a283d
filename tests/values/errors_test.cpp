#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

namespace {

std::string project(const std::string& path) {
    std::ifstream file(FILES_PDF_SAMPLES "/../../" + path);
    EXPECT_TRUE(file) << path;
    return (std::ostringstream() << file.rdbuf()).str();
}

TEST(Errors, EveryCodeIsDocumentedAndHasAText) {
    const std::string page = project("docs/errors.md");
    std::istringstream lines(project("include/host/error.h") + project("include/pdf/errors.h"));
    std::set<unsigned> codes;
    for (std::string line; std::getline(lines, line);) {
        char name[64] = "";
        char row[128] = "";
        unsigned number = 0;
        if (std::sscanf(line.c_str(), " %63[A-Za-z] = %u,", name, &number) != 2) continue;
        EXPECT_TRUE(codes.insert(number).second) << "twice: " << number;
        std::snprintf(row, sizeof(row), "\n| %u | 0x%X | `%s` |", number, number, name);
        EXPECT_NE(page.find(row), std::string::npos) << "docs/errors.md has no row" << row;
        EXPECT_STRNE(Libraries::Files::PDF::errorText(number), "unknown error") << name;
    }
    std::size_t rows = 0;
    for (auto at = page.find(" | 0x"); at != std::string::npos; at = page.find(" | 0x", at + 1))
        ++rows;
    EXPECT_EQ(rows, codes.size()) << "docs/errors.md has rows without a code";
}

} // namespace
