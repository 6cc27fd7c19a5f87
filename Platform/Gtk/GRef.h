#pragma once

#include <gio/gio.h>
#include <glib-object.h>

#include <concepts>
#include <memory>
#include <utility>

namespace fcp {

// How references to a counted type of the C libraries are taken and given back. The general case is an
// object of the GObject system; a type with counting functions of its own has a specialisation.
template <typename T>
struct GRefTraits {
    static void retain(T* object) { g_object_ref_sink(object); }

    static void release(T* object) { g_object_unref(object); }
};

template <>
struct GRefTraits<GBytes> {
    static void retain(GBytes* bytes) { g_bytes_ref(bytes); }

    static void release(GBytes* bytes) { g_bytes_unref(bytes); }
};

template <>
struct GRefTraits<GMainContext> {
    static void retain(GMainContext* context) { g_main_context_ref(context); }

    static void release(GMainContext* context) { g_main_context_unref(context); }
};

template <>
struct GRefTraits<GSource> {
    static void retain(GSource* source) { g_source_ref(source); }

    static void release(GSource* source) { g_source_unref(source); }
};

template <>
struct GRefTraits<GUri> {
    static void retain(GUri* uri) { g_uri_ref(uri); }

    static void release(GUri* uri) { g_uri_unref(uri); }
};

// Owns one reference to an object of the C libraries, or nothing. There are two named ways in, so that every
// call says whose reference it is. As thread-safe as the object's own counting.
template <typename T>
class GRef {
public:
    GRef() = default;

    GRef(GRef const& other)
        : GRef(retain(other.object)) {}

    GRef(GRef&& other) noexcept
        : object(std::exchange(other.object, nullptr)) {}

    ~GRef() {
        if (object)
            GRefTraits<T>::release(object);
    }

    GRef& operator=(GRef other) noexcept {
        std::swap(object, other.object);
        return *this;
    }

    // For a reference that the caller was given ("transfer full"). Never for a floating one: retain that.
    [[nodiscard]] static GRef adopt(T* object) { return GRef(object); }

    // Adds a reference ("transfer none"), or takes over a floating one, as a new widget's is.
    [[nodiscard]] static GRef retain(T* object) {
        if (object)
            GRefTraits<T>::retain(object);
        return GRef(object);
    }

    [[nodiscard]] T* get() const { return object; }

    [[nodiscard]] T* operator->() const { return object; }

    [[nodiscard]] explicit operator bool() const { return object != nullptr; }

    // Gives the reference away to a function that takes one ("transfer full").
    [[nodiscard]] T* release() { return std::exchange(object, nullptr); }

    void reset() { *this = GRef(); }

    [[nodiscard]] bool operator==(GRef const&) const = default;

private:
    explicit GRef(T* owned)
        : object(owned) {}

    T* object = nullptr;
};

// Gives plain memory of the C libraries back with the function that belongs to its type.
struct GDeleter {
    void operator()(GError* error) const { g_error_free(error); }

    template <typename T>
        requires std::same_as<T, char> || std::same_as<T, void>
    void operator()(T* memory) const {
        g_free(memory);
    }
};

using GCharPtr = std::unique_ptr<char, GDeleter>;
using GErrorPtr = std::unique_ptr<GError, GDeleter>;

} // namespace fcp
