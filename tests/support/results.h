#pragma once

// What tools give, and what pages show.

#include "support/testing.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/pages.h>

#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// What a failure tells: "65537, 5: Entry A leads nowhere", the number of the object where it has
/// one.
inline std::string told(std::uint32_t code, std::string_view text, std::uint32_t object = 0) {
    const std::string of = object == 0 ? "" : ", " + std::to_string(object);
    return std::to_string(code) + of + ": " + std::string(text);
}
/// The same of a result, empty where it holds a value.
template <class T>
std::string told(const PDF::Tools::Result<T>& result) {
    if (result) return {};
    return told(result.error().code(), result.error().text(), result.error().object());
}

/// What `tool` gives. It must leave the thread's code and, where it fails, the log as they are.
template <class Tool>
auto resultOf(Tool tool, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    constexpr std::uint32_t former = 77;
    const RecordingLog log;
    Host::Error::set(former);
    auto result = tool();
    if (Host::Error::get() != former) ADD_FAILURE_AT(file, line) << "code " << Host::Error::get();
    if (!result && !log.text().empty()) ADD_FAILURE_AT(file, line) << "logged " << log.text();
    Host::Error::set(Host::NoError);
    return result;
}

/// Expects a failure with this code, the text of which has these words.
template <class T>
void expectRefusal(const PDF::Tools::Result<T>& result, std::uint32_t code,
                   std::string_view words = {}, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
    const std::string found = told(result);
    if (!found.starts_with(std::to_string(code)) || found.find(words) == std::string::npos)
        ADD_FAILURE_AT(file, line) << "found \"" << found << "\", not " << code << ' ' << words;
}

/// What a value leads to by keys, or by the indexes of elements; null where it leads nowhere.
inline AnyValue at(const Host::Ref<PDF::Document>& document, AnyValue value,
                   const std::vector<std::string>& path) {
    using PDF::Tools::get;
    value = get<PDF::Value>(document, value).value_or(nullptr);
    for (const std::string& key : path) {
        const auto list = castTo<PDF::Array>(value);
        const auto stream = castTo<PDF::Stream>(value);
        const auto entries = stream ? stream->dict() : castTo<PDF::Dictionary>(value);
        value = (list ? get<PDF::Value>(document, list, std::stoul(key))
                      : get<PDF::Value>(document, entries, key))
                    .value_or(nullptr);
    }
    return value;
}

/// The page at an index.
inline PDF::Tools::Page pageOf(const Host::Ref<PDF::Document>& document, std::size_t index) {
    return PDF::Tools::Pages::of(document).value()[index];
}

/// What a page leads to by these keys.
inline AnyValue onPage(const Host::Ref<PDF::Document>& document, std::size_t page,
                       const std::vector<std::string>& path) {
    return at(document, pageOf(document, page).dictionary, path);
}

/// The data of a stream, decoded; what failed instead.
inline std::string decoded(const Host::Ref<PDF::Document>& document, const AnyValue& stream) {
    const auto bytes = PDF::Tools::decodedBytes(document, castTo<PDF::Stream>(stream));
    return bytes ? contentsOf(*bytes) : told(bytes);
}

/// All that a page draws, its streams parted by bars.
inline std::string drawn(const Host::Ref<PDF::Document>& document, std::size_t page) {
    const AnyValue contents = onPage(document, page, {"Contents"});
    const auto list = castTo<PDF::Array>(contents);
    if (!list) return contents ? decoded(document, contents) : "";
    std::string all;
    for (std::uint64_t index = 0; index < list->size(); ++index)
        all += (index == 0 ? "" : "|") + decoded(document, at(document, list->get(index), {}));
    return all;
}

} // namespace Support
