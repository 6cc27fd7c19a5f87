#include "Workbench/ContainerApp/XmlText.h"

#include <glib.h>
#include <libxml/chvalid.h>
#include <libxml/xmlwriter.h>

#include <new>

namespace workbench {

namespace {

constexpr char const* replacement = "\xEF\xBF\xBD";

xmlChar const* xml(std::string const& text) {
    return reinterpret_cast<xmlChar const*>(text.c_str());
}

// The writer of the library writes whatever it is given.
std::string carried(std::string const& text) {
    auto result = std::string{};
    for (char const* at = text.c_str(); *at != '\0';) {
        char const* const next = g_utf8_find_next_char(at, nullptr);
        if (xmlIsCharQ(g_utf8_get_char(at)))
            result.append(at, next);
        else
            result += replacement;
        at = next;
    }
    return result;
}

// It fails only when there is no memory, as everything else does.
void check(int written) {
    if (written < 0)
        throw std::bad_alloc{};
}

} // namespace

struct XmlText::Parts {
    struct Free {
        void operator()(xmlBuffer* freed) const { xmlBufferFree(freed); }

        void operator()(xmlTextWriter* freed) const { xmlFreeTextWriter(freed); }
    };

    std::unique_ptr<xmlBuffer, Free> buffer{xmlBufferCreate()}; // outlives its writer
    std::unique_ptr<xmlTextWriter, Free> writer{xmlNewTextWriterMemory(buffer.get(), 0)};
};

XmlText::XmlText(std::string const& root, std::string const& doctype)
    : parts{std::make_unique<Parts>()} {
    if (!parts->writer)
        throw std::bad_alloc{};
    auto* const writer = parts->writer.get();
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, xml("  "));
    check(xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr));
    if (!doctype.empty())
        check(xmlTextWriterWriteDTD(writer, xml(doctype), nullptr, nullptr, nullptr));
    open(root);
}

XmlText::~XmlText() = default;

void XmlText::open(std::string const& element) {
    check(xmlTextWriterStartElement(parts->writer.get(), xml(element)));
}

void XmlText::attribute(std::string const& name, std::string const& value) {
    check(xmlTextWriterWriteAttribute(parts->writer.get(), xml(name), xml(carried(value))));
}

void XmlText::attribute(std::string const& name, std::int64_t value) {
    attribute(name, std::to_string(value));
}

void XmlText::text(std::string const& value) {
    check(xmlTextWriterWriteString(parts->writer.get(), xml(carried(value))));
}

void XmlText::close() {
    check(xmlTextWriterEndElement(parts->writer.get()));
}

std::string XmlText::take() {
    check(xmlTextWriterFlush(parts->writer.get()));
    auto const* const written = reinterpret_cast<char const*>(xmlBufferContent(parts->buffer.get()));
    auto text = std::string{written, static_cast<std::size_t>(xmlBufferLength(parts->buffer.get()))};
    xmlBufferEmpty(parts->buffer.get());
    return text;
}

std::string XmlText::finish() {
    check(xmlTextWriterEndDocument(parts->writer.get()));
    return take();
}

} // namespace workbench
