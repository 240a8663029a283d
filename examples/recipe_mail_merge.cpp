// Recipe: a form filled in for each row of a table.

#include "program.h"

#include <pdf/tools/filling.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Sets the fields that the columns are named after. False with the code set.
bool fill(Document& document, const std::vector<std::string>& names, std::string_view row) {
    const auto form = Tools::openForm(document);
    if (!form) return false;
    std::istringstream values{std::string(row)};
    std::string value;
    for (const auto& name : names) {
        if (!std::getline(values, value, '\t')) value.clear();
        const auto filled = Tools::fillField(document, *form, name, value);
        if (filled == Tools::Filled::Failed) return false;
    }
    return true;
}

/// Makes FOLDER/1.pdf and so on of the rows FIRST to LAST of a table with tabs, whose first line
/// names the fields. A bad row is told and passed over, a target that is there is done already.
/// Gives the number of bad rows.
int merge(const std::string& form, std::istream& table, const std::string& folder, long first,
          long last) {
    std::string line, name;
    std::vector<std::string> names;
    std::getline(table, line);
    for (std::istringstream header(line); std::getline(header, name, '\t');)
        names.push_back(name);
    int bad = 0;
    for (long row = 1; row <= last && std::getline(table, line); ++row) {
        const std::string path = folder + "/" + std::to_string(row) + ".pdf";
        if (row < first || std::filesystem::exists(path)) continue;
        const auto document = Tools::open(form); // each row begins with the empty form
        const auto target =
            document && fill(*document, names, line) ? Host::FileTarget::create(path) : nullptr;
        const bool done = target && document->write(target) && target->commit();
        if (!done) std::printf("row %ld: %s\n", row, errorText(Host::Error::get()));
        if (row % 1000 == 0) std::printf("%ld rows\n", row);
        bad += done ? 0 : 1;
    }
    return bad;
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(3) && !arguments.are(5)) {
        return Program::usage("recipe_mail_merge FORM TABLE FOLDER [FIRST LAST]");
    }
    const bool some = arguments.are(5);
    const auto first = some ? Program::number<long>(arguments[3]) : 1;
    const auto last = some ? Program::number<long>(arguments[4]) : 1'000'000'000;
    std::ifstream table{std::string(arguments[1])};
    if (!first || !last || !table) return Program::failure(Host::FileNotOpened);
    const int bad =
        merge(std::string(arguments[0]), table, std::string(arguments[2]), *first, *last);
    return bad == 0 ? Program::finishOutput() : 1;
}
