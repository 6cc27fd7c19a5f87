#include "Workbench/HostEditor/ProjectFile.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

namespace workbench {

namespace {

struct XmlFree {
    void operator()(xmlChar* text) const { xmlFree(text); }

    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }

    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};

using XmlText = std::unique_ptr<xmlChar, XmlFree>;
using XmlDocument = std::unique_ptr<xmlDoc, XmlFree>;

xmlChar const* xml(char const* text) {
    return reinterpret_cast<xmlChar const*>(text);
}

std::string plain(XmlText const& text) {
    return text ? reinterpret_cast<char const*>(text.get()) : std::string{};
}

std::string attribute(xmlNode* node, char const* name) {
    return plain(XmlText{xmlGetProp(node, xml(name))});
}

bool isElement(xmlNode const* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE && reinterpret_cast<char const*>(node->name) == name;
}

std::string property(xmlNode* node, std::string_view name) {
    for (auto* child = node->children; child; child = child->next)
        if (isElement(child, "property") && attribute(child, "name") == name)
            return plain(XmlText{xmlNodeGetContent(child)});
    return {};
}

template <typename Visit>
void forEachElement(xmlNode* parent, Visit const& visit) {
    for (auto* node = parent->children; node; node = node->next)
        if (node->type == XML_ELEMENT_NODE)
            visit(node);
}

// Both kinds of element that stand for media, at any depth; the parser bounds the depth.
template <typename Visit>
void forEachSource(xmlNode* parent, Visit const& visit) {
    forEachElement(parent, [&](xmlNode* node) {
        if (isElement(node, "producer") || isElement(node, "chain"))
            visit(node);
        forEachSource(node, visit);
    });
}

// The file that a source reads, or nothing when it reads none that could be looked for.
std::string fileOf(xmlNode* source) {
    auto const service = property(source, "mlt_service");
    if (service == "timewarp")
        return property(source, "warp_resource");
    static constexpr std::array<std::string_view, 4> readers = {"avformat", "avformat-novalidate", "pixbuf",
                                                                "qimage"};
    if (std::ranges::find(readers, service) == readers.end())
        return {};
    auto const resource = property(source, "resource");
    // An address, or a pattern that stands for many files.
    auto const isOther = resource.find("://") != std::string::npos ||
                         resource.find_first_of("%?*") != std::string::npos ||
                         resource.find("/.all.") != std::string::npos;
    return isOther ? std::string{} : resource;
}

std::string describe(xmlError const& error) {
    std::string message = error.message ? error.message : "unreadable";
    message.erase(message.find_last_not_of(" \r\n") + 1);
    return "the project's text is damaged in line " + std::to_string(error.line) + ": " + message;
}

// Null, with the first complaint in `problem`: the others follow from it.
XmlDocument parse(std::filesystem::path const& path, std::string& problem) {
    std::unique_ptr<xmlParserCtxt, XmlFree> const parser{xmlNewParserCtxt()};
    parser->_private = &problem;
    parser->sax->serror = [](void* data, auto* error) {
        auto& first = *static_cast<std::string*>(static_cast<xmlParserCtxt*>(data)->_private);
        if (first.empty())
            first = describe(*error);
    };
    auto const options = XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    return XmlDocument{xmlCtxtReadFile(parser.get(), path.c_str(), nullptr, options)};
}

std::int64_t wholeNumber(nlohmann::json const& object, char const* key) {
    auto const found = object.find(key);
    return found != object.end() && found->is_number_integer() ? found->get<std::int64_t>() : 0;
}

} // namespace

struct ProjectFile::Document {
    XmlDocument xml;
    std::filesystem::path folder; // that relative names begin at

    [[nodiscard]] xmlNode* root() const { return xmlDocGetRootElement(xml.get()); }
};

ProjectFile::ProjectFile(std::unique_ptr<Document> content)
    : document(std::move(content)) {}

ProjectFile::ProjectFile(ProjectFile&&) noexcept = default;
ProjectFile& ProjectFile::operator=(ProjectFile&&) noexcept = default;
ProjectFile::~ProjectFile() = default;

bool ProjectFile::isProject(std::filesystem::path const& path) {
    auto const suffix = path.extension();
    if (suffix == ".mlt" || suffix == ".kdenlive")
        return true;
    std::string beginning(512, '\0');
    std::ifstream stream{path, std::ios::binary};
    stream.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return beginning.find("<mlt") != std::string::npos;
}

