#include "Workbench/HostEditor/VariantJson.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <memory>

namespace workbench {

namespace {

using nlohmann::json;
using Value = std::unique_ptr<GVariant, decltype(&g_variant_unref)>;

json convert(GVariant* value);

Value child(GVariant* value, gsize index) {
    return {g_variant_get_child_value(value, index), &g_variant_unref};
}

json textOf(GVariant* value) {
    std::unique_ptr<char, decltype(&g_free)> const text{g_variant_print(value, FALSE), &g_free};
    return text.get();
}

json numberOf(double number, GVariant* value) {
    return std::isfinite(number) ? json(number) : textOf(value);
}

json arrayOf(GVariant* value) {
    auto array = json::array();
    for (gsize index = 0; index < g_variant_n_children(value); ++index)
        array.push_back(convert(child(value, index).get()));
    return array;
}

json objectOf(GVariant* value) {
    auto object = json::object();
    for (gsize index = 0; index < g_variant_n_children(value); ++index) {
        auto const entry = child(value, index);
        auto const key = child(entry.get(), 0);
        object[g_variant_get_string(key.get(), nullptr)] = convert(child(entry.get(), 1).get());
    }
    return object;
}

json scalarOf(GVariant* value) {
    switch (g_variant_classify(value)) {
    case G_VARIANT_CLASS_BOOLEAN:
        return g_variant_get_boolean(value) != 0;
    case G_VARIANT_CLASS_BYTE:
        return g_variant_get_byte(value);
    case G_VARIANT_CLASS_INT16:
        return g_variant_get_int16(value);
    case G_VARIANT_CLASS_UINT16:
        return g_variant_get_uint16(value);
    case G_VARIANT_CLASS_INT32:
        return g_variant_get_int32(value);
    case G_VARIANT_CLASS_UINT32:
        return g_variant_get_uint32(value);
    case G_VARIANT_CLASS_INT64:
        return g_variant_get_int64(value);
    case G_VARIANT_CLASS_UINT64:
        return g_variant_get_uint64(value);
    case G_VARIANT_CLASS_DOUBLE:
        return numberOf(g_variant_get_double(value), value);
    case G_VARIANT_CLASS_STRING:
    case G_VARIANT_CLASS_OBJECT_PATH:
        return g_variant_get_string(value, nullptr);
    case G_VARIANT_CLASS_SIGNATURE:
        return *g_variant_get_string(value, nullptr) ? textOf(value) : json();
    default:
        return textOf(value);
    }
}

json convert(GVariant* value) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_VARIANT))
        return convert(child(value, 0).get());
    if (g_variant_is_of_type(value, G_VARIANT_TYPE("a{s*}")))
        return objectOf(value);
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_ARRAY) ||
        g_variant_is_of_type(value, G_VARIANT_TYPE_TUPLE))
        return arrayOf(value);
    return scalarOf(value);
}

} // namespace

json jsonOf(Glib::VariantBase const& value) {
    return value.gobj() ? convert(const_cast<GVariant*>(value.gobj())) : json();
}

} // namespace workbench
