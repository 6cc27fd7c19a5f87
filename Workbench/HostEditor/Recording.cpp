#include "Workbench/HostEditor/Recording.h"

#include "Workbench/HostEditor/VariantJson.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cmath>
#include <system_error>
#include <utility>

namespace workbench {

namespace {

using nlohmann::json;

double milliseconds(std::chrono::system_clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

json factsOf(SequenceFacts const& sequence) {
    return {{"key", sequence.key},
            {"name", sequence.name},
            {"rate", {sequence.rate.numerator, sequence.rate.denominator}},
            {"length", sequence.length}};
}

std::string lastError() {
    return std::system_category().message(errno);
}

} // namespace

std::variant<std::unique_ptr<Recording>, std::string> Recording::begin(std::filesystem::path const& file,
                                                                       Complain complain) {
    std::error_code error;
    if (std::filesystem::file_size(file, error) > 0 && !error)
        return "cannot record into " + file.string() + ": it holds something already; name another file";
    std::ofstream out{file, std::ios::binary | std::ios::trunc};
    if (!out)
        return "cannot record into " + file.string() + ": " + lastError();
    return std::unique_ptr<Recording>{new Recording{file, std::move(out), std::move(complain)}};
}

Recording::Recording(std::filesystem::path file, std::ofstream opened, Complain complain)
    : path(std::move(file))
    , out(std::move(opened))
    , tell(std::move(complain))
    , start(std::chrono::system_clock::now()) {
    add({{"by", "workbench"}, {"version", ZELVIX_VERSION}});
}

void Recording::filesOpened(std::vector<std::string> const& files) {
    add({{"by", "host"}, {"files", files}});
}

void Recording::sequenceChanged(std::optional<SequenceFacts> const& sequence) {
    add({{"by", "host"}, {"sequence", sequence ? factsOf(*sequence) : json()}});
}

void Recording::playheadMoved(std::int64_t frame) {
    add({{"by", "host"}, {"frame", frame}});
}

void Recording::channelSaid(std::string const& member, Glib::VariantContainerBase const& arguments) {
    add({{"by", "bus"}, {"notification", member}, {"arguments", jsonOf(arguments)}});
}

std::int64_t Recording::began() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(start.time_since_epoch()).count();
}

void Recording::keep(std::string const& lines) {
    if (!lines.empty())
        write(lines.ends_with('\n') ? lines : lines + '\n');
}

void Recording::add(json line) {
    line["at"] = std::round(milliseconds(std::chrono::system_clock::now() - start) * 10) / 10;
    // Names of files need not be Unicode.
    write(line.dump(-1, ' ', false, json::error_handler_t::replace) + '\n');
}

void Recording::write(std::string const& lines) {
    errno = 0;
    if (out << lines << std::flush; out || !tell)
        return;
    auto const complain = std::exchange(tell, {});
    complain("the recording in " + path.string() + " ends here: " + lastError());
}

} // namespace workbench
