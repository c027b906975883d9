#include "platform/linux/x11/clipboard/clipboard_keeper.h"

#include "platform/keeping/pasteboard_keeping.h"
#include "platform/linux/process/monotonic_clock.h"
#include "platform/linux/x11/clipboard/clipboard_exclusion.h"
#include "platform/linux/x11/clipboard/clipboard_server.h"
#include "platform/linux/x11/clipboard/kept_contents.h"
#include "platform/linux/x11/window_identity.h"
#include "platform/linux/x11/x11_properties.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <utility>

namespace lomaris {

namespace {

using Kind = KeeperMessage::Kind;
using keeping::Owner;

/// The timeout for connecting to the X server, in seconds. A server that hangs for longer ends the keeper (SIGALRM).
constexpr unsigned longestConnecting = 10;

/// How often stalled transfers are checked for, if only transfers keep the keeper from ending.
constexpr Duration stallCheck = std::chrono::seconds(10);

class ClipboardKeeper {
public:
    explicit ClipboardKeeper(FileDescriptor channel) : channel_(std::move(channel)) {}

    void run() {
        alarm(longestConnecting);
        const bool isOpen = session_.open([this](const xcb_generic_event_t& event) { handle(event); });
        alarm(0);
        if (!isOpen) {
            return;
        }
        while (session_.isAlive()) {
            // Messages before the events of the server, so that a copy is announced before its owner change is handled.
            receiveMessages();
            serve();
            decideOnOwners();
            if (std::exchange(wasTextRead_, false)) {
                decide(keeping::event::TextRead());
            }
            if (std::exchange(isPartnerGone_, false)) {
                decide(keeping::event::PartnerGone());
            }
            if (wakeAt_ && monotonicNow() >= *wakeAt_) {
                decide(keeping::event::TimePassed());
            }
            if (isOver()) {
                return;
            }
            awaitInput();
        }
    }

private:
    void handle(const xcb_generic_event_t& event) {
        ownership_.handle(event);
        server_.handle(event);
        if (session_.isOwnerChange(event)) {
            const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
            if (change.selection == session_.names().clipboard) {
                owners_.push_back(change.owner);
            }
        }
    }

    void serve() {
        session_.pump();
        do {
            server_.serve();
        } while (session_.flush());
    }

    void receiveMessages() {
        while (channel_.isOpen()) {
            auto received = channel_.receive();
            if (received) {
                obey(received->message, std::move(received->file));
                continue;
            }
            if (!channel_.isOpen()) {
                // Events that the server sent before the end of the partner come first.
                session_.settle();
                isPartnerGone_ = true;
            }
            return;
        }
    }

    void obey(const KeeperMessage& message, FileDescriptor file) {
        switch (message.kind) {
            case Kind::began:
                decide(keeping::event::Began());
                break;
            case Kind::protect:
                saved_ = std::move(file);
                decide(keeping::event::Protected());
                confirm(message.serial, true);
                break;
            case Kind::publish:
                publish(message, file);
                break;
            case Kind::copyExpected:
                findTarget(message.process);
                decide(keeping::event::CopyExpected{Duration(message.firstWait)});
                break;
            case Kind::pasteExpected:
                decide(keeping::event::PasteExpected{Duration(message.firstWait), Duration(message.secondWait)});
                break;
            case Kind::ended:
                decide(keeping::event::Ended());
                break;
            case Kind::confirmed:
            case Kind::textRead:
                break;
        }
    }

    void publish(const KeeperMessage& message, const FileDescriptor& file) {
        auto targets = readKeptTargets(file);
        // Events up to now concern the previous contents.
        session_.settle();
        decideOnOwners();
        wasTextRead_ = false;
        // After the deadline the partner counts the publication as failed, and may have published by itself.
        const bool isPossible = targets && monotonicNow() < Moment(message.deadline);
        if (isPossible && take(std::move(*targets), message.serial)) {
            decide(keeping::event::Published());
        }
        decideOnOwners();
        // Confirmed even if another program has become the owner since: the partner gets that from the server's events.
        confirm(message.serial, isPossible && session_.isAlive());
    }

    /// Becomes the owner of the clipboard with these contents. `serial` is that of the publication, 0 for restored
    /// ones.
    bool take(std::vector<KeptTarget> targets, std::uint32_t serial) {
        contents_ = std::make_shared<KeptContents>(std::move(targets), [this, serial] { noteTextRead(serial); });
        publishedSerial_ = serial;
        return ownership_.acquire();
    }

    void noteTextRead(std::uint32_t serial) {
        if (serial == 0 || serial != publishedSerial_) {
            return;
        }
        // Once, as many readings would fill the channel of a partner that is busy, and leave no room for replies.
        if (std::exchange(reportedSerial_, serial) != serial) {
            static_cast<void>(channel_.send({.kind = Kind::textRead, .serial = serial}));
        }
        wasTextRead_ = true;
    }

