#pragma once

#include "platform/linux/x11/clipboard/keeper_channel.h"
#include "platform/linux/x11/clipboard/keeper_process.h"
#include "platform/linux/x11/clipboard/kept_contents.h"
#include "platform/scheduling.h"

#include <xcb/xproto.h>

#include <cstdint>
#include <optional>
#include <span>

namespace lomaris {

/// The partner's side of the connection to its keeper. The keeper is started at the first use, and serves what this
/// process publishes, also after this process has ended. If it cannot be started, or is gone, every operation fails at
/// once; it is not started again. Main thread. Never throws.
class KeeperLink {
public:
    explicit KeeperLink(KeeperStart start) : start_(std::move(start)) {}
    KeeperLink(const KeeperLink&) = delete;
    KeeperLink& operator=(const KeeperLink&) = delete;
    /// To the keeper the same as the death of this process, unless `finish` was called before.
    ~KeeperLink() { reapKeeper(started_); }

    /// Starts the keeper at the first call. Returns true if there is a keeper.
    [[nodiscard]] bool isThere();

    /// Readable when there is a message of the keeper, to be handled by `textWasRead`. Negative if there is no keeper.
    [[nodiscard]] int descriptor() const { return channel_.descriptor(); }

    // The calls of a `PasteboardHold`; see `KeeperMessage`.

    void begin();
    /// Returns true if the keeper has confirmed that it has the contents.
    bool protect(std::span<const KeptTarget> saved);
    void expectCopy(std::optional<std::int32_t> process, Duration wait);
    void expectPaste(Duration minimumWait, Duration graceWait);
    void end();

    /// Lets the keeper own the clipboard with new contents. Returns the keeper's window; another program may have
    /// become the owner since. nullopt if the keeper did not carry it out. Blocks for up to 1.5 s, 5 s for the first
    /// request.
    [[nodiscard]] std::optional<xcb_window_t> publish(std::span<const KeptTarget> contents);

    /// Handles the messages of the keeper. Returns true once if a program has read the promised text of the contents
    /// published last.
    [[nodiscard]] bool textWasRead();

    /// Ends the operation, if there is one, and disconnects from the keeper, which continues without this process.
    void finish();

private:
    [[nodiscard]] std::optional<KeeperMessage> request(KeeperMessage message, std::span<const KeptTarget> targets);
    void note(const KeeperMessage& message);

    KeeperStart start_;
    StartedKeeper started_;
    KeeperChannel channel_;
    bool wasTried_ = false;
    /// True after the keeper has confirmed a request.
    bool hasConfirmed_ = false;
    std::uint32_t serial_ = 0;
    std::uint32_t publishedSerial_ = 0;
    bool wasTextRead_ = false;
};

}  // namespace lomaris
