#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "platform/simulated/simulated_pasteboard_item.h"
#include "text/text.h"

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace lomaris {

class SimulatedTextElement;

namespace simulated {
struct World;
}  // namespace simulated

/// What a simulated application does when it receives a key stroke or an action. A plain value, made by the functions
/// below or from any function without arguments:
///
///     notes.onCopy(copiesSelectionOf(text).after(milliseconds(40)));
///     notes.onPasteInTurn({ignores(), pastesInto(text)});
///     notes.onDelete([&] { deletes += 1; });
///
/// An application is another process: it reacts at its own time, whether or not this process runs its run loop. Without
/// a delay it reacts before the call that caused the reaction returns. An application that has quit or hangs by then
/// does nothing. A function given here must not wait, and everything it references must outlive the desktop.
class Reaction {
public:
    using Act = std::function<void(simulated::World&)>;

    /// Functions to run at one moment, `delay` after the stimulus.
    struct Part {
        Duration delay{0};
        std::vector<Act> acts;
    };

    explicit Reaction(Act act) { parts_.push_back({Duration::zero(), {std::move(act)}}); }

    /// Calls `act`, which may call any function of the desktop's script.
    template <std::invocable Function>
    requires(!std::same_as<std::remove_cvref_t<Function>, Reaction>)
        // NOLINTNEXTLINE(google-explicit-constructor): a script passes plain functions.
        Reaction(Function act)
        : Reaction(Act([act = std::move(act)](simulated::World&) mutable { act(); })) {}

    /// The same reaction, later by `delay`.
    [[nodiscard]] Reaction after(Duration delay) const;

    /// In the order in which they were given, no two with the same delay.
    [[nodiscard]] const std::vector<Part>& parts() const { return parts_; }

private:
    friend Reaction together(const std::vector<Reaction>& reactions);

    Reaction() = default;

    std::vector<Part> parts_;
};

/// All of these reactions, each with its own delay; those with the same delay in the given order.
[[nodiscard]] Reaction together(const std::vector<Reaction>& reactions);

/// Does nothing, like a key stroke that is not scripted.
[[nodiscard]] Reaction ignores();

/// The application clears the pasteboard and writes one item with this plain text, which may be empty.
[[nodiscard]] Reaction copies(TextView text);

/// The application clears the pasteboard and writes one item with this type alone, for example an image.
[[nodiscard]] Reaction copiesOnly(PasteboardType type, Bytes bytes);

/// The application clears the pasteboard and writes these items.
[[nodiscard]] Reaction copiesItems(std::vector<CopiedItem> items);

/// The application copies the selection that the text area has at that time. If the selection is empty, it leaves the
/// pasteboard as it is.
[[nodiscard]] Reaction copiesSelectionOf(const SimulatedTextElement& element);

/// The application requests the pasteboard's plain text and replaces the selection of the text area with it: at once if
/// the bytes are on the pasteboard, or when this process fulfils its promise, in a run-loop slice or when it ends.
/// Writes nothing if there is no plain text or the contents change before that.
[[nodiscard]] Reaction pastesInto(const SimulatedTextElement& element);

/// The application deletes the selection of the text area or, if the selection is empty, the code point before the
/// insertion point.
[[nodiscard]] Reaction deletesSelectionOf(const SimulatedTextElement& element);

}  // namespace lomaris