    void confirm(std::uint32_t serial, bool isDone) {
        static_cast<void>(channel_.send({.kind = Kind::confirmed,
                                         .serial = serial,
                                         .window = isDone ? session_.window() : xcb_window_t{XCB_WINDOW_NONE}}));
    }

    /// Determines the X clients of a process, as the owner of the clipboard may be any of them: those of its windows.
    void findTarget(ProcessIdentifier process) {
        if (process == targetProcess_) {
            return;
        }
        targetProcess_ = process;
        targetClients_.clear();
        X11Connection& connection = session_.connection();
        const auto windows =
            receiveWindows(connection, requestProperty(connection, connection.root(), connection.atoms().clientList));
        const auto identities = identifyWindows(connection, windows);
        for (std::size_t index = 0; index < windows.size(); ++index) {
            if (identities[index].processIdentifier == process) {
                targetClients_.push_back(session_.clientOf(windows[index]));
            }
        }
    }

    [[nodiscard]] Owner classify(xcb_window_t owner) const {
        if (owner == XCB_WINDOW_NONE) {
            return Owner::nobody;
        }
        if (owner == session_.window()) {
            return Owner::keeper;
        }
        const bool isTarget = std::ranges::find(targetClients_, session_.clientOf(owner)) != targetClients_.end();
        return isTarget ? Owner::target : Owner::other;
    }

    void decideOnOwners() {
        while (!owners_.empty()) {
            const xcb_window_t owner = owners_.front();
            owners_.pop_front();
            decide(keeping::event::OwnerChanged{classify(owner)});
        }
    }

    void decide(const keeping::Event& event) {
        const keeping::Decision decision = keeping::decide(state_, event, monotonicNow());
        state_ = decision.state;
        wakeAt_ = decision.wakeAt;
        isDone_ = decision.isDone;
        exclusion_.setKept(state_.holds);
        if (decision.restores) {
            restore();
        }
        const bool mayRestore = state_.isProtecting || state_.copyDeadline;
        if (!mayRestore) {
            // The contents may be large, or a password.
            saved_.reset();
        }
    }

    void restore() {
        auto targets = readKeptTargets(saved_);
        // Another program may have become the owner, and the event for that may not have arrived yet.
        session_.xcb().grab_server(session_.handle());
        if (classify(currentOwner()) != Owner::other) {
            // If the saved contents cannot be read, an empty clipboard is better than the partner's text.
            static_cast<void>(take(targets ? std::move(*targets) : std::vector<KeptTarget>(), 0));
        }
        session_.xcb().ungrab_server(session_.handle());
        static_cast<void>(session_.flush());
    }

    [[nodiscard]] xcb_window_t currentOwner() {
        const auto reply = session_.connection().wait<xcb_get_selection_owner_reply_t>(
            session_.xcb().get_selection_owner(session_.handle(), session_.names().clipboard));
        return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    }

    [[nodiscard]] bool isOver() {
        if (!owners_.empty()) {
            return false;
        }
        const bool servesNothing = !state_.hasPartner && state_.owner == Owner::keeper && !state_.holds &&
                                   !state_.isProtecting && contents_ && contents_->targets().empty();
        if (!isDone_ && !servesNothing) {
            return false;
        }
        server_.dropStalledTransfers();
        if (!server_.isTransferring()) {
            return true;
        }
        wakeAt_ = later(monotonicNow(), stallCheck);
        return false;
    }

    void awaitInput() {
        if (!owners_.empty() || session_.flush()) {
            return;
        }
        std::array<pollfd, 2> requests{{{.fd = session_.descriptor(), .events = POLLIN, .revents = 0},
                                        {.fd = channel_.descriptor(), .events = POLLIN, .revents = 0}}};
        int timeout = -1;
        if (wakeAt_) {
            const auto left = std::max(*wakeAt_ - monotonicNow(), Duration::zero());
            timeout = static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
        }
        static_cast<void>(poll(requests.data(), requests.size(), timeout));
    }

    KeeperChannel channel_;
    ClipboardSession session_{X11Connection::Waiting::withoutDeadline};
    ClipboardOwnership ownership_{session_, [] {}};
    ClipboardServer server_{session_, ownership_, [this] { return contents_; }};
    ClipboardExclusion exclusion_{session_};
    std::shared_ptr<KeptContents> contents_;
    FileDescriptor saved_;
    std::uint32_t publishedSerial_ = 0;
    /// The serial of the contents whose first reading was reported.
    std::uint32_t reportedSerial_ = 0;
    ProcessIdentifier targetProcess_ = 0;
    std::vector<std::uint32_t> targetClients_;
    /// New owners of the clipboard, in order, that `decide` has not been called for.
    std::deque<xcb_window_t> owners_;
    bool isPartnerGone_ = false;
    bool wasTextRead_ = false;
    keeping::State state_;
    std::optional<Moment> wakeAt_;
    bool isDone_ = false;
};

}  // namespace

void runClipboardKeeper(FileDescriptor channel) { ClipboardKeeper(std::move(channel)).run(); }

}  // namespace lomaris
