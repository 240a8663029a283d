#pragma once

#include <host/string.h>
#include <pdf/document.h>

#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Changes of a document that belong together: they are taken back when this goes, unless it was
/// told that all went well. What cannot be done fails.
class Changes {
public:
    explicit Changes(Document& document) noexcept : document_(document) {}
    Changes(const Changes&) = delete;
    Changes& operator=(const Changes&) = delete;
    ~Changes() { undo(); }

    [[nodiscard]] Document& document() const noexcept { return document_; }

    /// Sets an entry, or takes it away where `value` is null.
    void set(const Ref<Dictionary>& dictionary, std::string_view key, Ref<Value> value);
    /// The same unless it is equal already.
    void setUnlessEqual(const Ref<Dictionary>& dictionary, std::string_view key,
                        const Ref<Value>& value);
    /// Takes an entry away, if there is one.
    void drop(const Ref<Dictionary>& dictionary, std::string_view key);
    /// Has the entry go back to what it is now, whoever changes it.
    void remember(const Ref<Dictionary>& dictionary, std::string_view key);
    /// Adds an object.
    Ref<Object> addObject(Ref<Value> value);
    /// The same, and gives the reference to it.
    Ref<ObjectRef> add(Ref<Value> value);
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
};

} // namespace Libraries::Files::PDF::Tools