std::variant<ProjectFile, std::string> ProjectFile::read(std::filesystem::path const& path) {
    auto content = std::make_unique<Document>();
    std::string problem;
    content->xml = parse(path, problem);
    if (!content->xml || !content->root())
        return problem;
    auto* const root = content->root();
    if (!isElement(root, "mlt"))
        return "it is no project: its text begins with another element";
    auto const folder = std::filesystem::absolute(path).parent_path();
    content->folder = folder / attribute(root, "root");
    xmlSetProp(root, xml("root"), xml(content->folder.c_str()));
    return ProjectFile{std::move(content)};
}

std::string ProjectFile::title() const {
    return attribute(document->root(), "title");
}

std::vector<ProjectFile::Entry> ProjectFile::sequences() const {
    std::vector<Entry> entries;
    forEachElement(document->root(), [&](xmlNode* node) {
        if (!isElement(node, "tractor"))
            return;
        auto uuid = property(node, "kdenlive:uuid");
        if (!uuid.empty() && !attribute(node, "id").empty())
            entries.push_back({attribute(node, "id"), std::move(uuid), property(node, "kdenlive:clipname"),
                               property(node, "kdenlive:sequenceproperties.guides")});
    });
    return entries;
}

std::string ProjectFile::activeUuid() const {
    std::string uuid;
    forEachElement(document->root(), [&](xmlNode* node) {
        if (isElement(node, "playlist") && uuid.empty())
            uuid = property(node, "kdenlive:docproperties.activetimeline");
    });
    return uuid;
}

std::string ProjectFile::textShowing(Entry const& entry) const {
    XmlDocument const copy{xmlCopyDoc(document->xml.get(), 1)};
    auto* const root = xmlDocGetRootElement(copy.get());
    std::string out;
    xmlNode* wholeProject = nullptr;
    forEachElement(root, [&](xmlNode* node) {
        if (attribute(node, "id") == entry.id)
            out = attribute(node, "out");
        if (property(node, "kdenlive:projectTractor") == "1")
            wholeProject = node;
    });
    if (wholeProject) {
        xmlUnlinkNode(wholeProject);
        xmlFreeNode(wholeProject);
    }
    // The engine opens the last element. The sequence itself has a background track that is hours long.
    auto* const view = xmlNewChild(root, nullptr, xml("tractor"), nullptr);
    auto* const track = xmlNewChild(view, nullptr, xml("track"), nullptr);
    xmlSetProp(view, xml("id"), xml("zelvix-view"));
    xmlSetProp(track, xml("producer"), xml(entry.id.c_str()));
    for (auto* const node : {view, track}) {
        xmlSetProp(node, xml("in"), xml("0"));
        xmlSetProp(node, xml("out"), xml(out.c_str()));
    }
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpMemory(copy.get(), &text, &size);
    return plain(XmlText{text});
}

std::vector<std::string> ProjectFile::missingMedia() const {
    std::vector<std::string> missing;
    forEachSource(document->root(), [&](xmlNode* source) {
        auto const file = fileOf(source);
        std::error_code error;
        if (file.empty() || std::filesystem::exists(document->folder / file, error))
            return;
        if (std::ranges::find(missing, file) == missing.end())
            missing.push_back(file);
    });
    return missing;
}

int ProjectFile::undrawnTitles() const {
    int count = 0;
    forEachSource(document->root(), [&](xmlNode* source) {
        auto const service = property(source, "mlt_service");
        if (service == "kdenlivetitle" || service == "qtext")
            ++count;
    });
    return count;
}

std::vector<Mark> readGuides(std::string const& text) {
    std::vector<Mark> marks;
    auto const guides = nlohmann::json::parse(text, nullptr, false);
    if (!guides.is_array())
        return marks;
    for (auto const& guide : guides) {
        auto const position = guide.is_object() ? guide.find("pos") : guide.end();
        if (!guide.is_object() || position == guide.end() || !position->is_number_integer())
            continue;
        auto const comment = guide.find("comment");
        auto const isText = comment != guide.end() && comment->is_string();
        marks.push_back({position->get<std::int64_t>(),
                         std::max<std::int64_t>(wholeNumber(guide, "duration"), 0),
                         isText ? comment->get<std::string>() : std::string{}});
    }
    return marks;
}

} // namespace workbench
