#pragma once

#include "Platform/Gtk/GRef.h"

#include <gio/gio.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace fcp::test {

// What a client gets: these bytes, and then what becomes of the connection. A stalled one stays open until
// the test ends it.
struct ServerAnswer {
    enum class Then { Close, Reset, Stall };

    std::string bytes;
    Then then = Then::Close;
};

// A whole answer of HTTP with a body.
[[nodiscard]] ServerAnswer
pageAnswer(std::string const& body, std::string const& status = "200 OK",
           std::string const& headers = "Content-Type: text/html; charset=utf-8\r\n");

// The beginning of a page that is announced to be longer.
[[nodiscard]] ServerAnswer cutAnswer(std::string const& body, ServerAnswer::Then then);

[[nodiscard]] ServerAnswer redirectAnswer(std::string const& location);

// An HTTP server on the loopback interface that treats its clients as servers do on bad days. It accepts on
// the main loop of its maker, serves each connection on a thread of its own, and wakes the default
// main loop when there is something new to see.
class MisbehavingServer {
public:
    enum class Transport { Plain, SelfSignedTls };

    // Takes a free port.
    explicit MisbehavingServer(Transport transport = Transport::Plain);

    // Ends every connection and waits for its thread.
    ~MisbehavingServer();

    MisbehavingServer(MisbehavingServer const&) = delete;
    MisbehavingServer& operator=(MisbehavingServer const&) = delete;

    // Under this path, without regard to a query. Every other path is a page that says "nothing", with status
    // 404.
    void answer(std::string const& path, ServerAnswer newAnswer);

    [[nodiscard]] std::uint16_t port() const { return boundPort; }

    // By the name "localhost" unless another one for the same interface is given.
    [[nodiscard]] std::string url(std::string const& path, std::string const& host = "localhost") const;

    // The paths asked for so far, with their queries.
    [[nodiscard]] std::vector<std::string> requests() const;

    [[nodiscard]] std::size_t stalled() const;

    // Sends more to the connections that are stalled at this moment.
    void feedStalled(std::string const& bytes);

    // Ends them.
    void endStalled(ServerAnswer::Then how);

    // A port on which nobody listens.
    [[nodiscard]] static std::uint16_t closedPort();

private:
    static gboolean accept(GSocketService* service, GSocketConnection* connection, GObject* source,
                           gpointer self);
    static gboolean run(GThreadedSocketService* service, GSocketConnection* connection, GObject* source,
                        gpointer self);
    void serve(GSocketConnection* connection);
    void converse(GIOStream* stream, GSocket* socket);
    [[nodiscard]] ServerAnswer answerTo(std::string const& request);
    [[nodiscard]] ServerAnswer waitForOrder();
    void giveOrder(ServerAnswer newOrder);
    [[nodiscard]] GRef<GIOStream> secured(GSocketConnection* connection) const;

    Transport const transport;
    GRef<GSocketService> const service;
    GRef<GCancellable> const stopping;
    std::uint16_t boundPort = 0;

    // What the threads of the connections share with the test.
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::map<std::string, ServerAnswer> answers;
    std::vector<std::string> paths;
    std::size_t running = 0;
    std::size_t waiting = 0;
    unsigned round = 0; // counts the orders
    ServerAnswer order; // the latest, for every connection that is stalled
};

} // namespace fcp::test
