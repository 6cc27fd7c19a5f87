#include "benches/Harness/SideProcess.h"

#include <climits>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

namespace fcp::bench {

namespace {

std::string folderOfThisProgram() {
    GCharPtr const path(g_file_read_link("/proc/self/exe", nullptr));
    GCharPtr const folder(g_path_get_dirname(path ? path.get() : "."));
    return folder.get();
}

[[noreturn]] void fail(std::string const& name, char const* what, GError* error) {
    GErrorPtr const owned(error);
    throw std::runtime_error(name + " " + what + (error ? std::string(": ") + error->message : ""));
}

struct LineRead {
    bool done = false;
    GCharPtr line; // null at the end of the stream
};

void lineIsRead(GObject* stream, GAsyncResult* result, gpointer data) {
    auto& read = *static_cast<LineRead*>(data);
    auto* const input = G_DATA_INPUT_STREAM(stream);
    read.line.reset(g_data_input_stream_read_line_finish_utf8(input, result, nullptr, nullptr));
    read.done = true;
}

} // namespace

SideProcess::SideProcess(std::string const& program, std::vector<std::string> const& arguments, Pipes pipes)
    : name(program) {
    auto const path = folderOfThisProgram() + "/" + program;
    std::vector<char const*> words{path.c_str()};
    for (auto const& argument : arguments)
        words.push_back(argument.c_str());
    words.push_back(nullptr);
    constexpr auto both =
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE);
    auto const flags = pipes == Pipes::Both ? both : G_SUBPROCESS_FLAGS_NONE;
    GError* error = nullptr;
    process = GRef<GSubprocess>::adopt(g_subprocess_newv(words.data(), flags, &error));
    if (!process)
        fail(name, "did not start", error);
    if (pipes == Pipes::Both)
        output = GRef<GDataInputStream>::adopt(
            g_data_input_stream_new(g_subprocess_get_stdout_pipe(process.get())));
}

SideProcess::~SideProcess() {
    if (!process)
        return;
    g_subprocess_send_signal(process.get(), SIGTERM);
    g_subprocess_wait(process.get(), nullptr, nullptr);
}

pid_t SideProcess::pid() const {
    char const* const identifier = g_subprocess_get_identifier(process.get());
    return identifier ? std::atoi(identifier) : 0;
}

bool SideProcess::isRunning() const {
    return g_subprocess_get_identifier(process.get()) != nullptr;
}

void SideProcess::writeLine(std::string const& line) {
    auto const text = line + "\n";
    GError* error = nullptr;
    if (!g_output_stream_write_all(g_subprocess_get_stdin_pipe(process.get()), text.data(), text.size(),
                                   nullptr, nullptr, &error))
        fail(name, "cannot be written to", error);
}

std::string SideProcess::readLine() {
    LineRead read;
    g_data_input_stream_read_line_async(output.get(), G_PRIORITY_DEFAULT, nullptr, lineIsRead, &read);
    while (!read.done)
        g_main_context_iteration(nullptr, TRUE);
    if (!read.line)
        fail(name, "ended before it said what was asked for", nullptr);
    return read.line.get();
}

} // namespace fcp::bench
