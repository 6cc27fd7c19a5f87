#pragma once

#include <string_view>

#include <array>
#include <string>

namespace workbench {

// The lines of the document that a person can paste, about the workbench's own container and editor, by their
// beginnings. The tests run each as it stands there.
namespace line {

inline constexpr auto sendComment = std::string_view{"gdbus emit --session"};
inline constexpr auto getMarkersByBusctl = std::string_view{"busctl --user call"};
inline constexpr auto getMarkersByGdbus = std::string_view{
    "gdbus call --session --dest com.zelvix.fcp.Container --object-path /com/zelvix/fcp/Markers"};
inline constexpr auto watchMarkers =
    std::string_view{"gdbus monitor --session --dest com.zelvix.fcp.Container"};
inline constexpr auto import = std::string_view{
    "gdbus call --session --dest com.zelvix.fcp.Container --object-path /com/zelvix/fcp/Container"};
inline constexpr auto introspectByBusctl =
    std::string_view{"busctl --user introspect com.zelvix.fcp.Container"};
inline constexpr auto introspectByGdbus =
    std::string_view{"gdbus introspect --session --dest com.zelvix.fcp.Container"};
inline constexpr auto readStore = std::string_view{"sqlite3"};
inline constexpr auto askEditorByBusctl =
    std::string_view{"busctl --user get-property com.zelvix.fcp.Editor"};
inline constexpr auto askEditorByGdbus =
    std::string_view{"gdbus call --session --dest com.zelvix.fcp.Editor"};
inline constexpr auto introspectEditorByBusctl =
    std::string_view{"busctl --user introspect com.zelvix.fcp.Editor"};
inline constexpr auto introspectEditorByGdbus =
    std::string_view{"gdbus introspect --session --dest com.zelvix.fcp.Editor"};
inline constexpr auto watchEditor = std::string_view{"gdbus monitor --session --dest com.zelvix.fcp.Editor"};

inline constexpr std::array all{sendComment,
                                getMarkersByBusctl,
                                getMarkersByGdbus,
                                watchMarkers,
                                import,
                                introspectByBusctl,
                                introspectByGdbus,
                                readStore,
                                askEditorByBusctl,
                                askEditorByGdbus,
                                introspectEditorByBusctl,
                                introspectEditorByGdbus,
                                watchEditor};

} // namespace line

// The line that begins like this, without its indentation. A failure unless there is exactly one.
[[nodiscard]] std::string documentedLine(std::string_view beginning);

// How many lines of the part about the workbench's own programs run one of the programs that these run.
[[nodiscard]] std::size_t countDocumentedLines();

} // namespace workbench
