#include "Workbench/HostEditor/HostBridge.h"

#include <glib.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace workbench {

namespace {

using ObserverCall = void (fcp::FCPXTimelineObserver::*)();

// A sequence as it was when it was asked for.
class SequenceAnswer final : public fcp::FCPXSequence {
public:
    explicit SequenceAnswer(std::shared_ptr<SequenceFacts const> sequence)
        : facts(std::move(sequence)) {}

    [[nodiscard]] std::optional<std::string> name() const override { return facts->name; }

    [[nodiscard]] fcp::CMTime duration() const override { return timeOfFrame(facts->length, facts->rate); }

    [[nodiscard]] fcp::CMTime frameDuration() const override { return timeOfFrame(1, facts->rate); }

    [[nodiscard]] fcp::CMTime start() const override { return timeOfFrame(0, facts->rate); }

private:
    std::shared_ptr<SequenceFacts const> facts;
};

void runLater(std::function<void()> task) {
    using Task = std::function<void()>;
    g_idle_add_full(
        G_PRIORITY_DEFAULT,
        [](gpointer data) -> gboolean {
            (*static_cast<Task*>(data))();
            return G_SOURCE_REMOVE;
        },
        new Task(std::move(task)), [](gpointer data) { delete static_cast<Task*>(data); });
}

} // namespace

class HostBridge::Timeline final : public fcp::FCPXTimeline, public std::enable_shared_from_this<Timeline> {
public:
    void setState(std::shared_ptr<SequenceFacts const> sequence, std::int64_t position) {
        std::lock_guard const lock{access};
        facts = std::move(sequence);
        frame = position;
    }

    void setFrame(std::int64_t position) {
        std::lock_guard const lock{access};
        frame = position;
    }

    void onMove(Move callback) { move = std::move(callback); }

    void onObserved(std::function<void()> callback) { observed = std::move(callback); }

    [[nodiscard]] bool isObserved() const {
        std::lock_guard const lock{access};
        return !observers.empty();
    }

    // Without the lock: an observer asks from inside the call, and may remove itself there.
    void tellObservers(ObserverCall call) const {
        std::vector<std::shared_ptr<fcp::FCPXTimelineObserver>> told;
        {
            std::lock_guard const lock{access};
            told = observers;
        }
        for (auto const& observer : told)
            ((*observer).*call)();
    }

    [[nodiscard]] fcp::CMTime playheadTime() const override {
        std::lock_guard const lock{access};
        return timeOfFrame(facts ? frame : 0, facts ? facts->rate : FrameRate{});
    }

    void movePlayheadTo(fcp::CMTime time) override {
        // Not by asking who owns the main loop: between two of its turns nobody does.
        if (std::this_thread::get_id() == mainThread) {
            moveTo(time);
            return;
        }
        runLater([weak = weak_from_this(), time] {
            if (auto const self = weak.lock())
                self->moveTo(time);
        });
    }

    [[nodiscard]] std::shared_ptr<fcp::FCPXSequence> activeSequence() const override {
        std::lock_guard const lock{access};
        return facts ? std::make_shared<SequenceAnswer>(facts) : nullptr;
    }

    void add(std::shared_ptr<fcp::FCPXTimelineObserver> observer) override {
        {
            std::lock_guard const lock{access};
            if (observer && std::ranges::find(observers, observer) == observers.end())
                observers.push_back(std::move(observer));
        }
        tellObserved();
    }

    void remove(std::shared_ptr<fcp::FCPXTimelineObserver> observer) override {
        {
            std::lock_guard const lock{access};
            std::erase(observers, observer);
        }
        tellObserved();
    }

private:
    // Observers come and go on any thread.
    void tellObserved() {
        runLater([weak = weak_from_this()] {
            auto const self = weak.lock();
            if (self && self->observed)
                self->observed();
        });
    }

    void moveTo(fcp::CMTime const& time) const {
        std::unique_lock lock{access};
        auto const target = facts ? frameAt(time, facts->rate, facts->length) : std::nullopt;
        lock.unlock();
        if (target && move)
            move(*target);
    }

    mutable std::mutex access; // guards the next three: the panel asks on the thread that it is told on
    std::shared_ptr<SequenceFacts const> facts;
    std::int64_t frame = 0;
    std::vector<std::shared_ptr<fcp::FCPXTimelineObserver>> observers;
    Move move;
    std::function<void()> observed;
    std::thread::id const mainThread = std::this_thread::get_id();
};

// Tells observers from a thread of its own, in the order in which it was asked to.
class HostBridge::Messenger final {
public:
    explicit Messenger(std::shared_ptr<Timeline const> timeline)
        : line(std::move(timeline))
        , thread([this](std::stop_token const& stop) { run(stop); }) {}

    void post(ObserverCall call) {
        {
            std::lock_guard const lock{access};
            queue.push_back(call);
        }
        news.notify_one();
    }

private:
    void run(std::stop_token const& stop) {
        std::unique_lock lock{access};
        while (news.wait(lock, stop, [this] { return !queue.empty(); }) && !stop.stop_requested()) {
            auto const call = queue.front();
            queue.pop_front();
            lock.unlock();
            line->tellObservers(call);
            lock.lock();
        }
    }

    std::shared_ptr<Timeline const> line;
    std::mutex access; // guards `queue`
    std::condition_variable_any news;
    std::deque<ObserverCall> queue;
    std::jthread thread; // last: it uses the others
};

HostBridge::HostBridge(Delivery delivery)
    : line(std::make_shared<Timeline>()) {
    if (delivery == Delivery::OwnThread)
        messenger = std::make_unique<Messenger>(line);
}

HostBridge::~HostBridge() = default;

void HostBridge::onMove(Move move) {
    line->onMove(std::move(move));
}

void HostBridge::setActive(std::optional<SequenceFacts> sequence, std::int64_t frame) {
    auto facts = sequence ? std::make_shared<SequenceFacts const>(*std::move(sequence)) : nullptr;
    line->setState(std::move(facts), frame);
    tell(&fcp::FCPXTimelineObserver::activeSequenceChanged);
    tell(&fcp::FCPXTimelineObserver::playheadTimeChanged);
}

void HostBridge::setFrame(std::int64_t frame) {
    line->setFrame(frame);
    tell(&fcp::FCPXTimelineObserver::playheadTimeChanged);
}

void HostBridge::close() {
    isClosed = true;
    messenger.reset();
    line->onMove({});
    line->onObserved({});
}

bool HostBridge::isObserved() const {
    return line->isObserved();
}

void HostBridge::onObserved(std::function<void()> changed) {
    line->onObserved(std::move(changed));
}

std::shared_ptr<fcp::FCPXTimeline> HostBridge::timeline() const {
    return line;
}

void HostBridge::tell(void (fcp::FCPXTimelineObserver::*call)()) {
    if (isClosed)
        return;
    if (messenger)
        messenger->post(call);
    else
        line->tellObservers(call);
}

} // namespace workbench
