// Recipe: a form filled in for each row of a table.

#include "program.h"

#include <pdf/tools/filling.h>

#include <climits>
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

/// Makes FOLDER/1.pdf and so on of the rows FIRST to LAST of a table with tabs, whose columns fill
/// the fields `names`. A bad row is told and passed over, a target that is there is done already.
/// Gives the number of bad rows.
int merge(const std::string& form, std::istream& table, const std::vector<std::string>& names,
          const std::string& folder, long first, long last) {
    std::string line;
    int bad = 0;
    for (long row = 1; row <= last && std::getline(table, line); ++row) {
        const std::string path = folder + "/" + std::to_string(row) + ".pdf";
        if (row < first || std::filesystem::exists(path)) continue;
        const auto document = Tools::open(form); // each row begins with the empty form
        const bool done = document && fill(*document, names, line) &&
                          Tools::save(*document, path) == Tools::Saved::Done;
        if (!done) std::printf("row %ld: %s\n", row, errorText(Host::Error::get()));
        if (row % 1000 == 0) std::printf("%ld rows\n", row);
        bad += done ? 0 : 1;
    }
    return bad;
}
// page end

/// The names in the first line of a table with tabs.
std::vector<std::string> namesOf(std::istream& table) {
    std::string line, name;
    std::vector<std::string> names;
    std::getline(table, line);
    for (std::istringstream header(line); std::getline(header, name, '\t');)
        names.push_back(name);
    return names;
}

/// Whether the form has a field for each column. Says which it has not, and which is near.
bool hasAll(const std::string& file, const std::vector<std::string>& names) {
    const auto document = Program::open(file);
    const auto form = document ? Tools::openForm(*document) : nullptr;
    if (document && !form) static_cast<void>(Program::failure(file));
    if (!form) return false;
    std::vector<std::string> fields;
    for (std::uint64_t index = 0; index < form->fieldCount(); ++index)
        fields.push_back(form->field(index)->fullName()->utf8());
    for (const std::string& name : names) {
        const auto path = Host::String::create(name);
        if (path && form->fieldByPath(path)) continue;
        const std::string near = Program::joined(Program::nearest(name, fields));
        static_cast<void>(Program::failure(file, FormNotFound, "it has no field " + name,
                                           near.empty() ? "" : "near to it: " + near));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_mail_merge FORM TABLE FOLDER [FIRST LAST]",
         "Fills FORM in for each row of TABLE, whose columns are parted by tabs, into FOLDER."});
    if (!arguments.are(3, 5)) return arguments.refuse();
    const bool all = arguments.size() == 3;
    const auto first = all ? 1 : Program::number<long>(arguments[3]);
    const auto last = all ? LONG_MAX : Program::number<long>(arguments[arguments.size() - 1]);
    if (arguments.size() == 4 || !first || !last)
        return arguments.refuse("FIRST and LAST are rows");

    const std::string form(arguments[0]), path(arguments[1]), folder(arguments[2]);
    if (!std::filesystem::is_directory(folder))
        return Program::failure(folder, Host::FileNotOpened, "it is no folder", "make it first");
    std::ifstream table(path);
    const std::vector<std::string> names = namesOf(table);
    if (!table.is_open() || table.bad()) {
        static_cast<void>(Host::FileSource::open(path)); // fails as well, and says why
        return Program::failure(path);
    }
    if (names.empty())
        return Program::failure(path, Host::InvalidArgument, "its first line names no fields");
    if (!hasAll(form, names)) return Program::failed;
    const int bad = merge(form, table, names, folder, *first, *last);
    return bad == 0 ? Program::finishOutput() : Program::failed;
}
