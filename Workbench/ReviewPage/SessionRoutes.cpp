#include "Workbench/ReviewPage/SessionRoutes.h"

#include "Platform/Gtk/GRef.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

namespace workbench {

namespace {

constexpr std::string_view LinesPath = "/fcp-panel/session/lines";
constexpr std::string_view RecordingPath = "/fcp-panel/session/recording";
constexpr std::string_view PlayheadPath = "/fcp-panel/session/playhead";
constexpr std::string_view SequencePath = "/fcp-panel/session/sequence";
constexpr std::string_view ReportPath = "/fcp-panel/session/report";
constexpr goffset LargestBody = 64 << 20; // bytes: a list of 100,000 comments is a third of it

std::string_view header(SoupServerMessage* message, char const* name) {
    auto const* const value =
        soup_message_headers_get_list(soup_server_message_get_request_headers(message), name);
    return value ? value : "";
}

std::string bodyOf(SoupServerMessage* message) {
    auto const bytes =
        fcp::GRef<GBytes>::adopt(soup_message_body_flatten(soup_server_message_get_request_body(message)));
    gsize size = 0;
    auto const* const data = static_cast<char const*>(g_bytes_get_data(bytes.get(), &size));
    return {data ? data : "", size};
}

std::optional<double> secondsIn(std::string const& text) {
    double seconds = 0;
    auto const* const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, seconds);
    bool const isNumber = error == std::errc{} && stop == end && std::isfinite(seconds);
    return isNumber ? std::optional{seconds} : std::nullopt;
}

SoupStatus tell(ReplayDesk& desk, std::string_view path, std::string const& body) {
    if (path == SequencePath) {
        desk.activate(body);
    } else if (path == ReportPath) {
        desk.report(body);
    } else {
        auto const seconds = secondsIn(body);
        if (!seconds)
            return SOUP_STATUS_BAD_REQUEST;
        desk.movePlayhead(*seconds);
    }
    return SOUP_STATUS_NO_CONTENT;
}

void sendRecording(SoupServerMessage* message, std::string const& text) {
    soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    soup_server_message_set_response(message, "application/jsonl", SOUP_MEMORY_COPY, text.data(),
                                     text.size());
}

} // namespace

std::string SessionRoutes::task() const {
    if (std::holds_alternative<ReplayDesk*>(desk))
        return R"({"mode":"replay"})";
    if (auto const* const recorder = std::get_if<RecordingDesk*>(&desk))
        return R"({"mode":"record","began":)" + std::to_string((*recorder)->began()) + "}";
    return {};
}

bool SessionRoutes::takesPosts(std::string_view path) const {
    if (std::holds_alternative<RecordingDesk*>(desk))
        return path == LinesPath;
    return std::holds_alternative<ReplayDesk*>(desk) &&
           (path == PlayheadPath || path == SequencePath || path == ReportPath);
}

SoupStatus SessionRoutes::verdictOnPost(SoupServerMessage* message, std::string_view path,
                                        std::string_view ownHost) const {
    if (!takesPosts(path))
        return SOUP_STATUS_METHOD_NOT_ALLOWED;
    if (header(message, "Origin") != "http://" + std::string{ownHost})
        return SOUP_STATUS_FORBIDDEN;
    auto* const headers = soup_server_message_get_request_headers(message);
    if (soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CONTENT_LENGTH)
        return SOUP_STATUS_LENGTH_REQUIRED;
    return soup_message_headers_get_content_length(headers) > LargestBody
               ? SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE
               : SOUP_STATUS_OK;
}

bool SessionRoutes::answer(SoupServerMessage* message, std::string_view path) const {
    std::string_view const method = soup_server_message_get_method(message);
    auto const* const player = std::get_if<ReplayDesk*>(&desk);
    if (method == "POST" && takesPosts(path)) {
        auto const body = bodyOf(message);
        auto status = SOUP_STATUS_NO_CONTENT;
        if (player)
            status = tell(**player, path, body);
        else
            std::get<RecordingDesk*>(desk)->keep(body);
        soup_server_message_set_status(message, status, nullptr);
        return true;
    }
    if (method == "POST" || !player || path != RecordingPath)
        return false;
    sendRecording(message, (*player)->recording());
    return true;
}

} // namespace workbench
