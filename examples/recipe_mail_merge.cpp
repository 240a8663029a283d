// Recipe: a form filled in for each row of a table.

#include "program.h"

#include <pdf/tools/forms.h>

#include <climits>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Fills in the form in the file `form`: `row` has a column, behind a tab, for each of the fields.
void fill(const std::string& form, const std::vector<std::string>& names, const std::string& row,
          const std::string& path) {
    const auto document = Tools::open(form).value();
    auto editor = Tools::FormEditor::of(document).value();
    std::istringstream values(row);
    for (std::string value; const auto& name : names) {
        if (!std::getline(values, value, '\t')) value.clear();
        editor.fill(name, value).value();
    }
    Tools::save(document, path).value();
}

/// Makes FOLDER/1.pdf and so on of the rows FIRST to LAST. A bad row is told and passed over, a
/// target that is there is done already. Gives the number of bad rows.
int merge(const std::string& form, std::istream& table, const std::vector<std::string>& names,
          const std::string& folder, long first, long last) {
    std::string row;
    int bad = 0;
    for (long number = 1; number <= last && std::getline(table, row); ++number) {
        const std::string path = folder + "/" + std::to_string(number) + ".pdf";
        if (number < first || std::filesystem::exists(path)) continue;
        const auto work = [&] { fill(form, names, row, path); };
        bad += Program::attempt("row " + std::to_string(number), work) == Program::done ? 0 : 1;
        if (number % 1000 == 0) std::printf("%ld rows\n", number);
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

/// Looks whether the form has a field for each column; says which it has not, and which is near.
/// Gives the exit status.
int check(const std::string& file, const std::vector<std::string>& names) {
    const auto document = Program::open(file);
    if (!document) return Program::failed;
    const auto form = Tools::FormEditor::of(document);
    if (!form) return Program::failure(file, form.error());
    std::vector<std::string> fields;
    for (const Ref<Field>& field : *form)
        fields.push_back(field->fullName()->utf8());
    for (const std::string& name : names) {
        const auto field = form->field(name);
        if (field) continue;
        const std::string near = Program::joined(Program::nearest(name, fields));
        return Program::failure(file, field.error(), near.empty() ? "" : "near to it: " + near);
    }
    return Program::done;
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
    if (const int status = check(form, names)) return status;
    const int bad = merge(form, table, names, folder, *first, *last);
    return bad == 0 ? Program::finishOutput() : Program::failed;
}
