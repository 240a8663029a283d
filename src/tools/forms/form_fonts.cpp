#include "tools/forms/form_fonts.h"

#include "spelling/characters.h"
#include "tools/geometry.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (auto at = text.begin();;) {
        const auto begin = std::find_if_not(at, text.end(), Spelling::isWhite);
        if (begin == text.end()) return words;
        at = std::find_if(begin, text.end(), Spelling::isWhite);
        words.emplace_back(begin, at);
    }
}

std::optional<double> numberFrom(std::string_view word) {
    double number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    const bool whole = error == std::errc() && end == word.data() + word.size();
    if (!whole || !std::isfinite(number)) return std::nullopt; // "nan" is no number here
    return number;
}

/// The operator at `at` with its operands before it; empty where these are no numbers.
std::string colourFrom(const std::vector<std::string_view>& words, std::size_t at) {
    const std::string_view name = words[at];
    const std::size_t count = name == "g" ? 1 : name == "rg" ? 3 : 4;
    if (at < count) return {};
    std::string text;
    for (std::size_t index = at - count; index < at; ++index) {
        const auto number = numberFrom(words[index]);
        if (!number) return {};
        text += spelled(*number) + " ";
    }
    return text.append(name) + "\n";
}

} // namespace

TextStyle styleOf(const FieldEntries& field) {
    TextStyle style{"0 g\n", "Helv", 0};
    const std::string text = field.text("DA");
    const auto words = wordsOf(text);
    for (std::size_t at = 0; at < words.size(); ++at) {
        const std::string_view word = words[at];
        if (word == "Tf" && at >= 2 && words[at - 2].size() > 1 && words[at - 2].front() == '/') {
            constexpr double largest = 1000;
            style.fontName = words[at - 2].substr(1);
            style.size = std::clamp(numberFrom(words[at - 1]).value_or(0), 0.0, largest);
        } else if (word == "g" || word == "rg" || word == "k") {
            const std::string colour = colourFrom(words, at);
            if (!colour.empty()) style.colour = colour;
        }
    }
    return style;
}

Result<FormFont, std::string> FormFonts::find(const FieldEntries& field, std::string_view name) {
    const Document& document = changes_.document();
    const auto resources = Host::cast<Dictionary>(field.find("DR"));
    const auto fonts = followEntry<Dictionary>(document, resources, "Font");
    Ref<Value> entry = entryOf(document, fonts, name);
    if (!entry) entry = add(field, name, TextFont::helveticaDictionary());
    const auto& font = read(followTo<Dictionary>(document, entry));
    if (!font) return Unexpected<std::string>("no text can be set in its font");
    return FormFont{*font, std::move(entry)};
}

const std::optional<TextFont>& FormFonts::read(const Ref<Dictionary>& dictionary) {
    const auto [place, isNew] = fonts_.try_emplace(dictionary.get());
    if (isNew) place->second = {dictionary, TextFont::read(changes_.document(), dictionary)};
    return place->second.font;
}

void FormFonts::provideMarks(const FieldEntries& field) {
    static_cast<void>(add(field, "ZaDb",
                          newDictionary({{"Type", newName("Font")},
                                         {"Subtype", newName("Type1")},
                                         {"BaseFont", newName("ZapfDingbats")}})));
}

/// The font of the form's resources that has the name, which is the given one where there was none;
/// null where the resources can have none.
Ref<Value> FormFonts::add(const FieldEntries& field, std::string_view name,
                          const Ref<Dictionary>& font) {
    const auto fonts = dictionaryIn(dictionaryIn(field.form(), "DR"), "Font");
    Ref<Value> entry = entryOf(changes_.document(), fonts, name);
    if (!fonts || entry) return entry;
    entry = changes_.add(font);
    changes_.set(fonts, name, entry);
    return entry;
}

/// The dictionary in an entry, which is made where there is none.
Ref<Dictionary> FormFonts::dictionaryIn(const Ref<Dictionary>& from, std::string_view key) {
    const Ref<Value> value = followEntry(changes_.document(), from, key);
    if (!from || value) return Host::cast<Dictionary>(value);
    Ref<Dictionary> made = newDictionary();
    changes_.set(from, key, made);
    return made;
}

} // namespace Libraries::Files::PDF::Tools
