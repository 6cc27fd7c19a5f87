#include "Workbench/ContainerApp/CsvReader.h"

#include "Workbench/ContainerApp/CsvProtection.h"
#include "Workbench/ContainerApp/CsvTable.h"
#include "Workbench/ContainerApp/ImportError.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace workbench {

namespace {

enum class Column { Id, Timecode, Frame, Seconds, Duration, Author, Text, Resolved, Parent, Colour };

// Our own names, and what other programs call the same.
constexpr std::array<std::pair<std::string_view, Column>, 16> columnNames{{
    {"id", Column::Id},
    {"timecode", Column::Timecode},
    {"frame", Column::Frame},
    {"seconds", Column::Seconds},
    {"time", Column::Seconds},
    {"start", Column::Seconds},
    {"duration", Column::Duration},
    {"author", Column::Author},
    {"text", Column::Text},
    {"comment", Column::Text},
    {"body", Column::Text},
    {"resolved", Column::Resolved},
    {"completed", Column::Resolved},
    {"parent", Column::Parent},
    {"colour", Column::Colour},
    {"color", Column::Colour},
}};

std::string trimmedAndLower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) { return g_ascii_tolower(character); });
    auto const begin = text.find_first_not_of(' ');
    auto const end = text.find_last_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

using Columns = std::unordered_map<Column, std::size_t>;

Columns columnsOf(CsvRow const& names) {
    auto columns = Columns{};
    for (std::size_t place = 0; place < names.fields.size(); ++place) {
        auto const name = trimmedAndLower(names.fields[place]);
        auto const* const known =
            std::ranges::find(columnNames, name, [](auto const& each) { return each.first; });
        if (known == columnNames.end())
            continue;
        if (!columns.emplace(known->second, place).second)
            throw ImportError(names.line, "the column \"" + name + "\" stands there twice: remove one");
    }
    auto const hasTime = columns.contains(Column::Seconds) || columns.contains(Column::Frame) ||
                         columns.contains(Column::Timecode);
    if (!hasTime || !columns.contains(Column::Text))
        throw ImportError(names.line,
                          R"(the first line has to name the columns, "text" and one of "seconds", "frame" )"
                          R"(and "timecode" among them: add such a line, or the column that lacks)");
    return columns;
}

// One row, read by its columns.
class RowReader {
public:
    RowReader(CsvTable const& theTable, CsvRow const& theRow, Columns const& theColumns,
              std::optional<FrameCount> const& theCount)
        : table{theTable}
        , row{theRow}
        , columns{theColumns}
        , count{theCount} {
        auto const width = table.rows.front().fields.size();
        auto const isFilled = [](std::string const& field) { return !field.empty(); };
        if (row.fields.size() > width &&
            std::any_of(row.fields.begin() + static_cast<std::ptrdiff_t>(width), row.fields.end(), isFilled))
            throw fault("there are " + std::to_string(row.fields.size()) +
                        " fields, but the first line names " + std::to_string(width) +
                        " columns: put quotes around a text that holds the separator");
    }

    [[nodiscard]] ImportedComment read() const {
        auto comment = ImportedComment{};
        comment.line = row.line;
        comment.start = start();
        if (auto id = text(Column::Id); id && !id->empty())
            comment.id = std::move(id);
        comment.parentId = text(Column::Parent);
        comment.author = text(Column::Author);
        comment.text = text(Column::Text);
        comment.colour = text(Column::Colour);
        if (columns.contains(Column::Duration))
            comment.duration = number(Column::Duration, "12.5").value_or(0);
        if (columns.contains(Column::Resolved))
            comment.resolved = resolved();
        return comment;
    }

private:
    [[nodiscard]] ImportError fault(std::string const& sentence) const { return {row.line, sentence}; }

    [[nodiscard]] ImportError wrongField(Column column, std::string const& wanted) const {
        auto const& name = table.rows.front().fields[columns.at(column)];
        return fault("\"" + name + "\" is \"" + field(column) + "\", but it takes " + wanted);
    }

    // Empty without the column, and where a line ends before it.
    [[nodiscard]] std::string field(Column column) const {
        auto const place = columns.find(column);
        if (place == columns.end() || place->second >= row.fields.size())
            return {};
        return row.fields[place->second];
    }

    [[nodiscard]] std::optional<std::string> text(Column column) const {
        if (!columns.contains(column))
            return {};
        return unprotected(field(column));
    }

    // None for an empty field.
    [[nodiscard]] std::optional<double> number(Column column, std::string const& example) const {
        auto digits = trimmedAndLower(field(column));
        if (digits.empty())
            return {};
        // Where commas part whole from fraction, programs part fields with something else.
        if (table.separator != ',')
            std::ranges::replace(digits, ',', '.');
        auto value = 0.0;
        auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (error != std::errc{} || end != digits.data() + digits.size() || !std::isfinite(value) ||
            value < 0)
            throw wrongField(column, "a number from 0, as " + example);
        return value;
    }

    [[nodiscard]] bool resolved() const {
        auto const word = trimmedAndLower(field(Column::Resolved));
        if (word == "true" || word == "yes" || word == "1")
            return true;
        if (!word.empty() && word != "false" && word != "no" && word != "0")
            throw wrongField(Column::Resolved, "true or false");
        return false;
    }

    [[nodiscard]] double start() const {
        if (auto const seconds = number(Column::Seconds, "12.5"))
            return *seconds;
        if (auto const frame = number(Column::Frame, "299"))
            return timeOf(wholeFrame(*frame));
        auto const label = trimmedAndLower(field(Column::Timecode));
        if (label.empty())
            throw fault(R"(the comment has no time: fill in "seconds", "frame" or "timecode")");
        return timeOf(frameOf(label));
    }

    [[nodiscard]] std::int64_t wholeFrame(double frame) const {
        if (frame != std::floor(frame) || frame > 9.0e15)
            throw wrongField(Column::Frame, "a whole number, as 299");
        return static_cast<std::int64_t>(frame);
    }

    [[nodiscard]] std::int64_t frameOf(std::string const& label) const {
        auto const frame = frameOfLabel(label, knownCount());
        if (!frame)
            throw wrongField(Column::Timecode,
                             "a timecode of the sequence's rate, as " + timecode(0, *count));
        if (*frame < count->firstFrame)
            throw wrongField(Column::Timecode,
                             "none before the sequence's first one, " + timecode(0, *count));
        return *frame - count->firstFrame;
    }

    [[nodiscard]] double timeOf(std::int64_t frame) const { return secondsOf(frame, knownCount().rate); }

    [[nodiscard]] FrameCount const& knownCount() const {
        if (!count)
            throw fault("nobody knows the frame rate that the time counts in: open the sequence in the "
                        R"(editor, or fill in "seconds")");
        return *count;
    }

    CsvTable const& table;
    CsvRow const& row;
    Columns const& columns;
    std::optional<FrameCount> const& count;
};

} // namespace

std::vector<ImportedComment> readCsvComments(std::string_view text, std::optional<FrameCount> const& count) {
    auto const table = readCsv(text);
    auto const columns = columnsOf(table.rows.empty() ? CsvRow{} : table.rows.front());
    auto comments = std::vector<ImportedComment>{};
    for (auto const& row : table.rows)
        if (&row != &table.rows.front())
            comments.push_back(RowReader{table, row, columns, count}.read());
    return comments;
}

} // namespace workbench
