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

/// This process's end of the connection to its keeper. The keeper is started at the first use and serves what this
/// process publishes, also after its end. If it cannot be started, or is gone, every operation fails at once; it is not
/// started again. Main thread; never throws.
class KeeperLink {
public:
    explicit KeeperLink(KeeperStart start) : start_(std::move(start)) {}
    KeeperLink(const KeeperLink&) = delete;
    KeeperLink& operator=(const KeeperLink&) = delete;
    /// Leaves the keeper as a sudden death of this process does, unless `finish` was called before.
    ~KeeperLink() { reapKeeper(started_); }

    /// Starts the keeper unless that was tried before; whether it is there.
    [[nodiscard]] bool isThere();

    /// Readable when the keeper has something to say, which `textWasRead` takes; negative if there is no keeper.
    [[nodiscard]] int descriptor() const { return channel_.descriptor(); }

    /// What a `PasteboardHold` announces; see `KeeperMessage`.
    void begin();
    /// Whether the keeper has the contents and will restore them.
    bool protect(std::span<const KeptTarget> saved);
    void expectCopy(std::optional<std::int32_t> process, Duration wait);
    void expectPaste(Duration minimumWait, Duration graceWait);
    void end();

    /// Puts contents on the clipboard in place of all others. The keeper's window, which may have lost the clipboard to
    /// another program since; nullopt if the keeper did not carry it out.
    [[nodiscard]] std::optional<xcb_window_t> publish(std::span<const KeptTarget> contents);

    /// Whether a program has read the promised text of the contents published last. True once for them.
    [[nodiscard]] bool textWasRead();

    /// Leaves the keeper on its own, an operation that is under way ended. From then on there is no keeper.
    void finish();

private:
    [[nodiscard]] std::optional<KeeperMessage> request(KeeperMessage message, std::span<const KeptTarget> targets);
    void note(const KeeperMessage& message);

    KeeperStart start_;
    StartedKeeper started_;
    KeeperChannel channel_;
    bool wasTried_ = false;
    /// Whether the keeper has confirmed anything.
    bool hasConfirmed_ = false;
    std::uint32_t serial_ = 0;
    std::uint32_t publishedSerial_ = 0;
    bool wasTextRead_ = false;
};

}  // namespace lomaris
