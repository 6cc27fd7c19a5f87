#include "Workbench/ContainerApp/CsvTable.h"

#include "Workbench/ContainerApp/ImportError.h"

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view separators = ",;\t";

char separatorOf(std::string_view text) {
    auto const firstLine = text.substr(0, text.find('\n'));
    return *std::ranges::max_element(
        separators, {}, [firstLine](char separator) { return std::ranges::count(firstLine, separator); });
}

// Walks once over a text, which it does not keep.
class Scanner {
public:
    Scanner(std::string_view theText, char theSeparator)
        : text{theText}
        , separator{theSeparator} {}

    [[nodiscard]] bool isAtEnd() const { return at == text.size(); }

    CsvRow takeRow() {
        auto row = CsvRow{.line = line, .fields = {}};
        row.fields.push_back(takeField());
        while (!isAtEnd() && text[at] == separator) {
            ++at;
            row.fields.push_back(takeField());
        }
        takeLineEnd();
        return row;
    }

private:
    // A CR alone ends no line: it may stand in a text that was not quoted.
    [[nodiscard]] bool isAtLineEnd() const {
        auto const rest = text.substr(at);
        return rest.empty() || rest.front() == '\n' || rest.starts_with("\r\n") || rest == "\r";
    }

    std::string takeField() {
        if (!isAtEnd() && text[at] == '"')
            return takeQuoted();
        auto const begin = at;
        while (!isAtLineEnd() && text[at] != separator)
            ++at;
        return std::string{text.substr(begin, at - begin)};
    }

    std::string takeQuoted() {
        auto const opened = line;
        auto field = std::string{};
        for (++at; !isAtEnd(); ++at) {
            if (text[at] == '"' && !text.substr(at + 1).starts_with('"')) {
                ++at;
                checkBehindQuote();
                return field;
            }
            at += text[at] == '"' ? 1 : 0;
            line += text[at] == '\n' ? 1 : 0;
            field += text[at];
        }
        throw ImportError(opened, "a quote opens here and never closes: close it, or write a quote within a "
                                  "text twice");
    }

    void checkBehindQuote() const {
        if (!isAtLineEnd() && text[at] != separator)
            throw ImportError(line, "there is text behind a closing quote: put quotes around the whole "
                                    "field, and write a quote within it twice");
    }

    void takeLineEnd() {
        if (!isAtEnd())
            at = std::min(text.find('\n', at), text.size() - 1) + 1;
        ++line;
    }

    std::string_view text;
    char separator;
    std::size_t at = 0;
    std::size_t line = 1;
};

} // namespace

CsvTable readCsv(std::string_view text) {
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    auto table = CsvTable{.separator = separatorOf(text), .rows = {}};
    auto scanner = Scanner{text, table.separator};
    while (!scanner.isAtEnd()) {
        auto row = scanner.takeRow();
        if (row.fields.size() > 1 || !row.fields.front().empty())
            table.rows.push_back(std::move(row));
    }
    return table;
}

} // namespace workbench
