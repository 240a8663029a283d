#pragma once

#include <host/string.h>
#include <pdf/document.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Changes of a document that belong together: they are taken back when this goes, unless it was
/// told that all went well.
class Changes {
public:
    explicit Changes(Document& document) noexcept : document_(document) {}
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;
    ~Changes() { undo(); }

    /// Sets an entry, or takes it away where `value` is null. Throws `std::bad_alloc`; false with
    /// the code set where a dictionary of an application's own refuses.
    [[nodiscard]] bool set(const Ref<Dictionary>& dictionary, std::string_view key,
                           Ref<Value> value);
    /// Takes an entry away, if there is one.
    [[nodiscard]] bool drop(const Ref<Dictionary>& dictionary, std::string_view key);
    /// Has the entry go back to what it is now, whoever changes it. Throws `std::bad_alloc`.
    void remember(const Ref<Dictionary>& dictionary, std::string_view key);
    /// Has the next objects that others add go as well, so many at most. Throws `std::bad_alloc`;
    /// false with the code set where none can be added.
    [[nodiscard]] bool rememberObjects(std::uint32_t count);
    /// Adds an object; none after `rememberObjects`. Throws `std::bad_alloc`; null with the code
    /// set where the document cannot have one more.
    [[nodiscard]] Ref<Object> add(Ref<Value> value);
    void keep() noexcept;

private:
    struct Entry {
        Ref<Dictionary> dictionary;
        Ref<Host::String> key;
        Ref<Value> former;
    };

    const Entry& noted(const Ref<Dictionary>& dictionary, std::string_view key);
    void undo() noexcept;

    Document& document_;
    std::vector<Entry> entries_;
    std::vector<Ref<Object>> added_;
    std::vector<Ref<ObjectRef>> others_; ///< to objects that need not exist
};

} // namespace Libraries::Files::PDF::Tools
